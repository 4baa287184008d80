// SPDX-License-Identifier: MIT
// The saved printer options files of CUPS (lpoptions): one "Dest NAME[/INSTANCE]
// options" line per printer. The user's file is rewritten one line at a
// time, so that other printers' lines, comments and the file's mode stay as
// they are, and an empty value stays an empty value.
#pragma once

#include "pdekit/PrintSettings.h"

#include <QString>
#include <QStringList>

namespace pdehost {

// The user's own file, $HOME/.cups/lpoptions (for root too: the system-wide
// file is never written).
QString userLpOptionsPath();
// The system-wide file, lpoptions in CUPS_SERVERROOT (/etc/cups by default).
QString systemLpOptionsPath();

// The options `path` gives `destination` ("NAME" or "NAME/INSTANCE", matched
// without case): the printer's line, then for an instance its own line, later
// values winning. Empty when the file or the line is missing.
pde::PrintSettings lpOptionsFor(const QString &path, const QString &destination);

// Rewrites the destination's line in `path`: the entries of `set` replace or
// join its options, the keys in `removed` leave it, and a line left without
// options goes. Values are quoted, so an empty value reads back empty. A new
// file is created with mode 0600 (its folder 0700); an existing file keeps
// its mode. Returns false, with the path and the reason in `error`, when the
// file cannot be read or written; it is then unchanged.
bool updateLpOptions(const QString &path, const QString &destination, const pde::PrintSettings &set,
                     const QStringList &removed, QString *error);

} // namespace pdehost
