// SPDX-License-Identifier: MIT
// The protocol between a print dialog (the host) and the extension bundles it
// loads: the factory a bundle exports, the panels it makes, and the two
// things a panel may ask of the host.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <QtPlugin>

#include <memory>
#include <optional>
#include <vector>

// libcups' PPD record; declared here so that this header does not pull in the
// deprecated PPD API. Plug-ins include <cups/ppd.h> themselves to read it.
typedef struct ppd_file_s ppd_file_t;

namespace pde {

class Bundle;
class PrintSettings;

// Identifiers of the kinds of dialog that ask bundles for panels.
inline constexpr QLatin1StringView kPrintDialogTypeID{"BDB091F4-E57F-11D3-B5CC-0050E4603277"};
inline constexpr QLatin1StringView kPageSetupDialogTypeID{"6E6ED964-B738-11D3-952F-0050E4603277"};

// The key of the summary dictionary that lists the line titles in display
// order; every other key is a line title whose value is the line's text.
inline constexpr QLatin1StringView kSummaryDisplayOrderKey{"Summary Display Order"};

// A panel's summary lines: title -> text, plus the display order under
// kSummaryDisplayOrderKey (a QStringList). A later line with an equal title
// replaces the earlier text while the order keeps both titles.
using SummaryInfo = QVariantMap;

// What a panel may report when it refuses an operation. The protocol passes a
// pointer to one; panels of this project never write it.
struct PDEError {
    QString domain;
    int code = 0;
    QString description;
};

// The host's side, offered to every panel it creates.
class PDEPluginCallback
{
public:
    virtual ~PDEPluginCallback() = default;
    // The PPD of the printer chosen in the dialog, owned by the host; null when
    // the printer has none.
    virtual ppd_file_t *ppdFile() = 0;
    // The job's print settings, owned by the host; null when there are none.
    virtual PrintSettings *printSettings() = 0;
};

// One panel of a dialog. The host owns it, drives it on its main thread one
// call at a time, and destroys it when the dialog goes. Creation and
// destruction are the constructor and destructor; the other operations come
// in this order.
class PDEKIT_EXPORT PDEPanel
{
public:
    PDEPanel() = default;
    PDEPanel(const PDEPanel &) = delete;
    PDEPanel &operator=(const PDEPanel &) = delete;
    virtual ~PDEPanel();

    // The widget the dialog shows for the panel, owned by the panel; null when
    // it cannot be made. The host may reparent it while it shows it, and
    // gives it back (setParent(nullptr)) before it destroys the panel.
    virtual QWidget *panelView() = 0;
    // The title in the dialog's list of panels.
    virtual QString panelName() = 0;
    // A string that identifies the panel's kind to the host.
    virtual QString panelKind() = 0;
    // PPD main keywords the panel shows itself; nullopt for none.
    virtual std::optional<QStringList> supportedPPDOptionKeys() = 0;
    // Comes before the panel is shown.
    virtual void willShow() = 0;
    // Come before the panel is hidden and before the job prints; false keeps
    // the panel shown or stops the print.
    virtual bool shouldHide() = 0;
    virtual bool shouldPrint() = 0;
    // The user asked for help; false means the panel showed help itself.
    virtual bool shouldShowHelp() = 0;
    // Another panel changed a PPD option.
    virtual void PPDOptionKeyValueDidChange(const QString &option, const QString &ppdChoice) = 0;
    // Take the panel's values from the job's print settings.
    virtual bool restoreValuesAndReturnError(PDEError *error) = 0;
    // Write the panel's values into the job's print settings; false refuses.
    virtual bool saveValuesAndReturnError(PDEError *error) = 0;
    // The panel's lines of the dialog's summary; nullopt for none.
    virtual std::optional<SummaryInfo> summaryInfo() = 0;
};

using PDEPanelList = std::vector<std::unique_ptr<PDEPanel>>;

// The factory a bundle's executable exports as its Qt plug-in instance.
class PDEKIT_EXPORT PDEPlugIn
{
public:
    virtual ~PDEPlugIn();
    // Hands the factory its own bundle; returns true when it accepted it.
    virtual bool initWithBundle(Bundle *bundle) = 0;
    // The panels for a kind of dialog, each created with `hostInfo` as its
    // callback; an empty list for a kind the bundle does not serve, nullopt
    // when a panel could not be made.
    virtual std::optional<PDEPanelList> PDEPanelsForType(const QString &type,
                                                         PDEPluginCallback *hostInfo) = 0;
};

} // namespace pde

#define PDEPlugIn_iid "org.pdekit.PDEPlugIn/1.0"
Q_DECLARE_INTERFACE(pde::PDEPlugIn, PDEPlugIn_iid)
