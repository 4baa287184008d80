// SPDX-License-Identifier: MIT
// Bounded UTF-16 length.
#include "platform/UnicodeBuffer.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

int unicharLength(const char16_t *buffer, int size) noexcept
{
    if (buffer == nullptr || size < 2)
        return -1;
    const int units = size / 2;
    for (int i = 0; i < units; ++i) {
        if (buffer[i] == 0)
            return i;
    }
    return -1;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
