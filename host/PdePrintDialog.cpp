// SPDX-License-Identifier: MIT
// Extension panels inside Qt's print dialog, for the printer chosen in it.
#include "host/PdePrintDialog.h"

#include "host/DialogJobOptions.h"
#include "host/PdfFileOutput.h"
#include "host/PrinterPanels.h"
#include "host/SummaryView.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QChildEvent>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace pdehost {

PdePrintDialog::PdePrintDialog(QPrinter *printer, std::unique_ptr<PrinterPanels> panels, const QStringList &bundles,
                               QWidget *parent)
    : QPrintDialog(printer, parent), m_bundles(bundles)
{
    m_summaryTab = new QWidget;
    m_summaryTab->setWindowTitle(tr("Summary"));
    auto *summaryLayout = new QVBoxLayout(m_summaryTab);
    m_summary = new SummaryView(m_summaryTab);
    summaryLayout->addWidget(m_summary);
    m_status = new QLabel(m_summaryTab);
    m_status->setWordWrap(true);
    summaryLayout->addWidget(m_status);
    auto *clearRow = new QHBoxLayout;
    m_clearDefaults = new QPushButton(tr("Clear Saved Settings"), m_summaryTab);
    m_clearDefaults->setToolTip(tr("Removes the extensions' settings saved for this printer"));
    clearRow->addWidget(m_clearDefaults);
    clearRow->addStretch();
    summaryLayout->addLayout(clearRow);
    connect(m_clearDefaults, &QPushButton::clicked, this, &PdePrintDialog::clearSavedDefaults);
    setOptionTabs({m_summaryTab});

    // Qt keeps its option tabs in a tab widget; every tab stays reachable at
    // any size because the tab bar asks for the room of all its titles.
    m_tabs = qobject_cast<QTabWidget *>(m_summaryTab->parentWidget()->parentWidget());
    m_tabs->setUsesScrollButtons(false);
    m_tabs->setElideMode(Qt::ElideNone);
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] {
        if (m_tabs->currentWidget() == m_summaryTab)
            refreshSummary();
    });

    // "Save as printer defaults" beside the buttons, where the choice is made.
    m_saveDefaults = new QCheckBox(tr("Save as printer defaults"), this);
    m_saveDefaults->setToolTip(tr("Keeps the extensions' settings for later jobs to this printer "
                                  "(lp, lpr and these dialogs read them)"));
    auto *dialogLayout = qobject_cast<QBoxLayout *>(layout());
    auto *buttons = findChild<QDialogButtonBox *>(QString(), Qt::FindDirectChildrenOnly);
    if (dialogLayout != nullptr && buttons != nullptr) {
        const int at = dialogLayout->indexOf(buttons);
        dialogLayout->removeWidget(buttons);
        auto *row = new QHBoxLayout;
        row->addWidget(m_saveDefaults);
        row->addWidget(buttons, 1);
        dialogLayout->insertLayout(at, row);
        buttons->addButton(QDialogButtonBox::Help);
        connect(buttons, &QDialogButtonBox::helpRequested, this, &PdePrintDialog::help);
    }

    if (auto *printers = findChild<QComboBox *>(QStringLiteral("printers")))
        connect(printers, &QComboBox::currentIndexChanged, this, &PdePrintDialog::printerChanged);
    if (panels)
        setPanels(std::move(panels), {});
    else
        printerChanged();
}

PdePrintDialog::~PdePrintDialog()
{
    // The views belong to their panels, which go after this.
    if (m_panels) {
        for (HostedPanel &hosted : m_panels->panels()) {
            if (QWidget *view = hosted.panel->panelView())
                view->setParent(nullptr);
        }
    }
}

