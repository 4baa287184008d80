// SPDX-License-Identifier: MIT
// What the text layer makes of a PPD and of the texts the panel stores: the
// prefix-matching, file-order PPD attribute lookup, the printer language
// encoding a PPD names, the byte-escaped stored form, and the protected
// password, checked against a reference form (the XOR cipher and base64
// codec under it as the password code calls them). Checks of arguments no
// caller passes (a lookup without a name, the stored form of no text, the
// cipher's own argument checks) have no tests here.
#include "FixturePpd.h"

#include "text/PasswordProtection.h"
#include "text/PpdAttribute.h"
#include "text/PrinterLanguageEncoding.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

using E = jt::StringEncoding;

// text-attributes.ppd lists its attributes so that file order and libcups' own
// sorted index disagree (and "NVPrinterLanguage" comes before the longer
// names); only a linear, case-sensitive prefix scan gives these answers.
TEST(PpdAttribute, FindsFirstPrefixMatchInFileOrderOnly)
{
    const auto ppd = testsupport::openFixturePpd("text-attributes.ppd");
    ASSERT_NE(ppd, nullptr);
    const struct {
        const char *lookup;
        const char *attrName; // null: nothing found
        const char *qualifier;
        std::optional<QString> value; // as CopyPPDAttribute reads it
    } rows[] = {
        {"NVJapanese", "NVJapanese", "", QStringLiteral("日本語の資料")},
        {"NVPrinterLanguageEncoding", "NVPrinterLanguageEncodingX", "", QStringLiteral("prefixed")},
        {"NV", "NVPrinterLanguage", "", QStringLiteral("shorter")},
        {"NVModelStrings", "NVModelStrings", "Zulu", QStringLiteral("first")},
        {"NVInvalid", "NVInvalid", "", std::nullopt}, // a value that is not UTF-8
        {"nvprinterlanguageencoding", nullptr, nullptr, std::nullopt},
        {"NVPrinterLanguageEncodingXY", nullptr, nullptr, std::nullopt}, // longer than any name
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.lookup);
        const ppd_attr_t *attr = jt::ppdFindAttr_ALT(ppd.get(), row.lookup);
        EXPECT_STREQ(attr ? attr->name : nullptr, row.attrName);
        EXPECT_STREQ(attr ? attr->spec : nullptr, row.qualifier);
        EXPECT_EQ(jt::CopyPPDAttribute(ppd.get(), row.lookup), row.value);
    }
    EXPECT_EQ(jt::CopyPPDAttribute(nullptr, "NVJapanese"), std::nullopt);
}

TEST(PrinterLanguageEncoding, MapsPpdValueExactly)
{
    const std::pair<const char *, std::uint32_t> rows[] = {
        {"text-encoding-utf8.ppd", 0x08000100},
        {"text-encoding-jis83-rksj.ppd", 0x0628},
        {"text-encoding-isolatin1.ppd", 0x0201},
        {"text-encoding-windowsansi.ppd", 0x0500},
        // Anything but an exact name gives Shift-JIS.
        {"text-encoding-utf8-lowercase.ppd", 0x0628},
        {"text-encoding-name-extended.ppd", 0x0628},
        {"text-encoding-name-shortened.ppd", 0x0628},
        {"text-encoding-prefixed-first.ppd", 0x0500}, // a longer attribute name listed first
    };
    for (const auto &[file, expected] : rows) {
        const auto ppd = testsupport::openFixturePpd(file);
        ASSERT_NE(ppd, nullptr) << file;
        EXPECT_EQ(static_cast<std::uint32_t>(jt::GetEncodingInfoFromPPD(ppd.get())), expected) << file;
    }
    EXPECT_EQ(jt::GetEncodingInfoFromPPD(nullptr), E::ShiftJIS_X0213);
}

// kBoth: encodes (protects) in to out, and decodes (unprotects) out back to in.
enum Op { kBoth, kEncode, kDecode };

const std::string kEncodeFailed = "CopyEncodedString : CFStringGetCString failed.\n";
const std::string kDecodeFailed = "CopyDecodedString : CFStringGetCString failed.\n";

