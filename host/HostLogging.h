// SPDX-License-Identifier: MIT
// The hosts' logging categories.
#pragma once

#include <QLoggingCategory>

namespace pdehost {

Q_DECLARE_LOGGING_CATEGORY(lcPdeAgent) // "pde.agent": the session agent and its scheduler watch

} // namespace pdehost
