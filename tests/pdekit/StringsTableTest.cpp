// SPDX-License-Identifier: MIT
// The .strings parser on well-formed, re-encoded and broken tables.
#include "TestSupport.h"

#include "pdekit/StringsTable.h"

#include <string_view>

namespace {

using namespace Qt::StringLiterals;
using Pairs = QHash<QString, QString>;

const Pairs kA{{u"a"_s, u"1"_s}};

// The text in UTF-16 after its byte-order mark; lone surrogates stay as they are.
QByteArray utf16(std::u16string_view text, bool bigEndian = false)
{
    QByteArray bytes = bigEndian ? QByteArray("\xfe\xff") : QByteArray("\xff\xfe");
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xff);
        bytes.append(bigEndian ? high : low).append(bigEndian ? low : high);
    }
    return bytes;
}

// How a loaded table's fault is reported is seen through Bundle's lookups.
TEST(StringsTable, KeepsThePairsBeforeAFaultAndReportsItsLine)
{
    // The first key starts right after the byte-order mark, so a mark left
    // in the text would change that key.
    const Pairs decoded{{u"名前"_s, u"Name"_s}, {u"ä"_s, u"😀"_s}};
    const std::u16string_view text = u"\"名前\" = \"Name\";\n\"ä\" = \"😀\";";
    const struct {
        const char *name;
        QByteArray text;
        int errorLine; // 0 when the text is well formed
        Pairs expected;
    } rows[] = {
        {"unquoted and shorthand", "\"Print\" = \"\";\npage_size = A4/x:y.z-1$+;\n\"Copies\";\nPages ;", 0,
         {{u"Print"_s, QString()}, {u"page_size"_s, u"A4/x:y.z-1$+"_s}, {u"Copies"_s, u"Copies"_s},
          {u"Pages"_s, u"Pages"_s}}},
        {"comments", "/* a\n * b */ \"a\" /*x*/ = /*y*/ \"http://h/*x*/\"; // \"z\" = \"z\";\n\"b\"=\"2\";//end", 0,
         {{u"a"_s, u"http://h/*x*/"_s}, {u"b"_s, u"2"_s}}},
        {"escapes", R"("k" = "q\" b\\ n\n t\t \U00e9\u20AC1 \1012\0";)", 0,
         {{u"k"_s, u"q\" b\\ n\n t\t é€1 A2"_s + QChar(0)}}},
        {"later duplicate wins", "\"議事録\" = \"first\"; \"議事録\" = \"second\";", 0, {{u"議事録"_s, u"second"_s}}},
        {"UTF-8 with a byte-order mark", "\xEF\xBB\xBF" + QStringView(text).toUtf8(), 0, decoded},
        {"UTF-16 little-endian", utf16(text), 0, decoded},
        {"UTF-16 big-endian", utf16(text, true), 0, decoded},
        {"missing semicolon", "\"a\" = \"1\";\n\"b\" = \"2\" \"c\" = \"3\";", 2, kA},
        {"missing equals", "\"a\" = \"1\";\n\"b\" \"2\";", 2, kA},
        {"unterminated string", "\"a\" = \"1\";\n\n\"b\" = \"open\n;\n", 3, kA},
        {"unterminated comment", "\"a\" = \"1\";\n/* open\n\n", 2, kA},
        {"key expected", "\"a\" = \"1\";\n\n}", 3, kA},
        {"lines counted in comments", "/* 1\n2\n3 */ \"a\" = \"1\"; // 3\n\"b\" = ;", 4, kA},
        {"lines counted in values", "\"a\" = \"x\ny\\\nz\";\n!", 4, {{u"a"_s, u"x\ny\nz"_s}}},
        {"CR LF lines", "\"a\" = \"1\";\r\n\r\n\"b\" = ;", 3, kA},
        // An invalid sequence is the fault on its own line; what it cuts short is lost.
        {"invalid UTF-8 byte in a value", "\"a\" = \"1\";\n\"b\" = \"\xff\";", 2, kA},
        {"invalid UTF-8 after a whole pair", "\"a\" = \"1\";\n\n\x80", 3, kA},
        {"overlong UTF-8", "\"a\" = \"1\";\n\"b\" = \"\xc0\xaf\";", 2, kA},
        {"UTF-8 of a surrogate", "\"a\" = \"1\";\n\"b\" = \"\xed\xa0\x80\";", 2, kA},
        {"UTF-8 cut at the end", "\"a\" = \"1\";\n\"b\" = \"\xe8\xad", 2, kA},
        {"syntax fault before an invalid byte", "\"a\" = \"1\";\n\"b\" \"2\";\n\xff", 2, kA},
        {"lone surrogate in UTF-16", utf16(u"\"a\" = \"1\";\n\"b\" = \"\xD800\";"), 2, kA},
        {"lone low surrogate in UTF-16", utf16(u"\"a\" = \"1\";\n\n\"b\" = \"\xDC00\";", true), 3, kA},
        {"odd last byte in UTF-16", utf16(u"\"a\" = \"1\";\n") + 'x', 2, kA},
    };
    for (const auto &row : rows) {
        const pde::StringsTable table = pde::parseStringsTable(row.text);
        EXPECT_EQ(table.error ? table.error->line : 0, row.errorLine) << row.name;
        EXPECT_FALSE(table.error && table.error->message.isEmpty()) << row.name;
        EXPECT_EQ(table.entries, row.expected) << row.name;
    }
}

} // namespace
