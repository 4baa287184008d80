// SPDX-License-Identifier: MIT
// Fixed-size working buffers for secrets: zeroed when made, wiped when left.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Overwrites the bytes with zeros in a way the optimiser may not drop, even
// when the buffer is never read again.
void wipeBytes(std::span<unsigned char> bytes) noexcept;

// A stack buffer that starts zeroed and is wiped on every way out of scope,
// so that clear-text passwords never outlive the routine that handled them.
template <std::size_t N>
struct WipedBuffer {
    std::array<unsigned char, N> bytes{};

    WipedBuffer() = default;
    WipedBuffer(const WipedBuffer &) = delete;
    WipedBuffer &operator=(const WipedBuffer &) = delete;
    ~WipedBuffer() { wipeBytes(bytes); }

    unsigned char *data() noexcept { return bytes.data(); }
    const unsigned char *data() const noexcept { return bytes.data(); }
    static constexpr std::size_t size() noexcept { return N; }
    void wipe() noexcept { wipeBytes(bytes); }
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
