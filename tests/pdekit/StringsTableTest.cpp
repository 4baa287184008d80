// SPDX-License-Identifier: MIT
// The .strings parser on well-formed, re-encoded and broken tables.
#include "TestBundle.h"

#include "pdekit/StringsTable.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace {

using namespace Qt::StringLiterals;
using Pairs = QHash<QString, QString>;
using testsupport::TextEncoding;

struct RowName {
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row> &info) const { return info.param.name; }
};

struct ParseRow {
    std::string name;
    QByteArray text;
    Pairs expected;
};

class StringsTableParse : public testing::TestWithParam<ParseRow> {};

TEST_P(StringsTableParse, ReadsEveryPair)
{
    const pde::StringsTable table = pde::parseStringsTable(GetParam().text);
    EXPECT_FALSE(table.error.has_value()) << table.error->line << ": " << qPrintable(table.error->message);
    EXPECT_EQ(table.entries, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    StringsTable, StringsTableParse,
    testing::Values(
        ParseRow{"QuotedAndUnquoted", "\"Print\" = \"\";\npage_size = A4/x:y.z-1$+;",
                 {{u"Print"_s, QString()}, {u"page_size"_s, u"A4/x:y.z-1$+"_s}}},
        ParseRow{"KeyShorthand", "\"Copies\";\nPages ;", {{u"Copies"_s, u"Copies"_s}, {u"Pages"_s, u"Pages"_s}}},
        ParseRow{"Comments", "/* a\n * b */ \"a\" /*x*/ = /*y*/ \"1\"; // \"z\" = \"z\";\n\"b\"=\"2\";//end",
                 {{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}}},
        ParseRow{"CommentMarksInsideQuotes", R"("url" = "http://host/*x*/";)", {{u"url"_s, u"http://host/*x*/"_s}}},
        ParseRow{"Escapes", R"("k" = "q\" b\\ n\n t\t r\r a\' v\v";)", {{u"k"_s, u"q\" b\\ n\n t\t r\r a' v\v"_s}}},
        ParseRow{"UnicodeEscapes", R"("k" = "caf\U00e9 \u00C9\U20ACx";)", {{u"k"_s, u"café É€x"_s}}},
        ParseRow{"SurrogatePairEscape", R"("k" = "\UD83D\UDE00";)", {{u"k"_s, u"😀"_s}}},
        ParseRow{"OctalEscapes", R"("k" = "\101\1012\0";)", {{u"k"_s, u"AA2"_s + QChar(0)}}},
        ParseRow{"LaterDuplicateWins", "\"議事録\" = \"first\"; \"議事録\" = \"second\";", {{u"議事録"_s, u"second"_s}}}),
    RowName{});

class StringsTableEncoding : public testing::TestWithParam<TextEncoding> {};

// The first key starts right after the byte-order mark, so a mark left in
// the text would change that key.
TEST_P(StringsTableEncoding, DecodesWithAndWithoutByteOrderMark)
{
    const QByteArray data = testsupport::encodeText(u"\"名前\" = \"Name\";\n\"ä\" = \"\\U00e4😀\";"_s, GetParam());
    const pde::StringsTable table = pde::parseStringsTable(data);
    EXPECT_FALSE(table.error.has_value());
    EXPECT_EQ(table.entries, (Pairs{{u"名前"_s, u"Name"_s}, {u"ä"_s, u"ä😀"_s}}));
}

INSTANTIATE_TEST_SUITE_P(StringsTable, StringsTableEncoding,
                         testing::Values(TextEncoding::Utf8, TextEncoding::Utf8WithBom, TextEncoding::Utf16LE,
                                         TextEncoding::Utf16BE));

struct FaultRow {
    std::string name;
    QByteArray text;
    int line;
    Pairs before;
};

class StringsTableFault : public testing::TestWithParam<FaultRow> {};

