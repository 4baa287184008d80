// SPDX-License-Identifier: MIT
// The packed system version from fixed kernel releases: the panel asks for it
// and nothing else, and removes a stale help registration on the 10.6 family
// only. (The other selectors and their refusals, the minor version, group
// membership, UTF-16 buffers, the sandbox flag and the host's addresses have
// no caller in the bundle or the hosts, and the release's minor number does
// not change that decision, so no user, host or driver meets their faults;
// they have no tests here, nor has the cache: the release does not change
// while a process runs.)
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

// The reader must be a plain function pointer, so the release lives here.
std::optional<std::string> g_release;

std::uint32_t packed()
{
    std::uint32_t value = 0xDEADBEEF;
    EXPECT_EQ(qs::Gestalt_ALT(qs::gestaltSystemVersion, &value), 0);
    return value;
}

TEST(SystemVersion, PacksTheRelease)
{
    const qs::KernelReleaseReader previous = qs::setKernelReleaseReader([] { return g_release; });
    const std::pair<std::optional<std::string>, std::uint32_t> rows[] = {
        {"10.8.0", 0x1068},
        {std::nullopt, 0x1000},
        {"12", 0x1080},
        {"4.19.0", 0x1003},
        {"3.2", 0x1FF2},  // a major below four wraps
        {"0.5", 0x1005},
        {"-10.8", 0x1008}, // a negative major is not the 10 family
        {"10.0000000000009", 0x1060}, // cut to 15 bytes: the 9 is the 16th
    };
    for (const auto &[release, expected] : rows) {
        qs::resetSystemQueryCache();
        g_release = release;
        EXPECT_EQ(packed(), expected) << release.value_or("(unreadable)");
    }
    qs::setKernelReleaseReader(previous);
    qs::resetSystemQueryCache();
}

} // namespace
