// SPDX-License-Identifier: MIT
// The factory and the panel's life as the host drives it: kinds of dialog,
// title and kind, the view made once, help, and two copies of the bundle in
// one process.
#include "BundleCopy.h"
#include "HostHarness.h"

#include "pdekit/Bundle.h"
#include "pdekit/PreferredLanguages.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace {

using namespace hosttest;

const QString kIdentifier = QStringLiteral("com.norvanta.qs.o.vellumark.pde.JobTypeQTRN");

TEST(Factory, MakesOnePanelForThePrintDialogAndNoneForOtherDialogs)
{
    pde::PDEPlugIn *factory = loadFactory();
    ASSERT_NE(factory, nullptr);
    Callback callback;
    const struct {
        QString type;
        std::size_t panels;
    } rows[] = {
        {QString(pde::kPrintDialogTypeID), 1},
        {QString(pde::kPageSetupDialogTypeID), 0},
        {QString(pde::kPrintDialogTypeID).toLower(), 0},
        {QString(), 0},
    };
    for (const auto &row : rows) {
        const std::optional<pde::PDEPanelList> panels = factory->PDEPanelsForType(row.type, &callback);
        ASSERT_TRUE(panels.has_value()) << qPrintable(row.type) << ": an empty list, not none";
        EXPECT_EQ(panels->size(), row.panels) << qPrintable(row.type);
    }
}

TEST(Factory, KeepsTheFirstBundleItIsGiven)
{
    pde::PDEPlugIn *factory = loadFactory();
    BundleCopy other(QStringLiteral("org.example.other"));
    EXPECT_TRUE(factory->initWithBundle(pde::Bundle::open(other.path())));
    Callback callback;
    EXPECT_EQ(printPanel(factory, &callback)->panelKind(), kIdentifier);
}

TEST(Panel, TitleComesFromTheModelTableThenTheDefaultTable)
{
    pde::PDEPlugIn *factory = loadFactory();
    const struct {
        const char *name;
        const char *ppd;
        std::optional<QStringList> languages;
        QString title;
    } rows[] = {
        {"no PPD", nullptr, QStringList{QStringLiteral("en")}, QStringLiteral("Job Type")},
        {"table 2", "plugin-model-2.ppd", QStringList{QStringLiteral("en")}, QStringLiteral("Job Type (Storage Kit)")},
        {"table 2 in Japanese", "plugin-model-2.ppd", QStringList{QStringLiteral("ja_JP")},
         QStringLiteral("ジョブタイプ（ストレージキット）")},
        {"table 5 that the bundle lacks", "plugin-model-5.ppd", QStringList{QStringLiteral("en")}, QStringLiteral("Job Type")},
    };
    for (const auto &row : rows) {
        pde::setPreferredLanguages(row.languages);
        const Ppd ppd = row.ppd != nullptr ? openFixturePpd(row.ppd) : Ppd();
        Callback callback;
        callback.ppd = ppd.get();
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
        EXPECT_EQ(panel->panelName(), row.title) << row.name;
        EXPECT_EQ(panel->panelKind(), kIdentifier) << row.name;
    }
    pde::setPreferredLanguages(std::nullopt);
}

TEST(Panel, BaseAnswersTheOperationsItDoesNotTakeOver)
{
    pde::PDEPlugIn *factory = loadFactory();
    Callback callback;
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    EXPECT_EQ(panel->supportedPPDOptionKeys(), std::nullopt);
    EXPECT_TRUE(panel->shouldHide());
    EXPECT_TRUE(panel->shouldPrint());
    panel->PPDOptionKeyValueDidChange(QStringLiteral("PageSize"), QStringLiteral("A4"));
}

TEST(Panel, ViewIsMadeOnceAndHelpIsThePanelsOwnOnceItExists)
{
    Recorder recorder;
    pde::PDEPlugIn *factory = loadFactory();
    const Ppd ppd = openFixturePpd("plugin-allow-null-True.ppd");
    Callback callback;
    callback.ppd = ppd.get();
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    EXPECT_TRUE(panel->shouldShowHelp()) << "no view yet: the host shows its own help";
    QWidget *view = panel->panelView();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(panel->panelView(), view);
    EXPECT_FALSE(panel->shouldShowHelp());
    ASSERT_EQ(recorder.helpPages.size(), 1);
    EXPECT_TRUE(recorder.helpPages.front().path().endsWith(QStringLiteral("/Help/SecureJobType.html")));
}

TEST(Panel, ANibThePPDNamesButTheBundleLacksGivesNoViewAndIsTriedAgain)
{
    pde::PDEPlugIn *factory = loadFactory();
    const Ppd ppd = openFixturePpd("plugin-missing-nib.ppd");
    Callback callback;
    callback.ppd = ppd.get();
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    EXPECT_EQ(panel->panelView(), nullptr);
    EXPECT_EQ(panel->panelView(), nullptr);
    EXPECT_TRUE(panel->shouldShowHelp());
    panel->willShow(); // does nothing without a view
}

TEST(Panel, AHostMayKeepTheViewInItsDialogWhenItLetsThePanelGo)
{
    pde::PDEPlugIn *factory = loadFactory();
    Callback callback;
    std::unique_ptr<pde::PDEPanel> panel = printPanel(factory, &callback);
    QWidget dialog;
    QWidget *view = panel->panelView();
    ASSERT_NE(view, nullptr);
    view->setParent(&dialog);
    panel.reset(); // takes its view back and deletes it
    EXPECT_TRUE(dialog.findChildren<QWidget *>().isEmpty());
}

TEST(Bundles, TwoCopiesUnderOtherIdentifiersWorkSideBySide)
{
    BundleCopy copy(QStringLiteral("org.example.second.JobType"));
    copy.addResource(QStringLiteral("en.lproj/Localizable5.strings"), "\"Custom PDE Title\" = \"Job Type Five\";\n");
    pde::PDEPlugIn *first = loadFactory();
    pde::PDEPlugIn *second = loadFactory(copy.path());
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ASSERT_NE(static_cast<void *>(first), static_cast<void *>(second));

    pde::setPreferredLanguages(QStringList{QStringLiteral("en")});
    const Ppd ppd = openFixturePpd("plugin-model-5.ppd");
    Callback firstCallback;
    Callback secondCallback;
    firstCallback.ppd = ppd.get();
    secondCallback.ppd = ppd.get();
    const std::unique_ptr<pde::PDEPanel> firstPanel = printPanel(first, &firstCallback);
    const std::unique_ptr<pde::PDEPanel> secondPanel = printPanel(second, &secondCallback);
    EXPECT_EQ(firstPanel->panelName(), QStringLiteral("Job Type"));
    EXPECT_EQ(secondPanel->panelName(), QStringLiteral("Job Type Five"));
    EXPECT_EQ(secondPanel->panelKind(), QStringLiteral("org.example.second.JobType"));
    pde::setPreferredLanguages(std::nullopt);

    for (const auto &[panel, callback] : {std::pair{firstPanel.get(), &firstCallback}, std::pair{secondPanel.get(), &secondCallback}}) {
        QWidget *view = panel->panelView();
        ASSERT_NE(view, nullptr);
        panel->restoreValuesAndReturnError(nullptr);
        enter(view, {3, QStringLiteral("taro"), std::nullopt, std::nullopt, std::nullopt});
        ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr));
        EXPECT_EQ(callback->settings.value(recordKey("PrintType")), QVariant(QStringLiteral("4")));
        EXPECT_EQ(callback->settings.value(recordKey("PrintTypeUserName")), QVariant(QStringLiteral("taro")));
    }
}

} // namespace
