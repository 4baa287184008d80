// SPDX-License-Identifier: MIT
// The window of the session agent for one held job: the printer's panels
// restored from the job's own options, a Summary, and Print (save every
// panel, write their entries into the job, release it), Keep Held and
// Cancel Job.
#pragma once

#include "host/HeldJobs.h"

#include <QDialog>
#include <QStringList>

#include <memory>

class QPushButton;
class QTabWidget;

namespace pdehost {

class SummaryView;

class PrinterPanels;

class HeldJobWindow : public QDialog
{
    Q_OBJECT

public:
    // Opens the job's printer with its panels (as the other hosts open
    // them, bundles also from `explicitBundles`). When that fails, or the
    // job cannot be read, the window says why and offers only Keep Held and
    // Cancel Job: the job stays held.
    HeldJobWindow(const HeldJob &job, const QStringList &explicitBundles, QWidget *parent = nullptr);
    ~HeldJobWindow() override;

    const HeldJob &job() const { return m_job; }
    // Why the panels cannot be shown; empty when they are.
    const QString &problem() const { return m_problem; }
    QTabWidget *tabs() const { return m_tabs; }
    QPushButton *printButton() const { return m_print; }
    QPushButton *keepHeldButton() const { return m_keepHeld; }
    QPushButton *cancelJobButton() const { return m_cancelJob; }

    // The job stopped waiting elsewhere: the window closes and a message
    // says why.
    void jobLeft(JobFate fate);

private:
    void print();
    void cancelJob();
    void refreshSummary();
    // A failure of the scheduler: said in a message, the window stays.
    void report(const QString &what);

    HeldJob m_job;
    QString m_problem;
    std::unique_ptr<PrinterPanels> m_panels;
    // The settings as the job brought them: what the panels' entries are
    // compared with, however often Print is tried.
    std::unique_ptr<pde::PrintSettings> m_jobSettings;
    QTabWidget *m_tabs = nullptr;
    QWidget *m_summaryTab = nullptr;
    SummaryView *m_summary = nullptr;
    QPushButton *m_print = nullptr;
    QPushButton *m_keepHeld = nullptr;
    QPushButton *m_cancelJob = nullptr;
};

} // namespace pdehost
