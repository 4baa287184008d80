// SPDX-License-Identifier: MIT
// The .strings table format: "key" = "value"; pairs in UTF-8 or UTF-16,
// with comments, unquoted keys and backslash escapes.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <optional>

namespace pde {

struct StringsTableError {
    int line = 0;     // 1-based line of the fault
    QString message;  // what is wrong there
};

struct StringsTable {
    // The pairs read; when there is an error, those before it.
    QHash<QString, QString> entries;
    std::optional<StringsTableError> error;
};

// Parses a table. The text is UTF-16 when it starts with a byte-order mark,
// otherwise UTF-8 (a UTF-8 byte-order mark is skipped). Statements are
// `key = value;` or `key;` (the value is then the key); keys and values are
// "quoted" (escapes \" \' \\ \n \t \r \a \b \f \v, \UXXXX or \uXXXX, octal
// \NNN) or unquoted runs of letters, digits and _$+/:.- characters; /* */
// and // comments may stand between tokens. A later pair replaces an earlier
// one with the same key. Parsing stops at the first fault, which is reported
// in `error`; it never fails otherwise. A byte sequence that is not valid in
// the text's encoding is such a fault, on the line where it starts: the
// statements complete before it are kept, one that it cuts short is not.
PDEKIT_EXPORT StringsTable parseStringsTable(QByteArrayView data);

// Reads and parses the table file at `path`. Returns nullopt when there is
// no file there (silently), and when it is not a regular file of at most
// kMaxResourceFileSize bytes or cannot be read (logged with the path and the
// reason). A malformed file is logged once (path, line, fault) and the pairs
// before the fault are returned.
PDEKIT_EXPORT std::optional<QHash<QString, QString>> loadStringsTable(const QString &path);

} // namespace pde
