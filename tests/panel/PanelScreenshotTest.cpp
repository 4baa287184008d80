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

// A key missing from the Japanese table would show the English key to a
// Japanese user; every text of the view, its alerts and its summary must be
// there.
TEST(PanelStrings, JapaneseTableTranslatesEveryKeyThePanelUses)
{
    LoadedPanel untranslated;
    ASSERT_TRUE(untranslated.loaded());
    QStringList keys{QStringLiteral("Custom PDE Title"), QStringLiteral("User Name Message"),
                     QStringLiteral("Password Message"), QStringLiteral("User Name Encoding Message"),
                     QStringLiteral("Document Name Encoding Message")};
    for (QWidget *widget : untranslated.view->findChildren<QWidget *>()) {
        if (auto *label = qobject_cast<QLabel *>(widget))
            keys.append(label->text());
        else if (auto *button = qobject_cast<QAbstractButton *>(widget))
            keys.append(button->text());
        else if (auto *popup = qobject_cast<QComboBox *>(widget)) {
            for (int i = 0; i < popup->count(); ++i)
                keys.append(popup->itemText(i));
        }
    }
    keys.removeAll(QString());

    pde::setPreferredLanguages(QStringList{QStringLiteral("ja")});
    for (const QString &key : keys)
        EXPECT_NE(jobTypeBundle()->localizedStringForKey(key, std::nullopt, std::nullopt), key) << qPrintable(key);
    pde::setPreferredLanguages(std::nullopt);
}

} // namespace
