// SPDX-License-Identifier: MIT
// The controller over the real panel: storage from the PPD, the gated print
// type and the password in its protected form, as the user sees them; the
// model's wiping of the password; and the field formatters, typed into the
// panel's real fields: they refuse characters and lengths the device cannot
// take, judge pastes whole, and always let the user delete back into the
// rules. The enabled controls and caption colours of every state, and the
// defaults button, are checked with the record, through the plug-in
// (tests/plugin).
#include "PanelFixture.h"

#include "text/PasswordProtection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

TEST(VmbController, StorageComesFromOption2ThenNVHardDiskAndANoteSaysWhenThereIsNone)
{
    // The choices to mark, or null to keep the default; the note shown, if any.
    const struct { const char *ppd, *option2, *nvHardDisk; bool canStore; QString note; } rows[] = {
        {"panel-storage-options.ppd", "8GB", "None", true, {}},
        {"panel-storage-options.ppd", "False", "True", false,
         QStringLiteral("This printer has no job storage (Hard Disk: Not Installed)")},
        {"panel-harddisk-only.ppd", nullptr, "True", true, {}},
        {"panel-harddisk-only.ppd", nullptr, "None", false,
         QStringLiteral("This printer has no job storage (Storage: Not Installed)")},
        {"panel-harddisk-only.ppd", nullptr, "False", false,
         QStringLiteral("This printer has no job storage (Storage: Not Available)")},
        {"panel-no-storage.ppd", nullptr, nullptr, false, QStringLiteral("This printer has no job storage")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.ppd << " " << row.option2 << " " << row.nvHardDisk);
        const Ppd ppd = openFixturePpd(row.ppd);
        ASSERT_TRUE(ppd);
        if (row.option2 != nullptr)
            ppdMarkOption(ppd.get(), "Option2", row.option2);
        if (row.nvHardDisk != nullptr)
            ppdMarkOption(ppd.get(), "NVHardDisk", row.nvHardDisk);
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(ppd.get());
        EXPECT_EQ(panel.model->canStore(), QVariant(row.canStore));
        // The print type follows the capability.
        panel.controller->setPrintType(3);
        EXPECT_EQ(panel.controller->printType(), QVariant(row.canStore ? 3 : 0));
        panel.controller->localizeView();
        const QLabel *note = panel.child<QLabel>("storageNoteLabel");
        EXPECT_EQ(note->isVisibleTo(panel.view) ? note->text() : QString(), row.note);
    }
}

TEST(VmbController, PasswordIsProtectedInThePrinterLanguageOrUtf8WithoutPPD)
{
    const QString clear = QStringLiteral(u"\u00e9123"); // differs between UTF-8 and Shift-JIS
    const struct { const char *ppd; jt::StringEncoding encoding; } rows[] = {
        {nullptr, jt::StringEncoding::UTF8},
        {"panel-storage-options.ppd", jt::StringEncoding::UTF8}, // names UTF-8
        {"panel-no-storage.ppd", jt::StringEncoding::ShiftJIS_X0213}, // names no encoding
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.ppd ? row.ppd : "no PPD");
        const Ppd ppd = row.ppd != nullptr ? openFixturePpd(row.ppd) : Ppd();
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(ppd.get());
        panel.model->setPassword(clear);
        const std::optional<QString> protectedForm = panel.controller->password();
        EXPECT_EQ(protectedForm, jt::CreateEncryptedString(clear, row.encoding));
        panel.model->setPassword(QString());
        panel.controller->setPassword(protectedForm);
        EXPECT_EQ(panel.model->password(), QVariant(clear));
        // One that cannot be unprotected leaves the model empty.
        panel.controller->setPassword(QStringLiteral("not base64!"));
        EXPECT_EQ(panel.model->password(), QVariant(QString()));
    }
}

// The model's last act wipes the password in every copy that shares its
// characters, such as the one a field showed.
TEST(VmbModel, TearDownWipesThePasswordEverywhere)
{
    QString shown;
    {
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.model->setPassword(QString::number(1234));
        shown = panel.model->password().toString();
    }
    EXPECT_EQ(shown, QString(4, QChar(0)));
}

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
        QLineEdit *edit = testsupport::typeText(panel.child<QLineEdit>(row.field), row.typed);
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
    QLineEdit *edit = testsupport::typeText(panel.child<QLineEdit>("userNameTextField"), QStringLiteral("abc"));
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
