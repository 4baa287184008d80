// SPDX-License-Identifier: MIT
// Fuzzes the .strings table parser: any bytes, in any of its encodings.
#include "pdekit/StringsTable.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const pde::StringsTable table =
        pde::parseStringsTable(QByteArrayView(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    // A fault is reported on a line that exists in the text.
    if (table.error && (table.error->line < 1 || static_cast<std::size_t>(table.error->line) > size + 1))
        std::abort();
    return 0;
}
