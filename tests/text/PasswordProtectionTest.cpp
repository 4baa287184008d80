// SPDX-License-Identifier: MIT
// Protecting and unprotecting the password, checked against a reference form.
#include "TextTestSupport.h"

#include "text/PasswordProtection.h"

#include <QByteArray>

#include <optional>
#include <string>

namespace {

using E = jt::StringEncoding;

// The protected form worked out apart from the code under test: XOR with the
// key, then Qt's standard base64.
QString referenceForm(QByteArray bytes)
{
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(bytes[i] ^ "qvkm"[i % 4]);
    return QString::fromLatin1(bytes.toBase64());
}

enum Op { kProtect, kUnprotect };

struct CallRow {
    std::string name;
    Op op;
    E encoding;
    std::optional<QString> in;
    std::optional<QString> out;
};

class PasswordCall : public testing::TestWithParam<CallRow> {};

TEST_P(PasswordCall, GivesExpectedFormSilently)
{
    const CallRow &row = GetParam();
    const auto [result, errors] = text_tests::withStderr([&] {
        return row.op == kProtect ? jt::CreateEncryptedString(row.in, row.encoding)
                                  : jt::CreateDecryptedString(row.in, row.encoding);
    });
    EXPECT_EQ(result, row.out);
    EXPECT_EQ(errors, "");
}

const QString kKanji63 = QStringLiteral("日").repeated(63); // 189 bytes in UTF-8
// 192 bytes make exactly 256 base64 characters, the most that is taken.
const QString kForm256 = referenceForm(QByteArray(192, 'y'));

INSTANTIATE_TEST_SUITE_P(
    PasswordProtection, PasswordCall,
    testing::Values(
        CallRow{"ProtectAbsent", kProtect, E::UTF8, std::nullopt, std::nullopt},
        CallRow{"ProtectEmpty", kProtect, E::UTF8, QString(), std::nullopt},
        CallRow{"ProtectFirstNotInEncoding", kProtect, E::ISOLatin1, QStringLiteral("日本"), std::nullopt},
        // Vectors worked out in a shell, which checks the reference as well.
        CallRow{"ProtectOneByte", kProtect, E::UTF8, QStringLiteral("1"), QStringLiteral("QA==")},
        CallRow{"ProtectTwoBytes", kProtect, E::UTF8, QStringLiteral("12"), QStringLiteral("QEQ=")},
        CallRow{"ProtectThreeBytes", kProtect, E::UTF8, QStringLiteral("123"), QStringLiteral("QERY")},
        CallRow{"ProtectKeyRestarts", kProtect, E::ISOLatin1, QStringLiteral("1234"), QStringLiteral("QERYWQ==")},
        CallRow{"ProtectShiftJis", kProtect, E::ShiftJIS_X0213, QStringLiteral("パス"), QStringLiteral("8gboNQ==")},
        // An unrepresentable character silently ends the password.
        CallRow{"ProtectUpToKanji", kProtect, E::ISOLatin1, QStringLiteral("12日34"), QStringLiteral("QEQ=")},
        CallRow{"ProtectUpToYen", kProtect, E::ShiftJIS_X0213, QStringLiteral("ab¥c"), referenceForm("ab")},
        CallRow{"Protect189Bytes", kProtect, E::ISOLatin1, QString(189, u'x'), referenceForm(QByteArray(189, 'x'))},
        CallRow{"Protect190Bytes", kProtect, E::ISOLatin1, QString(190, u'x'), std::nullopt},
        CallRow{"Protect190BytesUtf8", kProtect, E::UTF8, kKanji63 + u'x', std::nullopt},
        CallRow{"UnprotectAbsent", kUnprotect, E::UTF8, std::nullopt, std::nullopt},
        CallRow{"UnprotectEmpty", kUnprotect, E::UTF8, QString(), std::nullopt},
        CallRow{"UnprotectThreeCharacters", kUnprotect, E::UTF8, QStringLiteral("QA="), std::nullopt},
        CallRow{"UnprotectOneByte", kUnprotect, E::UTF8, QStringLiteral("QA=="), QStringLiteral("1")},
        CallRow{"UnprotectWhiteSpace", kUnprotect, E::UTF8, QStringLiteral("QERY WQ==   "), QStringLiteral("1234")},
        CallRow{"UnprotectToNothing", kUnprotect, E::UTF8, QStringLiteral("QE") + QChar(0) + QChar(0), std::nullopt},
        CallRow{"UnprotectLeadingAscii", kUnprotect, E::UTF8, QStringLiteral("QA==日本"), QStringLiteral("1")},
        CallRow{"UnprotectNotInEncoding", kUnprotect, E::UTF8, QStringLiteral("!!!!"), std::nullopt},
        CallRow{"Unprotect256Characters", kUnprotect, E::ISOLatin1, kForm256, QString(192, u'y')},
        CallRow{"UnprotectFirst256Characters", kUnprotect, E::ISOLatin1, kForm256 + QStringLiteral("QA=="),
                QString(192, u'y')}),
    text_tests::RowName{});

struct RoundTripRow {
    std::string name;
    E protectIn;
    E unprotectIn;
    QString password;
    std::optional<QString> expected;
};

class PasswordRoundTrip : public testing::TestWithParam<RoundTripRow> {};

// Unprotecting gives back the protected bytes, read in the encoding asked for.
TEST_P(PasswordRoundTrip, GivesBackTheSameBytes)
{
    const RoundTripRow &row = GetParam();
    const auto form = jt::CreateEncryptedString(row.password, row.protectIn);
    ASSERT_TRUE(form.has_value());
    EXPECT_EQ(jt::CreateDecryptedString(form, row.unprotectIn), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    PasswordProtection, PasswordRoundTrip,
    testing::Values(
        RoundTripRow{"Utf8", E::UTF8, E::UTF8, QStringLiteral("パスワード1"), QStringLiteral("パスワード1")},
        RoundTripRow{"ShiftJis", E::ShiftJIS_X0213, E::ShiftJIS_X0213, QStringLiteral("資料\\表~"),
                     QStringLiteral("資料\\表~")},
        RoundTripRow{"Latin1", E::ISOLatin1, E::ISOLatin1, QStringLiteral("Ça, c'est/1"),
                     QStringLiteral("Ça, c'est/1")},
        RoundTripRow{"Windows", E::WindowsLatin1, E::WindowsLatin1, QStringLiteral("€uro"), QStringLiteral("€uro")},
        RoundTripRow{"Longest", E::UTF8, E::UTF8, kKanji63, kKanji63},
        RoundTripRow{"Utf8ReadAsLatin1", E::UTF8, E::ISOLatin1, QStringLiteral("café"), QStringLiteral("cafÃ©")},
        RoundTripRow{"WindowsReadAsLatin1", E::WindowsLatin1, E::ISOLatin1, QStringLiteral("€"), QString(QChar(0x80))},
        RoundTripRow{"ShiftJisReadAsUtf8", E::ShiftJIS_X0213, E::UTF8, QStringLiteral("パス"), std::nullopt}),
    text_tests::RowName{});

} // namespace
