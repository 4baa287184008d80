// SPDX-License-Identifier: MIT
// The prefix-matching, file-order PPD attribute lookup over fixture PPDs.
#include "FixturePpd.h"

#include "text/PpdAttribute.h"

#include <gtest/gtest.h>

#include <optional>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

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
        {"", nullptr, nullptr, std::nullopt},
        {nullptr, nullptr, nullptr, std::nullopt},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.lookup ? row.lookup : "(null)");
        const ppd_attr_t *attr = jt::ppdFindAttr_ALT(ppd.get(), row.lookup);
        EXPECT_STREQ(attr ? attr->name : nullptr, row.attrName);
        EXPECT_STREQ(attr ? attr->spec : nullptr, row.qualifier);
        EXPECT_EQ(jt::CopyPPDAttribute(ppd.get(), row.lookup), row.value);
    }
    const auto empty = testsupport::openFixturePpd("text-no-attributes.ppd");
    ASSERT_NE(empty, nullptr);
    ASSERT_EQ(empty->num_attrs, 0); // libcups adds none of its own
    EXPECT_EQ(jt::ppdFindAttr_ALT(empty.get(), "NV"), nullptr);
    EXPECT_EQ(jt::ppdFindAttr_ALT(nullptr, "NVJapanese"), nullptr);
    EXPECT_EQ(jt::CopyPPDAttribute(nullptr, "NVJapanese"), std::nullopt);
}

} // namespace
