// SPDX-License-Identifier: MIT
// Logging category of the localized string lookup.
#pragma once

#include <QLoggingCategory>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// "com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.localization": what the
// lookup refused from the PPD.
Q_DECLARE_LOGGING_CATEGORY(lcLocalization)

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
