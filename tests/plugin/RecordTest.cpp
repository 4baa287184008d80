// SPDX-License-Identifier: MIT
// The print-settings record as a host sees it: values typed into the real
// controls, saved, restored from hostile entries, refused saves.
#include "HostHarness.h"

#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

#include <gtest/gtest.h>

namespace {

using namespace hosttest;

TEST(Record, SavedInOrderWithExactValues)
{
    const struct {
        const char *name;
        Entry entry;
        QString record;
        std::optional<int> finalJobType = {}; // chosen after the fields were filled
    } rows[] = {
        {"secure, password, entered name with a comma", {1, u"ab"_s, u"123456"_s, 1, u"a,b"_s},
         u"201|2|ab|"_s + protectedUtf8(u"123456"_s) + u"|2|/97/44/98"_s},
        {"sample, non-ASCII user ID with a slash, automatic name", {2, u"\u00e9/"_s, {}, 0, {}}, u"201|3|/-61/-87/47||1|"_s},
        {"second secure kind, chosen in the pop-up", {4, u"ab"_s, u"12"_s, 1, u"n"_s},
         u"201|5|ab|"_s + protectedUtf8(u"12"_s) + u"|2|n"_s},
        {"none still stores the texts typed before", {3, u"taro"_s, {}, 1, u"n"_s}, u"201|1|taro||2|n"_s, 0},
    };
    QStringList keys;
    for (const char *suffix : kRecordSuffixes)
        keys.append(recordKey(suffix));
    for (const auto &row : rows) {
        Callback callback("plugin-allow-null-True.ppd"); // storage, UTF-8
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
        ASSERT_NE(panel, nullptr);
        ASSERT_TRUE(panel->restoreValuesAndReturnError(nullptr));
        ASSERT_NE(panel->panelView(), nullptr);
        panel->willShow();
        enter(panel->panelView(), row.entry);
        if (row.finalJobType)
            enter(panel->panelView(), {row.finalJobType, {}, {}, {}, {}});
        ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr)) << row.name;
        EXPECT_EQ(callback.settings.keys(), keys) << row.name;
        EXPECT_EQ(record(callback.settings), row.record) << row.name;
    }
}

TEST(Record, HostileEntriesAreWrittenBackUnchecked)
{
    const struct {
        const char *suffix;
        QString stored;
        QString record; // what the next save writes
    } rows[] = {
        {"PrintType", u"0"_s, u"201|0|u||2|"_s},
        {"PrintType", u"abc"_s, u"201|0|u||2|"_s},
        {"PrintType", u"99999999999"_s, u"201|2147483647|u||2|"_s},
        {"PrintType", u" +3"_s, u"201|3|u||2|"_s},
        {"PrintTypeUserName", u"/97//98"_s, u"201|1|a||2|"_s}, // an empty escape entry ends the text
        {"PrintTypeUserName", u"/-1"_s, u"201|1|||2|"_s},      // not UTF-8: the earlier value stays
        {"PrintTypePassword", u"not base64!"_s, u"201|1|u|not base64!|2|"_s},
    };
    for (const auto &row : rows) {
        Callback callback("plugin-allow-null-True.ppd");
        callback.settings.setValue(recordKey("PrintTypeUserName"), u"u"_s); // held types need one
        callback.settings.setValue(recordKey(row.suffix), row.stored);
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
        ASSERT_NE(panel, nullptr);
        testing::internal::CaptureStderr();
        EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr)) << qPrintable(row.stored);
        testing::internal::GetCapturedStderr();
        callback.settings = pde::PrintSettings();
        EXPECT_TRUE(panel->saveValuesAndReturnError(nullptr)) << qPrintable(row.stored);
        EXPECT_EQ(record(callback.settings), row.record) << qPrintable(row.stored);
    }
}

TEST(Record, ARefusedSaveLeavesEveryEntryUntouched)
{
    Recorder recorder;
    Callback callback("plugin-allow-null-True.ppd");
    const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, u"4|old||1|"_s);
    const pde::PrintSettings before = callback.settings;
    enter(panel->panelView(), {1, QString(), {}, {}, {}});
    EXPECT_FALSE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_EQ(callback.settings, before);
    EXPECT_EQ(recorder.alerts.size(), 1);

    // Without print settings there is nothing to save into: refused, silently.
    callback.hasSettings = false;
    EXPECT_FALSE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr));
    EXPECT_EQ(recorder.alerts.size(), 1);
}

TEST(Record, AUserIdThePrinterCannotTakeLeavesTheEarlierEntry)
{
    Callback callback("plugin-latin1.ppd");
    const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, u"4|a\u20ac"_s); // the euro sign is not Latin-1
    callback.settings = pde::PrintSettings();
    callback.settings.setValue(recordKey("PrintTypeUserName"), u"earlier"_s);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CopyEncodedString : CFStringGetCString failed.\n");
    EXPECT_EQ(record(callback.settings), u"201|4|earlier||2|"_s);
}

TEST(Record, WithoutAPPDTextsUseTheDefaultPrinterLanguageAndThePasswordUtf8)
{
    const QString clear = u"\u00e912"_s;
    const QString protectedForm = protectedUtf8(clear);
    ASSERT_NE(protectedForm, jt::CreateEncryptedString(clear, jt::StringEncoding::ShiftJIS_X0213));
    Callback callback; // no PPD: no storage, print type 0
    callback.settings.setValue(recordKey("PrintTypeUserName"), u"\u00e9,a"_s);
    callback.settings.setValue(recordKey("PrintTypePassword"), protectedForm);
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
    panel->restoreValuesAndReturnError(nullptr);
    ASSERT_NE(panel->panelView(), nullptr);
    panel->willShow(); // the controller unprotects with UTF-8 and protects again on save
    ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_EQ(callback.settings.value(recordKey("PrintTypeUserName")),
              QVariant(*jt::CopyEncodedString(u"\u00e9,a"_s, jt::StringEncoding::ShiftJIS_X0213)));
    EXPECT_EQ(callback.settings.value(recordKey("PrintTypePassword")), QVariant(protectedForm));
}

} // namespace
