// SPDX-License-Identifier: MIT
// The protected form of the secure-print password: its bytes in the printer
// encoding, XORed with a fixed key, in base64. It hides the password from a
// casual look at the job's settings; it is not encryption.
#pragma once

#include "text/StringEncoding.h"

#include <QString>

#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns the protected form (ASCII, padded base64) of `password` in
// `encoding`. A character that the encoding cannot represent ends the
// password there. Returns nullopt, with no message, for an absent or empty
// password, one whose first character is not representable, and one whose
// encoded form is longer than 189 bytes (its base64 would pass 255
// characters). The working buffers are wiped before returning.
std::optional<QString> CreateEncryptedString(const std::optional<QString> &password,
                                             StringEncoding encoding);

// Returns the password that a protected form stands for, its bytes read in
// `encoding`. Only the leading ASCII characters (at most 256) of `cipherText`
// are taken. Returns nullopt, with no message, for an absent or empty text,
// base64 whose length is not a multiple of 4 or that decodes to nothing, and
// bytes that are not valid text in `encoding`. The working buffers are wiped
// before returning.
std::optional<QString> CreateDecryptedString(const std::optional<QString> &cipherText,
                                             StringEncoding encoding);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
