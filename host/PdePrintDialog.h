// SPDX-License-Identifier: MIT
// The desktop print dialog: Qt's print dialog with one tab per extension
// panel and a summary tab, which saves every panel before it prints.
#pragma once

#include "host/CupsJob.h"

#include <QPrintDialog>
#include <QStringList>

#include <variant>

class QCheckBox;
class QTreeWidget;

namespace pdehost {

class PrinterPanels;

class PdePrintDialog : public QPrintDialog
{
    Q_OBJECT

public:
    // `panels` is the caller's and outlives the dialog; the panels' views are
    // lent to the dialog's tabs and given back when it goes.
    PdePrintDialog(QPrinter *printer, PrinterPanels *panels, QWidget *parent = nullptr);
    ~PdePrintDialog() override;

    // The tab that holds panel `index`'s view (with its Help button).
    QWidget *panelTab(int index) const;
    QWidget *summaryTab() const;
    // The summary lines of every panel as they stand, "Title: value".
    QStringList summaryLines();
    bool saveAsPrinterDefaults() const;
    void setSaveAsPrinterDefaults(bool save);

    // Prints the files with the job's settings and the dialog's copies, page
    // ranges and sides, to the session's printer (or, for a PPD file, the
    // printer chosen in the dialog); saves the settings as the printer's
    // defaults first when asked to. Returns the job id or what went wrong.
    std::variant<int, QString> printFiles(const QStringList &files);

public Q_SLOTS:
    // Saves every panel; a refusal (after the panel's alert) keeps the dialog
    // open on that panel's tab.
    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    void showTab(QWidget *tab);
    void refreshSummary();
    void help(int index);

    PrinterPanels *m_panels;
    QList<QWidget *> m_tabs;
    QWidget *m_summaryTab = nullptr;
    QTreeWidget *m_summary = nullptr;
    QCheckBox *m_saveDefaults = nullptr;
    bool m_restored = false;
};

} // namespace pdehost