TEST(PrinterLanguageEncoding, StoredFormCallsGiveResultAndExactMessage)
{
    // "é" is "/-23" and "€" "/-128" in Windows Latin-1: output stops once it
    // reaches 1023 characters, keeping the entry that crossed the mark whole.
    const QString e = QStringLiteral("é"), euro = QStringLiteral("€");
    const struct {
        Op op;
        E encoding;
        std::optional<QString> in, out;
        std::string message = {};
    } rows[] = {
        // Space, double quote, semicolon and (in Shift-JIS) "~" are ordinary.
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("Report; \"draft\" ~x"), QStringLiteral("Report; \"draft\" ~x")},
        // The empty text is a text: both ways it stays empty, never absent.
        {kBoth, E::ShiftJIS_X0213, QString(), QString()},
        // "€" and "…" have bytes (0x80, 0x85) in Windows Latin-1 only.
        {kBoth, E::WindowsLatin1, QStringLiteral("Café €5 …"), QStringLiteral("Café €5 …")},
        {kBoth, E::UTF8, QString(127, u'é') + u'a', QString(127, u'é') + u'a'}, // 255 bytes
        {kBoth, E::ISOLatin1, QStringLiteral("it's"), QStringLiteral("/105/116/39/115")},
        // Entries of one, two and three digits, both signs.
        {kBoth, E::ISOLatin1, QStringLiteral("\t\ncd\u007F\u0080\u00FF,"),
         QStringLiteral("/9/10/99/100/127/-128/-1/44")},
        // Shift-JIS is ASCII-compatible here, and escaping looks at bytes: the
        // trail byte of 表 (95 5C) is a backslash.
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("資\\~"), QStringLiteral("/-114/-111/92/126")},
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("表"), QStringLiteral("/-107/92")},
        // The encoder holds a final kana back until it knows nothing combines.
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("a,か"), QStringLiteral("/97/44/-126/-87")},
        {kEncode, E::WindowsLatin1, e.repeated(2) + euro.repeated(203) + u',',
         QStringLiteral("/-23").repeated(2) + QStringLiteral("/-128").repeated(203)}, // 1023
        {kEncode, E::WindowsLatin1, e.repeated(3) + euro.repeated(203) + u',',
         QStringLiteral("/-23").repeated(3) + QStringLiteral("/-128").repeated(203)}, // 1027
        {kDecode, E::ISOLatin1, QStringLiteral("/"), QStringLiteral("/")},
        {kDecode, E::ISOLatin1, QStringLiteral("/97/256/300/-190"), QStringLiteral("aÿÿB")},
        // Other than the encoder's entries, read as atoi does (white space, a
        // sign, any number of digits, saturating); a zero byte ends the text.
        {kDecode, E::ISOLatin1, QStringLiteral("/ +65x/\t66/1000/-0065/-99999999999/66"), QStringLiteral("ABÿ¿")},
        {kDecode, E::ISOLatin1, QStringLiteral("/97").repeated(85), QString(85, u'a')}, // 255 bytes
        {kDecode, E::ShiftJIS_X0213, QStringLiteral("/97/-126"), std::nullopt}, // not text: no message
        {kDecode, E::ISOLatin1, QStringLiteral("/97").repeated(86), std::nullopt, kDecodeFailed},
        {kDecode, E::ISOLatin1, QStringLiteral("/97/日"), std::nullopt, kDecodeFailed},
        {kEncode, E::ISOLatin1, QStringLiteral("日本"), std::nullopt, kEncodeFailed},
        {kEncode, E::UTF8, QStringLiteral("a") + QChar(0xD800), std::nullopt, kEncodeFailed},
        // The printer prints 0x5C and 0x7E as yen sign and overline: those
        // are their bytes, read back as backslash and tilde.
        {kEncode, E::ShiftJIS_X0213, QStringLiteral("¥1‾"), QStringLiteral("/92/49/126")},
        {kDecode, E::ShiftJIS_X0213, QStringLiteral("/92/49/126"), QStringLiteral("\\1~")},
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("a‾"), QStringLiteral("a‾")}, // 0x7E is not significant
        {kEncode, E::ShiftJIS_X0213, QStringLiteral("aµ"), std::nullopt, kEncodeFailed},
        {kEncode, E::UTF8, QString(128, u'é'), std::nullopt, kEncodeFailed},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.in.value_or(QStringLiteral("(absent)")).left(40).toStdString());
        testing::internal::CaptureStderr();
        EXPECT_EQ(row.op == kDecode ? jt::CopyDecodedString(row.in, row.encoding)
                                    : jt::CopyEncodedString(row.in, row.encoding),
                  row.out);
        if (row.op == kBoth) {
            EXPECT_EQ(jt::CopyDecodedString(row.out, row.encoding), row.in);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.message);
        if (row.op != kDecode && row.in) {
            EXPECT_EQ(jt::CanStoreText(*row.in, row.encoding), row.out.has_value());
        }
    }
}

