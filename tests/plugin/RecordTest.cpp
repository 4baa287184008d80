// SPDX-License-Identifier: MIT
// The print-settings record as a host sees it: values restored from the job's
// print settings and entered in the real controls, what a save refuses (and
// the alert that says why), what it writes, and the summary lines.
#include "HostHarness.h"

#include "panel/PanelClasses.h"
#include "platform/LoginName.h"
#include "plugin/VirtualMailboxPdeInterface.h"

#include <gtest/gtest.h>

namespace {

using namespace hosttest;

const QString kUserAlert = u"Enter a user ID. The printer holds the job under it until you release it there.|OK|"_s;
const QString kPasswordAlert =
    u"Enter a password (digits only). You will type it at the printer to release a secure job.|OK|"_s;
const QString kUserEncodingAlert = u"The user ID holds a character this printer cannot store, or is too long for it. "
                                   u"Enter the user ID again.|OK|"_s;
const QString kNameEncodingAlert = u"The document name holds a character this printer cannot store, or is too long "
                                   u"for it. Enter the document name again.|OK|"_s;

// Saves into emptied print settings: the record written, in the order of its
// keys, or the one alert of a refused save, which writes nothing.
QString saved(pde::PDEPanel &panel, const Callback &callback, const Recorder &recorder)
{
    QStringList keys;
    for (const char *suffix : kRecordSuffixes)
        keys.append(recordKey(suffix));
    const bool accepted = panel.saveValuesAndReturnError(nullptr);
    EXPECT_EQ(callback.settings.keys(), accepted ? keys : QStringList());
    EXPECT_EQ(recorder.alerts.size(), accepted ? 0 : 1);
    return accepted ? record(callback.settings) : recorder.alerts.join(u'\n');
}

// In each of the four printer encodings, what the panel shows (the pop-ups'
// items, the controls that apply and their captions' colours), the summary
// and the record agree: the yen sign is stored as the byte the printer prints
// for it, a character the encoding lacks cannot be typed, a restored one
// refuses the save while its field applies and is stored empty while it does
// not, a restored value outside the pop-up's choices is its default, and the
// defaults button resets every value.
TEST(Record, ViewSummaryAndRecordAgreeInEveryPrinterEncoding)
{
    const char *const sjis = "plugin-shift-jis-default.ppd";
    const char *const utf8 = "plugin-allow-null-True.ppd";
    const char *const latin1 = "plugin-latin1.ppd";
    const char *const cp1252 = "plugin-windows-latin1.ppd";
    const QString sample = u"Job Type: Sample Print|User ID: taro|Document Name: "_s;
    const QString none = u"Job Type: None"_s;
    const QString long300 = QString(300, u'a');
    const struct {
        const char *rule, *ppd;
        QString restored; // as restoredPanel takes them
        Entry typed;
        QString shown, result; // the record, or the alert of a refused save
        QString summary = {}; // not compared when empty
    } rows[] = {
        {"secure, entered name with a comma", utf8, {}, {1, u"ab"_s, u"123456"_s, 1, u"a,b"_s},
         u"1|1|user,password,name"_s, u"201|2|ab|{123456}|2|/97/44/98"_s,
         u"Job Type: Secure Print|User ID: ab|Password: ******|Document Name: Enter a Name|Entered Name: a,b"_s},
        {"second secure kind, automatic name", utf8, {}, {4, u"ab"_s, u"12"_s, 0, {}}, u"4|0|user,password"_s,
         u"201|5|ab|{12}|1|"_s, u"Job Type: Secure Print|User ID: ab|Password: **|Document Name: Automatic"_s},
        {"none keeps the texts", utf8, u"4|taro||2|n"_s, {.jobType = 0}, u"0|(1)|"_s, u"201|1|taro||2|n"_s, none},
        {"defaults button", utf8, u"4|taro|{12}|0|n"_s, {.defaults = true}, u"0|(1)|"_s, u"201|1|||2|"_s, none},
        {"yen sign", sjis, u"3|taro||2|"_s, {.documentName = u"Price¥100"_s}, u"2|1|user,name"_s,
         u"201|3|taro||2|/80/114/105/99/101/92/49/48/48"_s, sample + u"Enter a Name|Entered Name: Price¥100"_s},
        {"yen sign", latin1, u"3|taro||2|"_s, {.documentName = u"Price¥100"_s}, u"2|1|user,name"_s,
         u"201|3|taro||2|Price¥100"_s, sample + u"Enter a Name|Entered Name: Price¥100"_s},
        {"typed character", sjis, u"3|taro||1|"_s, {.userName = u"aµ/"_s}, u"2|0|user"_s, u"201|3|/97/47||1|"_s,
         u"Job Type: Sample Print|User ID: a/|Document Name: Automatic"_s},
        {"typed character", utf8, u"3|taro||1|"_s, {.userName = u"aµ/"_s}, u"2|0|user"_s,
         u"201|3|/97/-62/-75/47||1|"_s, u"Job Type: Sample Print|User ID: aµ/|Document Name: Automatic"_s},
        {"restored text that applies", sjis, u"3|aµ||2|"_s, {}, u"2|1|user,name"_s, kUserEncodingAlert},
        {"restored text that applies", utf8, u"3|taro||2|"_s + long300, {}, u"2|1|user,name"_s, kNameEncodingAlert},
        {"restored text that applies", latin1, u"3|a€||2|"_s, {}, u"2|1|user,name"_s, kUserEncodingAlert},
        {"restored text that applies", cp1252, u"3|aő||2|"_s, {}, u"2|1|user,name"_s, kUserEncodingAlert},
        {"blank user ID", utf8, u"3||12|2|"_s, {}, u"2|1|user,name"_s, kUserAlert,
         u"Job Type: Sample Print|Document Name: Enter a Name"_s},
        {"restored text that does not apply", sjis, u"1|aµ||2|"_s, {}, u"0|(1)|"_s, u"201|1|||2|"_s, none},
        {"restored text that does not apply", latin1, u"3|taro||1|a€"_s, {}, u"2|0|user"_s, u"201|3|taro||1|"_s,
         sample + u"Automatic"_s},
        {"job type outside the choices", sjis, u"6|taro||2|r"_s, {}, u"0|(1)|"_s, u"201|1|taro||2|r"_s, none},
        {"job type outside the choices", cp1252, u"0|taro||2|r"_s, {}, u"0|(1)|"_s, u"201|1|taro||2|r"_s, none},
        {"name type outside the choices", latin1, u"4|taro||3|r"_s, {}, u"3|1|user,name"_s, u"201|4|taro||2|r"_s,
         u"Job Type: Public Print|User ID: taro|Document Name: Enter a Name|Entered Name: r"_s},
        {"name type outside the choices", utf8, u"3|taro||0|r"_s, {}, u"2|1|user,name"_s,
         u"201|3|taro||2|r"_s, sample + u"Enter a Name|Entered Name: r"_s},
        // Without a PPD: no storage, the texts in the default printer
        // language and the password protected in UTF-8.
        {"no PPD", nullptr, u"1|é,a|{é12}|2|"_s, {}, u"(0)|(1)|"_s, u"201|1|/-123/126/44/97|{é12}|2|"_s, none},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.rule) + ", " + (row.ppd ? row.ppd : "no PPD"));
        Recorder recorder;
        Callback callback(row.ppd);
        const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, row.restored);
        ASSERT_NE(panel, nullptr);
        ASSERT_NE(panel->panelView(), nullptr);
        panel->willShow();
        enter(panel->panelView(), row.typed);
        EXPECT_EQ(shownState(panel->panelView()), row.shown);
        EXPECT_EQ(saved(*panel, callback, recorder), row.result);
        if (!row.summary.isEmpty()) {
            EXPECT_EQ(summaryLines(*panel), row.summary);
        }
    }
}

