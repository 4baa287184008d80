// SPDX-License-Identifier: MIT
// The bundle's principal class: the factory the host creates once, hands the
// bundle, and asks for the panels of a kind of dialog.
#pragma once

#include "pdekit/PDEPluginInterface.h"

#include <QObject>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

class VirtualMailboxPdePlugin : public QObject, public pde::PDEPlugIn
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PDEPlugIn_iid FILE "JobTypeQTRN.json")
    Q_INTERFACES(pde::PDEPlugIn)

public:
    explicit VirtualMailboxPdePlugin(QObject *parent = nullptr);
    ~VirtualMailboxPdePlugin() override;

    // Keeps the first bundle it is given (later ones are ignored) and makes
    // the panel's classes known to that bundle's nib loader. Always true.
    bool initWithBundle(pde::Bundle *bundle) override;
    // One job-type panel for the Print dialog; an empty list for any other
    // kind of dialog.
    std::optional<pde::PDEPanelList> PDEPanelsForType(const QString &type,
                                                      pde::PDEPluginCallback *hostInfo) override;

    pde::Bundle *bundle() const { return m_theBundle; }

private:
    pde::Bundle *m_theBundle = nullptr;
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