// The protected form worked out apart from the code under test: XOR with the
// key, then Qt's standard base64.
QString referenceForm(QByteArray bytes)
{
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(bytes[i] ^ "qvkm"[i % 4]);
    return QString::fromLatin1(bytes.toBase64());
}

TEST(PasswordProtection, GivesExpectedFormSilently)
{
    // 192 bytes make exactly 256 base64 characters, the most that is taken.
    const QString form256 = referenceForm(QByteArray(192, 'y'));
    const struct {
        Op op;
        E encoding;
        std::optional<QString> in, out;
    } rows[] = {
        {kEncode, E::UTF8, std::nullopt, std::nullopt},
        {kEncode, E::UTF8, QString(), std::nullopt}, // nothing to protect: no form, not an empty one
        // One, two and three bytes fill one quartet with two, one and no "=".
        {kBoth, E::UTF8, QStringLiteral("1"), QStringLiteral("QA==")},
        {kBoth, E::UTF8, QStringLiteral("12"), QStringLiteral("QEQ=")},
        {kBoth, E::UTF8, QStringLiteral("123"), QStringLiteral("QERY")},
        {kEncode, E::ISOLatin1, QStringLiteral("日本"), std::nullopt}, // first character not in the encoding
        {kBoth, E::ISOLatin1, QStringLiteral("1234"), QStringLiteral("QERYWQ==")}, // worked out in a shell
        // Double-byte characters whose trail byte is a backslash, and ASCII.
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("資料\\表~"), referenceForm("\x8E\x91\x97\xBF\\\x95\\~")},
        // An unrepresentable character silently ends the password.
        {kEncode, E::ISOLatin1, QStringLiteral("12日34"), QStringLiteral("QEQ=")},
        {kEncode, E::ShiftJIS_X0213, QStringLiteral("abµc"), referenceForm("ab")},
        {kBoth, E::ISOLatin1, QString(189, u'x'), referenceForm(QByteArray(189, 'x'))},
        {kEncode, E::ISOLatin1, QString(190, u'x'), std::nullopt},
        {kDecode, E::UTF8, std::nullopt, std::nullopt},
        {kDecode, E::UTF8, QString(), std::nullopt},
        {kDecode, E::UTF8, QStringLiteral("QA="), std::nullopt},
        {kDecode, E::UTF8, QStringLiteral("QERY WQ==   "), QStringLiteral("1234")},
        {kDecode, E::UTF8, QStringLiteral("QE") + QChar(0) + QChar(0), std::nullopt}, // decodes to nothing
        {kDecode, E::UTF8, QStringLiteral("QA==日本"), QStringLiteral("1")}, // leading ASCII only
        {kDecode, E::UTF8, QStringLiteral("!!!!"), std::nullopt}, // bytes that are not UTF-8
        {kDecode, E::ISOLatin1, form256 + QStringLiteral("QA=="), QString(192, u'y')},
        {kDecode, E::ISOLatin1, referenceForm("caf\xC3\xA9"), QStringLiteral("cafÃ©")}, // read as asked
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.in.value_or(QStringLiteral("(absent)")).left(40).toStdString());
        testing::internal::CaptureStderr();
        EXPECT_EQ(row.op == kDecode ? jt::CreateDecryptedString(row.in, row.encoding)
                                       : jt::CreateEncryptedString(row.in, row.encoding),
                  row.out);
        if (row.op == kBoth) {
            EXPECT_EQ(jt::CreateDecryptedString(row.out, row.encoding), row.in);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
}

} // namespace