// A host may save the restored values without ever showing the panel.
TEST(Record, RestoredValuesAreCheckedAndReadSafelyWithoutAView)
{
    const char *const allowNone = "plugin-allow-null-True.ppd";
    const char *const requireOne = "plugin-allow-null-False.ppd";
    const QString login = jt::CopyLoginName().value_or(QString()).left(8);
    const struct {
        const char *name, *ppd;
        QString restored, result;
    } rows[] = {
        {"none needs nothing", requireOne, u"1||"_s, u"201|1|||2|"_s},
        {"blank is spaces and tabs only", requireOne, u"3|  \t|"_s, kUserAlert},
        {"other white space is not blank", requireOne, u"3| \t\u00a0|"_s, u"201|3| \t\u00a0||2|"_s},
        {"False requires a password", requireOne, u"2|ab|"_s, kPasswordAlert},
        {"a password given passes", requireOne, u"2|ab|{1234}"_s, u"201|2|ab|{1234}|2|"_s},
        {"both failing: only the user ID alert", requireOne, u"2||"_s, kUserAlert},
        {"second secure kind, True allows none", allowNone, u"5|x|"_s, u"201|5|x||2|"_s},
        {"second secure kind, true requires one", "plugin-allow-null-lowercase-true.ppd", u"5|x|"_s, kPasswordAlert},
        {"an empty value requires one", "plugin-allow-null-empty.ppd", u"2|x|"_s, kPasswordAlert},
        {"no attribute allows none", "plugin-latin1.ppd", u"2|x|"_s, u"201|2|x||2|"_s},
        {"read as the largest int: no such choice", allowNone, u"99999999999|u"_s, u"201|1|u||2|"_s},
        {"white space and a sign before the number", allowNone, u" +3|u"_s, u"201|3|u||2|"_s},
        {"an empty escape entry ends the text", allowNone, u"1|/97//98"_s, u"201|1|a||2|"_s},
        {"not UTF-8: the login name stays", allowNone, u"1|/-1"_s, u"201|1|"_s + login + u"||2|"_s},
        {"a password not in base64 stays as it is", allowNone, u"1|u|not base64!"_s, u"201|1|u|not base64!|2|"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        Recorder recorder;
        Callback callback(row.ppd);
        const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, row.restored);
        ASSERT_NE(panel, nullptr);
        EXPECT_EQ(saved(*panel, callback, recorder), row.result);
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

} // namespace
