// SPDX-License-Identifier: MIT
// Text encodings of printer-bound strings, with the numeric values that the
// print-settings contract has always used for them.
#pragma once

#include <cstdint>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// The values are part of the contract (they travel with the PPD's choice of
// printer language), so they are spelled out rather than left to the compiler.
enum class StringEncoding : std::uint32_t {
    UTF8 = 0x08000100,
    ShiftJIS_X0213 = 0x0628,
    ISOLatin1 = 0x0201,
    WindowsLatin1 = 0x0500,
    ASCII = 0x0600,
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
