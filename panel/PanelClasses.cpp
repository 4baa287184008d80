// SPDX-License-Identifier: MIT
// Registration of the panel's nib classes.
#include "panel/PanelClasses.h"

#include "localization/BasicPdeView.h"
#include "panel/VmbController.h"
#include "panel/VmbModel.h"
#include "pdekit/Bundle.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

void registerPanelClasses(pde::ClassRegistry &classes)
{
    classes.registerClass<BasicPdeView>(QStringLiteral("BasicPdeView"));
    classes.registerClass<VmbModel>(QStringLiteral("VmbModel"));
    classes.registerClass<VmbController>(QStringLiteral("VmbController"));
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
