// SPDX-License-Identifier: MIT
// A small JSON reader and writer for flat objects of strings.
#include "host/OrderedJson.h"

#include <QSet>

namespace pdehost {
namespace {

// The offset of the first byte from `from` on that does not belong to a
// well-formed UTF-8 sequence (overlong forms, surrogates and values above
// U+10FFFF count as not well-formed); -1 when there is none.
qsizetype firstInvalidUtf8(const QByteArray &bytes, qsizetype from)
{
    const auto byte = [&bytes](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    for (qsizetype i = from; i < bytes.size();) {
        const unsigned char lead = byte(i);
        if (lead < 0x80) {
            ++i;
            continue;
        }
        int length = 0;
        unsigned char low = 0x80;
        unsigned char high = 0xbf;
        if (lead >= 0xc2 && lead <= 0xdf) {
            length = 2;
        } else if (lead >= 0xe0 && lead <= 0xef) {
            length = 3;
            low = lead == 0xe0 ? 0xa0 : 0x80;  // no overlong form
            high = lead == 0xed ? 0x9f : 0xbf; // no surrogate
        } else if (lead >= 0xf0 && lead <= 0xf4) {
            length = 4;
            low = lead == 0xf0 ? 0x90 : 0x80;  // no overlong form
            high = lead == 0xf4 ? 0x8f : 0xbf; // nothing above U+10FFFF
        } else {
            return i;
        }
        if (i + length > bytes.size() || byte(i + 1) < low || byte(i + 1) > high)
            return i;
        for (int k = 2; k < length; ++k) {
            if (byte(i + k) < 0x80 || byte(i + k) > 0xbf)
                return i;
        }
        i += length;
    }
    return -1;
}

class Reader
{
public:
    explicit Reader(const QByteArray &json) : m_json(json) {}

    std::optional<OrderedStrings> run(QString *error)
    {
        OrderedStrings entries;
        QSet<QString> seen;
        // A byte-order mark is what some editors put first; offsets still
        // count it, so that they match the file.
        if (m_json.startsWith("\xEF\xBB\xBF"))
            m_pos = 3;
        if (const qsizetype bad = firstInvalidUtf8(m_json, m_pos); bad >= 0) {
            m_pos = bad;
            return fail(error, QStringLiteral("not valid UTF-8"));
        }
        skipSpace();
        if (!expect('{'))
            return fail(error, QStringLiteral("expected a JSON object"));
        skipSpace();
        if (peek() == '}') {
            ++m_pos;
        } else {
            for (;;) {
                skipSpace();
                std::optional<QString> key = readString();
                if (!key)
                    return fail(error, m_problem.isEmpty() ? QStringLiteral("expected a key in quotes") : m_problem);
                skipSpace();
                if (!expect(':'))
                    return fail(error, QStringLiteral("expected ':' after the key \"%1\"").arg(*key));
                skipSpace();
                std::optional<QString> value = readString();
                if (!value)
                    return fail(error, m_problem.isEmpty()
                                           ? QStringLiteral("the value of \"%1\" is not a string").arg(*key)
                                           : m_problem);
                if (seen.contains(*key))
                    return fail(error, QStringLiteral("the key \"%1\" appears twice").arg(*key));
                seen.insert(*key);
                entries.append({*key, *value});
                skipSpace();
                if (expect(','))
                    continue;
                if (expect('}'))
                    break;
                return fail(error, QStringLiteral("expected ',' or '}'"));
            }
        }
        skipSpace();
        if (m_pos != m_json.size())
            return fail(error, QStringLiteral("unexpected text after the object"));
        return entries;
    }

private:
    char peek() const { return m_pos < m_json.size() ? m_json[m_pos] : '\0'; }
    bool expect(char c)
    {
        if (peek() != c || m_pos >= m_json.size())
            return false;
        ++m_pos;
        return true;
    }
    void skipSpace()
    {
        while (m_pos < m_json.size() && (m_json[m_pos] == ' ' || m_json[m_pos] == '\t' || m_json[m_pos] == '\n' || m_json[m_pos] == '\r'))
            ++m_pos;
    }
    std::optional<OrderedStrings> fail(QString *error, const QString &what) const
    {
        if (error != nullptr)
            *error = QStringLiteral("at byte %1: %2").arg(m_pos).arg(what);
        return std::nullopt;
    }
    int hex4()
    {
        if (m_pos + 4 > m_json.size())
            return -1;
        bool ok = false;
        const int value = m_json.mid(m_pos, 4).toInt(&ok, 16);
        if (!ok)
            return -1;
        m_pos += 4;
        return value;
    }

    std::optional<QString> readString()
    {
        if (!expect('"'))
            return std::nullopt;
        QByteArray utf8;
        QString text;
        const auto flush = [&] {
            text += QString::fromUtf8(utf8);
            utf8.clear();
        };
        while (m_pos < m_json.size()) {
            const char c = m_json[m_pos++];
            if (c == '"') {
                flush();
                return text;
            }
            if (static_cast<unsigned char>(c) < 0x20) {
                m_problem = QStringLiteral("a control character inside a string");
                return std::nullopt;
            }
            if (c != '\\') {
                utf8 += c;
                continue;
            }
            const char e = peek();
            ++m_pos;
            switch (e) {
            case '"': utf8 += '"'; break;
            case '\\': utf8 += '\\'; break;
            case '/': utf8 += '/'; break;
            case 'b': utf8 += '\b'; break;
            case 'f': utf8 += '\f'; break;
            case 'n': utf8 += '\n'; break;
            case 'r': utf8 += '\r'; break;
            case 't': utf8 += '\t'; break;
            case 'u': {
                const int unit = hex4();
                if (unit < 0) {
                    m_problem = QStringLiteral("a \\u escape without four hex digits");
                    return std::nullopt;
                }
                flush();
                text += QChar(static_cast<char16_t>(unit));
                break;
            }
            default:
                m_problem = QStringLiteral("an unknown escape in a string");
                return std::nullopt;
            }
        }
        m_problem = QStringLiteral("a string without its closing quote");
        return std::nullopt;
    }

    const QByteArray &m_json;
    qsizetype m_pos = 0;
    QString m_problem;
};

} // namespace

std::optional<OrderedStrings> parseStringObject(const QByteArray &json, QString *error)
{
    return Reader(json).run(error);
}

QByteArray jsonString(const QString &text)
{
    QByteArray out = "\"";
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        switch (u) {
        case u'"': out += "\\\""; break;
        case u'\\': out += "\\\\"; break;
        case u'\n': out += "\\n"; break;
        case u'\r': out += "\\r"; break;
        case u'\t': out += "\\t"; break;
        case u'\b': out += "\\b"; break;
        case u'\f': out += "\\f"; break;
        default:
            // Control characters and lone surrogates are escaped, so that the
            // output stays valid UTF-8 JSON whatever the value holds.
            if (u < 0x20 || c.isSurrogate())
                out += QStringLiteral("\\u%1").arg(u, 4, 16, QLatin1Char('0')).toLatin1();
            else
                out += QString(c).toUtf8();
        }
    }
    return out + '"';
}

QByteArray formatStringObject(const OrderedStrings &entries)
{
    if (entries.isEmpty())
        return "{}\n";
    QByteArray out = "{\n";
    for (qsizetype i = 0; i < entries.size(); ++i) {
        out += "  " + jsonString(entries[i].first) + ": " + jsonString(entries[i].second);
        out += i + 1 < entries.size() ? ",\n" : "\n";
    }
    return out + "}\n";
}

} // namespace pdehost
