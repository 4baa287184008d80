// SPDX-License-Identifier: MIT
// What a save refuses (and the alert that says why), and the summary lines,
// for values restored from the job's print settings.
#include "HostHarness.h"

#include "text/PasswordProtection.h"

#include <gtest/gtest.h>

namespace {

using namespace hosttest;
namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

const QString kUserNameMessage =
    QStringLiteral("Enter a user ID. The printer holds the job under it until you release it there.");
const QString kPasswordMessage =
    QStringLiteral("Enter a password (digits only). You will type it at the printer to release a secure job.");

struct ValidationRow {
    const char *name;
    const char *ppd;
    QString printType; // as stored, one higher than the panel's
    QString userName;
    QString password;  // clear; stored protected
    std::optional<QString> alert;
};

TEST(Validation, HeldJobsNeedAUserIdAndSecureOnesAPasswordWhereThePrinterSays)
{
    const ValidationRow rows[] = {
        {"none needs nothing", "plugin-allow-null-False.ppd", QStringLiteral("1"), QString(), QString(), std::nullopt},
        {"sample with a blank user ID", "plugin-allow-null-False.ppd", QStringLiteral("3"), QStringLiteral("  \t"), QString(), kUserNameMessage},
        {"public without password", "plugin-allow-null-False.ppd", QStringLiteral("4"), QStringLiteral("x"), QString(), std::nullopt},
        {"secure without password where required", "plugin-allow-null-False.ppd", QStringLiteral("2"), QStringLiteral("ab"), QString(), kPasswordMessage},
        {"secure without either: the user ID first", "plugin-allow-null-False.ppd", QStringLiteral("2"), QString(), QString(), kUserNameMessage},
        {"second secure kind, empty password allowed", "plugin-allow-null-True.ppd", QStringLiteral("5"), QStringLiteral("x"), QString(), std::nullopt},
        {"second secure kind, password required", "plugin-allow-null-lowercase-true.ppd", QStringLiteral("5"), QStringLiteral("x"), QString(), kPasswordMessage},
        {"empty attribute value requires one", "plugin-allow-null-empty.ppd", QStringLiteral("2"), QStringLiteral("x"), QString(), kPasswordMessage},
        {"no attribute allows an empty one", "plugin-latin1.ppd", QStringLiteral("2"), QStringLiteral("x"), QString(), std::nullopt},
        {"secure with password", "plugin-allow-null-False.ppd", QStringLiteral("2"), QStringLiteral("x"), QStringLiteral("1234"), std::nullopt},
        {"leading blanks before a letter", "plugin-allow-null-False.ppd", QStringLiteral("3"), QStringLiteral(" \tz"), QString(), std::nullopt},
        {"other white space is not blank", "plugin-allow-null-False.ppd", QStringLiteral("3"), QStringLiteral(u"\u00a0"), QString(), std::nullopt},
        {"out of range type needs a user ID", "plugin-allow-null-False.ppd", QStringLiteral("9"), QString(), QString(), kUserNameMessage},
    };
    pde::PDEPlugIn *factory = loadFactory();
    ASSERT_NE(factory, nullptr);
    for (const ValidationRow &row : rows) {
        Recorder recorder;
        const Ppd ppd = openFixturePpd(row.ppd);
        Callback callback;
        callback.ppd = ppd.get();
        callback.settings.setValue(recordKey("PrintType"), row.printType);
        callback.settings.setValue(recordKey("PrintTypeUserName"), row.userName);
        callback.settings.setValue(recordKey("PrintTypePassword"),
                                   jt::CreateEncryptedString(row.password, jt::StringEncoding::UTF8).value_or(QString()));
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
        panel->restoreValuesAndReturnError(nullptr);
        const bool saved = panel->saveValuesAndReturnError(nullptr);
        EXPECT_EQ(saved, !row.alert.has_value()) << row.name;
        if (row.alert) {
            ASSERT_EQ(recorder.alerts.size(), 1) << row.name;
            EXPECT_EQ(recorder.alerts.front().messageText, *row.alert) << row.name;
            EXPECT_EQ(recorder.alerts.front().defaultButtonTitle, QStringLiteral("OK")) << row.name;
            EXPECT_EQ(recorder.alerts.front().informativeText, QString()) << row.name;
        } else {
            EXPECT_TRUE(recorder.alerts.isEmpty()) << row.name;
        }
    }
}

struct SummaryRow {
    const char *name;
    QString printType;
    QString userName;
    QString password;
    QString documentNameType;
    QString documentName;
    QStringList lines; // "Title: value" in display order
};

QStringList linesOf(const pde::SummaryInfo &summary)
{
    QStringList lines;
    for (const QString &title : summary.value(QString(pde::kSummaryDisplayOrderKey)).toStringList())
        lines.append(title + QStringLiteral(": ") + summary.value(title).toString());
    return lines;
}

TEST(Summary, LinesInDisplayOrderWithThePasswordAsAsterisks)
{
    const SummaryRow rows[] = {
        {"none", QStringLiteral("1"), QStringLiteral("ab"), QStringLiteral("12"), QStringLiteral("2"), QStringLiteral("x"),
         {QStringLiteral("Job Type: None")}},
        {"secure with everything", QStringLiteral("2"), QStringLiteral("ab"), QStringLiteral("123456"), QStringLiteral("2"), QStringLiteral("report"),
         {QStringLiteral("Job Type: Secure Print"), QStringLiteral("User ID: ab"), QStringLiteral("Password: ******"),
          QStringLiteral("Document Name: Enter a Name"), QStringLiteral("Entered Name: report")}},
        {"sample shows no password", QStringLiteral("3"), QStringLiteral("ab"), QStringLiteral("12"), QStringLiteral("2"), QString(),
         {QStringLiteral("Job Type: Sample Print"), QStringLiteral("User ID: ab"), QStringLiteral("Document Name: Enter a Name")}},
        {"second secure kind", QStringLiteral("5"), QStringLiteral("ab"), QStringLiteral("1"), QStringLiteral("1"), QStringLiteral("memo"),
         {QStringLiteral("Job Type: Secure Print"), QStringLiteral("User ID: ab"), QStringLiteral("Password: *"),
          QStringLiteral("Document Name: Automatic")}},
        {"public without user ID", QStringLiteral("4"), QString(), QString(), QStringLiteral("2"), QString(),
         {QStringLiteral("Job Type: Public Print"), QStringLiteral("Document Name: Enter a Name")}},
        {"out of range type", QStringLiteral("8"), QStringLiteral("ab"), QStringLiteral("12"), QStringLiteral("2"), QStringLiteral("r"),
         {QStringLiteral("Job Type: None"), QStringLiteral("User ID: ab"), QStringLiteral("Document Name: Enter a Name"),
          QStringLiteral("Entered Name: r")}},
        {"name type 3 counts as automatic", QStringLiteral("4"), QStringLiteral("ab"), QString(), QStringLiteral("4"), QStringLiteral("r"),
         {QStringLiteral("Job Type: Public Print"), QStringLiteral("User ID: ab"), QStringLiteral("Document Name: Automatic")}},
    };
    pde::PDEPlugIn *factory = loadFactory();
    const Ppd ppd = openFixturePpd("plugin-allow-null-True.ppd");
    for (const SummaryRow &row : rows) {
        Callback callback;
        callback.ppd = ppd.get();
        callback.settings.setValue(recordKey("PrintType"), row.printType);
        callback.settings.setValue(recordKey("PrintTypeUserName"), row.userName);
        callback.settings.setValue(recordKey("PrintTypePassword"),
                                   jt::CreateEncryptedString(row.password, jt::StringEncoding::UTF8).value_or(QString()));
        callback.settings.setValue(recordKey("DocumentNameType"), row.documentNameType);
        callback.settings.setValue(recordKey("DocumentName"), row.documentName);
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
        panel->restoreValuesAndReturnError(nullptr);
        const std::optional<pde::SummaryInfo> summary = panel->summaryInfo();
        ASSERT_TRUE(summary) << row.name;
        EXPECT_EQ(linesOf(*summary), row.lines) << row.name;
        EXPECT_EQ(summary->size(), row.lines.size() + 1) << row.name;
    }
}

} // namespace
