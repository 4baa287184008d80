// SPDX-License-Identifier: MIT
// pde-print: print files through Qt's print dialog with the printer's
// extension panels in it, to CUPS.
#include "host/PdePrintDialog.h"
#include "host/PrinterPanels.h"
#include "host/RecordPrivacy.h"
#include "host/TerminalText.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>
#include <QPrinter>

#include <cstdio>

namespace {

const char *const kDescription = R"(Prints FILEs to a CUPS printer (the default printer unless --printer or
--ppd says otherwise) through Qt's print dialog, with one tab per
print dialog extension that the printer's PPD calls for (*APDialogExtension)
and a Summary tab. Print saves every panel; a panel that refuses (after its
alert) keeps the dialog open on its tab. The panels' settings travel with the
job as CUPS job options; "Save as printer defaults" also keeps them in the
printer's saved options (lpoptions) for every later job.

Bundles are found by file name in the folders of PDE_PLUGIN_PATH, then in
@INSTALLED_BUNDLE_DIR@, unless --bundle names them.

Exit status: 0 printed, 1 usage error or cancelled, 2 the printer, its PPD
or the job could not be had.)";

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pde-print"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromUtf8(kDescription).replace(
        QStringLiteral("@INSTALLED_BUNDLE_DIR@"), QStringLiteral(PDE_INSTALLED_BUNDLE_DIR)));
    parser.addHelpOption();
    const QCommandLineOption printerOption(QStringLiteral("printer"), QStringLiteral("The CUPS printer to print to."), QStringLiteral("NAME"));
    const QCommandLineOption ppdOption(QStringLiteral("ppd"), QStringLiteral("Describe the printer by this PPD file; the printer is chosen in the dialog."), QStringLiteral("FILE"));
    const QCommandLineOption bundleOption(QStringLiteral("bundle"), QStringLiteral("Load this extension bundle (repeatable)."), QStringLiteral("PATH"));
    parser.addOption(printerOption);
    parser.addOption(ppdOption);
    parser.addOption(bundleOption);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The files to print."), QStringLiteral("FILE..."));
    parser.process(app);

    const QStringList files = parser.positionalArguments();
    if (files.isEmpty() || (parser.isSet(printerOption) && parser.isSet(ppdOption))) {
        std::fputs("pde-print: give at least one file, and at most one of --printer NAME and --ppd FILE (see --help)\n", stderr);
        return 1;
    }
    QString printerName = parser.value(printerOption);
    if (printerName.isEmpty() && !parser.isSet(ppdOption)) {
        cups_dest_t *dests = nullptr;
        const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
        if (const cups_dest_t *fallback = cupsGetDest(nullptr, nullptr, count, dests))
            printerName = QString::fromUtf8(fallback->name);
        cupsFreeDests(count, dests);
        if (printerName.isEmpty()) {
            std::fputs("pde-print: there is no default printer; name one with --printer NAME\n", stderr);
            return 2;
        }
    }

    QString error;
    const std::unique_ptr<pdehost::PrinterPanels> panels = pdehost::PrinterPanels::open(
        {parser.value(ppdOption), printerName}, {}, parser.values(bundleOption), &error);
    if (!panels) {
        QMessageBox::critical(nullptr, QStringLiteral("pde-print"), error);
        std::fprintf(stderr, "pde-print: %s\n", qUtf8Printable(error));
        return 2;
    }
    for (const QString &problem : panels->problems())
        std::fprintf(stderr, "pde-print: %s\n", qUtf8Printable(problem));

    QPrinter printer;
    if (panels->session().destination() != nullptr)
        printer.setPrinterName(panels->session().destinationName());
    pdehost::PdePrintDialog dialog(&printer, panels.get());
    if (dialog.exec() != QDialog::Accepted)
        return 1;
    const std::variant<int, QString> job = dialog.printFiles(files);
    if (const QString *problem = std::get_if<QString>(&job)) {
        QMessageBox::critical(nullptr, QStringLiteral("pde-print"), *problem);
        std::fprintf(stderr, "pde-print: %s\n", qUtf8Printable(*problem));
        return 2;
    }
    // Once per run: whether other users can read this job's private values.
    QStringList privateKeys;
    for (const pdehost::HostedPanel &hosted : panels->panels())
        privateKeys += pdehost::privateSettingsKeys(*hosted.bundle);
    QString unknown;
    const std::optional<QStringList> shown = privateKeys.isEmpty() ? std::nullopt
                                             : pdehost::recordKeysShownToOthers(std::get<int>(job), privateKeys, &unknown);
    if (shown && !shown->isEmpty())
        std::fprintf(stderr, "pde-print: %s\n", qUtf8Printable(pdehost::terminalText(pdehost::recordPrivacyWarning(*shown))));
    std::printf("%d\n", std::get<int>(job));
    return 0;
}
