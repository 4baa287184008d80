// SPDX-License-Identifier: MIT
// Alerts through an installed handler and through the line on standard error.
#include "TestBundle.h"

#include "pdekit/Alert.h"

#include <QGuiApplication>

namespace {

using namespace Qt::StringLiterals;

TEST(Alert, InstalledHandlerReceivesEveryText)
{
    QStringList shown;
    // The handler is process-wide: each test puts back what it found.
    const pde::AlertHandler previous = pde::setAlertHandler([&shown](const pde::Alert &alert) {
        shown.append(alert.messageText + u'|' + alert.defaultButtonTitle + u'|'
                     + alert.informativeText.value_or(u"(none)"_s));
    });
    pde::runModalAlert(u"The job name is too long."_s, u"OK"_s, u"Enter 1 to 8 digits."_s);
    pde::runModalAlert(u"議事録"_s, u"閉じる"_s, std::nullopt);
    pde::setAlertHandler(previous);
    EXPECT_EQ(shown, (QStringList{u"The job name is too long.|OK|Enter 1 to 8 digits."_s, u"議事録|閉じる|(none)"_s}));
}

TEST(Alert, WithoutHandlerOrDisplayWritesOneLineAndReturns)
{
    const QString platform = QGuiApplication::platformName();
    if (platform != u"offscreen"_s && platform != u"minimal"_s)
        GTEST_SKIP() << "a real display would show a modal box";
    const pde::AlertHandler previous = pde::setAlertHandler({});
    const struct {
        QString message;
        std::optional<QString> informative;
        std::string line;
    } rows[] = {{u"Bad input"_s, std::nullopt, "alert: Bad input\n"},
                {u"Bad input"_s, QString(), "alert: Bad input\n"},
                {u"議事録"_s, u"パスワード"_s, "alert: 議事録: パスワード\n"}};
    for (const auto &row : rows) {
        testing::internal::CaptureStderr();
        pde::runModalAlert(row.message, u"OK"_s, row.informative);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.line);
    }
    pde::setAlertHandler(previous);
}

} // namespace
