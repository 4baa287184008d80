// SPDX-License-Identifier: MIT
// Gestalt-style system version answers from the kernel release.
#include "platform/SystemVersion.h"

#include "platform/SystemQueryCache.h"
#include "text/LeadingInteger.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <cstdio>
#include <string_view>
#include <sys/utsname.h>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

// The release has always been read into a 16-byte buffer; only its leading
// numbers matter, so a longer release is cut to 15 bytes rather than refused.
constexpr std::size_t kReleaseCapacity = 15;

std::optional<std::string> unameRelease()
{
    utsname names{};
    if (uname(&names) != 0)
        return std::nullopt;
    return std::string(names.release);
}

KernelReleaseReader g_readRelease = &unameRelease;

std::optional<std::string> kernelRelease()
{
    std::optional<std::string> release = g_readRelease();
    if (release) // as a C string in that buffer: up to a zero byte, at most 15 bytes
        release->resize(std::min(std::strlen(release->c_str()), kReleaseCapacity));
    return release;
}

// strtol(text + from, &end, 10), saturating instead of overflowing; like
// strtol, the end stays at `from` when there is no number.
LeadingInteger parseNumber(std::string_view text, std::size_t from) noexcept
{
    return parseLeadingInteger(text, from, [](char c) { return isCSpace(codeOf(c)); });
}

std::uint32_t packedSystemVersion()
{
    std::uint32_t &cached = systemQueryCache().systemVersion;
    if (cached != kNotYetKnown)
        return cached;

    cached = 0x1000;
    if (const std::optional<std::string> release = kernelRelease()) {
        const LeadingInteger major = parseNumber(*release, 0);
        if (major.value > 0) {
            const auto shifted = static_cast<unsigned long long>(major.value) * 16 + 0xFC0;
            cached += static_cast<std::uint32_t>(shifted & 0xFF0);
        }
        if (major.end < release->size()) {
            const LeadingInteger minor = parseNumber(*release, major.end + 1);
            if (minor.value > 0)
                cached += static_cast<std::uint32_t>(minor.value & 15);
        }
    }
    return cached;
}

} // namespace

int Gestalt_ALT(std::uint32_t selector, std::uint32_t *response) noexcept
{
    std::uint32_t (*answer)(std::uint32_t version) = nullptr;
    switch (selector) {
    case gestaltSystemVersionMajor:
        answer = [](std::uint32_t version) { return ((version >> 12) & 0xF) * 10 + ((version >> 8) & 0xF); };
        break;
    case gestaltSystemVersionMinor:
        answer = [](std::uint32_t version) { return (version >> 4) & 0xF; };
        break;
    case gestaltSystemVersionBugFix:
        answer = [](std::uint32_t version) { return version & 0xF; };
        break;
    case gestaltSystemVersion:
        answer = [](std::uint32_t version) { return version; };
        break;
    default:
        // Reported before the result pointer is looked at: a caller asking
        // for something this replacement does not answer must hear of it,
        // whatever it passed for the answer.
        std::fprintf(stderr, "Gestalt_ALT : selector '%x' not supported.\n", selector);
        return -1;
    }
    if (response == nullptr)
        return -1;
    *response = answer(packedSystemVersion());
    return 0;
}

std::uint32_t getOSMinorVersion() noexcept
{
    std::uint32_t &cached = systemQueryCache().minorVersion;
    if (cached != kNotYetKnown)
        return cached;
    if (const std::optional<std::string> release = kernelRelease()) {
        const LeadingInteger major = parseNumber(*release, 0);
        if (major.value > 0)
            cached = static_cast<std::uint32_t>(major.value - 4);
    }
    return cached;
}

KernelReleaseReader setKernelReleaseReader(KernelReleaseReader reader) noexcept
{
    const KernelReleaseReader previous = g_readRelease;
    g_readRelease = reader != nullptr ? reader : &unameRelease;
    return previous;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
