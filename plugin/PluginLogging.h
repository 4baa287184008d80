// SPDX-License-Identifier: MIT
// Logging category of the job-type panel.
#pragma once

#include <QLoggingCategory>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// "com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.plugin": what the panel
// refused from the PPD.
Q_DECLARE_LOGGING_CATEGORY(lcPlugin)

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
