// SPDX-License-Identifier: MIT
// Packed system version and minor version from fixed kernel releases.
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

// The reader must be a plain function pointer, so the release lives here.
std::optional<std::string> g_release;
std::optional<std::string> fixedRelease() { return g_release; }

class KernelReleaseTest : public testing::Test
{
protected:
    void SetUp() override
    {
        qs::resetSystemQueryCache();
        previous_ = qs::setKernelReleaseReader(&fixedRelease);
    }
    void TearDown() override
    {
        qs::setKernelReleaseReader(previous_);
        qs::resetSystemQueryCache();
    }
    static std::uint32_t ask(std::uint32_t selector)
    {
        std::uint32_t value = 0xDEADBEEF;
        EXPECT_EQ(qs::Gestalt_ALT(selector, &value), 0);
        return value;
    }
    qs::KernelReleaseReader previous_ = nullptr;
};

struct PackedCase {
    const char *name;
    std::optional<std::string> release;
    std::uint32_t packed, major, minor, bugFix;
};

const PackedCase kPackedCases[] = {
    {"10.8.0", "10.8.0", 0x1068, 10, 6, 8},
    {"12.3.0", "12.3.0", 0x1083, 10, 8, 3},
    {"unreadable", std::nullopt, 0x1000, 10, 0, 0},
    {"major only", "12", 0x1080, 10, 8, 0},
    {"Linux release", "6.1.0-18-amd64", 0x1021, 10, 2, 1},
    {"minor keeps low four bits", "10.20.0", 0x1064, 10, 6, 4},
    {"major below four wraps", "3.2", 0x1FF2, 25, 15, 2},
    {"not a number", "abc", 0x1000, 10, 0, 0},
    {"negative major keeps minor", "-10.8", 0x1008, 10, 0, 8},
    {"cut to fifteen bytes", "10.0000000000009", 0x1060, 10, 6, 0}, // the 9 is byte 16
    {"huge major", "99999999999999999999", 0x1FB0, 25, 11, 0},
};

TEST_F(KernelReleaseTest, PacksReleaseForEverySelector)
{
    for (const PackedCase &row : kPackedCases) {
        SCOPED_TRACE(row.name);
        qs::resetSystemQueryCache();
        g_release = row.release;
        EXPECT_EQ(ask(qs::gestaltSystemVersion), row.packed);
        EXPECT_EQ(ask(qs::gestaltSystemVersionMajor), row.major);
        EXPECT_EQ(ask(qs::gestaltSystemVersionMinor), row.minor);
        EXPECT_EQ(ask(qs::gestaltSystemVersionBugFix), row.bugFix);
    }
}

TEST_F(KernelReleaseTest, UnknownSelectorIsReportedAndLeavesResult)
{
    g_release = "10.8.0";
    std::uint32_t value = 0x12345678;
    testing::internal::CaptureStderr();
    EXPECT_EQ(qs::Gestalt_ALT(0xABCDEF00, &value), -1);
    EXPECT_EQ(qs::Gestalt_ALT(0x73797361, &value), -1);
    EXPECT_EQ(qs::Gestalt_ALT(qs::gestaltSystemVersion, nullptr), -1); // silently
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Gestalt_ALT : selector 'abcdef00' not supported.\n"
              "Gestalt_ALT : selector '73797361' not supported.\n");
    EXPECT_EQ(value, 0x12345678u);
}

TEST_F(KernelReleaseTest, PackedVersionIsKeptUntilReset)
{
    // Unlike the minor version, a failed read is cached too.
    g_release = std::nullopt;
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1000u);
    g_release = "10.8.0";
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1000u);
    qs::resetSystemQueryCache();
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1068u);
    g_release = "12.3.0";
    EXPECT_EQ(ask(qs::gestaltSystemVersionMinor), 6u);
}

TEST_F(KernelReleaseTest, MinorVersionIsMajorMinusFour)
{
    for (const auto &[release, minor] : {std::pair<const char *, std::uint32_t>{"11.4.2", 7},
                                         {"6.1.0-18-amd64", 2},
                                         {"4.19.0", 0},
                                         {"0.5", qs::kNotYetKnown},
                                         {"abc", qs::kNotYetKnown}}) {
        qs::resetSystemQueryCache();
        g_release = release;
        EXPECT_EQ(qs::getOSMinorVersion(), minor) << release;
    }
}

TEST_F(KernelReleaseTest, MinorVersionRetriesAfterFailedReadThenStays)
{
    g_release = std::nullopt;
    EXPECT_EQ(qs::getOSMinorVersion(), qs::kNotYetKnown);
    g_release = "11.4.2";
    EXPECT_EQ(qs::getOSMinorVersion(), 7u);
    g_release = "20.0";
    EXPECT_EQ(qs::getOSMinorVersion(), 7u);
}

} // namespace
