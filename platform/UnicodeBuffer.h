// SPDX-License-Identifier: MIT
// Length of a zero-terminated UTF-16 text inside a fixed buffer.
#pragma once

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns the number of 16-bit units before the first zero unit among the
// size / 2 units of `buffer` (`size` counts bytes). Returns -1 for a null
// buffer, a size below 2, or a buffer without a zero unit.
int unicharLength(const char16_t *buffer, int size) noexcept;

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
