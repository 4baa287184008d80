// SPDX-License-Identifier: MIT
// The print-settings record as a host sees it: values typed into the real
// controls, saved, restored from hostile entries, refused saves.
#include "HostHarness.h"

#include "text/PasswordProtection.h"
#include "text/PrinterLanguageEncoding.h"

#include <gtest/gtest.h>

namespace {

using namespace hosttest;
namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

const char *const kSuffixes[] = {"SecureVersion", "PrintType", "PrintTypeUserName",
                                 "PrintTypePassword", "DocumentNameType", "DocumentName"};

QStringList recordKeys()
{
    QStringList keys;
    for (const char *suffix : kSuffixes)
        keys.append(recordKey(suffix));
    return keys;
}

QStringList recordValues(const pde::PrintSettings &settings)
{
    QStringList values;
    for (const char *suffix : kSuffixes)
        values.append(settings.value(recordKey(suffix)).value_or(QVariant(QStringLiteral("<absent>"))).toString());
    return values;
}

QString protectedUtf8(const QString &password)
{
    return jt::CreateEncryptedString(password, jt::StringEncoding::UTF8).value_or(QString());
}

struct SaveRow {
    const char *name;
    Entry entry;
    QStringList record;               // the six values in order
    std::optional<int> finalJobType = std::nullopt; // chosen after the fields were filled
};

TEST(Record, SavedInOrderForEveryTypeAndField)
{
    const SaveRow rows[] = {
        {"public, user taro, automatic name", {3, QStringLiteral("taro"), std::nullopt, 0, std::nullopt},
         {QStringLiteral("201"), QStringLiteral("4"), QStringLiteral("taro"), QString(), QStringLiteral("1"), QString()}},
        {"secure, password, entered name with a comma",
         {1, QStringLiteral("ab"), QStringLiteral("123456"), 1, QStringLiteral("a,b")},
         {QStringLiteral("201"), QStringLiteral("2"), QStringLiteral("ab"), protectedUtf8(QStringLiteral("123456")),
          QStringLiteral("2"), QStringLiteral("/97/44/98")}},
        {"sample, user with a slash", {2, QStringLiteral("x/y"), std::nullopt, 1, QStringLiteral("report")},
         {QStringLiteral("201"), QStringLiteral("3"), QStringLiteral("/120/47/121"), QString(),
          QStringLiteral("2"), QStringLiteral("report")}},
        {"none still stores the texts typed before", {3, QStringLiteral("taro"), std::nullopt, 1, QStringLiteral("n")},
         {QStringLiteral("201"), QStringLiteral("1"), QStringLiteral("taro"), QString(), QStringLiteral("2"),
          QStringLiteral("n")},
         0},
        {"a non-ASCII user ID with an apostrophe", {3, QStringLiteral(u"\u00e9'"), std::nullopt, 0, std::nullopt},
         {QStringLiteral("201"), QStringLiteral("4"), QStringLiteral("/-61/-87/39"), QString(), QStringLiteral("1"),
          QString()}},
    };
    pde::PDEPlugIn *factory = loadFactory();
    ASSERT_NE(factory, nullptr);
    const Ppd ppd = openFixturePpd("plugin-allow-null-True.ppd"); // storage, UTF-8
    for (const SaveRow &row : rows) {
        Callback callback;
        callback.ppd = ppd.get();
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
        ASSERT_NE(panel, nullptr);
        ASSERT_TRUE(panel->restoreValuesAndReturnError(nullptr));
        QWidget *view = panel->panelView();
        ASSERT_NE(view, nullptr);
        panel->willShow();
        enter(view, row.entry);
        if (row.finalJobType)
            enter(view, {row.finalJobType, std::nullopt, std::nullopt, std::nullopt, std::nullopt});
        ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr)) << row.name;
        EXPECT_EQ(callback.settings.keys(), recordKeys()) << row.name;
        EXPECT_EQ(recordValues(callback.settings), row.record) << row.name;
    }
}

struct RestoreRow {
    const char *name;
    QList<std::pair<const char *, QString>> stored;
    QStringList record; // what the next save writes back
};

