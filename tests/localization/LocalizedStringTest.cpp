// SPDX-License-Identifier: MIT
// The model-specific table over the default one, and how a PPD names it.
#include "LocalizationTestSupport.h"

#include "localization/BasicPdeView.h"
#include "localization/LocalizedString.h"

#include <gtest/gtest.h>

namespace {

using namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;

struct LookupRow {
    const char *name;
    QString key;
    std::optional<QString> value;
    std::optional<QString> table;
    QString expected;
};

void PrintTo(const LookupRow &row, std::ostream *out)
{
    *out << row.name;
}

class LookupOrder : public testing::TestWithParam<LookupRow>
{
protected:
    // "ja" is preferred and "en" the development region: a table is searched
    // in both before the next table is.
    loctest::PreferredLanguagesOverride m_languages{{u"ja"_s}};
    loctest::TestBundle m_files;
};

TEST_P(LookupOrder, GivesTheExpectedText)
{
    const LookupRow &row = GetParam();
    const pde::Bundle *bundle = m_files.open();
    ASSERT_NE(bundle, nullptr);
    EXPECT_EQ(nvktraLocalizedStringForKey(bundle, row.key, row.value, row.table), row.expected);
}

const QString kModel = u"Localizable2"_s;

INSTANTIATE_TEST_SUITE_P(
    Tables, LookupOrder,
    testing::Values(
        LookupRow{"ModelTableWins", u"Both"_s, {}, kModel, u"機種の両方"_s},
        LookupRow{"DefaultTableFillsGaps", u"DefaultOnly"_s, {}, kModel, u"既定のみ"_s},
        LookupRow{"NeitherGivesKey", u"Nowhere"_s, {}, kModel, u"Nowhere"_s},
        LookupRow{"TranslationSpelledLikeKeyIsMissing", u"SameAsKey"_s, {}, kModel, u"既定の同綴り"_s},
        LookupRow{"KeyComparisonIsCaseSensitive", u"Tray"_s, {}, kModel, u"TRAY"_s},
        LookupRow{"ModelTableInDevelopmentLanguageWins", u"ModelInEnglish"_s, {}, kModel, u"Model in English"_s},
        LookupRow{"MissingTableFallsBack", u"Both"_s, {}, u"Localizable9"_s, u"既定の両方"_s},
        LookupRow{"NoTableReadsOnlyDefault", u"ModelOnly"_s, {}, std::nullopt, u"ModelOnly"_s},
        LookupRow{"FallbackKeepsValue", u"SpelledLikeKeyOnly"_s, u"Fallback"_s, kModel, u"Fallback"_s},
        LookupRow{"ValueStopsFallback", u"DefaultOnly"_s, u"Fallback"_s, kModel, u"Fallback"_s},
        LookupRow{"EmptyValueActsAsNone", u"DefaultOnly"_s, QString(), kModel, u"既定のみ"_s}),
    [](const testing::TestParamInfo<LookupRow> &info) { return std::string(info.param.name); });

TEST(LocalizedString, NullBundleGivesNothing)
{
    EXPECT_EQ(nvktraLocalizedStringForKey(nullptr, u"Both"_s, std::nullopt, kModel), std::nullopt);
}

TEST(TableName, OnlyAPpdThatNamesATableReplacesTheViewsTable)
{
    struct Step {
        const char *ppd; // null: no PPD
        std::optional<QString> fromPpd, ofView;
    };
    // Each step starts from the table that the steps before it left the view.
    const Step steps[] = {
        {"localization-plain.ppd", std::nullopt, std::nullopt},
        {"localization-options.ppd", u"Localizable2"_s, u"Localizable2"_s},
        {"localization-plain.ppd", std::nullopt, u"Localizable2"_s},
        {nullptr, std::nullopt, u"Localizable2"_s},
        {"localization-model-code.ppd", u"LocalizableLX-9"_s, u"LocalizableLX-9"_s},
    };
    BasicPdeView view;
    std::vector<loctest::Ppd> ppds; // the view borrows each PPD it is given
    for (const Step &step : steps) {
        ppds.push_back(step.ppd != nullptr ? loctest::openPpd(step.ppd) : nullptr);
        ASSERT_EQ(ppds.back() == nullptr, step.ppd == nullptr);
        const char *name = step.ppd != nullptr ? step.ppd : "no PPD";
        EXPECT_EQ(localizedTableNameForPPD(ppds.back().get()), step.fromPpd) << name;
        view.setPPD(ppds.back().get());
        EXPECT_EQ(view.localizedFileName(), step.ofView) << name;
    }
}

} // namespace
