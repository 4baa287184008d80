// SPDX-License-Identifier: MIT
// Alerts through an installed handler and through the line on standard error.
#include "pdekit/Alert.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace Qt::StringLiterals;

// The handler is process-wide; each test puts back what it found.
class AlertHandlerGuard
{
public:
    explicit AlertHandlerGuard(pde::AlertHandler handler) : m_previous(pde::setAlertHandler(std::move(handler))) {}
    ~AlertHandlerGuard() { pde::setAlertHandler(std::move(m_previous)); }

private:
    pde::AlertHandler m_previous;
};

TEST(Alert, InstalledHandlerReceivesEveryText)
{
    std::vector<pde::Alert> shown;
    {
        const AlertHandlerGuard guard([&shown](const pde::Alert &alert) { shown.push_back(alert); });
        pde::runModalAlert(u"Enter 1 to 8 digits."_s, u"OK"_s, u"The job name is too long."_s);
        pde::runModalAlert(u"議事録"_s, u"閉じる"_s, std::nullopt);
    }
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0].messageText.toStdString(), "Enter 1 to 8 digits.");
    EXPECT_EQ(shown[0].defaultButtonTitle.toStdString(), "OK");
    EXPECT_EQ(shown[0].informativeText.value_or(u"(none)"_s).toStdString(), "The job name is too long.");
    EXPECT_EQ(shown[1].messageText.toStdString(), "議事録");
    EXPECT_EQ(shown[1].defaultButtonTitle.toStdString(), "閉じる");
    EXPECT_FALSE(shown[1].informativeText.has_value());
}

TEST(Alert, WithoutHandlerOrDisplayWritesOneLineAndReturns)
{
    const QString platform = QGuiApplication::platformName();
    if (platform != u"offscreen"_s && platform != u"minimal"_s)
        GTEST_SKIP() << "a real display would show a modal box";
    const AlertHandlerGuard guard({});
    const struct {
        QString message;
        std::optional<QString> informative;
        std::string line;
    } rows[] = {{u"Bad input"_s, std::nullopt, "alert: Bad input\n"},
                {u"Bad input"_s, u"Use digits"_s, "alert: Bad input: Use digits\n"},
                {u"Bad input"_s, QString(), "alert: Bad input\n"},
                {u"議事録"_s, u"パスワード"_s, "alert: 議事録: パスワード\n"}};
    for (const auto &row : rows) {
        testing::internal::CaptureStderr();
        pde::runModalAlert(row.message, u"OK"_s, row.informative);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.line);
    }
}

} // namespace
