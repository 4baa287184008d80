// SPDX-License-Identifier: MIT
// Wiping of secret-holding memory.
#include "text/SecureBuffer.h"

#include <string.h>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

void wipeBytes(std::span<unsigned char> bytes) noexcept
{
    if (!bytes.empty())
        explicit_bzero(bytes.data(), bytes.size());
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
