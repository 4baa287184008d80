// SPDX-License-Identifier: MIT
// The desktop print dialog: Qt's print dialog with one tab per extension
// panel of the printer chosen in it and a Summary tab. It owns the printer's
// panels and opens the next printer's when the user picks another one.
#pragma once

#include "host/CupsJob.h"

#include <QPointer>
#include <QPrintDialog>
#include <QStringList>

#include <memory>

class QCheckBox;
class QImage;
class QLabel;
class QPushButton;
class QTabWidget;

namespace pdehost {

class SummaryView;

class PrinterPanels;

// Where the documents went.
struct PrintOutcome {
    int job = 0;         // the CUPS job id; 0 when they went to a file
    QString destination; // the printer (NAME or NAME/INSTANCE) or the file
    QString error;       // what went wrong; empty when they were printed
};

class PdePrintDialog : public QPrintDialog
{
    Q_OBJECT

public:
    // `panels` is the printer the dialog opens with (null for none: the
    // dialog opens the printer chosen in it); `bundles` are the bundles
    // given explicitly, loaded for every printer as well as those its PPD
    // calls for.
    PdePrintDialog(QPrinter *printer, std::unique_ptr<PrinterPanels> panels, const QStringList &bundles = {},
                   QWidget *parent = nullptr);
    ~PdePrintDialog() override;

    // The panels of the printer chosen now; null when it could not be opened
    // (see problem()) or the dialog prints to a file.
    PrinterPanels *panels() const { return m_panels.get(); }
    // Why the printer chosen has no panels; empty when it has.
    const QString &problem() const { return m_problem; }

    // The tab that holds panel `index`'s view; null when there is none.
    QWidget *panelTab(int index) const;
    QWidget *summaryTab() const;
    // The Summary's lines, "Title: value": the printer, copies, pages and
    // sides as the dialog shows them, then every panel's.
    QStringList summaryLines();
    bool saveAsPrinterDefaults() const;
    void setSaveAsPrinterDefaults(bool save);

    // Prints the files as the dialog says: to the printer chosen, with the
    // panels' settings and every setting of the dialog as job options (the
    // panels' settings saved as the printer's defaults first when asked to),
    // or, for "Print to File", into the file chosen, with no job.
    PrintOutcome printFiles(const QStringList &files, const QString &title);

    // A picture of the shown dialog as the screen shows it (what covers it
    // included), with the option tabs' places in it as text entries: "Tab
    // bar" = "x,y,width,height" and "Tab N" = "title|x,y,width,height". Null
    // when the dialog is not on a screen.
    QImage screenshot() const;

public Q_SLOTS:
    // Saves every panel; a refusal (after the panel's alert) keeps the dialog
    // open on that panel's tab, with the focus in the field it is about.
    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;
    void childEvent(QChildEvent *event) override;

private:
    void printerChanged();
    void setPanels(std::unique_ptr<PrinterPanels> panels, const QString &problem);
    void startPanels();
    void showTab(QWidget *tab);
    void focusRefusedField(QWidget *tab);
    void refreshSummary();
    void clearSavedDefaults();
    void help();
    bool holdSaved();

    std::unique_ptr<PrinterPanels> m_panels;
    QStringList m_bundles;
    QString m_problem;
    QTabWidget *m_tabs = nullptr;
    QList<QWidget *> m_panelTabs;
    QWidget *m_summaryTab = nullptr;
    SummaryView *m_summary = nullptr;
    QLabel *m_status = nullptr;
    QPushButton *m_clearDefaults = nullptr;
    QCheckBox *m_saveDefaults = nullptr;
    QPointer<QObject> m_holdShown;
    bool m_started = false;
    bool m_shown = false;
};

} // namespace pdehost
