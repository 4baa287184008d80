// SPDX-License-Identifier: MIT
// Protecting and unprotecting the password, checked against a reference form,
// and the XOR cipher and base64 codec under it, byte level.
#include "text/PasswordProtection.h"
#include "text/XspCodec.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

using E = jt::StringEncoding;
using namespace std::string_view_literals;

// The protected form worked out apart from the code under test: XOR with the
// key, then Qt's standard base64.
QString referenceForm(QByteArray bytes)
{
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(bytes[i] ^ "qvkm"[i % 4]);
    return QString::fromLatin1(bytes.toBase64());
}

enum Op { kBoth, kProtect, kUnprotect }; // kBoth: protects in to out, and unprotects out back to in

TEST(PasswordProtection, GivesExpectedFormSilently)
{
    // 192 bytes make exactly 256 base64 characters, the most that is taken.
    const QString form256 = referenceForm(QByteArray(192, 'y'));
    const struct {
        Op op;
        E encoding;
        std::optional<QString> in, out;
    } rows[] = {
        {kProtect, E::UTF8, std::nullopt, std::nullopt},
        {kProtect, E::UTF8, QString(), std::nullopt}, // nothing to protect: no form, not an empty one
        // One, two and three bytes fill one quartet with two, one and no "=".
        {kBoth, E::UTF8, QStringLiteral("1"), QStringLiteral("QA==")},
        {kBoth, E::UTF8, QStringLiteral("12"), QStringLiteral("QEQ=")},
        {kBoth, E::UTF8, QStringLiteral("123"), QStringLiteral("QERY")},
        {kProtect, E::ISOLatin1, QStringLiteral("日本"), std::nullopt}, // first character not in the encoding
        {kBoth, E::ISOLatin1, QStringLiteral("1234"), QStringLiteral("QERYWQ==")}, // worked out in a shell
        // Double-byte characters whose trail byte is a backslash, and ASCII.
        {kBoth, E::ShiftJIS_X0213, QStringLiteral("資料\\表~"), referenceForm("\x8E\x91\x97\xBF\\\x95\\~")},
        // An unrepresentable character silently ends the password.
        {kProtect, E::ISOLatin1, QStringLiteral("12日34"), QStringLiteral("QEQ=")},
        {kProtect, E::ShiftJIS_X0213, QStringLiteral("abµc"), referenceForm("ab")},
        {kBoth, E::ISOLatin1, QString(189, u'x'), referenceForm(QByteArray(189, 'x'))},
        {kProtect, E::ISOLatin1, QString(190, u'x'), std::nullopt},
        {kUnprotect, E::UTF8, std::nullopt, std::nullopt},
        {kUnprotect, E::UTF8, QString(), std::nullopt},
        {kUnprotect, E::UTF8, QStringLiteral("QA="), std::nullopt},
        {kUnprotect, E::UTF8, QStringLiteral("QERY WQ==   "), QStringLiteral("1234")},
        {kUnprotect, E::UTF8, QStringLiteral("QE") + QChar(0) + QChar(0), std::nullopt}, // decodes to nothing
        {kUnprotect, E::UTF8, QStringLiteral("QA==日本"), QStringLiteral("1")}, // leading ASCII only
        {kUnprotect, E::UTF8, QStringLiteral("!!!!"), std::nullopt}, // bytes that are not UTF-8
        {kUnprotect, E::ISOLatin1, form256 + QStringLiteral("QA=="), QString(192, u'y')},
        {kUnprotect, E::ISOLatin1, referenceForm("caf\xC3\xA9"), QStringLiteral("cafÃ©")}, // read as asked
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.in.value_or(QStringLiteral("(absent)")).left(40).toStdString());
        testing::internal::CaptureStderr();
        EXPECT_EQ(row.op == kUnprotect ? jt::CreateDecryptedString(row.in, row.encoding)
                                       : jt::CreateEncryptedString(row.in, row.encoding),
                  row.out);
        if (row.op == kBoth) {
            EXPECT_EQ(jt::CreateDecryptedString(row.out, row.encoding), row.in);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
}

enum Null { kNone, kIn, kOut, kOutLen };

TEST(XspCodec, StatusLengthAndExactOutput)
{
    std::string all; // every byte value, and its standard base64
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    const std::string b64 = QByteArray::fromStdString(all).toBase64().toStdString();

    constexpr auto enc = jt::XspEncrypt;
    constexpr auto toB64 = jt::XspBinToB64;
    constexpr auto toBin = jt::XspB64ToBin;
    constexpr int kOK = jt::kXspOK, kPtr = jt::kXspInvalidPointer, kLen = jt::kXspInvalidLength,
                  kSmall = jt::kXspBufferTooSmall;
    const struct {
        int (*routine)(const unsigned char *, int, unsigned char *, unsigned int *, int);
        Null null;
        std::string_view in;
        int cap, status;
        std::string_view out = {}; // what is written; nothing may follow it
        int outLen = -1;           // when not out's size: the needed size a query reports
    } rows[] = {
        {enc, kIn, "ABCDEFGH", 16, kPtr},
        {enc, kOut, "ABCDEFGH", 0, kPtr},
        {enc, kOutLen, "ABCDEFGH", 16, kPtr},
        {enc, kNone, "", 16, kLen},
        {enc, kNone, "ABCDEFGH", 0, kLen},
        {enc, kNone, "ABCDEFGHI", 9, kOK, "04()40,%8"}, // the key restarts every 4 bytes
        {enc, kNone, "ABCD", 3, kSmall, ""},            // out of room: keeps what it wrote
        {enc, kNone, "ABCDEF", 5, kSmall, "04()"},
        {toB64, kIn, "foobar", 16, kPtr},
        {toB64, kOut, "foobar", 16, kPtr},
        {toB64, kNone, "", 16, kLen},
        {toB64, kNone, "foobar", -1, kLen},
        {toB64, kOut, "foobar", 0, kSmall, "", 8}, // a size query
        {toB64, kNone, "foobarx", 11, kSmall, "", 12},
        {toB64, kNone, all, static_cast<int>(b64.size()), kOK, b64},
        {toBin, kNone, "", 16, kLen},
        {toBin, kNone, "Zm9vYg", 16, kLen},
        {toBin, kNone, "Zm9vYg==", -1, kLen},
        {toBin, kOut, "Zm9vYg==", 0, kSmall, "", 4},
        {toBin, kNone, "Zm9vYg==", 3, kSmall, "", 4},
        {toBin, kNone, b64, 256, kOK, all},
        // Lenient decoding: white space skipped, a zero byte or "=" ends the
        // data, characters outside the alphabet read as 255.
        {toBin, kNone, " Zm 9vYg==\n\t", 255, kOK, "foob"},
        {toBin, kNone, "Zm9vZg\0\0"sv, 255, kOK, "foo"},
        {toBin, kNone, "Zg==Zm9v", 255, kOK, "f"},
        {toBin, kNone, "A!\xC3" "A", 255, kOK, "\x0F\xFF\xC0"},
        // Four "=" make the needed length 2 while the first quartet yields 3.
        {toBin, kNone, "Zm9v====", 2, kSmall, "fo"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << &row - rows);
        // Exactly the input, no terminator: a read past it is an overflow
        // that ASan reports. The output starts as sentinels to show stray writes.
        std::vector<unsigned char> in(row.in.begin(), row.in.end());
        in.reserve(1); // a valid pointer for the empty input
        std::string out(400, '\xA5');
        unsigned int outLen = 12345;
        EXPECT_EQ(row.routine(row.null == kIn ? nullptr : in.data(), static_cast<int>(in.size()),
                              row.null == kOut ? nullptr : reinterpret_cast<unsigned char *>(out.data()),
                              row.null == kOutLen ? nullptr : &outLen, row.cap),
                  row.status);
        if (row.status == kOK || row.status == kSmall) {
            EXPECT_EQ(outLen, row.outLen < 0 ? row.out.size() : static_cast<unsigned int>(row.outLen));
        }
        EXPECT_EQ(out.substr(0, row.out.size()), row.out);
        EXPECT_EQ(out.find_first_not_of('\xA5', row.out.size()), std::string::npos);
    }
}

} // namespace
