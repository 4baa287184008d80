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

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

TEST(PanelScreenshot, RendersInTwoLanguagesAtTwoScalesWithRoomForEveryText)
{
    const Ppd storage = openFixturePpd("panel-storage-options.ppd");
    QDir().mkpath(QStringLiteral(PDE_SCREENSHOT_DIR));
    const struct { const char *language; QString jobTypeCaption; } rows[] = {
        {"en", QStringLiteral("Job Type")}, {"ja", QStringLiteral("ジョブタイプ")}};
    for (const auto &[language, jobTypeCaption] : rows) {
        pde::setPreferredLanguages(QStringList{QString::fromLatin1(language)});
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(storage.get());
        panel.controller->localizeView();
        panel.controller->setPrintType(1);
        panel.controller->setUserName(QStringLiteral("taro"));
        panel.controller->setDocumentName(QStringLiteral("Report"));
        pde::setPreferredLanguages(std::nullopt);

        panel.view->adjustSize();
        panel.view->show();
        EXPECT_EQ(panel.child<QLabel>("jobTypeLabel")->text(), jobTypeCaption);
        for (QWidget *widget : panel.view->findChildren<QWidget *>()) {
            if (qobject_cast<QLabel *>(widget) || qobject_cast<QAbstractButton *>(widget)
                || qobject_cast<QComboBox *>(widget)) {
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << language << " " << qPrintable(widget->objectName());
            }
        }

        for (const int scale : {1, 2}) {
            QImage image(panel.view->size() * scale, QImage::Format_ARGB32_Premultiplied);
            image.setDevicePixelRatio(scale);
            image.fill(panel.view->palette().color(QPalette::Window));
            panel.view->render(&image);
            EXPECT_TRUE(image.save(QStringLiteral(PDE_SCREENSHOT_DIR "/panel-%1-%2x.png")
                                       .arg(QString::fromLatin1(language))
                                       .arg(scale)));
        }
    }
}

} // namespace
