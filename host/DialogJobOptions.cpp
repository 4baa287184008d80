// SPDX-License-Identifier: MIT
// Qt's printer settings as CUPS job options.
#include "host/DialogJobOptions.h"

#include <QPageLayout>
#include <QPageRanges>
#include <QPrintEngine>
#include <QPrinter>

namespace pdehost {
namespace {

// The property under which Qt's CUPS print engine keeps the options that the
// dialog's Properties and Job Options pages store, as name, value, name, ...
constexpr auto kCupsOptionsProperty = QPrintEngine::PrintEnginePropertyKey(0xfe00);

QString sidesOf(QPrinter::DuplexMode duplex, QPageLayout::Orientation orientation)
{
    switch (duplex) {
    case QPrinter::DuplexNone:
        return QStringLiteral("one-sided");
    case QPrinter::DuplexLongSide:
        return QStringLiteral("two-sided-long-edge");
    case QPrinter::DuplexShortSide:
        return QStringLiteral("two-sided-short-edge");
    case QPrinter::DuplexAuto:
        return orientation == QPageLayout::Portrait ? QStringLiteral("two-sided-long-edge")
                                                    : QStringLiteral("two-sided-short-edge");
    }
    return QStringLiteral("one-sided");
}

} // namespace

QList<std::pair<QString, QString>> dialogJobOptions(QPrinter &printer)
{
    QList<std::pair<QString, QString>> options;
    const QPageLayout layout = printer.pageLayout();
    if (layout.pageSize().isValid())
        options.append({QStringLiteral("media"), layout.pageSize().key()});
    options.append({QStringLiteral("orientation-requested"),
                    layout.orientation() == QPageLayout::Landscape ? QStringLiteral("4") : QStringLiteral("3")});
    options.append({QStringLiteral("copies"), QString::number(printer.copyCount())});
    if (printer.copyCount() > 1)
        options.append({QStringLiteral("Collate"), printer.collateCopies() ? QStringLiteral("True") : QStringLiteral("False")});
    options.append({QStringLiteral("sides"), sidesOf(printer.duplex(), layout.orientation())});
    options.append({QStringLiteral("outputorder"),
                    printer.pageOrder() == QPrinter::LastPageFirst ? QStringLiteral("reverse") : QStringLiteral("normal")});
    options.append({QStringLiteral("print-color-mode"),
                    printer.colorMode() == QPrinter::Color ? QStringLiteral("color") : QStringLiteral("monochrome")});
    if (printer.printRange() == QPrinter::PageRange && !printer.pageRanges().isEmpty())
        options.append({QStringLiteral("page-ranges"), printer.pageRanges().toString()});

    const QStringList stored = printer.printEngine()->property(kCupsOptionsProperty).toStringList();
    for (qsizetype i = 0; i + 1 < stored.size(); i += 2)
        options.append({stored[i], stored[i + 1]});
    return options;
}

void removeDialogJobOption(QPrinter &printer, const QString &name)
{
    QStringList stored = printer.printEngine()->property(kCupsOptionsProperty).toStringList();
    for (qsizetype i = 0; i + 1 < stored.size();) {
        if (stored[i] == name)
            stored.remove(i, 2);
        else
            i += 2;
    }
    printer.printEngine()->setProperty(kCupsOptionsProperty, stored);
}

} // namespace pdehost
