// SPDX-License-Identifier: MIT
// Out-of-line destructors, so that the interfaces' type information lives in
// libpdekit and casts across the plug-in boundary agree.
#include "pdekit/PDEPluginInterface.h"

namespace pde {

PDEPanel::~PDEPanel() = default;
PDEPlugIn::~PDEPlugIn() = default;

} // namespace pde
