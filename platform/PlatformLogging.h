// SPDX-License-Identifier: MIT
// Logging category of the platform services.
#pragma once

#include <QLoggingCategory>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// "com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.utilityservice": messages of
// UtilityService, each beginning "UtilityService - ".
Q_DECLARE_LOGGING_CATEGORY(lcUtilityService)

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
