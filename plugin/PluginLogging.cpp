// SPDX-License-Identifier: MIT
// Definition of the job-type panel's logging category.
#include "plugin/PluginLogging.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

Q_LOGGING_CATEGORY(lcPlugin, "com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.plugin")

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
