// SPDX-License-Identifier: MIT
// Loading the real panel for tests.
#include "PanelFixture.h"

#include "panel/PanelClasses.h"
#include "pdekit/Bundle.h"

#include <QByteArray>

namespace paneltest {

pde::Bundle *jobTypeBundle()
{
    static pde::Bundle *bundle = [] {
        pde::Bundle *opened = pde::Bundle::open(QStringLiteral(PDE_BUNDLE_DIR));
        if (opened != nullptr)
            jt::registerPanelClasses(opened->classes());
        return opened;
    }();
    return bundle;
}

LoadedPanel::LoadedPanel()
{
    pde::Bundle *bundle = jobTypeBundle();
    if (bundle == nullptr || !pde::Nib::load(*bundle, QStringLiteral("SecurePrint"), &owner, &objects))
        return;
    controller = owner.vmbController;
    if (controller == nullptr)
        return;
    controller->setBundle(bundle);
    model = controller->vmbModel();
    view = controller->mainView();
}

} // namespace paneltest