TEST_P(StringsTableFault, ReportsTheLineAndKeepsEarlierPairs)
{
    const pde::StringsTable table = pde::parseStringsTable(GetParam().text);
    ASSERT_TRUE(table.error.has_value());
    EXPECT_EQ(table.error->line, GetParam().line);
    EXPECT_FALSE(table.error->message.isEmpty());
    EXPECT_EQ(table.entries, GetParam().before);
}

const Pairs kA{{u"a"_s, u"1"_s}};

INSTANTIATE_TEST_SUITE_P(
    StringsTable, StringsTableFault,
    testing::Values(
        FaultRow{"MissingSemicolonBetweenPairs", "\"a\" = \"1\";\n\"b\" = \"2\" \"c\" = \"3\";", 2, kA},
        FaultRow{"MissingSemicolonAtEnd", "\"a\" = \"1\";\n\"b\" = \"2\"", 2, kA},
        FaultRow{"MissingEquals", "\"a\" = \"1\";\n\"b\" \"2\";", 2, kA},
        FaultRow{"UnterminatedString", "\"a\" = \"1\";\n\n\"b\" = \"open\n;\n", 3, kA},
        FaultRow{"UnterminatedComment", "\"a\" = \"1\";\n/* open\n\n", 2, kA},
        FaultRow{"BraceAsValue", "\"a\" = \"1\";\n\"b\" = { \"c\" = \"d\"; };", 2, kA},
        FaultRow{"GarbageAtEnd", "\"a\" = \"1\";\n\n}", 3, kA},
        FaultRow{"LinesCountedInComments", "/* 1\n2\n3 */ \"a\" = \"1\"; // 3\n\"b\" = ;", 4, kA},
        FaultRow{"LinesCountedInValues", "\"a\" = \"x\ny\\\nz\";\n!", 4, {{u"a"_s, u"x\ny\nz"_s}}},
        FaultRow{"CrLfLines", "\"a\" = \"1\";\r\n\r\n\"b\" = ;", 3, kA},
        FaultRow{"InvalidUtf8", "\"a\" = \"1\";\n\"b\" = \"\xff\";", 1, {}}),
    RowName{});

// A message handler is a plain function, so what it records lives here.
QStringList g_messages;

void recordMessage(QtMsgType, const QMessageLogContext &context, const QString &text)
{
    g_messages.append(QString::fromUtf8(context.category) + u": "_s + text);
}

TEST(StringsTable, LoadLogsAMalformedFileOnceAndKeepsItsFirstPairs)
{
    const QTemporaryDir dir;
    const QString broken = dir.filePath(u"Broken.strings"_s);
    const QString good = dir.filePath(u"Good.strings"_s);
    for (const auto &[path, data] :
         {std::pair{broken, QByteArray("\"a\" = \"1\";\n\"b\" = \"2\";\n\"c\" = ;\n\"d\" = \"4\";\n")},
          std::pair{good, testsupport::encodeText(u"\"k\" = \"値\";"_s, TextEncoding::Utf16LE)}}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
    }
    g_messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(&recordMessage);
    const std::optional<Pairs> brokenPairs = pde::loadStringsTable(broken);
    const std::optional<Pairs> goodPairs = pde::loadStringsTable(good);
    const std::optional<Pairs> absent = pde::loadStringsTable(dir.filePath(u"Absent.strings"_s));
    qInstallMessageHandler(previous);
    const QStringList messages = std::exchange(g_messages, {});
    EXPECT_EQ(brokenPairs, (Pairs{{u"a"_s, u"1"_s}, {u"b"_s, u"2"_s}}));
    EXPECT_EQ(goodPairs, (Pairs{{u"k"_s, u"値"_s}}));
    EXPECT_EQ(absent, std::nullopt);
    ASSERT_EQ(messages.size(), 1) << qPrintable(messages.join(u'\n'));
    EXPECT_TRUE(messages[0].startsWith(u"pde.bundle: "_s) && messages[0].contains(broken + u":3"_s))
        << qPrintable(messages[0]);
}

} // namespace
