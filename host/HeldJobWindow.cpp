// SPDX-License-Identifier: MIT
// One held job's window.
#include "host/HeldJobWindow.h"

#include "host/HostLogging.h"
#include "host/PrinterPanels.h"
#include "host/SummaryView.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pdehost {

HeldJobWindow::HeldJobWindow(const HeldJob &job, const QStringList &explicitBundles, QWidget *parent)
    : QDialog(parent), m_job(job)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Print \u201c%1\u201d on %2").arg(job.title, job.printer));
    auto *layout = new QVBoxLayout(this);
    auto *heading = new QLabel(tr("\u201c%1\u201d waits on %2 until you print it.").arg(job.title, job.printer), this);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    heading->setTextFormat(Qt::PlainText);
    layout->addWidget(heading);

    QString error;
    std::optional<HeldJobOptions> held;
    if (const std::unique_ptr<SchedulerConnection> scheduler = SchedulerConnection::open(&error))
        held = readHeldJob(*scheduler, job.id, job.printer, job.owner, &error);
    if (held)
        m_panels = PrinterPanels::open({{}, job.printer}, held->options, explicitBundles, &error);
    if (m_panels)
        error = m_panels->problems().join(u'\n');
    if (m_panels && !error.isEmpty() && !m_panels->panels().empty()) {
        // Some panels are there: they are shown, with what is missing.
        m_problem = error;
        auto *label = new QLabel(tr("Some of the printer's panels cannot be shown:\n%1").arg(m_problem), this);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    if (!m_panels || m_panels->panels().empty()) {
        m_problem = error.isEmpty() ? tr("the printer calls for no panel") : error;
        m_panels.reset();
        auto *label = new QLabel(tr("The printer's panels cannot be shown, so the job stays held until they can "
                                    "be or you cancel it.\n\n%1").arg(m_problem), this);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        layout->addWidget(label);
        qCWarning(lcPdeAgent).noquote() << QStringLiteral("job %1 on %2:").arg(job.id).arg(job.printer) << m_problem;
    } else {
        m_jobSettings = std::make_unique<pde::PrintSettings>(*m_panels->session().printSettings());
        m_tabs = new QTabWidget(this);
        for (HostedPanel &hosted : m_panels->panels()) {
            QWidget *view = hosted.panel->panelView();
            auto *tab = new QWidget;
            auto *tabLayout = new QVBoxLayout(tab);
            if (view != nullptr)
                tabLayout->addWidget(view);
            tabLayout->addStretch();
            m_tabs->addTab(tab, hosted.panel->panelName());
            hosted.panel->restoreValuesAndReturnError(nullptr);
            hosted.panel->willShow();
        }
        m_summaryTab = new QWidget;
        auto *summaryLayout = new QVBoxLayout(m_summaryTab);
        m_summary = new SummaryView(m_summaryTab);
        summaryLayout->addWidget(m_summary);
        m_tabs->addTab(m_summaryTab, tr("Summary"));
        connect(m_tabs, &QTabWidget::currentChanged, this, [this](int index) {
            if (m_tabs->widget(index) == m_summaryTab)
                refreshSummary();
        });
        layout->addWidget(m_tabs);
    }

    auto *buttons = new QDialogButtonBox(this);
    m_print = buttons->addButton(tr("Print"), QDialogButtonBox::AcceptRole);
    m_keepHeld = buttons->addButton(tr("Keep Held"), QDialogButtonBox::RejectRole);
    m_cancelJob = buttons->addButton(tr("Cancel Job"), QDialogButtonBox::DestructiveRole);
    m_print->setEnabled(m_panels != nullptr);
    m_print->setDefault(m_panels != nullptr);
    connect(m_print, &QPushButton::clicked, this, &HeldJobWindow::print);
    connect(m_keepHeld, &QPushButton::clicked, this, &HeldJobWindow::reject);
    connect(m_cancelJob, &QPushButton::clicked, this, &HeldJobWindow::cancelJob);
    layout->addWidget(buttons);
}

HeldJobWindow::~HeldJobWindow()
{
    // The views belong to their panels, which go with m_panels after this
    // window's widgets: they are taken out of the tabs first.
    if (m_panels) {
        for (HostedPanel &hosted : m_panels->panels()) {
            if (QWidget *view = hosted.panel->panelView())
                view->setParent(nullptr);
        }
    }
}

void HeldJobWindow::refreshSummary()
{
    m_summary->showLines(m_panels->summaryLines());
}

void HeldJobWindow::report(const QString &what)
{
    qCWarning(lcPdeAgent).noquote() << what;
    QMessageBox::warning(this, windowTitle(), what);
}

void HeldJobWindow::print()
{
    if (const std::optional<std::size_t> refused = m_panels->saveAll()) {
        // The panel has shown its alert; the user corrects it here.
        m_tabs->setCurrentIndex(static_cast<int>(*refused));
        return;
    }
    QString error;
    const std::unique_ptr<SchedulerConnection> scheduler = SchedulerConnection::open(&error);
    if (!scheduler
        || !releaseWithEntries(*scheduler, m_job.id, changedEntries(*m_jobSettings, *m_panels->session().printSettings()),
                               &error)) {
        report(error);
        return;
    }
    accept();
}

void HeldJobWindow::cancelJob()
{
    QString error;
    const std::unique_ptr<SchedulerConnection> scheduler = SchedulerConnection::open(&error);
    if (!scheduler || !cancelHeldJob(*scheduler, m_job.id, &error)) {
        report(error);
        return;
    }
    done(QDialog::Rejected);
}

void HeldJobWindow::jobLeft(JobFate fate)
{
    const QString why = tr("\u201c%1\u201d on %2 no longer waits: %3.").arg(m_job.title, m_job.printer, describeFate(fate));
    qCInfo(lcPdeAgent).noquote() << QStringLiteral("job %1:").arg(m_job.id) << describeFate(fate);
    auto *message = new QMessageBox(QMessageBox::Information, windowTitle(), why, QMessageBox::Ok);
    message->setAttribute(Qt::WA_DeleteOnClose);
    message->setModal(false);
    message->show();
    close();
}

} // namespace pdehost