TEST(Record, HostileEntriesRestoreByTheRulesAndAreWrittenBackUnchecked)
{
    const QString longEscape = QStringLiteral("/97").repeated(100);
    const RestoreRow rows[] = {
        {"nothing stored", {}, {QStringLiteral("201"), QStringLiteral("1"), QString(), QString(), QStringLiteral("2"), QString()}},
        {"print type 0", {{"PrintType", QStringLiteral("0")}, {"PrintTypeUserName", QStringLiteral("u")}},
         {QStringLiteral("201"), QStringLiteral("0"), QStringLiteral("u"), QString(), QStringLiteral("2"), QString()}},
        {"print type text", {{"PrintType", QStringLiteral("abc")}, {"PrintTypeUserName", QStringLiteral("u")}},
         {QStringLiteral("201"), QStringLiteral("0"), QStringLiteral("u"), QString(), QStringLiteral("2"), QString()}},
        {"print type 9", {{"PrintType", QStringLiteral("9")}, {"PrintTypeUserName", QStringLiteral("u")}},
         {QStringLiteral("201"), QStringLiteral("9"), QStringLiteral("u"), QString(), QStringLiteral("2"), QString()}},
        {"space and sign", {{"PrintType", QStringLiteral(" +3")}, {"PrintTypeUserName", QStringLiteral("u")}},
         {QStringLiteral("201"), QStringLiteral("3"), QStringLiteral("u"), QString(), QStringLiteral("2"), QString()}},
        {"huge number", {{"PrintType", QStringLiteral("99999999999")}, {"PrintTypeUserName", QStringLiteral("u")}},
         {QStringLiteral("201"), QStringLiteral("2147483647"), QStringLiteral("u"), QString(), QStringLiteral("2"), QString()}},
        {"empty escape entry ends the text", {{"PrintTypeUserName", QStringLiteral("/97//98")}},
         {QStringLiteral("201"), QStringLiteral("1"), QStringLiteral("a"), QString(), QStringLiteral("2"), QString()}},
        {"escape that is not UTF-8 keeps the value", {{"PrintTypeUserName", QStringLiteral("/-1")}},
         {QStringLiteral("201"), QStringLiteral("1"), QString(), QString(), QStringLiteral("2"), QString()}},
        {"escape longer than 255 bytes keeps the value", {{"DocumentName", longEscape}},
         {QStringLiteral("201"), QStringLiteral("1"), QString(), QString(), QStringLiteral("2"), QString()}},
        {"password that is not base64 stays as it is", {{"PrintTypePassword", QStringLiteral("not base64!")}},
         {QStringLiteral("201"), QStringLiteral("1"), QString(), QStringLiteral("not base64!"), QStringLiteral("2"), QString()}},
        {"document name type 0", {{"DocumentNameType", QStringLiteral("0")}},
         {QStringLiteral("201"), QStringLiteral("1"), QString(), QString(), QStringLiteral("0"), QString()}},
    };
    pde::PDEPlugIn *factory = loadFactory();
    ASSERT_NE(factory, nullptr);
    const Ppd ppd = openFixturePpd("plugin-allow-null-True.ppd");
    for (const RestoreRow &row : rows) {
        Callback callback;
        callback.ppd = ppd.get();
        for (const auto &[suffix, value] : row.stored)
            callback.settings.setValue(recordKey(suffix), value);
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
        testing::internal::CaptureStderr();
        EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr)) << row.name;
        testing::internal::GetCapturedStderr();
        callback.settings = pde::PrintSettings();
        EXPECT_TRUE(panel->saveValuesAndReturnError(nullptr)) << row.name;
        EXPECT_EQ(recordValues(callback.settings), row.record) << row.name;
    }
}

TEST(Record, ARefusedSaveLeavesEveryEntryUntouched)
{
    Recorder recorder;
    pde::PDEPlugIn *factory = loadFactory();
    const Ppd ppd = openFixturePpd("plugin-allow-null-True.ppd");
    Callback callback;
    callback.ppd = ppd.get();
    const QStringList earlier{QStringLiteral("201"), QStringLiteral("4"), QStringLiteral("old"), QString(),
                              QStringLiteral("1"), QString()};
    for (int i = 0; i < 6; ++i)
        callback.settings.setValue(recordKey(kSuffixes[i]), earlier[i]);
    const pde::PrintSettings before = callback.settings;

    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    panel->restoreValuesAndReturnError(nullptr);
    enter(panel->panelView(), {1, QString(), std::nullopt, std::nullopt, std::nullopt});
    EXPECT_FALSE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_EQ(callback.settings, before);
    ASSERT_EQ(recorder.alerts.size(), 1);
}

