// SPDX-License-Identifier: MIT
// The factory of the job-type panel.
#include "plugin/VirtualMailboxPdePlugin.h"

#include "panel/PanelClasses.h"
#include "pdekit/Bundle.h"
#include "plugin/VirtualMailboxPdeInterface.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

VirtualMailboxPdePlugin::VirtualMailboxPdePlugin(QObject *parent) : QObject(parent) {}

VirtualMailboxPdePlugin::~VirtualMailboxPdePlugin() = default;

bool VirtualMailboxPdePlugin::initWithBundle(pde::Bundle *bundle)
{
    if (m_theBundle == nullptr && bundle != nullptr) {
        m_theBundle = bundle;
        registerPanelClasses(m_theBundle->classes());
    }
    return true;
}

std::optional<pde::PDEPanelList> VirtualMailboxPdePlugin::PDEPanelsForType(const QString &type,
                                                                          pde::PDEPluginCallback *hostInfo)
{
    pde::PDEPanelList panels;
    if (type != pde::kPrintDialogTypeID)
        return panels;
    panels.push_back(std::make_unique<VirtualMailboxPdeInterface>(hostInfo, m_theBundle));
    return panels;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
