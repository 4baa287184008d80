// SPDX-License-Identifier: MIT
// Conversions between Qt strings and bytes in the printer encodings, through
// iconv, with the strictness the stored forms need: nothing is replaced,
// transliterated or silently dropped.
#pragma once

#include "text/StringEncoding.h"

#include <QString>
#include <QStringView>

#include <cstddef>
#include <optional>
#include <span>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

struct EncodedPrefix {
    std::size_t length = 0;  // bytes written to the output
    bool complete = false;   // every character of the text was converted
};

// Converts the leading characters of `text` to `encoding` into `out`: whole
// characters only, stopping before the first character that the encoding
// cannot represent (a lone surrogate included) or that no longer fits. Never
// writes past `out` and writes no terminator. An encoding value outside the
// enumeration converts nothing.
//
// Shift-JIS is taken ASCII-compatible: bytes 0x00-0x7F are ASCII both ways,
// so a backslash stays a backslash and a tilde a tilde. The yen sign and the
// overline, which the printer prints for those bytes, are written as 0x5C and
// 0x7E (as iconv writes them); decodeBytes reads those back as backslash and
// tilde, so the two map one way only.
EncodedPrefix encodeInto(QStringView text, StringEncoding encoding,
                         std::span<unsigned char> out) noexcept;

// Decodes all of `bytes` from `encoding`, embedded zero bytes included.
// Returns nullopt when the bytes are not valid text in the encoding
// (including a truncated multi-byte sequence at the end).
std::optional<QString> decodeBytes(std::span<const unsigned char> bytes,
                                   StringEncoding encoding);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
