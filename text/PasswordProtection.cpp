// SPDX-License-Identifier: MIT
// Protecting and unprotecting the password on two wiped 256-byte buffers.
#include "text/PasswordProtection.h"

#include "text/SecureBuffer.h"
#include "text/StringConversion.h"
#include "text/XspCodec.h"

#include <span>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

constexpr std::size_t kBufferSize = 256;
// The byte routines are always given one byte less than the buffer.
constexpr int kRoutineCapacity = 255;

} // namespace

std::optional<QString> CreateEncryptedString(const std::optional<QString> &password,
                                             StringEncoding encoding)
{
    if (!password)
        return std::nullopt;

    WipedBuffer<kBufferSize> plain;
    WipedBuffer<kBufferSize> work;
    const EncodedPrefix encoded = encodeInto(*password, encoding, plain.bytes);
    if (encoded.length == 0)
        return std::nullopt;

    unsigned int length = 0;
    if (XspEncrypt(plain.data(), static_cast<int>(encoded.length), work.data(), &length,
                   kRoutineCapacity) != kXspOK)
        return std::nullopt;
    plain.wipe();

    if (XspBinToB64(work.data(), static_cast<int>(length), plain.data(), &length,
                    kRoutineCapacity) != kXspOK)
        return std::nullopt;
    return QString::fromLatin1(reinterpret_cast<const char *>(plain.data()),
                               static_cast<qsizetype>(length));
}

std::optional<QString> CreateDecryptedString(const std::optional<QString> &cipherText,
                                             StringEncoding encoding)
{
    if (!cipherText)
        return std::nullopt;

    WipedBuffer<kBufferSize> work;
    WipedBuffer<kBufferSize> plain;
    const EncodedPrefix ascii = encodeInto(*cipherText, StringEncoding::ASCII, work.bytes);
    if (ascii.length == 0)
        return std::nullopt;

    unsigned int length = 0;
    if (XspB64ToBin(work.data(), static_cast<int>(ascii.length), plain.data(), &length,
                    kRoutineCapacity) != kXspOK)
        return std::nullopt;
    work.wipe();

    if (XspEncrypt(plain.data(), static_cast<int>(length), work.data(), &length,
                   kRoutineCapacity) != kXspOK)
        return std::nullopt;
    return decodeBytes(std::span(work.data(), length), encoding);
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
