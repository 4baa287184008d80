// SPDX-License-Identifier: MIT
// Print settings: order, locks, the status accessors, and the CUPS option forms.
#include "pdekit/PrintSettings.h"

#include <QDebug>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QVariant &value, std::ostream *out)
{
    QString text;
    QDebug(&text) << value;
    *out << text.toStdString();
}

namespace {

using namespace Qt::StringLiterals;
using pde::PrintSettings;

PrintSettings threeSettings()
{
    PrintSettings settings;
    settings.setValue(u"zeta"_s, u"1"_s);
    settings.setValue(u"alpha"_s, 2, true);
    settings.setValue(u"mid"_s, true);
    return settings;
}

TEST(PrintSettings, SettingAgainKeepsThePositionAndTakesTheNewLock)
{
    PrintSettings settings = threeSettings();
    settings.setValue(u"zeta"_s, u"changed"_s, true);
    settings.setValue(u"alpha"_s, 3);
    EXPECT_EQ(settings.keys(), (QStringList{u"zeta"_s, u"alpha"_s, u"mid"_s}));
    EXPECT_EQ(settings.value(u"zeta"_s), QVariant(u"changed"_s));
    EXPECT_TRUE(settings.isLocked(u"zeta"_s));
    EXPECT_FALSE(settings.isLocked(u"alpha"_s));

    settings.setValue(u"alpha"_s, QVariant());
    EXPECT_EQ(settings.value(u"alpha"_s), std::nullopt);
    settings.setValue(u"alpha"_s, 4);
    EXPECT_EQ(settings.keys(), (QStringList{u"zeta"_s, u"mid"_s, u"alpha"_s}));
}

TEST(PrintSettings, StatusAccessors)
{
    PrintSettings settings = threeSettings();
    std::optional<QVariant> value = QVariant(u"stale"_s);
    EXPECT_EQ(pde::PMPrintSettingsGetValue(&settings, u"absent"_s, &value), pde::kPMKeyNotFound);
    EXPECT_EQ(value, std::nullopt);
    EXPECT_EQ(pde::PMPrintSettingsGetValue(&settings, u"zeta"_s, &value), pde::kPMNoError);
    EXPECT_EQ(value, QVariant(u"1"_s));
    EXPECT_EQ(pde::PMPrintSettingsGetValue(nullptr, u"zeta"_s, &value), pde::kPMInvalidParameter);
    EXPECT_EQ(pde::PMPrintSettingsGetValue(&settings, u"zeta"_s, nullptr), pde::kPMInvalidParameter);

    EXPECT_EQ(pde::PMPrintSettingsSetValue(&settings, u"new"_s, QVariant(5), true), pde::kPMNoError);
    EXPECT_TRUE(settings.isLocked(u"new"_s));
    EXPECT_EQ(pde::PMPrintSettingsSetValue(&settings, u"zeta"_s, std::nullopt, false), pde::kPMNoError);
    EXPECT_EQ(pde::PMPrintSettingsSetValue(nullptr, u"k"_s, QVariant(1), false), pde::kPMInvalidParameter);
    EXPECT_EQ(pde::PMPrintSettingsSetValue(&settings, QString(), QVariant(1), false), pde::kPMInvalidParameter);
    EXPECT_EQ(settings.keys(), (QStringList{u"alpha"_s, u"mid"_s, u"new"_s}));
}

TEST(PrintSettings, ValuesBecomeOptionText)
{
    const struct {
        const char *name;
        QVariant value;
        QString text;
    } rows[] = {{"true", true, u"true"_s},
                {"false", false, u"false"_s},
                {"negative", -3, u"-3"_s},
                {"huge", QVariant::fromValue<qulonglong>(18446744073709551615ull), u"18446744073709551615"_s},
                {"real", 2.5, u"2.5"_s}};
    for (const auto &row : rows) {
        PrintSettings settings;
        settings.setValue(u"k"_s, row.value);
        EXPECT_EQ(settings.toCupsOptions().value(u"k"_s), row.text) << row.name;
    }
}

struct HostileRow {
    std::string name;
    QString value;
};

class PrintSettingsHostile : public testing::TestWithParam<HostileRow> {};

// Neighbours on both sides show a value that leaks into, or swallows, the
// next option; the bytes are compared where the filter reads them.
TEST_P(PrintSettingsHostile, SurvivesBothOptionFormsByteForByte)
{
    const QString &value = GetParam().value;
    PrintSettings settings;
    settings.setValue(u"copies"_s, 2);
    settings.setValue(u"VendorField"_s, value, true);
    settings.setValue(u"media"_s, u"A4"_s);

    const pde::CupsOptions options = settings.toCupsOptions();
    const QByteArray text = settings.toOptionString().toUtf8();
    cups_option_t *parsedOptions = nullptr;
    const int parsedCount = cupsParseOptions(text.constData(), 0, &parsedOptions);
    const pde::CupsOptions parsed(parsedCount, parsedOptions);
    for (const pde::CupsOptions *form : {&options, &parsed}) {
        const char *raw = cupsGetOption("VendorField", form->count(), form->data());
        EXPECT_EQ(form->count(), 3) << text.constData();
        EXPECT_STREQ(raw, value.toUtf8().constData()) << text.constData();
        EXPECT_STREQ(cupsGetOption("media", form->count(), form->data()), "A4") << text.constData();
    }

    for (const PrintSettings &back : {PrintSettings::fromCupsOptions(options.count(), options.data()),
                                      PrintSettings::fromOptionString(QString::fromUtf8(text))}) {
        EXPECT_EQ(back.size(), 3);
        EXPECT_EQ(back.value(u"VendorField"_s), QVariant(value));
        EXPECT_EQ(back.value(u"copies"_s), QVariant(u"2"_s));
        EXPECT_FALSE(back.isLocked(u"VendorField"_s));
    }
}

INSTANTIATE_TEST_SUITE_P(
    PrintSettings, PrintSettingsHostile,
    testing::Values(HostileRow{"Slashes", u"/97/44/98"_s}, HostileRow{"Commas", u"a,b,,c,"_s},
                    HostileRow{"SingleQuotes", u"it's 'quoted'"_s}, HostileRow{"DoubleQuotes", u"say \"hi\""_s},
                    HostileRow{"Backslashes", u"C:\\dir\\"_s}, HostileRow{"BackslashQuote", u"\\'"_s},
                    HostileRow{"Spaces", u"  lead and trail  "_s}, HostileRow{"Empty", QString()},
                    HostileRow{"Braces", u"{a=1 b=2}"_s}, HostileRow{"Equals", u"x=y media=Letter"_s},
                    HostileRow{"Newline", u"line1\nline2\t"_s}, HostileRow{"Japanese", u"議事録"_s}),
    [](const testing::TestParamInfo<HostileRow> &info) { return info.param.name; });

} // namespace
