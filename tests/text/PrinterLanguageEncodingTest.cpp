// SPDX-License-Identifier: MIT
// The printer language encoding a PPD names, and the byte-escaped stored form.
#include "FixturePpd.h"
#include "TextTestSupport.h"

#include "text/PrinterLanguageEncoding.h"

#include <cstdint>
#include <optional>
#include <string>

namespace {

using text_tests::withStderr;
using E = jt::StringEncoding;

struct PpdRow {
    std::string name;
    const char *file; // null: no PPD
    std::uint32_t expected; // the value the driver's settings carry
};

class PrinterLanguageFromPpd : public testing::TestWithParam<PpdRow> {};

TEST_P(PrinterLanguageFromPpd, MapsValueExactly)
{
    const testsupport::Ppd ppd = GetParam().file ? testsupport::openFixturePpd(GetParam().file) : nullptr;
    if (GetParam().file != nullptr) {
        ASSERT_NE(ppd, nullptr) << "libcups refused " << GetParam().file;
    }
    EXPECT_EQ(static_cast<std::uint32_t>(jt::GetEncodingInfoFromPPD(ppd.get())), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    PrinterLanguageEncoding, PrinterLanguageFromPpd,
    testing::Values(PpdRow{"Utf8", "text-encoding-utf8.ppd", 0x08000100},
                    PpdRow{"ShiftJis", "text-encoding-jis83-rksj.ppd", 0x0628},
                    PpdRow{"IsoLatin1", "text-encoding-isolatin1.ppd", 0x0201},
                    PpdRow{"WindowsAnsi", "text-encoding-windowsansi.ppd", 0x0500},
                    PpdRow{"Utf8InSmallLetters", "text-encoding-utf8-lowercase.ppd", 0x0628},
                    PpdRow{"Unknown", "text-encoding-unknown.ppd", 0x0628},
                    PpdRow{"KnownNameWithMoreBehind", "text-encoding-name-extended.ppd", 0x0628},
                    PpdRow{"StartOfKnownName", "text-encoding-name-shortened.ppd", 0x0628},
                    PpdRow{"AttributeMissing", "text-encoding-missing.ppd", 0x0628},
                    PpdRow{"LongerAttributeNameFirst", "text-encoding-prefixed-first.ppd", 0x0500},
                    PpdRow{"NoPpd", nullptr, 0x0628}),
    text_tests::RowName{});

struct StoredRow {
    std::string name;
    E encoding;
    QString text;
    QString stored;
};

class PrinterLanguageStoredForm : public testing::TestWithParam<StoredRow> {};

TEST_P(PrinterLanguageStoredForm, EncodesAndDecodesBack)
{
    const StoredRow &row = GetParam();
    const auto [encoded, errors] = withStderr([&] { return jt::CopyEncodedString(row.text, row.encoding); });
    EXPECT_EQ(encoded, row.stored);
    EXPECT_EQ(jt::CopyDecodedString(row.stored, row.encoding), row.text);
    EXPECT_EQ(errors, "");
}

// Space, double quote and semicolon are ordinary; so is "~" in Shift-JIS.
const QString kPlain = QStringLiteral("Report 2024; \"draft\" ~x");

INSTANTIATE_TEST_SUITE_P(
    PrinterLanguageEncoding, PrinterLanguageStoredForm,
    testing::Values(
        StoredRow{"EmptyPlain", E::ISOLatin1, QString(), QString()},
        StoredRow{"AsciiPlainUtf8", E::UTF8, kPlain, kPlain},
        StoredRow{"AsciiPlainShiftJis", E::ShiftJIS_X0213, kPlain, kPlain},
        StoredRow{"KanjiPlain", E::ShiftJIS_X0213, QStringLiteral("資料 第2版"), QStringLiteral("資料 第2版")},
        StoredRow{"Ascii255Bytes", E::ISOLatin1, QString(255, u'a'), QString(255, u'a')},
        StoredRow{"Plain255Bytes", E::UTF8, QString(127, u'é') + u'a', QString(127, u'é') + u'a'},
        StoredRow{"CommaUtf8", E::UTF8, QStringLiteral("a,b"), QStringLiteral("/97/44/98")},
        StoredRow{"CommaShiftJis", E::ShiftJIS_X0213, QStringLiteral("a,b"), QStringLiteral("/97/44/98")},
        StoredRow{"CommaLatin1", E::ISOLatin1, QStringLiteral("a,b"), QStringLiteral("/97/44/98")},
        StoredRow{"CommaWindows", E::WindowsLatin1, QStringLiteral("a,b"), QStringLiteral("/97/44/98")},
        StoredRow{"SlashUtf8", E::UTF8, QStringLiteral("a/b"), QStringLiteral("/97/47/98")},
        StoredRow{"SlashShiftJis", E::ShiftJIS_X0213, QStringLiteral("a/b"), QStringLiteral("/97/47/98")},
        StoredRow{"SlashLatin1", E::ISOLatin1, QStringLiteral("a/b"), QStringLiteral("/97/47/98")},
        StoredRow{"SlashWindows", E::WindowsLatin1, QStringLiteral("a/b"), QStringLiteral("/97/47/98")},
        StoredRow{"Apostrophe", E::ISOLatin1, QStringLiteral("it's"), QStringLiteral("/105/116/39/115")},
        StoredRow{"LeadingSlash", E::UTF8, QStringLiteral("/ab"), QStringLiteral("/47/97/98")},
        StoredRow{"OrdinaryBeside", E::UTF8, QStringLiteral("a \";,"), QStringLiteral("/97/32/34/59/44")},
        StoredRow{"KanjiAndComma", E::ShiftJIS_X0213, QStringLiteral("資料,2"),
                  QStringLiteral("/-114/-111/-105/-65/44/50")},
        // Shift-JIS is ASCII-compatible here, and the test looks at bytes: the
        // trail byte of 表 (95 5C) is a backslash.
        StoredRow{"BackslashBesideKanji", E::ShiftJIS_X0213, QStringLiteral("資\\~"),
                  QStringLiteral("/-114/-111/92/126")},
        StoredRow{"TrailByteBackslash", E::ShiftJIS_X0213, QStringLiteral("表"), QStringLiteral("/-107/92")},
        // The encoder holds a final kana back until it knows nothing combines.
        StoredRow{"FinalKana", E::ShiftJIS_X0213, QStringLiteral("a,か"), QStringLiteral("/97/44/-126/-87")}),
    text_tests::RowName{});

TEST(PrinterLanguageEncoding, EveryByteValueHasItsSignedEntry)
{
    QString text;
    QString stored;
    for (int byte = 1; byte < 256; ++byte) {
        const QString entry = u'/' + QString::number(static_cast<signed char>(byte));
        EXPECT_EQ(jt::CopyDecodedString(entry, E::ISOLatin1), QString(QChar(byte))) << byte;
        text += QChar(byte);
        stored += entry;
    }
    EXPECT_EQ(jt::CopyEncodedString(text, E::ISOLatin1), stored);
}

// Output stops once it reaches 1023 characters, keeping the entry that
// crossed the mark whole. "é" is "/-23" and "€" "/-128" in Windows Latin-1.
TEST(PrinterLanguageEncoding, EscapingStopsAfterEntryReachingMark)
{
    const QString e = QStringLiteral("é");
    const QString euro = QStringLiteral("€");
    const auto encode = [](const QString &text) { return jt::CopyEncodedString(text, E::WindowsLatin1); };
    EXPECT_EQ(encode(e.repeated(2) + euro.repeated(203) + u','),
              QStringLiteral("/-23").repeated(2) + QStringLiteral("/-128").repeated(203)); // 1023
    EXPECT_EQ(encode(euro.repeated(206) + u','), QStringLiteral("/-128").repeated(205)); // 1025
    EXPECT_EQ(encode(e.repeated(3) + euro.repeated(203) + u','),
              QStringLiteral("/-23").repeated(3) + QStringLiteral("/-128").repeated(203)); // 1027
}

enum Op { kEncode, kDecode };

struct CallRow {
    std::string name;
    Op op;
    E encoding;
    std::optional<QString> in;
    std::optional<QString> out;
    std::string message = {};
};

class PrinterLanguageCall : public testing::TestWithParam<CallRow> {};

TEST_P(PrinterLanguageCall, GivesResultAndExactMessage)
{
    const CallRow &row = GetParam();
    const auto [result, errors] = withStderr([&] {
        return row.op == kEncode ? jt::CopyEncodedString(row.in, row.encoding)
                                 : jt::CopyDecodedString(row.in, row.encoding);
    });
    EXPECT_EQ(result, row.out);
    EXPECT_EQ(errors, row.message);
}

const std::string kEncodeFailed = "CopyEncodedString : CFStringGetCString failed.\n";
const std::string kDecodeFailed = "CopyDecodedString : CFStringGetCString failed.\n";

INSTANTIATE_TEST_SUITE_P(
    PrinterLanguageEncoding, PrinterLanguageCall,
    testing::Values(
        CallRow{"SlashNotFirst", kDecode, E::ISOLatin1, QStringLiteral("a/b,c"), QStringLiteral("a/b,c")},
        CallRow{"LoneSlash", kDecode, E::ISOLatin1, QStringLiteral("/"), QStringLiteral("/")},
        CallRow{"Above255Clamps", kDecode, E::ISOLatin1, QStringLiteral("/97/256/300"), QStringLiteral("aÿÿ")},
        CallRow{"NegativeWraps", kDecode, E::ISOLatin1, QStringLiteral("/-1/-190"), QStringLiteral("ÿB")},
        CallRow{"EmptyEntryEnds", kDecode, E::ISOLatin1, QStringLiteral("/97//98"), QStringLiteral("a")},
        CallRow{"TrailingSlash", kDecode, E::ISOLatin1, QStringLiteral("/97/"), QStringLiteral("a")},
        CallRow{"SpaceSignAndLetters", kDecode, E::ISOLatin1, QStringLiteral("/ +65/\t66x/-0"), QStringLiteral("AB")},
        CallRow{"NoDigitsEnds", kDecode, E::ISOLatin1, QStringLiteral("/65/x/66"), QStringLiteral("A")},
        CallRow{"HugeClamps", kDecode, E::ISOLatin1, QStringLiteral("/99999999999"), QStringLiteral("ÿ")},
        CallRow{"HugeNegativeEnds", kDecode, E::ISOLatin1, QStringLiteral("/65/-99999999999/66"), QStringLiteral("A")},
        CallRow{"AsciiInShiftJis", kDecode, E::ShiftJIS_X0213, QStringLiteral("/-126/-96/92/126"), QStringLiteral("あ\\~")},
        CallRow{"Decode255Bytes", kDecode, E::ISOLatin1, QStringLiteral("/97").repeated(85), QString(85, u'a')},
        // Bytes that are not text in the encoding are not reported.
        CallRow{"InvalidUtf8", kDecode, E::UTF8, QStringLiteral("/-1"), std::nullopt},
        CallRow{"TruncatedShiftJis", kDecode, E::ShiftJIS_X0213, QStringLiteral("/97/-126"), std::nullopt},
        CallRow{"DecodeAbsent", kDecode, E::UTF8, std::nullopt, std::nullopt, "CopyDecodedString : an argument is NULL.\n"},
        CallRow{"Decode258Bytes", kDecode, E::ISOLatin1, QStringLiteral("/97").repeated(86), std::nullopt, kDecodeFailed},
        CallRow{"DecodeKanjiInLatin1", kDecode, E::ISOLatin1, QStringLiteral("/97/日"), std::nullopt, kDecodeFailed},
        CallRow{"EncodeAbsent", kEncode, E::UTF8, std::nullopt, std::nullopt},
        CallRow{"EncodeKanjiInLatin1", kEncode, E::ISOLatin1, QStringLiteral("日本"), std::nullopt, kEncodeFailed},
        CallRow{"EncodeLoneSurrogate", kEncode, E::UTF8, QStringLiteral("a") + QChar(0xD800), std::nullopt, kEncodeFailed},
        // Yen and overline would share 0x5C and 0x7E with ASCII.
        CallRow{"EncodeYenInShiftJis", kEncode, E::ShiftJIS_X0213, QStringLiteral("¥100"), std::nullopt, kEncodeFailed},
        CallRow{"EncodeOverlineInShiftJis", kEncode, E::ShiftJIS_X0213, QStringLiteral("a‾"), std::nullopt, kEncodeFailed},
        CallRow{"Encode256Bytes", kEncode, E::ISOLatin1, QString(255, u'a') + u',', std::nullopt, kEncodeFailed},
        CallRow{"Encode256BytesUtf8", kEncode, E::UTF8, QString(128, u'é'), std::nullopt, kEncodeFailed}),
    text_tests::RowName{});

} // namespace
