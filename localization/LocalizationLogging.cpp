// SPDX-License-Identifier: MIT
// Definition of the localized string lookup's logging category.
#include "localization/LocalizationLogging.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

Q_LOGGING_CATEGORY(lcLocalization, "com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.localization")

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
