// SPDX-License-Identifier: MIT
// The real panel for tests: the bundle assembled in the build tree, its nib
// loaded offscreen by the panel object of the plug-in, with the fixture
// PPD given to the controller by the test.
#pragma once

#include "TestSupport.h"
#include "panel/PanelClasses.h"
#include "panel/VmbController.h"
#include "panel/VmbModel.h"
#include "plugin/VirtualMailboxPdeInterface.h"

#include <QString>

namespace paneltest {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

using testsupport::openFixturePpd;
using testsupport::Ppd;

// The job-type bundle of the build tree, its panel classes registered once.
inline pde::Bundle *jobTypeBundle()
{
    static pde::Bundle *const bundle = [] {
        pde::Bundle *opened = pde::Bundle::open(QStringLiteral(PDE_BUNDLE_DIR));
        if (opened != nullptr)
            jt::registerPanelClasses(opened->classes());
        return opened;
    }();
    return bundle;
}

// One loaded panel without a PPD: view, model and controller, owned by the
// panel object.
struct LoadedPanel {
    testsupport::Callback callback;
    jt::VirtualMailboxPdeInterface panel{&callback, jobTypeBundle()};
    QWidget *view = panel.panelView();
    jt::VmbController *controller = panel.vmbController();
    jt::VmbModel *model = controller != nullptr ? controller->vmbModel() : nullptr;

    bool loaded() const { return view != nullptr && model != nullptr; }

    template <typename T>
    T *child(const char *name) const { return view->findChild<T *>(QString::fromLatin1(name)); }
};

} // namespace paneltest