QWidget *PdePrintDialog::panelTab(int index) const
{
    return m_panelTabs.value(index);
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

void PdePrintDialog::printerChanged()
{
    // Qt settles on a printer of its own while it shows the dialog; the
    // panels the dialog opened with stay until the user chooses one.
    if (!m_shown && m_panels)
        return;
    if (printer()->outputFormat() == QPrinter::PdfFormat || printer()->printerName().isEmpty()) {
        setPanels(nullptr, {});
        return;
    }
    const QString name = printer()->printerName();
    if (m_panels && m_panels->session().destinationName() == name)
        return;
    QString error;
    std::unique_ptr<PrinterPanels> opened = PrinterPanels::open({{}, name}, {}, m_bundles, &error);
    setPanels(std::move(opened), error);
}

void PdePrintDialog::setPanels(std::unique_ptr<PrinterPanels> panels, const QString &problem)
{
    const bool panelWasCurrent = m_panelTabs.contains(m_tabs->currentWidget());
    if (m_panels) {
        for (HostedPanel &hosted : m_panels->panels()) {
            if (QWidget *view = hosted.panel->panelView())
                view->setParent(nullptr);
        }
    }
    qDeleteAll(std::exchange(m_panelTabs, {}));
    m_panels = std::move(panels);
    m_problem = problem;
    m_started = false;

    if (m_panels) {
        for (HostedPanel &hosted : m_panels->panels()) {
            auto *tab = new QWidget;
            auto *tabLayout = new QVBoxLayout(tab);
            if (QWidget *view = hosted.panel->panelView())
                tabLayout->addWidget(view);
            tabLayout->addStretch();
            m_tabs->insertTab(m_tabs->indexOf(m_summaryTab), tab, hosted.panel->panelName());
            m_panelTabs.append(tab);
        }
    }
    m_status->setText(m_panels ? m_panels->problems().join(u'\n') : problem);
    const bool savable = m_panels && m_panels->session().destination() != nullptr;
    m_saveDefaults->setEnabled(savable);
    if (!savable)
        m_saveDefaults->setChecked(false);
    m_clearDefaults->setEnabled(savable && !m_panelTabs.isEmpty());
    if (m_shown) {
        startPanels();
        if (panelWasCurrent && !m_panelTabs.isEmpty())
            m_tabs->setCurrentWidget(m_panelTabs.front());
        refreshSummary();
    }
}

bool PdePrintDialog::holdSaved()
{
    return m_panels && m_panels->session().printSettings()->contains(QStringLiteral("job-hold-until"));
}

void PdePrintDialog::childEvent(QChildEvent *event)
{
    // Qt makes its Properties dialog when it is first needed and starts its
    // Job Options page from the queue's default hold, which is there for
    // other applications' jobs: this job is held only when the user saved a
    // hold or chooses one.
    if (event->type() == QEvent::ChildPolished && event->child() != m_holdShown) {
        if (auto *hold = event->child()->findChild<QComboBox *>(QStringLiteral("jobHoldComboBox"))) {
            m_holdShown = event->child();
            if (!holdSaved())
                hold->setCurrentIndex(0);
        }
    }
    QPrintDialog::childEvent(event);
}

void PdePrintDialog::startPanels()
{
    if (m_started || !m_panels)
        return;
    m_started = true;
    for (HostedPanel &hosted : m_panels->panels()) {
        hosted.panel->restoreValuesAndReturnError(nullptr);
        hosted.panel->willShow();
    }
}

void PdePrintDialog::showEvent(QShowEvent *event)
{
    if (!m_shown) {
        m_shown = true;
        startPanels();
        if (!m_panelTabs.isEmpty())
            showTab(m_panelTabs.front());
        refreshSummary();
    }
    QPrintDialog::showEvent(event);
}

void PdePrintDialog::showTab(QWidget *tab)
{
    // Qt's dialog starts with its option tabs folded away behind the button
    // of the reset role ("Options >>").
    if (!m_tabs->isVisibleTo(this)) {
        if (auto *buttons = findChild<QDialogButtonBox *>(QString(), Qt::FindDirectChildrenOnly)) {
            for (QAbstractButton *button : buttons->buttons()) {
                if (buttons->buttonRole(button) == QDialogButtonBox::ResetRole)
                    button->click();
            }
        }
    }
    m_tabs->setCurrentWidget(tab);
}

void PdePrintDialog::focusRefusedField(QWidget *tab)
{
    // A panel that put the focus on the field keeps it there; otherwise the
    // field left blank is the one its alert is about.
    if (QWidget *focused = focusWidget(); focused != nullptr && tab->isAncestorOf(focused)) {
        focused->setFocus(Qt::OtherFocusReason);
        return;
    }
    for (QLineEdit *field : tab->findChildren<QLineEdit *>()) {
        if (field->isVisibleTo(tab) && field->isEnabled() && !field->isReadOnly() && field->text().trimmed().isEmpty()) {
            field->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

QStringList PdePrintDialog::summaryLines()
{
    const auto line = [](const QString &title, const QString &value) { return title + QStringLiteral(": ") + value; };
    QStringList lines;
    lines.append(line(tr("Printer"), printer()->outputFormat() == QPrinter::PdfFormat ? tr("PDF file")
                                                                                       : printer()->printerName()));
    // What the dialog shows now; Qt hands it to the printer only on Print.
    const auto *copies = findChild<QSpinBox *>(QStringLiteral("copies"));
    lines.append(line(tr("Copies"), QString::number(copies != nullptr ? copies->value() : printer()->copyCount())));
    QString pages = tr("All");
    const auto *range = findChild<QRadioButton *>(QStringLiteral("printRange"));
    const auto *from = findChild<QSpinBox *>(QStringLiteral("from"));
    const auto *to = findChild<QSpinBox *>(QStringLiteral("to"));
    const auto *listed = findChild<QRadioButton *>(QStringLiteral("pagesRadioButton"));
    const auto *list = findChild<QLineEdit *>(QStringLiteral("pagesLineEdit"));
    if (range != nullptr && range->isChecked() && from != nullptr && to != nullptr)
        pages = QStringLiteral("%1-%2").arg(from->value()).arg(std::max(from->value(), to->value()));
    else if (listed != nullptr && listed->isChecked() && list != nullptr)
        pages = list->text();
    lines.append(line(tr("Pages"), pages));
    QString sides = tr("Off");
    if (const auto *longEdge = findChild<QRadioButton *>(QStringLiteral("duplexLong")); longEdge && longEdge->isChecked())
        sides = tr("Long edge");
    if (const auto *shortEdge = findChild<QRadioButton *>(QStringLiteral("duplexShort")); shortEdge && shortEdge->isChecked())
        sides = tr("Short edge");
    lines.append(line(tr("Two-Sided"), sides));
    if (m_panels)
        lines += m_panels->summaryLines();
    return lines;
}

void PdePrintDialog::refreshSummary()
{
    m_summary->showLines(summaryLines());
}

void PdePrintDialog::clearSavedDefaults()
{
    QString error;
    if (!m_panels || !m_panels->clearDefaults(&error)) {
        m_status->setText(error);
        return;
    }
    m_status->setText(tr("The extensions' saved settings for %1 were removed; the panels show the printer's own.")
                          .arg(m_panels->session().destinationName()));
    refreshSummary();
}

void PdePrintDialog::help()
{
    // The panel on show answers first: it shows its own help, or lets the
    // dialog show the dialog's.
    const qsizetype index = m_panelTabs.indexOf(m_tabs->currentWidget());
    if (index >= 0 && m_tabs->isVisibleTo(this) && !m_panels->panels()[static_cast<std::size_t>(index)].panel->shouldShowHelp())
        return;
    QMessageBox::information(
        this, tr("Print Help"),
        tr("This dialog prints to CUPS. The tabs after Qt's own come from the printer's extension bundles and "
           "follow the printer chosen under Name; Summary lists what the job will carry. \"Save as printer "
           "defaults\" keeps the extensions' settings for later jobs to this printer; \"Clear Saved Settings\" "
           "on the Summary tab removes them. See pde-print --help."));
}

void PdePrintDialog::accept()
{
    if (m_panels) {
        if (const std::optional<std::size_t> refused = m_panels->saveAll()) {
            QWidget *tab = m_panelTabs.value(static_cast<qsizetype>(*refused));
            showTab(tab);
            focusRefusedField(tab);
            return;
        }
    }
    // Without its Properties dialog shown, Qt's dialog sends the queue's
    // default hold as the user's choice.
    const bool holdShown = findChild<QComboBox *>(QStringLiteral("jobHoldComboBox")) != nullptr;
    QPrintDialog::accept();
    if (!holdShown && !holdSaved())
        removeDialogJobOption(*printer(), QStringLiteral("job-hold-until"));
}

PrintOutcome PdePrintDialog::printFiles(const QStringList &files, const QString &title)
{
    if (printer()->outputFormat() == QPrinter::PdfFormat) {
        PrintOutcome outcome{0, printer()->outputFileName(), {}};
        writeDocumentsToPdf(files, *printer(), &outcome.error);
        return outcome;
    }
    const QString name = printer()->printerName();
    PrintOutcome outcome{0, name, {}};
    if (!m_panels) {
        outcome.error = m_problem.isEmpty() ? tr("no printer to print to (choose one in the dialog)") : m_problem;
        return outcome;
    }
    // A PPD file's panels print to the printer chosen in the dialog.
    cups_dest_t *destination = m_panels->session().destination();
    cups_dest_t *dests = nullptr;
    int count = 0;
    if (destination == nullptr) {
        count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
        const QByteArray queue = name.section(u'/', 0, 0).toUtf8();
        const QByteArray instance = name.section(u'/', 1).toUtf8();
        destination = cupsGetDest(queue.constData(), instance.isEmpty() ? nullptr : instance.constData(), count, dests);
    }
    if (destination == nullptr) {
        outcome.error = tr("%1: no such printer").arg(name);
    } else if (!saveAsPrinterDefaults() || m_panels->saveDefaults(&outcome.error)) {
        StandardOptions standard;
        standard.dialog = dialogJobOptions(*printer());
        const std::variant<int, QString> job =
            submitJob(destination, files, title, *m_panels->session().printSettings(), standard);
        if (const QString *problem = std::get_if<QString>(&job))
            outcome.error = *problem;
        else
            outcome.job = std::get<int>(job);
    }
    cupsFreeDests(count, dests);
    return outcome;
}

QImage PdePrintDialog::screenshot() const
{
    QScreen *shownOn = screen();
    if (shownOn == nullptr || !isVisible())
        return {};
    const QRect frame = frameGeometry();
    QImage picture = shownOn->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height()).toImage();
    const auto place = [&frame](const QWidget *widget, const QRect &rect) {
        const QRect inPicture(widget->mapToGlobal(rect.topLeft()) - frame.topLeft(), rect.size());
        return QStringLiteral("%1,%2,%3,%4").arg(inPicture.x()).arg(inPicture.y()).arg(inPicture.width()).arg(inPicture.height());
    };
    const QTabBar *bar = m_tabs->tabBar();
    picture.setText(QStringLiteral("Tab bar"), bar->isVisible() ? place(bar, bar->rect()) : QString());
    for (int i = 0; i < bar->count(); ++i)
        picture.setText(QStringLiteral("Tab %1").arg(i), bar->tabText(i) + u'|' + place(bar, bar->tabRect(i)));
    return picture;
}

} // namespace pdehost
