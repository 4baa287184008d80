// SPDX-License-Identifier: MIT
// Renders the panel as shown, in English and Japanese at 100 % and 200 %, to
// PNG files kept as build artefacts for review, and checks that the layout
// gives every control at least the room its text asks for.
#include "PanelFixture.h"

#include "pdekit/PreferredLanguages.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

struct Shot {
    const char *language;
    qreal scale;
};

class PanelScreenshot : public ::testing::TestWithParam<Shot>
{
};

TEST_P(PanelScreenshot, RendersWithRoomForEveryText)
{
    const Shot shot = GetParam();
    pde::setPreferredLanguages(QStringList{QString::fromLatin1(shot.language)});
    LoadedPanel panel;
    ASSERT_TRUE(panel.loaded());
    const Ppd storage = openFixturePpd("panel-storage-options.ppd");
    panel.controller->setPPD(storage.get());
    panel.controller->localizeView();
    panel.controller->setPrintType(1);
    panel.controller->setUserName(QStringLiteral("taro"));
    panel.controller->setDocumentName(QStringLiteral("Report"));
    pde::setPreferredLanguages(std::nullopt);

    panel.view->adjustSize();
    panel.view->show();
    for (QWidget *widget : panel.view->findChildren<QWidget *>()) {
        if (qobject_cast<QLabel *>(widget) || qobject_cast<QAbstractButton *>(widget)
            || qobject_cast<QComboBox *>(widget)) {
            EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << qPrintable(widget->objectName());
        }
    }
    if (QString::fromLatin1(shot.language) == u"ja") {
        EXPECT_EQ(panel.child<QLabel>("jobTypeLabel")->text(), QStringLiteral("ジョブタイプ"));
    }

    QImage image(panel.view->size() * shot.scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(shot.scale);
    image.fill(panel.view->palette().color(QPalette::Window));
    panel.view->render(&image);
    QDir().mkpath(QStringLiteral(PDE_SCREENSHOT_DIR));
    const QString file = QStringLiteral(PDE_SCREENSHOT_DIR "/panel-%1-%2x.png")
                             .arg(QString::fromLatin1(shot.language))
                             .arg(static_cast<int>(shot.scale));
    EXPECT_TRUE(image.save(file));
}

INSTANTIATE_TEST_SUITE_P(Panel, PanelScreenshot,
                         ::testing::Values(Shot{"en", 1}, Shot{"en", 2}, Shot{"ja", 1}, Shot{"ja", 2}),
                         [](const ::testing::TestParamInfo<Shot> &info) {
                             return std::string(info.param.language) + "_" + std::to_string(static_cast<int>(info.param.scale)) + "x";
                         });

} // namespace