TEST(Record, AUserIdThePrinterCannotTakeLeavesTheEarlierEntry)
{
    pde::PDEPlugIn *factory = loadFactory();
    const Ppd ppd = openFixturePpd("plugin-latin1.ppd");
    Callback callback;
    callback.ppd = ppd.get();
    callback.settings.setValue(recordKey("PrintType"), QStringLiteral("4"));
    callback.settings.setValue(recordKey("PrintTypeUserName"), QStringLiteral(u"a\u20ac")); // the euro sign is not Latin-1
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    panel->restoreValuesAndReturnError(nullptr);

    callback.settings = pde::PrintSettings();
    callback.settings.setValue(recordKey("PrintTypeUserName"), QStringLiteral("earlier"));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CopyEncodedString : CFStringGetCString failed.\n");
    EXPECT_EQ(recordValues(callback.settings),
              (QStringList{QStringLiteral("201"), QStringLiteral("4"), QStringLiteral("earlier"), QString(),
                           QStringLiteral("2"), QString()}));
}

TEST(Record, WithoutAPPDTextsUseTheDefaultPrinterLanguageAndThePasswordUtf8)
{
    pde::PDEPlugIn *factory = loadFactory();
    const QString clear = QStringLiteral(u"\u00e912");
    const QString protectedForm = protectedUtf8(clear);
    ASSERT_NE(protectedForm, jt::CreateEncryptedString(clear, jt::StringEncoding::ShiftJIS_X0213));
    Callback callback; // no PPD: no storage, print type 0
    callback.settings.setValue(recordKey("PrintTypeUserName"), QStringLiteral(u"\u00e9,a"));
    callback.settings.setValue(recordKey("PrintTypePassword"), protectedForm);
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    panel->restoreValuesAndReturnError(nullptr);
    ASSERT_NE(panel->panelView(), nullptr);
    panel->willShow(); // the controller unprotects with UTF-8 and protects again on save
    ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_EQ(callback.settings.value(recordKey("PrintTypeUserName")),
              QVariant(*jt::CopyEncodedString(QStringLiteral(u"\u00e9,a"), jt::StringEncoding::ShiftJIS_X0213)));
    EXPECT_EQ(callback.settings.value(recordKey("PrintTypePassword")), QVariant(protectedForm));
}

TEST(Record, RestoreShowsTheValuesInTheControls)
{
    pde::PDEPlugIn *factory = loadFactory();
    const Ppd ppd = openFixturePpd("plugin-allow-null-True.ppd");
    Callback callback;
    callback.ppd = ppd.get();
    callback.settings.setValue(recordKey("PrintType"), QStringLiteral("2"));
    callback.settings.setValue(recordKey("PrintTypeUserName"), QStringLiteral("/97/44/98"));
    callback.settings.setValue(recordKey("PrintTypePassword"), protectedUtf8(QStringLiteral("2468")));
    callback.settings.setValue(recordKey("DocumentName"), QStringLiteral("memo"));
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    QWidget *view = panel->panelView();
    ASSERT_NE(view, nullptr);
    panel->restoreValuesAndReturnError(nullptr);
    EXPECT_EQ(fieldText(view, "userNameTextField"), QStringLiteral("a,b"));
    EXPECT_EQ(fieldText(view, "passwordTextField"), QStringLiteral("2468"));
    EXPECT_EQ(fieldText(view, "docNameTextField"), QStringLiteral("memo"));
}

TEST(Record, WithoutPrintSettingsSaveIsRefusedSilentlyAndRestoreSucceeds)
{
    Recorder recorder;
    pde::PDEPlugIn *factory = loadFactory();
    Callback callback;
    callback.hasSettings = false;
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    EXPECT_TRUE(panel->restoreValuesAndReturnError(nullptr));
    EXPECT_FALSE(panel->saveValuesAndReturnError(nullptr));
    EXPECT_TRUE(recorder.alerts.isEmpty());
}

} // namespace
