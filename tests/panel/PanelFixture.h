// SPDX-License-Identifier: MIT
// The real panel for tests: the bundle assembled in the build tree, its nib
// loaded offscreen with a stand-in for the panel object as owner, and the
// checked-in fixture PPDs.
#pragma once

#include "FixturePpd.h"
#include "panel/PanelClasses.h"
#include "panel/VmbController.h"
#include "panel/VmbModel.h"
#include "pdekit/Bundle.h"
#include "pdekit/Nib.h"

#include <QObject>
#include <QString>

namespace paneltest {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

using testsupport::openFixturePpd;
using testsupport::Ppd;

// The File's Owner of the panel's nib.
class Owner : public QObject
{
    Q_OBJECT
    Q_PROPERTY(com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::VmbController *vmbController MEMBER vmbController)

public:
    jt::VmbController *vmbController = nullptr;
};

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

// One loaded panel: view, model and controller, owned here.
struct LoadedPanel {
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    jt::VmbController *controller = nullptr;
    jt::VmbModel *model = nullptr;
    QWidget *view = nullptr;

    LoadedPanel()
    {
        pde::Bundle *bundle = jobTypeBundle();
        if (bundle == nullptr || !pde::Nib::load(*bundle, QStringLiteral("SecurePrint"), &owner, &objects)
            || owner.vmbController == nullptr)
            return;
        controller = owner.vmbController;
        controller->setBundle(bundle);
        model = controller->vmbModel();
        view = controller->mainView();
    }
    bool loaded() const { return controller != nullptr && model != nullptr && view != nullptr; }

    template <typename T>
    T *child(const char *name) const { return view->findChild<T *>(QString::fromLatin1(name)); }
};

} // namespace paneltest
