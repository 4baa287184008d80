// SPDX-License-Identifier: MIT
// The print-settings record as a host sees it: values typed into the real
// controls, saved, restored from hostile entries, refused saves.
#include "HostHarness.h"

#include "panel/PanelClasses.h"
#include "platform/LoginName.h"
#include "plugin/VirtualMailboxPdeInterface.h"
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

TEST(Record, HostileEntriesAreReadSafely)
{
    const QString login = jt::CopyLoginName().value_or(QString()).left(8);
    const struct {
        const char *suffix;
        QString stored;
        QString record; // what the next save writes
    } rows[] = {
        {"PrintType", u"99999999999"_s, u"201|1|u||2|"_s}, // read as the largest int: no such choice
        {"PrintType", u" +3"_s, u"201|3|u||2|"_s},
        {"PrintTypeUserName", u"/97//98"_s, u"201|1|a||2|"_s}, // an empty escape entry ends the text
        {"PrintTypeUserName", u"/-1"_s, u"201|1|"_s + login + u"||2|"_s}, // not UTF-8: the login name stays
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

// Without print settings there is nothing to save into: refused, silently.
TEST(Record, WithoutPrintSettingsASaveIsRefusedSilently)
{
    Recorder recorder;
    Callback callback("plugin-allow-null-True.ppd");
    const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, u"4|old||1|"_s);
    callback.hasSettings = false;
    EXPECT_FALSE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr));
    EXPECT_TRUE(recorder.alerts.isEmpty());
}

// In each of the four printer encodings, what the panel shows, the summary
// and the record agree: the yen sign is stored as the byte the printer prints
// for it, a character the encoding lacks cannot be typed, a restored one
// refuses the save while its field applies and is stored empty while it does
// not, and a restored value outside the pop-up's choices is its default.
TEST(Record, ViewSummaryAndRecordAgreeInEveryPrinterEncoding)
{
    const char *const sjis = "plugin-shift-jis-default.ppd";
    const char *const utf8 = "plugin-allow-null-True.ppd";
    const char *const latin1 = "plugin-latin1.ppd";
    const char *const cp1252 = "plugin-windows-latin1.ppd";
    const QString userAlert = u"The user ID holds a character this printer cannot store, or is too long for it. "
                              u"Enter the user ID again.|OK|"_s;
    const QString nameAlert = u"The document name holds a character this printer cannot store, or is too long for "
                              u"it. Enter the document name again.|OK|"_s;
    const QString yen = u"Job Type: Sample Print|User ID: taro|Document Name: Enter a Name|Entered Name: Price¥100"_s;
    const QString held = u"Job Type: Sample Print|User ID: taro|Document Name: Enter a Name|Entered Name: r"_s;
    const QString none = u"Job Type: None"_s;
    const QString long300 = QString(300, u'a');
    const struct {
        const char *rule, *ppd;
        QString restored; // print type to document name, as restoredPanel takes them
        Entry typed;
        QString shown, record, summary; // for a refused save: the alert, and no summary
    } rows[] = {
        {"yen sign", sjis, u"3|taro||2|"_s, {.documentName = u"Price¥100"_s}, u"2|1|user,name"_s,
         u"201|3|taro||2|/80/114/105/99/101/92/49/48/48"_s, yen},
        {"yen sign", utf8, u"3|taro||2|"_s, {.documentName = u"Price¥100"_s}, u"2|1|user,name"_s,
         u"201|3|taro||2|Price¥100"_s, yen},
        {"yen sign", latin1, u"3|taro||2|"_s, {.documentName = u"Price¥100"_s}, u"2|1|user,name"_s,
         u"201|3|taro||2|Price¥100"_s, yen},
        {"yen sign", cp1252, u"3|taro||2|"_s, {.documentName = u"Price¥100"_s}, u"2|1|user,name"_s,
         u"201|3|taro||2|Price¥100"_s, yen},
        {"typed character", sjis, u"3|taro||1|"_s, {.userName = u"aµb"_s}, u"2|0|user"_s, u"201|3|ab||1|"_s,
         u"Job Type: Sample Print|User ID: ab|Document Name: Automatic"_s},
        {"typed character", utf8, u"3|taro||1|"_s, {.userName = u"aµb"_s}, u"2|0|user"_s, u"201|3|aµb||1|"_s,
         u"Job Type: Sample Print|User ID: aµb|Document Name: Automatic"_s},
        {"typed character", latin1, u"3|taro||1|"_s, {.userName = u"aµb"_s}, u"2|0|user"_s, u"201|3|aµb||1|"_s,
         u"Job Type: Sample Print|User ID: aµb|Document Name: Automatic"_s},
        {"typed character", cp1252, u"3|taro||1|"_s, {.userName = u"aµb"_s}, u"2|0|user"_s, u"201|3|aµb||1|"_s,
         u"Job Type: Sample Print|User ID: aµb|Document Name: Automatic"_s},
        {"restored text that applies", sjis, u"3|aµ||2|"_s, {}, u"2|1|user,name"_s, userAlert, {}},
        {"restored text that applies", utf8, u"3|taro||2|"_s + long300, {}, u"2|1|user,name"_s, nameAlert, {}},
        {"restored text that applies", latin1, u"3|a€||2|"_s, {}, u"2|1|user,name"_s, userAlert, {}},
        {"restored text that applies", cp1252, u"3|aő||2|"_s, {}, u"2|1|user,name"_s, userAlert, {}},
        {"restored text that does not apply", sjis, u"1|aµ||2|"_s, {}, u"0|1|"_s, u"201|1|||2|"_s, none},
        {"restored text that does not apply", utf8, u"1|"_s + long300 + u"||2|"_s, {}, u"0|1|"_s, u"201|1|||2|"_s, none},
        {"restored text that does not apply", latin1, u"3|taro||1|a€"_s, {}, u"2|0|user"_s, u"201|3|taro||1|"_s,
         u"Job Type: Sample Print|User ID: taro|Document Name: Automatic"_s},
        {"restored text that does not apply", cp1252, u"1|aő||2|"_s, {}, u"0|1|"_s, u"201|1|||2|"_s, none},
        {"job type outside the choices", sjis, u"9|taro||2|r"_s, {}, u"0|1|"_s, u"201|1|taro||2|r"_s, none},
        {"job type outside the choices", utf8, u"0|taro||2|r"_s, {}, u"0|1|"_s, u"201|1|taro||2|r"_s, none},
        {"job type outside the choices", latin1, u"abc|taro||2|r"_s, {}, u"0|1|"_s, u"201|1|taro||2|r"_s, none},
        {"job type outside the choices", cp1252, u"-5|taro||2|r"_s, {}, u"0|1|"_s, u"201|1|taro||2|r"_s, none},
        {"name type outside the choices", sjis, u"3|taro||3|r"_s, {}, u"2|1|user,name"_s, u"201|3|taro||2|r"_s, held},
        {"name type outside the choices", utf8, u"3|taro||0|r"_s, {}, u"2|1|user,name"_s, u"201|3|taro||2|r"_s, held},
        {"name type outside the choices", latin1, u"3|taro||x|r"_s, {}, u"2|1|user,name"_s, u"201|3|taro||2|r"_s, held},
        {"name type outside the choices", cp1252, u"3|taro||99|r"_s, {}, u"2|1|user,name"_s, u"201|3|taro||2|r"_s,
         held},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.rule) + ", " + row.ppd);
        Recorder recorder;
        Callback callback(row.ppd);
        const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, row.restored);
        ASSERT_NE(panel, nullptr);
        ASSERT_NE(panel->panelView(), nullptr);
        panel->willShow();
        enter(panel->panelView(), row.typed);
        EXPECT_EQ(shownState(panel->panelView()), row.shown);
        const QString before = record(callback.settings);
        const bool refused = row.summary.isEmpty();
        EXPECT_EQ(panel->saveValuesAndReturnError(nullptr), !refused);
        EXPECT_EQ(recorder.alerts, refused ? QStringList{row.record} : QStringList());
        EXPECT_EQ(record(callback.settings), refused ? before : row.record);
        if (!refused) {
            EXPECT_EQ(summaryLines(*panel), row.summary);
        }
    }
}

