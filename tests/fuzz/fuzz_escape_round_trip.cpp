// SPDX-License-Identifier: MIT
// Fuzzes text -> stored form -> text, and password -> protected form ->
// password: what is stored must read back as what was entered.
#include "FuzzInput.h"
#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

#include <cstdlib>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

// The longest stored form that can be read back (a 255-byte C string).
constexpr qsizetype kReadableStoredForm = 255;

// What reading the bytes back gives: in Shift-JIS the yen sign and the
// overline are stored as 0x5C and 0x7E, which read as backslash and tilde.
QString readBackForm(QString text, jt::StringEncoding encoding)
{
    if (encoding == jt::StringEncoding::ShiftJIS_X0213)
        text.replace(QChar(0x00A5), u'\\').replace(QChar(0x203E), u'~');
    return text;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 1)
        return 0;
    const jt::StringEncoding encoding = fuzzinput::encodingOf(data[0]);
    const QString text = fuzzinput::textOf(data[0], data + 1, size - 1);
    if (text.contains(QChar(0)))
        return 0; // a zero character ends a C string by design

    if (const std::optional<QString> stored = jt::CopyEncodedString(text, encoding)) {
        const std::optional<QString> back = jt::CopyDecodedString(*stored, encoding);
        // An escaped form is ASCII, so its length is its size in bytes.
        const bool readable = !stored->startsWith(u'/') || stored->size() <= kReadableStoredForm;
        if (readable ? back != text && back != readBackForm(text, encoding) : back.has_value())
            std::abort();
    }

    if (const std::optional<QString> protectedForm = jt::CreateEncryptedString(text, encoding)) {
        const std::optional<QString> password = jt::CreateDecryptedString(*protectedForm, encoding);
        // Protection stops at the first character the encoding lacks, so what
        // comes back is the password or the part of it before that character.
        if (!password || password->isEmpty() || !readBackForm(text, encoding).startsWith(*password))
            std::abort();
    }
    return 0;
}
