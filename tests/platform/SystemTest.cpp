// SPDX-License-Identifier: MIT
// The system version from fixed kernel releases. (Group membership, UTF-16
// buffers, the sandbox flag and the host's addresses have no caller in the
// bundle or the hosts, so no user, host or driver meets their faults; they
// have no tests here.)
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

// The reader must be a plain function pointer, so the release lives here.
std::optional<std::string> g_release;

std::uint32_t ask(std::uint32_t selector)
{
    std::uint32_t value = 0xDEADBEEF;
    EXPECT_EQ(qs::Gestalt_ALT(selector, &value), 0);
    return value;
}

TEST(SystemVersion, PacksReleaseCachesItAndReportsUnknownSelectors)
{
    const qs::KernelReleaseReader previous = qs::setKernelReleaseReader([] { return g_release; });
    const struct { std::optional<std::string> release; std::uint32_t packed, major, minor, bugFix, osMinor; } rows[] = {
        {"10.8.0", 0x1068, 10, 6, 8, 6},
        {"12.3.0", 0x1083, 10, 8, 3, 8},
        {std::nullopt, 0x1000, 10, 0, 0, qs::kNotYetKnown},
        {"12", 0x1080, 10, 8, 0, 8},
        {"10.20.0", 0x1064, 10, 6, 4, 6}, // the minor keeps its low four bits
        {"4.19.0", 0x1003, 10, 0, 3, 0},
        {"3.2", 0x1FF2, 25, 15, 2, qs::kNotYetKnown}, // a major below four wraps
        {"0.5", 0x1005, 10, 0, 5, qs::kNotYetKnown},
        {"-10.8", 0x1008, 10, 0, 8, qs::kNotYetKnown}, // a negative major keeps the minor
        {"10.0000000000009", 0x1060, 10, 6, 0, 6}, // cut to 15 bytes: the 9 is the 16th
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.release.value_or("(unreadable)"));
        qs::resetSystemQueryCache();
        g_release = row.release;
        EXPECT_EQ(ask(qs::gestaltSystemVersion), row.packed);
        EXPECT_EQ(ask(qs::gestaltSystemVersionMajor), row.major);
        EXPECT_EQ(ask(qs::gestaltSystemVersionMinor), row.minor);
        EXPECT_EQ(ask(qs::gestaltSystemVersionBugFix), row.bugFix);
        EXPECT_EQ(qs::getOSMinorVersion(), row.osMinor);
    }

    // The packed version caches even a failed read; the minor version tries
    // again after one, then keeps what it found.
    qs::resetSystemQueryCache();
    g_release = std::nullopt;
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1000u);
    EXPECT_EQ(qs::getOSMinorVersion(), qs::kNotYetKnown);
    g_release = "11.4.2";
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1000u);
    EXPECT_EQ(qs::getOSMinorVersion(), 7u);
    g_release = "20.0";
    EXPECT_EQ(qs::getOSMinorVersion(), 7u);
    qs::resetSystemQueryCache();
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1100u);
    qs::setKernelReleaseReader(previous);
    qs::resetSystemQueryCache();

    // An unknown selector is reported whether or not the caller gave a place
    // for the answer; a known one without that place fails quietly.
    const struct { std::uint32_t selector; bool withResponse; std::string message; } refused[] = {
        {0xABCDEF00, true, "Gestalt_ALT : selector 'abcdef00' not supported.\n"},
        {0x73797361, true, "Gestalt_ALT : selector '73797361' not supported.\n"}, // near a known one
        {0x73797361, false, "Gestalt_ALT : selector '73797361' not supported.\n"},
        {qs::gestaltSystemVersion, false, ""},
    };
    for (const auto &row : refused) {
        std::uint32_t value = 0x12345678;
        testing::internal::CaptureStderr();
        EXPECT_EQ(qs::Gestalt_ALT(row.selector, row.withResponse ? &value : nullptr), -1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.message);
        EXPECT_EQ(value, 0x12345678u);
    }
}

} // namespace
