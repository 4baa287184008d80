// SPDX-License-Identifier: MIT
// The real panel for tests: the bundle assembled in the build tree, its nib
// loaded offscreen with a stand-in for the panel object as owner, and the
// checked-in fixture PPDs.
#pragma once

#include "FixturePpd.h"
#include "panel/VmbController.h"
#include "panel/VmbModel.h"
#include "pdekit/Nib.h"
#include "text/CupsPpd.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

namespace pde {
class Bundle;
}

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
    com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::VmbController *vmbController = nullptr;
};

// The job-type bundle of the build tree, its panel classes registered.
pde::Bundle *jobTypeBundle();

// One loaded panel: view, model and controller, owned here.
struct LoadedPanel {
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    jt::VmbController *controller = nullptr;
    jt::VmbModel *model = nullptr;
    QWidget *view = nullptr;

    // Loads the nib; `loaded` tells whether it worked.
    LoadedPanel();
    bool loaded() const { return controller != nullptr && model != nullptr && view != nullptr; }

    template <typename T>
    T *child(const char *name) const
    {
        return view->findChild<T *>(QString::fromLatin1(name));
    }
};

} // namespace paneltest
