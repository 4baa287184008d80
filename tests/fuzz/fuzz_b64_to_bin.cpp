// SPDX-License-Identifier: MIT
// Fuzzes the base64 decoder on unterminated input of exact size, and the
// unprotecting of arbitrary print-settings values.
#include "FuzzInput.h"
#include "text/PasswordProtection.h"
#include "text/XspCodec.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 1)
        return 0;
    const std::uint8_t selector = data[0];
    const std::size_t length = size - 1;

    // A heap copy of exactly the input, no terminator: any read past inLen is
    // a heap overflow that AddressSanitizer reports.
    auto input = std::make_unique<unsigned char[]>(length == 0 ? 1 : length);
    if (length != 0)
        std::memcpy(input.get(), data + 1, length);
    const int capacity = selector; // 0 asks for the size; small values must not overflow
    auto output = std::make_unique<unsigned char[]>(capacity == 0 ? 1 : static_cast<std::size_t>(capacity));
    unsigned int written = 0;
    const int status = jt::XspB64ToBin(input.get(), static_cast<int>(length),
                                       capacity == 0 ? nullptr : output.get(), &written, capacity);
    if (status == jt::kXspOK && written > static_cast<unsigned int>(capacity))
        std::abort();

    const QString stored = QString::fromLatin1(reinterpret_cast<const char *>(data + 1),
                                               static_cast<qsizetype>(length));
    const std::optional<QString> password =
        jt::CreateDecryptedString(stored, fuzzinput::encodingOf(selector));
    if (password && password->isEmpty())
        std::abort(); // a password decodes from at least one byte
    return 0;
}