std::optional<QString> g_login;

// With no user ID stored, the field starts with the login name as far as the
// field would take it typed, and the record carries it. The panel is made
// directly here, so that the login name can be fixed.
TEST(Record, WithoutAStoredUserIdTheLoginNameIsTheUserId)
{
    const BundleCopy copy(u"org.example.loginname.JobType"_s);
    pde::Bundle *bundle = pde::Bundle::open(copy.path);
    ASSERT_NE(bundle, nullptr);
    jt::registerPanelClasses(bundle->classes());
    const jt::LoginNameReader previous = jt::setLoginNameReader([] { return g_login; });
    const struct { std::optional<QString> login; QString userId; } rows[] = {
        {u"taro"_s, u"taro"_s},
        {u"yamada.taro"_s, u"yamada.t"_s}, // the 8 characters the field takes
        {u"ta\u7530"_s, QString()},         // a character the field refuses
        {u"a\u00b5"_s, QString()},          // one the printer's encoding (Shift-JIS) cannot store
        {std::nullopt, QString()},
    };
    for (const auto &row : rows) {
        g_login = row.login;
        Callback callback("plugin-shift-jis-default.ppd");
        jt::VirtualMailboxPdeInterface panel(&callback, bundle);
        panel.restoreValuesAndReturnError(nullptr);
        ASSERT_NE(panel.panelView(), nullptr);
        panel.willShow();
        EXPECT_EQ(panel.panelView()->findChild<QLineEdit *>(u"userNameTextField"_s)->text(), row.userId);
        enter(panel.panelView(), {.jobType = 0});
        ASSERT_TRUE(panel.saveValuesAndReturnError(nullptr));
        EXPECT_EQ(callback.settings.value(recordKey("PrintTypeUserName")), QVariant(row.userId));
    }
    jt::setLoginNameReader(previous);
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
