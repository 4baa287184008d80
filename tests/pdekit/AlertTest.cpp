// SPDX-License-Identifier: MIT
// Alerts through an installed handler and through the line on standard error.
#include "TestBundle.h"

#include "pdekit/Alert.h"

#include <QGuiApplication>

namespace {

using namespace Qt::StringLiterals;

TEST(Alert, GoesToTheInstalledHandlerElseWithoutADisplayToOneLine)
{
    QStringList shown;
    // The handler is process-wide: the test puts back what it found.
    const pde::AlertHandler previous = pde::setAlertHandler([&shown](const pde::Alert &alert) {
        shown.append(alert.messageText + u'|' + alert.defaultButtonTitle + u'|'
                     + alert.informativeText.value_or(u"(none)"_s));
    });
    pde::runModalAlert(u"The job name is too long."_s, u"OK"_s, u"Enter 1 to 8 digits."_s);
    pde::runModalAlert(u"議事録"_s, u"閉じる"_s, std::nullopt);
    EXPECT_EQ(shown, (QStringList{u"The job name is too long.|OK|Enter 1 to 8 digits."_s, u"議事録|閉じる|(none)"_s}));

    pde::setAlertHandler({});
    const QString platform = QGuiApplication::platformName();
    for (const auto &[informative, line] : {std::pair{std::optional<QString>(), "alert: 議事録\n"},
                                            std::pair{std::optional(QString()), "alert: 議事録\n"},
                                            std::pair{std::optional(u"パスワード"_s), "alert: 議事録: パスワード\n"}}) {
        if (platform != u"offscreen"_s && platform != u"minimal"_s)
            break; // a real display would show a modal box
        testing::internal::CaptureStderr();
        pde::runModalAlert(u"議事録"_s, u"OK"_s, informative);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
    }
    pde::setAlertHandler(previous);
}

} // namespace
