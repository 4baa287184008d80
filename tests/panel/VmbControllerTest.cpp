// SPDX-License-Identifier: MIT
// The controller over the real panel: storage from the PPD, the gated print
// type, the password in its protected form, and the enabled controls and
// caption colours of every state, as the user sees them.
#include "PanelFixture.h"

#include "pdekit/HelpViewer.h"
#include "platform/HelpBook.h"
#include "text/PasswordProtection.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

using namespace paneltest;

const QColor kGrey(Qt::lightGray);

QColor text()
{
    return QApplication::palette().color(QPalette::Active, QPalette::WindowText);
}

QColor captionOf(const LoadedPanel &panel, const char *label)
{
    const QLabel *caption = panel.child<QLabel>(label);
    return caption->palette().color(QPalette::Active, caption->foregroundRole());
}

struct StateRow {
    const char *name;
    bool storage;
    int printType;
    int documentNameType;
    // Enabled: job type, user ID, password, document name type, document name.
    bool enabled[5];
    // Captions: job type, user ID, password, document name.
    QColor colours[4];
};

TEST(VmbController, EnabledControlsAndCaptionColoursFollowEveryState)
{
    const StateRow rows[] = {
        {"no storage, secure", false, 1, 1, {false, false, false, false, false}, {kGrey, kGrey, kGrey, kGrey}},
        {"no storage, public", false, 3, 0, {false, false, false, false, false}, {kGrey, kGrey, kGrey, kGrey}},
        {"storage, none", true, 0, 1, {true, false, false, false, false}, {text(), kGrey, kGrey, kGrey}},
        {"storage, secure, automatic name", true, 1, 0, {true, true, true, true, false}, {text(), text(), text(), kGrey}},
        {"storage, secure, entered name", true, 1, 1, {true, true, true, true, true}, {text(), text(), text(), text()}},
        {"storage, second secure kind", true, 4, 1, {true, true, true, true, true}, {text(), text(), text(), text()}},
        {"storage, sample, automatic name", true, 2, 0, {true, true, false, true, false}, {text(), text(), kGrey, kGrey}},
        {"storage, public, entered name", true, 3, 1, {true, true, false, true, true}, {text(), text(), kGrey, text()}},
        {"storage, out of range type", true, 7, 2, {true, true, false, true, true}, {text(), text(), kGrey, text()}},
    };
    const Ppd storage = openFixturePpd("panel-storage-options.ppd");
    ASSERT_TRUE(storage);
    for (const StateRow &row : rows) {
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded()) << row.name;
        if (row.storage)
            panel.controller->setPPD(storage.get());
        // Without storage the controller refuses the type, so put it into the
        // model as a binding would.
        panel.model->setPrintType(row.printType);
        panel.controller->setDocumentNameType(row.documentNameType);

        const QWidget *controls[] = {panel.child<QComboBox>("jobTypePopUp"), panel.child<QLineEdit>("userNameTextField"),
                                     panel.child<QLineEdit>("passwordTextField"),
                                     panel.child<QComboBox>("documentNameTypePopUp"),
                                     panel.child<QLineEdit>("docNameTextField")};
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(controls[i]->isEnabled(), row.enabled[i]) << row.name << ", control " << i;
        const char *captions[] = {"jobTypeLabel", "userNameLabel", "passwordLabel", "documentNameLabel"};
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(captionOf(panel, captions[i]), row.colours[i]) << row.name << ", " << captions[i];
    }
}

struct StorageRow {
    const char *name;
    const char *ppd;
    const char *option2;    // choice to mark, or null for the default
    const char *nvHardDisk; // choice to mark, or null for the default
    bool canStore;
};

