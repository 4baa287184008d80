// SPDX-License-Identifier: MIT
// Escaping control characters for terminal output.
#include "host/TerminalText.h"

namespace pdehost {

QString terminalText(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        switch (u) {
        case u'\\': out += QStringLiteral("\\\\"); continue;
        case u'\n': out += QStringLiteral("\\n"); continue;
        case u'\r': out += QStringLiteral("\\r"); continue;
        case u'\t': out += QStringLiteral("\\t"); continue;
        case 0x1b: out += QStringLiteral("\\e"); continue;
        default: break;
        }
        if (u < 0x20 || u == 0x7f)
            out += QStringLiteral("\\x%1").arg(u, 2, 16, QLatin1Char('0'));
        else if (u >= 0x80 && u <= 0x9f)
            out += QStringLiteral("\\u%1").arg(u, 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out;
}

} // namespace pdehost
