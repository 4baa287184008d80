// SPDX-License-Identifier: MIT
// Shared reading of fuzz inputs: the first byte chooses the printer
// encoding and how the rest becomes text.
#pragma once

#include "text/StringEncoding.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>

namespace fuzzinput {

using com_norvanta_qs_o_vellumark_pde_JobTypeQTRN::StringEncoding;

inline constexpr std::array<StringEncoding, 4> kPrinterEncodings{
    StringEncoding::UTF8, StringEncoding::ShiftJIS_X0213, StringEncoding::ISOLatin1,
    StringEncoding::WindowsLatin1};

inline StringEncoding encodingOf(std::uint8_t selector)
{
    return kPrinterEncodings[selector & 3];
}

// Bit 2 of the selector: the rest is UTF-16 units as they are (lone
// surrogates included), otherwise UTF-8 (malformed sequences become U+FFFD),
// which reaches the ASCII-shaped stored forms more easily.
inline QString textOf(std::uint8_t selector, const std::uint8_t *data, std::size_t size)
{
    if ((selector & 4) != 0) {
        QString text(static_cast<qsizetype>(size / 2), Qt::Uninitialized);
        for (std::size_t i = 0; i + 1 < size; i += 2)
            text[static_cast<qsizetype>(i / 2)] = QChar(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
        return text;
    }
    return QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

} // namespace fuzzinput
