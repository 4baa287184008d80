// SPDX-License-Identifier: MIT
// A hand-written parser for .strings tables: small, strict about structure,
// forgiving about escapes, and never reading outside the text.
#include "pdekit/StringsTable.h"

#include "pdekit/PdeKitLogging.h"

#include <QFile>
#include <QStringDecoder>

namespace pde {
namespace {

std::optional<QString> decodeText(QByteArrayView data)
{
    const auto bytes = reinterpret_cast<const unsigned char *>(data.data());
    const qsizetype size = data.size();
    QStringDecoder::Encoding encoding = QStringDecoder::Utf8;
    qsizetype skip = 0;
    if (size >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
        encoding = QStringDecoder::Utf16LE;
        skip = 2;
    } else if (size >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) {
        encoding = QStringDecoder::Utf16BE;
        skip = 2;
    } else if (size >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) {
        skip = 3;
    }
    QStringDecoder decoder(encoding, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(data.sliced(skip));
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

bool isUnquotedCharacter(QChar c) noexcept
{
    const char16_t u = c.unicode();
    return (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9')
           || u == u'_' || u == u'$' || u == u'+' || u == u'/' || u == u':' || u == u'.'
           || u == u'-';
}

int hexValue(QChar c) noexcept
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

class Parser
{
public:
    explicit Parser(const QString &text) : m_text(text) {}

    StringsTable run()
    {
        StringsTable table;
        while (skipSpaceAndComments()) {
            if (atEnd())
                break;
            const std::optional<QString> key = readToken(QStringLiteral("a key"));
            if (!key || !skipSpaceAndComments())
                break;
            if (peek() == u';') {
                ++m_pos;
                table.entries.insert(*key, *key);
                continue;
            }
            if (peek() != u'=') {
                fail(QStringLiteral("expected '=' or ';' after the key"));
                break;
            }
            ++m_pos;
            if (!skipSpaceAndComments())
                break;
            const std::optional<QString> value = readToken(QStringLiteral("a value"));
            if (!value || !skipSpaceAndComments())
                break;
            if (peek() != u';') {
                fail(QStringLiteral("expected ';' after the value"));
                break;
            }
            ++m_pos;
            table.entries.insert(*key, *value);
        }
        table.error = m_error;
        return table;
    }

private:
    bool atEnd() const noexcept { return m_pos >= m_text.size(); }
    QChar peek(qsizetype ahead = 0) const noexcept
    {
        return m_pos + ahead < m_text.size() ? m_text[m_pos + ahead] : QChar();
    }

    void fail(const QString &message, int line = 0)
    {
        if (!m_error)
            m_error = StringsTableError{line > 0 ? line : m_line, message};
    }

    // Skips white space and comments; false after an unterminated comment.
    bool skipSpaceAndComments()
    {
        while (!atEnd()) {
            const QChar c = peek();
            if (c == u'\n') {
                ++m_line;
                ++m_pos;
            } else if (c.isSpace()) {
                ++m_pos;
            } else if (c == u'/' && peek(1) == u'/') {
                while (!atEnd() && peek() != u'\n')
                    ++m_pos;
            } else if (c == u'/' && peek(1) == u'*') {
                const int startLine = m_line;
                m_pos += 2;
                while (!atEnd() && !(peek() == u'*' && peek(1) == u'/')) {
                    if (peek() == u'\n')
                        ++m_line;
                    ++m_pos;
                }
                if (atEnd()) {
                    fail(QStringLiteral("unterminated comment"), startLine);
                    return false;
                }
                m_pos += 2;
            } else {
                break;
            }
        }
        return true;
    }

    std::optional<QString> readToken(const QString &what)
    {
        if (peek() == u'"')
            return readQuoted();
        const qsizetype start = m_pos;
        while (!atEnd() && isUnquotedCharacter(peek()))
            ++m_pos;
        if (m_pos == start) {
            fail(atEnd() ? QStringLiteral("expected %1 at the end of the text").arg(what)
                         : QStringLiteral("expected %1, found '%2'").arg(what, QString(peek())));
            return std::nullopt;
        }
        return m_text.mid(start, m_pos - start);
    }

    std::optional<QString> readQuoted()
    {
        const int startLine = m_line;
        ++m_pos; // the opening quote
        QString result;
        while (!atEnd()) {
            const QChar c = m_text[m_pos++];
            if (c == u'"')
                return result;
            if (c == u'\n')
                ++m_line;
            if (c != u'\\') {
                result += c;
                continue;
            }
            if (atEnd())
                break;
            result += readEscape();
        }
        fail(QStringLiteral("unterminated string"), startLine);
        return std::nullopt;
    }

    // The character after a backslash, already known to exist.
    QChar readEscape()
    {
        const QChar c = m_text[m_pos++];
        switch (c.unicode()) {
        case u'n':
            return QChar(u'\n');
        case u't':
            return QChar(u'\t');
        case u'r':
            return QChar(u'\r');
        case u'a':
            return QChar(u'\a');
        case u'b':
            return QChar(u'\b');
        case u'f':
            return QChar(u'\f');
        case u'v':
            return QChar(u'\v');
        case u'U':
        case u'u': {
            char16_t value = 0;
            int digits = 0;
            for (; digits < 4 && hexValue(peek()) >= 0; ++digits)
                value = static_cast<char16_t>(value * 16 + hexValue(m_text[m_pos++]));
            return digits == 0 ? c : QChar(value);
        }
        default:
            break;
        }
        if (c >= u'0' && c <= u'7') {
            int value = c.unicode() - u'0';
            for (int digits = 1; digits < 3 && peek() >= u'0' && peek() <= u'7'; ++digits)
                value = value * 8 + (m_text[m_pos++].unicode() - u'0');
            return QChar(static_cast<char16_t>(value));
        }
        if (c == u'\n')
            ++m_line;
        return c; // \" \' \\ and any other character stand for themselves
    }

    const QString &m_text;
    qsizetype m_pos = 0;
    int m_line = 1;
    std::optional<StringsTableError> m_error;
};

} // namespace

StringsTable parseStringsTable(QByteArrayView data)
{
    const std::optional<QString> text = decodeText(data);
    if (!text)
        return StringsTable{{}, StringsTableError{1, QStringLiteral("the text is neither UTF-8 nor UTF-16 with a byte-order mark")}};
    return Parser(*text).run();
}

std::optional<QHash<QString, QString>> loadStringsTable(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    StringsTable table = parseStringsTable(file.readAll());
    if (table.error) {
        qCWarning(lcPdeBundle, "%s:%d: %s; the pairs before it are used",
                  qUtf8Printable(path), table.error->line, qUtf8Printable(table.error->message));
    }
    return std::move(table.entries);
}

} // namespace pde
