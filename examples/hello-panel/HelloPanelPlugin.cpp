// SPDX-License-Identifier: MIT
// The factory of the Hello panel.
#include "HelloPanelPlugin.h"

#include "HelloModel.h"
#include "HelloPanel.h"

#include <pdekit/Bundle.h>

namespace com_example_hello {

bool HelloPanelPlugin::initWithBundle(pde::Bundle *bundle)
{
    if (m_bundle == nullptr && bundle != nullptr) {
        m_bundle = bundle;
        m_bundle->classes().registerClass<HelloModel>(QStringLiteral("HelloModel"));
    }
    return true;
}

std::optional<pde::PDEPanelList> HelloPanelPlugin::PDEPanelsForType(const QString &type,
                                                                   pde::PDEPluginCallback *hostInfo)
{
    pde::PDEPanelList panels;
    if (type == pde::kPrintDialogTypeID)
        panels.push_back(std::make_unique<HelloPanel>(hostInfo, m_bundle));
    return panels;
}

} // namespace com_example_hello
