// SPDX-License-Identifier: MIT
// Typing into the panel's real fields: the formatters refuse characters and
// lengths the device cannot take, judge pastes whole, and always let the
// user delete back into the rules.
#include "PanelFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

class PanelTyping : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(panel.loaded());
        storage = openFixturePpd("panel-storage-options.ppd");
        panel.controller->setPPD(storage.get());
        panel.controller->localizeView();
        panel.controller->setPrintType(1); // every field applies
        panel.view->show();
    }

    QLineEdit *field(const char *name) { return panel.child<QLineEdit>(name); }

    // Key clicks as a keyboard sends them; characters beyond ASCII arrive as
    // key events that carry only their text, as an input method delivers them.
    static void type(QLineEdit *edit, const QString &text)
    {
        edit->setFocus();
        for (const QChar c : text) {
            if (c.unicode() >= 0x20 && c.unicode() < 0x7F)
                QTest::keyClick(edit, static_cast<char>(c.unicode()));
            else
                QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
    }

    LoadedPanel panel;
    Ppd storage;
};

struct TypingRow {
    const char *name;
    const char *field;
    QString typed;
    QString shown;
};

TEST_F(PanelTyping, FieldsKeepOnlyWhatTheirFormatterAccepts)
{
    const TypingRow rows[] = {
        {"user ID stops at 8", "userNameTextField", QStringLiteral("abcdefghij"), QStringLiteral("abcdefgh")},
        {"user ID takes Latin-1 letters", "userNameTextField", QStringLiteral(u"\u00e9t\u00e9"), QStringLiteral(u"\u00e9t\u00e9")},
        {"user ID drops the euro sign and kanji", "userNameTextField", QStringLiteral(u"a\u20ac\u7530b"), QStringLiteral("ab")},
        {"password takes 12 digits only", "passwordTextField", QStringLiteral("12345678901234"), QStringLiteral("123456789012")},
        {"password drops letters and spaces", "passwordTextField", QStringLiteral("1a 2"), QStringLiteral("12")},
        {"document name stops at 12", "docNameTextField", QStringLiteral("Quarterly report"), QStringLiteral("Quarterly re")},
    };
    for (const TypingRow &row : rows) {
        QLineEdit *edit = field(row.field);
        edit->clear();
        type(edit, row.typed);
        EXPECT_EQ(edit->text(), row.shown) << row.name;
    }
    EXPECT_EQ(panel.model->userName(), QVariant(QStringLiteral("ab")));
    EXPECT_EQ(panel.model->password(), QVariant(QStringLiteral("12")));
}

TEST_F(PanelTyping, AnOverlongPasteIsRefusedWhole)
{
    QLineEdit *edit = field("userNameTextField");
    type(edit, QStringLiteral("abc"));
    QGuiApplication::clipboard()->setText(QStringLiteral("defghi")); // 9 in all
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), QStringLiteral("abc"));
    QGuiApplication::clipboard()->setText(QStringLiteral("defgh")); // exactly 8
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), QStringLiteral("abcdefgh"));
}

TEST_F(PanelTyping, DeletingIsAlwaysAccepted)
{
    QLineEdit *edit = field("passwordTextField");
    type(edit, QStringLiteral("1234"));
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(edit->text(), QString());
    EXPECT_EQ(panel.model->password(), QVariant(QString()));
}

TEST_F(PanelTyping, ARestoredOverlongTextRefusesEditsThatKeepItOverlong)
{
    panel.controller->setUserName(QStringLiteral("abcdefghij")); // 10, put there by a restore
    QLineEdit *edit = field("userNameTextField");
    ASSERT_EQ(edit->text(), QStringLiteral("abcdefghij"));
    edit->setFocus();
    edit->end(false);
    QTest::keyClick(edit, Qt::Key_Backspace); // 9: still too long
    EXPECT_EQ(edit->text(), QStringLiteral("abcdefghij"));
    edit->setSelection(7, 3);
    QTest::keyClick(edit, Qt::Key_Backspace); // 7: within the rules again
    EXPECT_EQ(edit->text(), QStringLiteral("abcdefg"));
    EXPECT_EQ(panel.model->userName(), QVariant(QStringLiteral("abcdefg")));
}

} // namespace
