// SPDX-License-Identifier: MIT
// Byte-level routines of the password protection: the repeating 4-byte XOR
// and a base64 codec. They keep the C calling convention of the driver side:
// input pointer and signed length, output pointer, output length, signed
// capacity, and a status result.
#pragma once

#include <array>
#include <cstdint>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Status results shared by the three routines.
constexpr int kXspOK = 0;
constexpr int kXspInvalidPointer = -1;
constexpr int kXspInvalidLength = -2;
constexpr int kXspBufferTooSmall = -3;

// The key; its first four bytes, in memory order, are XORed in turn.
inline constexpr char xspkey[] = "qvkm";

// The RFC 4648 base64 alphabet, terminated.
inline constexpr char B64CHR[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Decoding table indexed by character code: the 6-bit value of each alphabet
// character, 255 for every other code ("=" included).
inline constexpr std::array<unsigned char, 128> B64TBL = [] {
    std::array<unsigned char, 128> table{};
    table.fill(255);
    for (unsigned char i = 0; i < 64; ++i)
        table[static_cast<unsigned char>(B64CHR[i])] = i;
    return table;
}();

// out[i] = in[i] XOR key[i mod 4], the key restarting at each call; its own
// inverse. Returns 0 with *outLen = inLen; -1 when in, out or outLen is null;
// -2 when inLen or outCap is below 1; -3 when outCap is too small, *outLen
// then holding the bytes already written.
int XspEncrypt(const unsigned char *in, int inLen, unsigned char *out,
               unsigned int *outLen, int outCap) noexcept;

// Writes the padded base64 form of in[0, inLen) (no terminator, no line
// breaks). Returns 0 with *outLen characters written; -1 when in or outLen is
// null, or out is null while outCap is not 0; -2 when inLen is below 1 or
// outCap is negative; -3 when outCap is 0 or below the needed length, which
// is then stored in *outLen with nothing written (a size query).
int XspBinToB64(const unsigned char *in, int inLen, unsigned char *out,
                unsigned int *outLen, int outCap) noexcept;

// Decodes base64 characters. White space is skipped but counts toward the
// length, which must be a multiple of 4; characters outside the alphabet read
// as 255 and are not refused. Reads at most in[0, inLen) (the byte at inLen
// counts as the terminator). Returns 0 with *outLen bytes written; -1 and -2
// as XspBinToB64, -2 also when inLen is not a multiple of 4; -3 when outCap is
// 0 or below the needed length, stored in *outLen (a size query), and also,
// with *outLen holding the bytes written, should the data decode to more
// bytes than outCap (trailing "=" can make the needed length too short).
int XspB64ToBin(const unsigned char *in, int inLen, unsigned char *out,
                unsigned int *outLen, int outCap) noexcept;

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
