// SPDX-License-Identifier: MIT
// Loading extension bundles and making their Print dialog panels.
#pragma once

#include "pdekit/PDEPluginInterface.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace pdehost {

struct HostedPanel {
    pde::Bundle *bundle = nullptr;
    std::unique_ptr<pde::PDEPanel> panel;
};

class PanelHost
{
public:
    // Loads each bundle's executable, hands the factory its bundle and asks
    // it for the Print dialog's panels, each with `callback`. A bundle that
    // fails is reported in problems() (path and reason) and skipped.
    void load(const QStringList &bundlePaths, pde::PDEPluginCallback *callback);

    std::vector<HostedPanel> &panels() { return m_panels; }
    const QStringList &problems() const { return m_problems; }

    // Panels go before their bundles' code would; the code itself stays
    // loaded for the rest of the process.
    ~PanelHost();

private:
    std::vector<HostedPanel> m_panels;
    QStringList m_problems;
};

} // namespace pdehost
