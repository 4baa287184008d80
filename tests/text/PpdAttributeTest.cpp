// SPDX-License-Identifier: MIT
// The prefix-matching, file-order PPD attribute lookup over fixture PPDs.
#include "FixturePpd.h"
#include "TextTestSupport.h"

#include "text/PpdAttribute.h"

#include <optional>
#include <string>

namespace {

struct LookupRow {
    std::string name;
    const char *lookup;
    const char *attrName; // null: nothing found
    const char *attrSpec;
    std::optional<QString> value; // as CopyPPDAttribute reads it
};

class PpdAttributeLookup : public testing::TestWithParam<LookupRow> {};

// text-attributes.ppd lists its attributes so that file order and libcups' own
// sorted index disagree (and "NVPrinterLanguage" comes before the longer
// names); only a linear, case-sensitive prefix scan gives these answers.
TEST_P(PpdAttributeLookup, FindsFirstInFileOrder)
{
    const LookupRow &row = GetParam();
    const auto ppd = testsupport::openFixturePpd("text-attributes.ppd");
    ASSERT_NE(ppd, nullptr);

    const ppd_attr_t *attr = jt::ppdFindAttr_ALT(ppd.get(), row.lookup);
    EXPECT_EQ(jt::CopyPPDAttribute(ppd.get(), row.lookup), row.value);
    if (row.attrName == nullptr) {
        EXPECT_EQ(attr, nullptr);
        return;
    }
    ASSERT_NE(attr, nullptr);
    EXPECT_STREQ(attr->name, row.attrName);
    EXPECT_STREQ(attr->spec, row.attrSpec);
}

INSTANTIATE_TEST_SUITE_P(
    PpdAttribute, PpdAttributeLookup,
    testing::Values(
        LookupRow{"Japanese", "NVJapanese", "NVJapanese", "", QStringLiteral("日本語の資料")},
        LookupRow{"LongerNameFirst", "NVPrinterLanguageEncoding", "NVPrinterLanguageEncodingX", "",
                  QStringLiteral("prefixed")},
        LookupRow{"ShorterNameItself", "NVPrinterLanguage", "NVPrinterLanguage", "",
                  QStringLiteral("shorter")},
        LookupRow{"BarePrefix", "NV", "NVPrinterLanguage", "", QStringLiteral("shorter")},
        LookupRow{"FirstSpecInFile", "NVModelStrings", "NVModelStrings", "Zulu", QStringLiteral("first")},
        LookupRow{"InvalidUtf8", "NVInvalid", "NVInvalid", "", std::nullopt},
        LookupRow{"SmallLetters", "nvprinterlanguageencoding", nullptr, nullptr, std::nullopt},
        LookupRow{"LongerThanAnyName", "NVPrinterLanguageEncodingXY", nullptr, nullptr, std::nullopt},
        LookupRow{"Missing", "NVHardDisk", nullptr, nullptr, std::nullopt},
        LookupRow{"EmptyName", "", nullptr, nullptr, std::nullopt}),
    text_tests::RowName{});

TEST(PpdAttribute, NothingFoundWithoutPpdNameOrAttributes)
{
    const auto ppd = testsupport::openFixturePpd("text-attributes.ppd");
    const auto empty = testsupport::openFixturePpd("text-no-attributes.ppd");
    ASSERT_NE(ppd, nullptr);
    ASSERT_NE(empty, nullptr);
    ASSERT_EQ(empty->num_attrs, 0); // libcups adds none of its own

    EXPECT_EQ(jt::ppdFindAttr_ALT(nullptr, "NVJapanese"), nullptr);
    EXPECT_EQ(jt::ppdFindAttr_ALT(ppd.get(), nullptr), nullptr);
    EXPECT_EQ(jt::ppdFindAttr_ALT(empty.get(), "NV"), nullptr);
    EXPECT_EQ(jt::CopyPPDAttribute(nullptr, "NVJapanese"), std::nullopt);
    EXPECT_EQ(jt::CopyPPDAttribute(ppd.get(), nullptr), std::nullopt);
}

} // namespace
