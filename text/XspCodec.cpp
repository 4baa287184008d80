// SPDX-License-Identifier: MIT
// The XOR cipher and the base64 codec under the password protection. Every
// index is checked against the buffer it touches, whatever the caller passes.
#include "text/XspCodec.h"

#include "text/LeadingInteger.h"

#include <cstddef>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

unsigned char sextet(unsigned char c) noexcept
{
    return c < B64TBL.size() ? B64TBL[c] : 255;
}

} // namespace

int XspEncrypt(const unsigned char *in, int inLen, unsigned char *out,
               unsigned int *outLen, int outCap) noexcept
{
    if (in == nullptr || out == nullptr || outLen == nullptr)
        return kXspInvalidPointer;
    if (inLen < 1 || outCap < 1)
        return kXspInvalidLength;

    const auto capacity = static_cast<unsigned int>(outCap);
    *outLen = 0;
    const int whole = inLen / 4 * 4;
    for (int i = 0; i < whole; i += 4) {
        *outLen += 4;
        if (*outLen > capacity) {
            *outLen -= 4;
            return kXspBufferTooSmall;
        }
        for (int k = 0; k < 4; ++k)
            out[i + k] = in[i + k] ^ static_cast<unsigned char>(xspkey[k]);
    }
    const int rest = inLen - whole;
    if (rest > 0) {
        *outLen += static_cast<unsigned int>(rest);
        if (*outLen > capacity) {
            *outLen -= static_cast<unsigned int>(rest);
            return kXspBufferTooSmall;
        }
        for (int k = 0; k < rest; ++k)
            out[whole + k] = in[whole + k] ^ static_cast<unsigned char>(xspkey[k]);
    }
    return kXspOK;
}

int XspBinToB64(const unsigned char *in, int inLen, unsigned char *out,
                unsigned int *outLen, int outCap) noexcept
{
    if (in == nullptr || outLen == nullptr || (out == nullptr && outCap != 0))
        return kXspInvalidPointer;
    if (inLen < 1 || outCap < 0)
        return kXspInvalidLength;

    const auto length = static_cast<std::size_t>(inLen);
    const std::size_t needed = length / 3 * 4 + (length % 3 != 0 ? 4 : 0);
    if (outCap == 0 || static_cast<std::size_t>(outCap) < needed) {
        *outLen = static_cast<unsigned int>(needed);
        return kXspBufferTooSmall;
    }

    std::size_t n = 0;
    for (std::size_t i = 0; i < length; i += 3) {
        const std::size_t left = length - i;
        const unsigned char b0 = in[i];
        const unsigned char b1 = left > 1 ? in[i + 1] : 0;
        const unsigned char b2 = left > 2 ? in[i + 2] : 0;
        out[n++] = static_cast<unsigned char>(B64CHR[b0 >> 2]);
        out[n++] = static_cast<unsigned char>(B64CHR[((b0 & 3) << 4) | (b1 >> 4)]);
        out[n++] = left > 1 ? static_cast<unsigned char>(B64CHR[((b1 & 15) << 2) | (b2 >> 6)]) : '=';
        out[n++] = left > 2 ? static_cast<unsigned char>(B64CHR[b2 & 63]) : '=';
    }
    *outLen = static_cast<unsigned int>(n);
    return kXspOK;
}

int XspB64ToBin(const unsigned char *in, int inLen, unsigned char *out,
                unsigned int *outLen, int outCap) noexcept
{
    if (in == nullptr || outLen == nullptr || (out == nullptr && outCap != 0))
        return kXspInvalidPointer;
    if (inLen < 1 || outCap < 0 || inLen % 4 != 0)
        return kXspInvalidLength;

    const auto length = static_cast<std::size_t>(inLen);
    long long padding = 0;
    for (std::size_t i = length; i > 0 && in[i - 1] == '='; --i)
        ++padding;
    // Trailing "=" beyond the usual two can take this below zero.
    const long long needed = static_cast<long long>(length / 4 * 3) - padding;
    if (outCap == 0 || outCap < needed) {
        *outLen = static_cast<unsigned int>(needed > 0 ? needed : 0);
        return kXspBufferTooSmall;
    }

    // The byte at inLen is the terminator the caller promises; it is never
    // read, so a caller that forgets it cannot make us read past the input.
    const auto at = [&](std::size_t p) -> unsigned char { return p < length ? in[p] : 0; };
    const auto skipSpace = [&](std::size_t p) {
        while (isCSpace(at(p)))
            ++p;
        return p;
    };
    const auto capacity = static_cast<std::size_t>(outCap);
    std::size_t n = 0;
    bool full = false;
    const auto put = [&](int value) {
        if (n >= capacity) {
            full = true;
            return false;
        }
        out[n++] = static_cast<unsigned char>(value & 0xFF);
        return true;
    };

    std::size_t p = skipSpace(0);
    for (;;) {
        const unsigned char c0 = at(p);
        if (c0 == 0 && p >= length)
            break;
        p = skipSpace(p + 1);
        const unsigned char c1 = at(p);
        if (c1 == 0)
            break;
        p = skipSpace(p + 1);
        const unsigned char c2 = at(p);
        if (c2 == 0)
            break;
        if (!put((sextet(c0) << 2) | (sextet(c1) >> 4)))
            break;
        p = skipSpace(p + 1);
        const unsigned char c3 = at(p);
        if (c3 == 0 || c2 == '=')
            break;
        if (!put((sextet(c1) << 4) | (sextet(c2) >> 2)))
            break;
        p = skipSpace(p + 1);
        if (c3 == '=')
            break;
        if (!put((sextet(c2) << 6) | sextet(c3)))
            break;
    }
    *outLen = static_cast<unsigned int>(n);
    return full ? kXspBufferTooSmall : kXspOK;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
