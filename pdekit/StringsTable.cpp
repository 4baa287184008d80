// SPDX-License-Identifier: MIT
// A hand-written parser for .strings tables: small, strict about structure,
// forgiving about escapes, and never reading outside the text.
#include "pdekit/StringsTable.h"

#include "pdekit/PdeKitLogging.h"
#include "pdekit/ResourceFile.h"

#include <QStringDecoder>

namespace pde {
namespace {

// The length of the well-formed UTF-8 at the start of `bytes`: the offset of
// the first byte that begins no valid sequence (an overlong form, a
// surrogate, a code point past U+10FFFF, a stray or missing continuation
// byte), or `size` when the whole text is valid.
qsizetype validUtf8Length(const unsigned char *bytes, qsizetype size) noexcept
{
    qsizetype pos = 0;
    while (pos < size) {
        const unsigned char lead = bytes[pos];
        if (lead < 0x80) {
            ++pos;
            continue;
        }
        int continuations = 0;
        unsigned char low = 0x80; // the range of the first continuation byte
        unsigned char high = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            continuations = 1;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            continuations = 2;
            if (lead == 0xE0)
                low = 0xA0; // overlong below U+0800
            else if (lead == 0xED)
                high = 0x9F; // surrogates
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            continuations = 3;
            if (lead == 0xF0)
                low = 0x90; // overlong below U+10000
            else if (lead == 0xF4)
                high = 0x8F; // past U+10FFFF
        } else {
            return pos;
        }
        if (size - pos <= continuations || bytes[pos + 1] < low || bytes[pos + 1] > high)
            return pos;
        for (int i = 2; i <= continuations; ++i) {
            if (bytes[pos + i] < 0x80 || bytes[pos + i] > 0xBF)
                return pos;
        }
        pos += continuations + 1;
    }
    return size;
}

// The length in bytes of the well-formed UTF-16 at the start of `bytes`: up
// to the first lone surrogate or an odd trailing byte.
qsizetype validUtf16Length(const unsigned char *bytes, qsizetype size, bool bigEndian) noexcept
{
    const auto unit = [bytes, bigEndian](qsizetype pos) {
        return bigEndian ? char16_t(bytes[pos] << 8 | bytes[pos + 1]) : char16_t(bytes[pos + 1] << 8 | bytes[pos]);
    };
    qsizetype pos = 0;
    while (size - pos >= 2) {
        const char16_t u = unit(pos);
        if (QChar::isLowSurrogate(u))
            return pos;
        if (QChar::isHighSurrogate(u)) {
            if (size - pos < 4 || !QChar::isLowSurrogate(unit(pos + 2)))
                return pos;
            pos += 4;
        } else {
            pos += 2;
        }
    }
    return pos;
}

struct DecodedText {
    QString text;                      // the text up to the first invalid sequence
    std::optional<QString> invalidity; // what is wrong there, when something is
};

DecodedText decodeText(QByteArrayView data)
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
    const bool utf8 = encoding == QStringDecoder::Utf8;
    const qsizetype valid = utf8 ? validUtf8Length(bytes + skip, size - skip)
                                 : validUtf16Length(bytes + skip, size - skip, encoding == QStringDecoder::Utf16BE);
    // Only well-formed bytes reach the decoder, so it has nothing to refuse.
    QStringDecoder decoder(encoding, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    DecodedText decoded{decoder(data.sliced(skip, valid)), std::nullopt};
    if (skip + valid < size) {
        decoded.invalidity = (utf8 ? QStringLiteral("invalid UTF-8 at byte %1")
                                   : QStringLiteral("invalid UTF-16 (a lone surrogate or an odd last byte) at byte %1"))
                                 .arg(skip + valid);
    }
    return decoded;
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

    // Whether the fault was found only at the end of the text: in a text cut
    // short there, the cut is the real fault.
    bool failedAtEnd() const noexcept { return m_failedAtEnd; }

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
        if (!m_error) {
            m_error = StringsTableError{line > 0 ? line : m_line, message};
            m_failedAtEnd = atEnd();
        }
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
    bool m_failedAtEnd = false;
};

} // namespace

StringsTable parseStringsTable(QByteArrayView data)
{
    // The text before an invalid sequence is parsed like a whole table, so
    // its pairs stay usable. A statement that the invalid sequence cuts short
    // makes the parser fail at the end of that text; the invalid sequence is
    // then the fault to report, on its own line.
    const DecodedText decoded = decodeText(data);
    Parser parser(decoded.text);
    StringsTable table = parser.run();
    if (decoded.invalidity && (!table.error || parser.failedAtEnd()))
        table.error = StringsTableError{static_cast<int>(decoded.text.count(u'\n')) + 1, *decoded.invalidity};
    return table;
}

std::optional<QHash<QString, QString>> loadStringsTable(const QString &path)
{
    const ResourceFile file = readResourceFile(path);
    if (!file.contents) {
        if (!file.missing)
            qCWarning(lcPdeBundle, "%s: %s; the table is not used", qUtf8Printable(path), qUtf8Printable(file.error));
        return std::nullopt;
    }
    StringsTable table = parseStringsTable(*file.contents);
    if (table.error) {
        qCWarning(lcPdeBundle, "%s:%d: %s; the pairs before it are used",
                  qUtf8Printable(path), table.error->line, qUtf8Printable(table.error->message));
    }
    return std::move(table.entries);
}

} // namespace pde
