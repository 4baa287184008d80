// SPDX-License-Identifier: MIT
// Logging categories of pdekit, one per component.
#pragma once

#include <QLoggingCategory>

namespace pde {

Q_DECLARE_LOGGING_CATEGORY(lcPdeBundle) // "pde.bundle": bundles, strings tables
Q_DECLARE_LOGGING_CATEGORY(lcPdeNib)    // "pde.nib": nib loading, outlets, actions, bindings
Q_DECLARE_LOGGING_CATEGORY(lcPdeHelp)   // "pde.help": help books
Q_DECLARE_LOGGING_CATEGORY(lcPdeAlert)  // "pde.alert": alerts

} // namespace pde
