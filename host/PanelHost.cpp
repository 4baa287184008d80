// SPDX-License-Identifier: MIT
// Bundle loading with QPluginLoader.
#include "host/PanelHost.h"

#include "pdekit/Bundle.h"

#include <QPluginLoader>

#include <memory>
#include <vector>

namespace pdehost {

void PanelHost::load(const QStringList &bundlePaths, pde::PDEPluginCallback *callback)
{
    for (const QString &path : bundlePaths) {
        pde::Bundle *bundle = pde::Bundle::open(path);
        if (bundle == nullptr) {
            m_problems.append(QStringLiteral("%1: not a bundle (no readable Contents/Info.plist)").arg(path));
            continue;
        }
        const std::optional<QString> executable = bundle->executablePath();
        if (!executable) {
            m_problems.append(QStringLiteral("%1: its Info.plist names no CFBundleExecutable").arg(path));
            continue;
        }
        // Kept for the life of the process: a host never unloads bundle code.
        static std::vector<std::unique_ptr<QPluginLoader>> loaders;
        QPluginLoader *loader = loaders.emplace_back(std::make_unique<QPluginLoader>(*executable)).get();
        QObject *instance = loader->instance();
        auto *factory = qobject_cast<pde::PDEPlugIn *>(instance);
        if (factory == nullptr) {
            m_problems.append(QStringLiteral("%1: %2").arg(path, instance == nullptr
                                                                      ? loader->errorString()
                                                                      : QStringLiteral("its executable is not a print dialog extension")));
            continue;
        }
        factory->initWithBundle(bundle);
        std::optional<pde::PDEPanelList> panels = factory->PDEPanelsForType(pde::kPrintDialogTypeID, callback);
        if (!panels) {
            m_problems.append(QStringLiteral("%1: its factory could not make its panels").arg(path));
            continue;
        }
        for (std::unique_ptr<pde::PDEPanel> &panel : *panels)
            m_panels.push_back({bundle, std::move(panel)});
    }
}

PanelHost::~PanelHost() = default;

} // namespace pdehost
