// SPDX-License-Identifier: MIT
// Extension panels inside Qt's print dialog.
#include "host/PdePrintDialog.h"

#include "host/PrinterPanels.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMessageBox>
#include <QPageRanges>
#include <QPrinter>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace pdehost {
namespace {

const char *const kHostHelp =
    "This dialog prints to CUPS. The tabs after the standard ones come from the printer's "
    "extension bundles; Summary lists what they will send. \"Save as printer defaults\" keeps "
    "the extensions' settings for every later job to this printer. See pde-print --help.";

QString sidesOf(QPrinter::DuplexMode duplex)
{
    switch (duplex) {
    case QPrinter::DuplexNone:
        return QStringLiteral("one-sided");
    case QPrinter::DuplexLongSide:
        return QStringLiteral("two-sided-long-edge");
    case QPrinter::DuplexShortSide:
        return QStringLiteral("two-sided-short-edge");
    case QPrinter::DuplexAuto:
        return {};
    }
    return {};
}

} // namespace

PdePrintDialog::PdePrintDialog(QPrinter *printer, PrinterPanels *panels, QWidget *parent)
    : QPrintDialog(printer, parent), m_panels(panels)
{
    QList<QWidget *> tabs;
    for (std::size_t i = 0; i < m_panels->panels().size(); ++i) {
        HostedPanel &hosted = m_panels->panels()[i];
        QWidget *view = hosted.panel->panelView();
        auto *tab = new QWidget;
        tab->setWindowTitle(hosted.panel->panelName());
        auto *layout = new QVBoxLayout(tab);
        if (view != nullptr)
            layout->addWidget(view);
        auto *buttons = new QHBoxLayout;
        auto *helpButton = new QPushButton(tr("Help"), tab);
        buttons->addWidget(helpButton);
        buttons->addStretch();
        layout->addLayout(buttons);
        layout->addStretch();
        connect(helpButton, &QPushButton::clicked, this, [this, i] { help(static_cast<int>(i)); });
        tabs.append(tab);
        m_tabs.append(tab);
    }

    m_summaryTab = new QWidget;
    m_summaryTab->setWindowTitle(tr("Summary"));
    auto *summaryLayout = new QVBoxLayout(m_summaryTab);
    m_summary = new QTreeWidget(m_summaryTab);
    m_summary->setColumnCount(2);
    m_summary->setHeaderLabels({tr("Setting"), tr("Value")});
    m_summary->setRootIsDecorated(false);
    m_summary->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    summaryLayout->addWidget(m_summary);
    m_saveDefaults = new QCheckBox(tr("Save as printer defaults"), m_summaryTab);
    m_saveDefaults->setEnabled(m_panels->session().destination() != nullptr);
    summaryLayout->addWidget(m_saveDefaults);
    tabs.append(m_summaryTab);
    setOptionTabs(tabs);

    if (auto *tabWidget = m_summaryTab->parentWidget() ? m_summaryTab->parentWidget()->parentWidget() : nullptr) {
        if (auto *options = qobject_cast<QTabWidget *>(tabWidget)) {
            connect(options, &QTabWidget::currentChanged, this, [this, options](int index) {
                if (options->widget(index) == m_summaryTab)
                    refreshSummary();
            });
        }
    }
}

PdePrintDialog::~PdePrintDialog()
{
    // The views belong to their panels, which outlive this dialog.
    for (HostedPanel &hosted : m_panels->panels()) {
        if (QWidget *view = hosted.panel->panelView())
            view->setParent(nullptr);
    }
}

QWidget *PdePrintDialog::panelTab(int index) const
{
    return m_tabs.value(index);
}

QWidget *PdePrintDialog::summaryTab() const
{
    return m_summaryTab;
}

bool PdePrintDialog::saveAsPrinterDefaults() const
{
    return m_saveDefaults->isChecked();
}

void PdePrintDialog::setSaveAsPrinterDefaults(bool save)
{
    m_saveDefaults->setChecked(save && m_saveDefaults->isEnabled());
}

void PdePrintDialog::showEvent(QShowEvent *event)
{
    if (!m_restored) {
        m_restored = true;
        for (HostedPanel &hosted : m_panels->panels()) {
            hosted.panel->restoreValuesAndReturnError(nullptr);
            hosted.panel->willShow();
        }
    }
    QPrintDialog::showEvent(event);
}

void PdePrintDialog::showTab(QWidget *tab)
{
    // Qt's dialog keeps its option tabs in a pane that starts folded away.
    for (QPushButton *button : findChildren<QPushButton *>()) {
        if (button->text().contains(QStringLiteral("Options")) && button->text().contains(QStringLiteral(">>")))
            button->click();
    }
    for (QWidget *ancestor = tab->parentWidget(); ancestor != nullptr; ancestor = ancestor->parentWidget()) {
        if (auto *tabs = qobject_cast<QTabWidget *>(ancestor)) {
            tabs->setCurrentWidget(tab);
            break;
        }
    }
}

QStringList PdePrintDialog::summaryLines()
{
    return m_panels->summaryLines();
}

void PdePrintDialog::refreshSummary()
{
    m_summary->clear();
    for (const QString &line : summaryLines()) {
        const qsizetype colon = line.indexOf(QStringLiteral(": "));
        new QTreeWidgetItem(m_summary, {line.left(colon), line.mid(colon + 2)});
    }
}

void PdePrintDialog::help(int index)
{
    HostedPanel &hosted = m_panels->panels()[static_cast<std::size_t>(index)];
    if (hosted.panel->shouldShowHelp())
        QMessageBox::information(this, tr("Print Help"), tr(kHostHelp));
}

void PdePrintDialog::accept()
{
    if (const std::optional<std::size_t> refused = m_panels->saveAll()) {
        showTab(m_tabs.value(static_cast<int>(*refused)));
        return;
    }
    QPrintDialog::accept();
}

std::variant<int, QString> PdePrintDialog::printFiles(const QStringList &files)
{
    cups_dest_t *destination = m_panels->session().destination();
    cups_dest_t *chosen = nullptr;
    int count = 0;
    cups_dest_t *dests = nullptr;
    if (destination == nullptr) {
        count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
        chosen = cupsGetDest(printer()->printerName().toUtf8().constData(), nullptr, count, dests);
        destination = chosen;
    }
    if (destination == nullptr) {
        cupsFreeDests(count, dests);
        return tr("no CUPS printer to print to (choose one in the dialog)");
    }
    if (saveAsPrinterDefaults()) {
        QString error;
        if (!m_panels->session().saveAsDestinationDefaults(&error)) {
            cupsFreeDests(count, dests);
            return error;
        }
    }
    StandardOptions standard;
    standard.copies = printer()->copyCount();
    standard.pageRanges = printer()->pageRanges().toString();
    standard.sides = sidesOf(printer()->duplex());
    const auto job = submitJob(destination, files, files.value(0), *m_panels->session().printSettings(), standard);
    cupsFreeDests(count, dests);
    return job;
}

} // namespace pdehost
