// SPDX-License-Identifier: MIT
// The classes that the panel's nib names, registered with a bundle so that
// its nib loader can make them.
#pragma once

namespace pde {
class ClassRegistry;
}

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Registers "BasicPdeView", "VmbModel" and "VmbController".
void registerPanelClasses(pde::ClassRegistry &classes);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
