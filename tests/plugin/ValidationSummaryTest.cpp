// SPDX-License-Identifier: MIT
// What a save refuses (and the alert that says why), and the summary lines,
// for values restored from the job's print settings.
#include "HostHarness.h"

#include <gtest/gtest.h>

namespace {

using namespace hosttest;

const QString kUserNameMessage = u"Enter a user ID. The printer holds the job under it until you release it there."_s;
const QString kPasswordMessage =
    u"Enter a password (digits only). You will type it at the printer to release a secure job."_s;

TEST(Validation, HeldJobsNeedAUserIdAndSecureOnesAPasswordWhereThePrinterSays)
{
    const struct {
        const char *name;
        const char *ppd;
        QString entries;
        std::optional<QString> alert;
    } rows[] = {
        {"none needs nothing", "plugin-allow-null-False.ppd", u"1||"_s, {}},
        {"blank is spaces and tabs only", "plugin-allow-null-False.ppd", u"3|  \t|"_s, kUserNameMessage},
        {"other white space is not blank", "plugin-allow-null-False.ppd", u"3| \t\u00a0|"_s, {}},
        {"False requires a password", "plugin-allow-null-False.ppd", u"2|ab|"_s, kPasswordMessage},
        {"a password given passes", "plugin-allow-null-False.ppd", u"2|ab|1234"_s, {}},
        {"both failing: only the user ID alert", "plugin-allow-null-False.ppd", u"2||"_s, kUserNameMessage},
        {"second secure kind, True allows none", "plugin-allow-null-True.ppd", u"5|x|"_s, {}},
        {"second secure kind, true requires one", "plugin-allow-null-lowercase-true.ppd", u"5|x|"_s, kPasswordMessage},
        {"an empty value requires one", "plugin-allow-null-empty.ppd", u"2|x|"_s, kPasswordMessage},
        {"no attribute allows none", "plugin-latin1.ppd", u"2|x|"_s, {}},
    };
    for (const auto &row : rows) {
        Recorder recorder;
        Callback callback(row.ppd);
        const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, row.entries);
        ASSERT_NE(panel, nullptr);
        EXPECT_EQ(panel->saveValuesAndReturnError(nullptr), !row.alert) << row.name;
        EXPECT_EQ(recorder.alerts, row.alert ? QStringList{*row.alert + u"|OK|"_s} : QStringList()) << row.name;
    }
}

TEST(Summary, LinesInDisplayOrderWithThePasswordAsAsterisks)
{
    const struct {
        const char *name;
        QString entries;
        QString lines; // "Title: value" in display order, joined by '|'
    } rows[] = {
        {"none shows only the type", u"1|ab|12|2|x"_s, u"Job Type: None"_s},
        {"secure with everything", u"2|ab|123456|2|report"_s,
         u"Job Type: Secure Print|User ID: ab|Password: ******|Document Name: Enter a Name|Entered Name: report"_s},
        {"second secure kind, automatic name", u"5|ab|1|1|memo"_s,
         u"Job Type: Secure Print|User ID: ab|Password: *|Document Name: Automatic"_s},
        {"sample: no password, no empty texts", u"3||12|2|"_s, u"Job Type: Sample Print|Document Name: Enter a Name"_s},
        {"public, automatic name", u"4|ab||1|r"_s, u"Job Type: Public Print|User ID: ab|Document Name: Automatic"_s},
    };
    for (const auto &row : rows) {
        Callback callback("plugin-allow-null-True.ppd");
        const std::unique_ptr<pde::PDEPanel> panel = restoredPanel(callback, row.entries);
        ASSERT_NE(panel, nullptr);
        EXPECT_EQ(summaryLines(*panel), row.lines) << row.name;
        EXPECT_EQ(panel->summaryInfo()->size(), row.lines.count(u'|') + 2) << row.name; // and the order
    }
}

} // namespace
