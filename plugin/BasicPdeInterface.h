// SPDX-License-Identifier: MIT
// The base of every panel: it keeps what a panel needs for its whole life
// (its bundle, the host's callback, the printer's PPD, the model-specific
// strings table, its title) and answers every host operation neutrally, so
// that a panel overrides only what it needs.
#pragma once

#include "pdekit/PDEPluginInterface.h"
#include "text/CupsPpd.h"

#include <QObject>
#include <QString>

#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

class BasicPdeInterface : public QObject, public pde::PDEPanel
{
    Q_OBJECT

public:
    // Takes the bundle and the callback, and from the callback the PPD (once,
    // borrowed for the panel's life) and with it the name of the
    // model-specific strings table.
    BasicPdeInterface(pde::PDEPluginCallback *callback, pde::Bundle *bundle);
    ~BasicPdeInterface() override;

    QWidget *panelView() override;                 // none
    QString panelName() override;                  // "Custom PDE Title", looked up once
    QString panelKind() override;                  // the bundle identifier
    std::optional<QStringList> supportedPPDOptionKeys() override; // none
    void willShow() override;                      // nothing
    bool shouldHide() override;                    // true
    bool shouldPrint() override;                   // true
    bool shouldShowHelp() override;                // true
    void PPDOptionKeyValueDidChange(const QString &option, const QString &ppdChoice) override;
    bool restoreValuesAndReturnError(pde::PDEError *error) override; // true
    bool saveValuesAndReturnError(pde::PDEError *error) override;    // true
    std::optional<pde::SummaryInfo> summaryInfo() override;          // none

    pde::Bundle *pluginBundle() const { return m_pluginBundle; }
    pde::PDEPluginCallback *pdePluginCallbackObject() const { return m_callback; }
    ppd_file_t *ppd() const { return m_ppd; }
    const std::optional<QString> &localizedFileName() const { return m_localizedFileName; }

private:
    pde::Bundle *m_pluginBundle = nullptr;
    pde::PDEPluginCallback *m_callback = nullptr;
    std::optional<QString> m_thePDEName;
    ppd_file_t *m_ppd = nullptr;
    std::optional<QString> m_localizedFileName;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
