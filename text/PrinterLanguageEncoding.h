// SPDX-License-Identifier: MIT
// The printer language encoding that a PPD names, and the byte-escaped form
// in which user text (user ID, document name) is stored for the driver.
#pragma once

#include "text/CupsPpd.h"
#include "text/StringEncoding.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns the encoding that the PPD's "NVPrinterLanguageEncoding" attribute
// names ("UTF-8", "JIS83-RKSJ", "ISOLatin1", "WindowsANSI", compared exactly).
// Any other value, a missing attribute or a null PPD give Shift-JIS X0213.
StringEncoding GetEncodingInfoFromPPD(ppd_file_t *ppd) noexcept;

// Returns the stored form of `text`: the text itself when its bytes in
// `encoding` hold none of , ' \ /, otherwise "/" followed by each byte's
// signed decimal value, entries separated by "/" (so a,b becomes /97/44/98).
// The escaped form stops taking bytes once it reaches 1023 characters; the
// entry that crosses that mark is kept whole.
// Returns nullopt, silently, for an absent text; returns nullopt and writes
// "CopyEncodedString : CFStringGetCString failed." to standard error when the
// text cannot be represented in `encoding` or needs more than 255 bytes.
std::optional<QString> CopyEncodedString(const std::optional<QString> &text,
                                         StringEncoding encoding);

// True when CopyEncodedString gives `text` a stored form in `encoding`: every
// character has bytes in it and they fit in 255 bytes. Writes no message;
// false for an encoding value outside the enumeration.
bool CanStoreText(QStringView text, StringEncoding encoding) noexcept;

// Returns the text that a stored form stands for: a text not beginning with
// "/" is returned as it is; otherwise each entry is read as a decimal number
// (255 and above become 255, negative values wrap modulo 256, an empty entry
// gives a zero byte that ends the text) and the bytes are read in `encoding`.
// Returns nullopt and writes "CopyDecodedString : an argument is NULL." for an
// absent text, or "CopyDecodedString : CFStringGetCString failed." when the
// stored form cannot be represented in `encoding` within 255 bytes. Returns
// nullopt without a message when the decoded bytes are not valid text in
// `encoding`.
std::optional<QString> CopyDecodedString(const std::optional<QString> &text,
                                         StringEncoding encoding);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
