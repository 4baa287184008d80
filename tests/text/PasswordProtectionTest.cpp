// SPDX-License-Identifier: MIT
// Protecting and unprotecting the password, checked against a reference form:
// the XOR cipher and base64 codec under it as the password code calls them.
// (Their checks of arguments that code never passes have no tests here.)
#include "text/PasswordProtection.h"

#include <QByteArray>

#include <gtest/gtest.h>

#include <optional>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

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

} // namespace
