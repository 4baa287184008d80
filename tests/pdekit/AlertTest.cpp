// SPDX-License-Identifier: MIT
// Alerts without a handler or a display: one line on standard error. (What a
// handler receives is seen through the plug-in's own alerts in its tests.)
#include "TestSupport.h"

#include "pdekit/Alert.h"

#include <QGuiApplication>

namespace {

using namespace Qt::StringLiterals;

TEST(Alert, WithoutHandlerOrDisplayWritesOneLineAndReturns)
{
    const QString platform = QGuiApplication::platformName();
    if (platform != u"offscreen"_s && platform != u"minimal"_s)
        GTEST_SKIP() << "a real display would show a modal box";
    const pde::AlertHandler previous = pde::setAlertHandler({});
    for (const auto &[informative, line] : {std::pair{std::optional<QString>(), "alert: 議事録\n"},
                                            std::pair{std::optional(QString()), "alert: 議事録\n"},
                                            std::pair{std::optional(u"パスワード"_s), "alert: 議事録: パスワード\n"}}) {
        testing::internal::CaptureStderr();
        pde::runModalAlert(u"議事録"_s, u"OK"_s, informative);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
    }
    pde::setAlertHandler(previous);
}

} // namespace
