// SPDX-License-Identifier: MIT
// The field formatters: typed into the panel's real fields, they refuse
// characters and lengths the device cannot take, judge pastes whole, and
// always let the user delete back into the rules.
#include "PanelFixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

class PanelTyping : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(storage.get());
        panel.controller->localizeView();
        panel.controller->setPrintType(1); // every field applies
        panel.view->show();
    }

    // Key clicks as a keyboard sends them; characters beyond ASCII arrive as
    // key events that carry only their text, as an input method delivers them.
    QLineEdit *type(const char *name, const QString &text)
    {
        QLineEdit *edit = panel.child<QLineEdit>(name);
        edit->setFocus();
        for (const QChar c : text) {
            if (c.unicode() >= 0x20 && c.unicode() < 0x7F)
                QTest::keyClick(edit, static_cast<char>(c.unicode()));
            else
                QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
        return edit;
    }

    Ppd storage = openFixturePpd("panel-storage-options.ppd");
    LoadedPanel panel;
};

// Each field shows its rule as placeholder and tooltip, and a refused
// keystroke shows the rule beside the field.
TEST_F(PanelTyping, FieldsKeepOnlyWhatTheirFormatterAcceptsAndSayWhy)
{
    const struct { const char *field; QString typed, shown, rule; } rows[] = {
        // Latin-1 letters in, the euro sign and kanji out, 8 at most.
        {"userNameTextField", QStringLiteral(u"\u00e9\u20ac\u7530bcdefghij"), QStringLiteral(u"\u00e9bcdefgh"),
         QStringLiteral("Up to 8 characters")},
        // Digits only, 12 at most.
        {"passwordTextField", QStringLiteral("1a 2345678901234"), QStringLiteral("123456789012"),
         QStringLiteral("Digits only, up to 12")},
        {"docNameTextField", QStringLiteral("Quarterly report"), QStringLiteral("Quarterly re"),
         QStringLiteral("Up to 12 characters")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.field);
        QToolTip::hideText();
        QLineEdit *edit = type(row.field, row.typed);
        EXPECT_EQ(edit->text(), row.shown);
        EXPECT_EQ((QStringList{edit->placeholderText(), edit->toolTip()}), (QStringList{row.rule, row.rule}));
        EXPECT_TRUE(QToolTip::isVisible());
        EXPECT_EQ(QToolTip::text(), row.rule);
    }
    EXPECT_EQ(panel.model->userName(), QVariant(QStringLiteral(u"\u00e9bcdefgh")));
    EXPECT_EQ(panel.model->password(), QVariant(QStringLiteral("123456789012")));
}

// A paste is judged whole; a text a restore put there beyond the rules
// refuses edits until they bring it back within them, and deleting
// everything is always accepted.
TEST_F(PanelTyping, EditsAreJudgedOnTheWholeText)
{
    QLineEdit *edit = type("userNameTextField", QStringLiteral("abc"));
    QGuiApplication::clipboard()->setText(QStringLiteral("defghi")); // 9 in all
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), QStringLiteral("abc"));
    QGuiApplication::clipboard()->setText(QStringLiteral("defgh")); // exactly 8
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit->text(), QStringLiteral("abcdefgh"));

    panel.controller->setUserName(QStringLiteral("abcdefghij"));
    ASSERT_EQ(edit->text(), QStringLiteral("abcdefghij"));
    edit->end(false);
    QTest::keyClick(edit, Qt::Key_Backspace); // 9: still too long
    EXPECT_EQ(edit->text(), QStringLiteral("abcdefghij"));
    edit->setSelection(7, 3);
    QTest::keyClick(edit, Qt::Key_Backspace); // 7: within the rules again
    EXPECT_EQ(edit->text(), QStringLiteral("abcdefg"));
    EXPECT_EQ(panel.model->userName(), QVariant(QStringLiteral("abcdefg")));
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Backspace);
    EXPECT_EQ(panel.model->userName(), QVariant(QString()));
}

} // namespace
