// SPDX-License-Identifier: MIT
// Readable GoogleTest output for QString values (the default dumps bytes).
#pragma once

#include <QString>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
