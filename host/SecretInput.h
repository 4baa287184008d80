// SPDX-License-Identifier: MIT
// The clear password as the hosts take it in: one bounded line from
// standard input, and wiping the host's own copies once the panel holds the
// protected form.
#pragma once

#include <QString>

#include <optional>

namespace pdehost {

// The longest password line taken from standard input, in bytes (without
// its line end). A protected password is far shorter; this only bounds the
// read.
inline constexpr int kSecretLineLimit = 1024;

// Whether file descriptor 0 was open when this was first called. Call it
// first thing in main: once it is closed, the next file the process opens
// takes its number, and reading "standard input" would read that file.
bool standardInputWasOpen();

// The first line of standard input without its line end ("\n" or "\r\n"),
// read byte by byte so that nothing past it is consumed. Returns nullopt
// and sets `error` when standard input is closed, cannot be read (a
// folder), ends before any byte, or holds no line end within the limit
// (/dev/zero). The bytes read are wiped from the read buffer.
std::optional<QString> readSecretLine(QString *error);

// Overwrites the characters of `text` and empties it. `text` must not share
// its buffer with another string, or only this copy is wiped.
void wipe(QString &text);

} // namespace pdehost
