// SPDX-License-Identifier: MIT
// Definitions of pdekit's logging categories.
#include "pdekit/PdeKitLogging.h"

namespace pde {

Q_LOGGING_CATEGORY(lcPdeBundle, "pde.bundle")
Q_LOGGING_CATEGORY(lcPdeNib, "pde.nib")
Q_LOGGING_CATEGORY(lcPdeHelp, "pde.help")
Q_LOGGING_CATEGORY(lcPdeAlert, "pde.alert")

} // namespace pde
