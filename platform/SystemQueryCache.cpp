// SPDX-License-Identifier: MIT
// Storage of the system query caches.
#include "platform/SystemQueryCache.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {
SystemQueryCache g_cache;
} // namespace

SystemQueryCache &systemQueryCache() noexcept
{
    return g_cache;
}

void resetSystemQueryCache() noexcept
{
    g_cache = SystemQueryCache{};
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
