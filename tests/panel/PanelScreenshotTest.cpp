// SPDX-License-Identifier: MIT
// Renders the panel as shown, in English and Japanese at 100 % and 200 %, in
// the default and a dark palette, to PNG files kept as build artefacts for
// review, and checks that the layout gives every control at least the room
// its text asks for, that full-length texts are not cut off and that greyed
// captions stand out from the others.
#include "PanelFixture.h"

#include "pdekit/PreferredLanguages.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace paneltest;

// Where the field's cursor is drawn, after the scrolling of the last paint.
int cursorLeft(const QLineEdit *field)
{
    return field->inputMethodQuery(Qt::ImCursorRectangle).toRect().left();
}

// The panel as shown with every field at its longest content, in both
// languages, at two scales, in the default and a dark palette (set while the
// panel is shown: the captions follow it).
TEST(PanelScreenshot, RendersFullLengthTextsUnclippedWithCaptionsThatFollowThePalette)
{
    const Ppd storage = openFixturePpd("panel-storage-options.ppd");
    QDir().mkpath(QStringLiteral(PDE_SCREENSHOT_DIR));
    const QPalette original = QApplication::palette();
    const std::pair<const char *, QString> fields[] = {{"userNameTextField", QStringLiteral("MMMMMMMM")},
                                                       {"passwordTextField", QStringLiteral("999999999999")},
                                                       {"docNameTextField", QStringLiteral("MMMMMMMMMMMM")}};
    for (const char *variant : {"en", "ja", "en-dark", "ja-dark"}) {
        SCOPED_TRACE(variant);
        const QString name = QString::fromLatin1(variant);
        pde::setPreferredLanguages(QStringList{name.left(2)});
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(storage.get());
        panel.controller->localizeView();
        pde::setPreferredLanguages(std::nullopt);
        // Where each field's text starts when nothing scrolls it.
        std::vector<int> textStarts;
        for (const auto &[field, text] : fields)
            textStarts.push_back(cursorLeft(panel.child<QLineEdit>(field)));
        panel.controller->setPrintType(1);
        panel.controller->setUserName(fields[0].second);
        panel.model->setPassword(fields[1].second);
        panel.controller->setDocumentNameType(0); // its caption greys
        panel.controller->setDocumentName(fields[2].second);
        for (const auto &[field, text] : fields)
            panel.child<QLineEdit>(field)->end(false);
        panel.view->adjustSize();
        panel.view->show();
        if (name.endsWith(u"dark")) {
            QPalette dark(QColor(0x3c, 0x3c, 0x3c), QColor(0x2b, 0x2b, 0x2b));
            dark.setColor(QPalette::WindowText, QColor(0xf0, 0xf0, 0xf0)); // every group, then the disabled one
            dark.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x80, 0x80));
            QApplication::setPalette(dark);
            QApplication::processEvents(); // widgets take a new application palette from an event
        }
        EXPECT_EQ(panel.child<QLabel>("jobTypeLabel")->text(),
                  name.startsWith(u"ja") ? QStringLiteral("ジョブタイプ") : QStringLiteral("Job Type"));
        for (QWidget *widget : panel.view->findChildren<QWidget *>()) {
            if (qobject_cast<QLabel *>(widget) || qobject_cast<QAbstractButton *>(widget)
                || qobject_cast<QComboBox *>(widget)) {
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << qPrintable(widget->objectName());
            }
        }
        for (const int scale : {1, 2}) {
            QImage image(panel.view->size() * scale, QImage::Format_ARGB32_Premultiplied);
            image.setDevicePixelRatio(scale);
            image.fill(panel.view->palette().color(QPalette::Window));
            panel.view->render(&image); // lays the fields' texts out, scrolled if they do not fit
            EXPECT_TRUE(image.save(QStringLiteral(PDE_SCREENSHOT_DIR "/panel-%1-%2x.png").arg(name).arg(scale)));
        }
        for (std::size_t i = 0; i < std::size(fields); ++i) {
            const QLineEdit *field = panel.child<QLineEdit>(fields[i].first);
            EXPECT_GE(cursorLeft(field) - textStarts[i], field->fontMetrics().horizontalAdvance(field->displayText()))
                << fields[i].first << " is cut off";
        }
        const QPalette palette = panel.view->palette();
        const auto captionColor = [&panel](const char *label) {
            const QLabel *caption = panel.child<QLabel>(label);
            return caption->palette().color(QPalette::Active, caption->foregroundRole());
        };
        EXPECT_EQ(captionColor("documentNameLabel"), palette.color(QPalette::Disabled, QPalette::WindowText));
        EXPECT_EQ(captionColor("userNameLabel"), palette.color(QPalette::Active, QPalette::WindowText));
        EXPECT_GE(std::abs(captionColor("userNameLabel").lightnessF() - captionColor("documentNameLabel").lightnessF()),
                  0.25) << "a greyed caption stands out";
        QApplication::setPalette(original);
        QApplication::processEvents();
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
                     QStringLiteral("Document Name Encoding Message"), QStringLiteral("No Job Storage"),
                     QStringLiteral("No Job Storage Option")};
    for (QWidget *widget : untranslated.view->findChildren<QWidget *>()) {
        keys.append(widget->toolTip());
        if (auto *field = qobject_cast<QLineEdit *>(widget))
            keys.append(field->placeholderText());
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

    const testsupport::LanguagesGuard japanese({QStringLiteral("ja")});
    for (const QString &key : keys)
        EXPECT_NE(jobTypeBundle()->localizedStringForKey(key, std::nullopt, std::nullopt), key) << qPrintable(key);
}

} // namespace
