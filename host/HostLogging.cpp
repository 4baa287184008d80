// SPDX-License-Identifier: MIT
// The hosts' logging categories.
#include "host/HostLogging.h"

namespace pdehost {

Q_LOGGING_CATEGORY(lcPdeAgent, "pde.agent")

} // namespace pdehost
