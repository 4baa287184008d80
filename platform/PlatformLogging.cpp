// SPDX-License-Identifier: MIT
// Definition of the platform services' logging category.
#include "platform/PlatformLogging.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

Q_LOGGING_CATEGORY(lcUtilityService, "com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.utilityservice")

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
