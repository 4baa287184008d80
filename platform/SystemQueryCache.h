// SPDX-License-Identifier: MIT
// The process-wide caches of the system queries: filled on first use, never
// cleared in normal operation, and reset only by tests.
#pragma once

#include <cstdint>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// The all-ones value marks a cache entry that is not known yet.
inline constexpr std::uint32_t kNotYetKnown = 0xFFFFFFFFu;

struct SystemQueryCache {
    std::uint32_t systemVersion = kNotYetKnown; // packed version of Gestalt_ALT
    std::uint32_t minorVersion = kNotYetKnown;  // getOSMinorVersion
    std::uint32_t sandboxed = kNotYetKnown;     // UtilityService::isSandboxed, 0 or 1
};

// The caches; all callers run on the host's main thread, so nothing locks.
SystemQueryCache &systemQueryCache() noexcept;

// Forgets every cached value, so that a test can answer a query anew.
void resetSystemQueryCache() noexcept;

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
