// SPDX-License-Identifier: MIT
// The acceptance test of the field formatter over the panel's three
// configurations and the edges of its code tables.
#include "panel/InputStringChecker.h"

#include <gtest/gtest.h>

namespace {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

struct Case {
    const char *name;
    std::size_t maxLength;
    const char16_t *ranges;
    QString text;
    bool accepted;
};

std::unique_ptr<jt::InputStringChecker> checker(std::size_t maxLength, const char16_t *ranges)
{
    auto formatter = std::make_unique<jt::InputStringChecker>();
    formatter->setMaxLength(maxLength);
    formatter->setAcceptableCodeRange(ranges);
    return formatter;
}

TEST(InputStringChecker, ValidateRefusesExactlyWhatTheAcceptanceTestRefuses)
{
    constexpr char16_t kEmptyList[] = {0};
    constexpr char16_t kUpToTheLastCode[] = {0xFFF0, 0xFFFF, 0};
    const Case cases[] = {
        {"user ID of 8 letters", 8, jt::kUserNameAcceptableRange, QStringLiteral("abcdefgh"), true},
        {"user ID of 9 letters", 8, jt::kUserNameAcceptableRange, QStringLiteral("abcdefghi"), false},
        {"user ID with e acute", 8, jt::kUserNameAcceptableRange, QStringLiteral(u"caf\u00e9"), true},
        {"user ID with no-break space", 8, jt::kUserNameAcceptableRange, QStringLiteral(u"a\u00a0b"), true},
        {"user ID with a tab", 8, jt::kUserNameAcceptableRange, QStringLiteral("a\tb"), false},
        {"user ID with DEL", 8, jt::kUserNameAcceptableRange, QStringLiteral("a\x7f"), false},
        {"user ID with the euro sign", 8, jt::kUserNameAcceptableRange, QStringLiteral(u"a\u20ac"), false},
        {"user ID in Japanese", 8, jt::kUserNameAcceptableRange, QStringLiteral(u"田中"), false},
        {"user ID with a surrogate pair", 8, jt::kUserNameAcceptableRange, QStringLiteral(u"a\U0001F600"), false},
        {"password of 12 digits", 12, jt::kPasswordAcceptableRange, QStringLiteral("123456789012"), true},
        {"password of 13 digits", 12, jt::kPasswordAcceptableRange, QStringLiteral("1234567890123"), false},
        {"password with a letter", 12, jt::kPasswordAcceptableRange, QStringLiteral("12a4"), false},
        {"password with a space", 12, jt::kPasswordAcceptableRange, QStringLiteral("12 4"), false},
        {"document name of 12", 12, jt::kDocNameAcceptableRange, QStringLiteral("Report, v2/3"), true},
        {"document name of 13", 12, jt::kDocNameAcceptableRange, QStringLiteral("Report, v2/3a"), false},
        {"empty text always passes", 12, jt::kPasswordAcceptableRange, QString(), true},
        {"empty list refuses every character", 12, kEmptyList, QStringLiteral("a"), false},
        {"empty list still passes the empty text", 12, kEmptyList, QString(), true},
        {"range up to 0xFFFF", 4, kUpToTheLastCode, QStringLiteral(u"\uffff\ufff0"), true},
        {"range up to 0xFFFF excludes below it", 4, kUpToTheLastCode, QStringLiteral(u"\uffef"), false},
    };
    for (const Case &c : cases) {
        const auto formatter = checker(c.maxLength, c.ranges);
        QString text = c.text;
        int position = 0;
        EXPECT_EQ(formatter->isPartialStringValid(c.text, nullptr, nullptr), c.accepted) << c.name;
        EXPECT_EQ(formatter->validate(text, position),
                  c.accepted ? QValidator::Acceptable : QValidator::Invalid)
            << c.name;
    }
}

TEST(InputStringChecker, WithoutTableOrLimitEverythingPasses)
{
    jt::InputStringChecker formatter;
    EXPECT_TRUE(formatter.isPartialStringValid(QString(100000, QChar(0xD800)), nullptr, nullptr));
}

TEST(InputStringChecker, ANewListReplacesTheOldOneWhole)
{
    const auto formatter = checker(12, jt::kUserNameAcceptableRange);
    formatter->setAcceptableCodeRange(jt::kPasswordAcceptableRange);
    EXPECT_FALSE(formatter->isPartialStringValid(QStringLiteral("a"), nullptr, nullptr));
    EXPECT_TRUE(formatter->isPartialStringValid(QStringLiteral("7"), nullptr, nullptr));
}

TEST(InputStringChecker, TheRefusedCodesTableIsNeverConsulted)
{
    const auto formatter = checker(12, jt::kUserNameAcceptableRange);
    formatter->setUnAcceptableCodeRange(jt::kUserNameAcceptableRange);
    EXPECT_TRUE(formatter->isPartialStringValid(QStringLiteral("abc"), nullptr, nullptr));
}

TEST(InputStringChecker, ObjectValueIsTheStringItself)
{
    jt::InputStringChecker formatter;
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("x")), QStringLiteral("x"));
    EXPECT_EQ(formatter.stringForObjectValue(42), std::nullopt);
    QVariant object;
    EXPECT_TRUE(formatter.getObjectValue(&object, QStringLiteral("y"), nullptr));
    EXPECT_EQ(object, QVariant(QStringLiteral("y")));
}

} // namespace
