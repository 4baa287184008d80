// SPDX-License-Identifier: MIT
// The settings file of pde-host (--settings): a JSON object of strings that
// may hold the print-settings record, password included. It is read only
// when it is a regular file of bounded size, and written so that nobody but
// its owner can read a new one.
#pragma once

#include "host/OrderedJson.h"

#include <QString>

#include <optional>

namespace pdehost {

// Larger settings files are refused rather than read.
inline constexpr qint64 kSettingsFileLimit = 4 * 1024 * 1024;

// The entries of the settings file at `path`; no entries when there is no
// such file. Returns nullopt and sets `error` ("PATH: why") when it is not a
// regular file (a FIFO, a device, a folder), is larger than the limit,
// cannot be read, is not valid UTF-8 or not a JSON object of strings.
std::optional<OrderedStrings> readSettingsFile(const QString &path, QString *error);

// Replaces the file at `path` atomically with `entries`. A new file is made
// readable and writable by its owner only; an existing file keeps its mode.
// Returns false and sets `error` ("PATH: cannot be written: why") when it
// cannot be written; the file is then as it was.
bool writeSettingsFile(const QString &path, const OrderedStrings &entries, QString *error);

} // namespace pdehost
