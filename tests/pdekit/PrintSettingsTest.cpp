// SPDX-License-Identifier: MIT
// Print settings: order, locks, the status accessors, and the CUPS option forms.
#include "TestSupport.h"

#include "pdekit/PrintSettings.h"

namespace {

using namespace Qt::StringLiterals;
using pde::PrintSettings;

TEST(PrintSettings, SettingAgainKeepsThePositionAndTakesTheNewLock)
{
    PrintSettings settings;
    settings.setValue(u"zeta"_s, u"1"_s);
    settings.setValue(u"alpha"_s, 2, true);
    settings.setValue(u"mid"_s, true);
    settings.setValue(u"zeta"_s, u"changed"_s, true);
    settings.setValue(u"alpha"_s, 3);
    EXPECT_EQ(settings.keys(), (QStringList{u"zeta"_s, u"alpha"_s, u"mid"_s}));
    EXPECT_EQ((std::pair{settings.isLocked(u"zeta"_s), settings.isLocked(u"alpha"_s)}), (std::pair{true, false}));

    // An invalid value removes the key, so that setting it again puts it last.
    settings.setValue(u"alpha"_s, QVariant());
    settings.setValue(u"alpha"_s, 4);
    EXPECT_EQ(settings.keys(), (QStringList{u"zeta"_s, u"mid"_s, u"alpha"_s}));

    // Through the status accessors, an absent key leaves no stale value and
    // no value removes the key.
    std::optional<QVariant> value = QVariant(u"stale"_s);
    EXPECT_EQ(pde::PMPrintSettingsGetValue(&settings, u"absent"_s, &value), pde::kPMKeyNotFound);
    EXPECT_EQ(value, std::nullopt);
    EXPECT_EQ(pde::PMPrintSettingsSetValue(&settings, u"zeta"_s, std::nullopt, false), pde::kPMNoError);
    EXPECT_EQ(settings.keys(), (QStringList{u"mid"_s, u"alpha"_s}));
}

// Neighbours on both sides show a value that leaks into, or swallows, the
// next option; the bytes are compared where the filter reads them.
TEST(PrintSettings, HostileValuesSurviveBothOptionFormsByteForByte)
{
    // Commas separate the values of a list option, and stored forms of
    // user texts are slash-separated numbers.
    for (const QString &value : {u"it's \"quoted\""_s, u"C:\\dir\\"_s, u"  x=y media=Letter "_s, QString(),
                                 u"{a=1 b=2}"_s, u"line1\nline2\t"_s, u"議事録"_s, u"/97/44/98"_s, u",a,,b,"_s}) {
        PrintSettings settings;
        settings.setValue(u"copies"_s, 2);
        settings.setValue(u"VendorField"_s, value, true);
        settings.setValue(u"collate"_s, true);

        const pde::CupsOptions options = settings.toCupsOptions();
        const QByteArray text = settings.toOptionString().toUtf8();
        cups_option_t *parsedOptions = nullptr;
        const int parsedCount = cupsParseOptions(text.constData(), 0, &parsedOptions);
        const pde::CupsOptions parsed(parsedCount, parsedOptions);
        for (const pde::CupsOptions *form : {&options, &parsed}) {
            EXPECT_EQ(form->count(), 3) << text.constData();
            EXPECT_STREQ(cupsGetOption("VendorField", form->count(), form->data()), value.toUtf8().constData())
                << text.constData();
            EXPECT_STREQ(cupsGetOption("collate", form->count(), form->data()), "true") << text.constData();
        }

        for (const PrintSettings &back : {PrintSettings::fromCupsOptions(options.count(), options.data()),
                                          PrintSettings::fromOptionString(QString::fromUtf8(text))}) {
            EXPECT_EQ(back.size(), 3) << text.constData();
            EXPECT_EQ(back.value(u"VendorField"_s), QVariant(value)) << text.constData();
            EXPECT_EQ(back.value(u"copies"_s), QVariant(u"2"_s));
            EXPECT_FALSE(back.isLocked(u"VendorField"_s));
        }
    }
}

} // namespace
