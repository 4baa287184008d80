// SPDX-License-Identifier: MIT
// Bounded reading of the files a bundle or a host is handed (strings tables,
// property lists, nibs, settings): only regular files, only up to a size
// limit, so that a FIFO, a device or a huge file can neither hang the reader
// nor exhaust memory.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace pde {

// The size limit of such files: far above any real one.
inline constexpr qint64 kMaxResourceFileSize = qint64(4) << 20; // 4 MiB

struct ResourceFile {
    std::optional<QByteArray> contents; // the whole file, when it was read
    bool missing = false;                // nothing at the path (or a dangling link)
    QString error;                       // why it was not read: "is not a regular file", ...
};

// Reads the file at `path` when it is a regular file (a link to one counts)
// of at most `maxSize` bytes. Opening never blocks (a FIFO is refused, not
// waited on). On failure `contents` is empty and `error` says why, without
// the path; `missing` tells a file that does not exist from one that cannot
// be read.
PDEKIT_EXPORT ResourceFile readResourceFile(const QString &path, qint64 maxSize = kMaxResourceFileSize);

} // namespace pde
