// SPDX-License-Identifier: MIT
// The bundle's factory, which the host finds as the module's Qt plug-in
// instance, hands the bundle, and asks for the panels of a kind of dialog.
#pragma once

#include <pdekit/PDEPluginInterface.h>

#include <QObject>

namespace com_example_hello {

class HelloPanelPlugin : public QObject, public pde::PDEPlugIn
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID PDEPlugIn_iid FILE "HelloPanel.json")
    Q_INTERFACES(pde::PDEPlugIn)

public:
    // Keeps the bundle and makes the nib's class HelloModel known to it.
    // Always true.
    bool initWithBundle(pde::Bundle *bundle) override;
    // One Hello panel for the Print dialog, none for other dialogs.
    std::optional<pde::PDEPanelList> PDEPanelsForType(const QString &type,
                                                      pde::PDEPluginCallback *hostInfo) override;

private:
    pde::Bundle *m_bundle = nullptr;
};

} // namespace com_example_hello
