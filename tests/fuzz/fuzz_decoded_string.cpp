// SPDX-License-Identifier: MIT
// Fuzzes reading a stored form back into text, in all four printer encodings.
#include "FuzzInput.h"
#include "text/PrinterLanguageEncoding.h"

#include <cstdlib>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 1)
        return 0;
    const QString text = fuzzinput::textOf(data[0], data + 1, size - 1);
    const std::optional<QString> decoded =
        jt::CopyDecodedString(text, fuzzinput::encodingOf(data[0]));

    // Only a text that begins with "/" is read as escaped; any other comes back as it is.
    if (!text.startsWith(u'/') && decoded != text)
        std::abort();
    return 0;
}