TEST(VmbController, StorageComesFromOption2ThenNVHardDisk)
{
    const StorageRow rows[] = {
        {"Option2 True", "panel-storage-options.ppd", "True", "None", true},
        {"Option2 of another kind", "panel-storage-options.ppd", "8GB", "None", true},
        {"Option2 False wins over NVHardDisk True", "panel-storage-options.ppd", "False", "True", false},
        {"NVHardDisk True alone", "panel-harddisk-only.ppd", nullptr, "True", true},
        {"NVHardDisk None", "panel-harddisk-only.ppd", nullptr, "None", false},
        {"NVHardDisk False", "panel-harddisk-only.ppd", nullptr, "False", false},
        {"neither option", "panel-no-storage.ppd", nullptr, nullptr, false},
    };
    for (const StorageRow &row : rows) {
        const Ppd ppd = openFixturePpd(row.ppd);
        ASSERT_TRUE(ppd) << row.name;
        if (row.option2 != nullptr)
            ppdMarkOption(ppd.get(), "Option2", row.option2);
        if (row.nvHardDisk != nullptr)
            ppdMarkOption(ppd.get(), "NVHardDisk", row.nvHardDisk);
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(ppd.get());
        EXPECT_EQ(panel.model->canStore(), QVariant(row.canStore)) << row.name;

        // The print type follows the capability.
        panel.controller->setPrintType(3);
        EXPECT_EQ(panel.controller->printType(), QVariant(row.canStore ? 3 : 0)) << row.name;
    }
}

TEST(VmbController, ANullPPDKeepsTheEarlierOneAndItsCapability)
{
    const Ppd storage = openFixturePpd("panel-storage-options.ppd");
    LoadedPanel panel;
    ASSERT_TRUE(panel.loaded());
    panel.controller->setPPD(storage.get());
    panel.controller->setPPD(nullptr);
    EXPECT_EQ(panel.controller->ppd(), storage.get());
    EXPECT_EQ(panel.model->canStore(), QVariant(true));
}

TEST(VmbController, PasswordIsProtectedInThePrinterLanguageOrUtf8WithoutPPD)
{
    const QString clear = QStringLiteral(u"\u00e9123"); // differs between UTF-8 and Shift-JIS
    struct Row {
        const char *name;
        const char *ppd;
        jt::StringEncoding encoding;
    };
    const Row rows[] = {
        {"no PPD", nullptr, jt::StringEncoding::UTF8},
        {"PPD naming UTF-8", "panel-storage-options.ppd", jt::StringEncoding::UTF8},
        {"PPD naming no encoding", "panel-no-storage.ppd", jt::StringEncoding::ShiftJIS_X0213},
    };
    for (const Row &row : rows) {
        const Ppd ppd = row.ppd != nullptr ? openFixturePpd(row.ppd) : Ppd();
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.controller->setPPD(ppd.get());
        panel.model->setPassword(clear);
        const std::optional<QString> protectedForm = panel.controller->password();
        EXPECT_EQ(protectedForm, jt::CreateEncryptedString(clear, row.encoding)) << row.name;

        panel.model->setPassword(QString());
        panel.controller->setPassword(protectedForm);
        EXPECT_EQ(panel.model->password(), QVariant(clear)) << row.name;
    }
}

TEST(VmbController, APasswordThatCannotBeUnprotectedLeavesTheModelEmpty)
{
    const std::optional<QString> inputs[] = {std::nullopt, QString(), QStringLiteral("not base64!")};
    for (const std::optional<QString> &input : inputs) {
        LoadedPanel panel;
        ASSERT_TRUE(panel.loaded());
        panel.model->setPassword(QStringLiteral("1234"));
        panel.controller->setPassword(input);
        EXPECT_EQ(panel.model->password(), QVariant(QString()));
    }
    LoadedPanel panel;
    ASSERT_TRUE(panel.loaded());
    EXPECT_EQ(panel.controller->password(), std::nullopt) << "an empty password has no protected form";
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
    EXPECT_EQ(panel.model->userName(), QVariant(QString()));
    EXPECT_EQ(panel.model->password(), QVariant(QString()));
    EXPECT_EQ(panel.model->documentNameType(), QVariant(1));
    EXPECT_EQ(panel.model->documentName(), QVariant(QString()));
}

TEST(VmbController, HelpButtonOpensThePanelsPageInTheBundlesBook)
{
    QList<QUrl> opened;
    const auto previous = pde::HelpViewer::instance().setPageHandler(
        [&opened](const QString &, const QUrl &page) { opened.append(page); });
    LoadedPanel panel;
    ASSERT_TRUE(panel.loaded());
    jt::RegisterHelpBook(jobTypeBundle());
    panel.view->show();
    QTest::mouseClick(panel.child<QToolButton>("helpButton"), Qt::LeftButton);
    pde::HelpViewer::instance().setPageHandler(previous);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_TRUE(opened.front().path().endsWith(QStringLiteral("/Help/SecureJobType.html")));
}

} // namespace
