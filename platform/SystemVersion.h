// SPDX-License-Identifier: MIT
// The system version word, packed from the kernel release the way the
// plug-in's version tests expect it (0x1000 + (major - 4) << 4 + minor).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Selectors answered by Gestalt_ALT.
inline constexpr std::uint32_t gestaltSystemVersion = 0x73797376;       // 'sysv'
inline constexpr std::uint32_t gestaltSystemVersionMajor = 0x73797331;  // 'sys1'
inline constexpr std::uint32_t gestaltSystemVersionMinor = 0x73797332;  // 'sys2'
inline constexpr std::uint32_t gestaltSystemVersionBugFix = 0x73797333; // 'sys3'

// Answers a system version selector from the cached packed version (computed
// on first use from the kernel release; 0x1000 when the release cannot be
// read). 'sysv' gives the packed value, 'sys1' its major version in decimal
// (0x1083 gives 10), 'sys2' bits 4 to 7, 'sys3' bits 0 to 3. Returns 0 on
// success. Returns -1 for any other selector, writing
// "Gestalt_ALT : selector '<hex>' not supported." to standard error (also
// when response is null) and leaving *response untouched. Returns -1,
// silently, for one of the four selectors with a null response.
int Gestalt_ALT(std::uint32_t selector, std::uint32_t *response) noexcept;

// Returns the kernel's major release minus 4 (the minor system version),
// cached once known. Returns all ones when the release cannot be read or its
// leading number is not positive; a later call then tries again.
std::uint32_t getOSMinorVersion() noexcept;

// Reads the kernel release string ("6.1.0-18-amd64"); nullopt when it cannot.
using KernelReleaseReader = std::optional<std::string> (*)();

// Replaces the kernel release reader (tests install a fixed release); null
// restores the default, which asks uname(2). Returns the previous reader.
// Values already cached are kept; resetSystemQueryCache() forgets them.
KernelReleaseReader setKernelReleaseReader(KernelReleaseReader reader) noexcept;

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
