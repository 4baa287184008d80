// SPDX-License-Identifier: MIT
// The controller over the real panel: storage from the PPD, the gated print
// type, the password in its protected form, the defaults button, and the
// enabled controls and caption colours of every state, as the user sees them.
#include "PanelFixture.h"

#include "text/PasswordProtection.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

TEST(VmbController, EnabledControlsAndCaptionColoursFollowEveryState)
{
    // Each control, and the caption of those that have one: grey exactly
    // while its control is disabled.
    const char *const controls[] = {"jobTypePopUp", "userNameTextField", "passwordTextField",
                                    "documentNameTypePopUp", "docNameTextField"};
    const char *const captions[] = {"jobTypeLabel", "userNameLabel", "passwordLabel", "documentNameTypeLabel",
                                    "documentNameLabel"};
    const struct { const char *name; bool storage; int printType, documentNameType, enabled[5]; } rows[] = {
        {"no storage", false, 1, 1, {0, 0, 0, 0, 0}},
        {"storage, none", true, 0, 1, {1, 0, 0, 0, 0}},
        {"secure, automatic name", true, 1, 0, {1, 1, 1, 1, 0}},
        {"secure, entered name", true, 1, 1, {1, 1, 1, 1, 1}},
        {"second secure kind", true, 4, 1, {1, 1, 1, 1, 1}},
        {"sample, automatic name", true, 2, 0, {1, 1, 0, 1, 0}},
        {"out of range type", true, 7, 2, {1, 1, 0, 1, 1}},
    };
    const QColor text = QApplication::palette().color(QPalette::Active, QPalette::WindowText);
    const QColor grey = QApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
    const Ppd storage = openFixturePpd("panel-storage-options.ppd");
    ASSERT_TRUE(storage);
    for (const auto &row : rows) {
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded()) << row.name;
        if (row.storage)
            panel.controller->setPPD(storage.get());
        // Without storage the controller refuses the type, so put it into the
        // model as a binding would.
        panel.model->setPrintType(row.printType);
        panel.controller->setDocumentNameType(row.documentNameType);
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(panel.child<QWidget>(controls[i])->isEnabled(), row.enabled[i] != 0) << row.name << ", " << controls[i];
            if (captions[i] == nullptr)
                continue;
            const QLabel *caption = panel.child<QLabel>(captions[i]);
            EXPECT_EQ(caption->palette().color(QPalette::Active, caption->foregroundRole()),
                      row.enabled[i] != 0 ? text : grey)
                << row.name << ", " << captions[i];
        }
    }
}

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
        const Ppd ppd = openFixturePpd(row.ppd);
        ASSERT_TRUE(ppd) << row.ppd;
        if (row.option2 != nullptr)
            ppdMarkOption(ppd.get(), "Option2", row.option2);
        if (row.nvHardDisk != nullptr)
            ppdMarkOption(ppd.get(), "NVHardDisk", row.nvHardDisk);
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(ppd.get());
        // A null PPD later keeps this one and its capability.
        panel.controller->setPPD(nullptr);
        EXPECT_EQ(panel.controller->ppd(), ppd.get());
        EXPECT_EQ(panel.model->canStore(), QVariant(row.canStore)) << row.ppd << " " << row.option2 << " " << row.nvHardDisk;
        // The print type follows the capability.
        panel.controller->setPrintType(3);
        EXPECT_EQ(panel.controller->printType(), QVariant(row.canStore ? 3 : 0)) << row.ppd << " " << row.option2 << " " << row.nvHardDisk;
        panel.controller->localizeView();
        const QLabel *note = panel.child<QLabel>("storageNoteLabel");
        EXPECT_EQ(note->isVisibleTo(panel.view) ? note->text() : QString(), row.note) << row.ppd << " " << row.option2;
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
        const Ppd ppd = row.ppd != nullptr ? openFixturePpd(row.ppd) : Ppd();
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(ppd.get());
        panel.model->setPassword(clear);
        const std::optional<QString> protectedForm = panel.controller->password();
        EXPECT_EQ(protectedForm, jt::CreateEncryptedString(clear, row.encoding)) << row.ppd;
        panel.model->setPassword(QString());
        panel.controller->setPassword(protectedForm);
        EXPECT_EQ(panel.model->password(), QVariant(clear)) << row.ppd;
        // One that cannot be unprotected leaves the model empty.
        panel.controller->setPassword(QStringLiteral("not base64!"));
        EXPECT_EQ(panel.model->password(), QVariant(QString())) << row.ppd;
    }
}

TEST(VmbController, DefaultsButtonResetsAllButAGatedPrintType)
{
    LoadedPanel panel;
    ASSERT_TRUE(panel.loaded());
    panel.model->setPrintType(3);
    panel.model->setUserName(QStringLiteral("taro"));
    panel.model->setPassword(QStringLiteral("1234"));
    panel.model->setDocumentNameType(0);
    panel.model->setDocumentName(QStringLiteral("report"));
    panel.view->show();
    QTest::mouseClick(panel.child<QPushButton>("defaultsButton"), Qt::LeftButton);
    EXPECT_EQ(panel.model->printType(), QVariant(3)) << "no storage: the type is not the controller's to change";
    for (const QVariant &value : {panel.model->userName(), panel.model->password(), panel.model->documentName()})
        EXPECT_EQ(value, QVariant(QString()));
    EXPECT_EQ(panel.model->documentNameType(), QVariant(1));
}

} // namespace
