// SPDX-License-Identifier: MIT
// The factory and the panel's life as the host drives it: kinds of dialog,
// title and kind, the view made once, help, and two copies of the bundle in
// one process; and the help set-up of the first view, with the panel made
// directly, so that the system version can be fixed.
#include "HostHarness.h"
#include "MessageRecorder.h"

#include "panel/PanelClasses.h"
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"
#include "plugin/VirtualMailboxPdeInterface.h"

#include <QWidget>

#include <gtest/gtest.h>

namespace {

using namespace hosttest;

TEST(Factory, MakesOnePanelForThePrintDialogAndAnEmptyListForOtherDialogs)
{
    pde::PDEPlugIn *factory = loadFactory();
    ASSERT_NE(factory, nullptr);
    Callback callback;
    const std::pair<QString, std::size_t> rows[] = {{QString(pde::kPrintDialogTypeID), 1},
                                                    {QString(pde::kPageSetupDialogTypeID), 0},
                                                    {QString(pde::kPrintDialogTypeID).toLower(), 0}};
    for (const auto &[type, count] : rows) {
        const std::optional<pde::PDEPanelList> panels = factory->PDEPanelsForType(type, &callback);
        ASSERT_TRUE(panels.has_value()) << qPrintable(type) << ": an empty list, not none";
        EXPECT_EQ(panels->size(), count) << qPrintable(type);
    }
}

// Until the panel has a view the host shows its own help; a nib the PPD
// names but the bundle lacks gives no view, and is tried again.
TEST(Panel, ViewIsMadeOnceAndHelpIsThePanelsOwnOnceItExists)
{
    Recorder recorder;
    Callback callback("plugin-allow-null-True.ppd"), lacking("plugin-missing-nib.ppd");
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
    EXPECT_TRUE(panel->shouldShowHelp());
    QWidget *view = panel->panelView();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(panel->panelView(), view);
    EXPECT_FALSE(panel->shouldShowHelp());
    ASSERT_EQ(recorder.helpPages.size(), 1);
    EXPECT_TRUE(recorder.helpPages.front().endsWith(u"/Help/SecureJobType.html"_s))
        << qPrintable(recorder.helpPages.front());

    const std::unique_ptr<pde::PDEPanel> viewless = printPanel(loadFactory(), &lacking);
    EXPECT_EQ(viewless->panelView(), nullptr);
    EXPECT_EQ(viewless->panelView(), nullptr);
    EXPECT_TRUE(viewless->shouldShowHelp());
    viewless->willShow(); // does nothing without a view
}

// A nib or table name from the PPD that would lead out of the bundle's
// resources gives the default nib and table, and says so once each; control
// characters in it do not reach the log as they are.
TEST(Panel, NamesFromThePpdThatLeaveTheBundleGiveTheDefaults)
{
    const testsupport::MessageRecorder log;
    const testsupport::LanguagesGuard english({u"en"_s});
    Callback callback("plugin-hostile-names.ppd");
    const std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
    EXPECT_EQ(panel->panelName(), u"Job Type"_s);
    QWidget *view = panel->panelView();
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->findChild<QLineEdit *>(u"passwordTextField"_s)->echoMode(), QLineEdit::Password);
    const QStringList refused = testsupport::MessageRecorder::messages().filter(u"JobTypeQTRN."_s);
    ASSERT_EQ(refused.size(), 2) << qPrintable(refused.join(u'\n'));
    EXPECT_TRUE(refused[0].contains(u"NVLocalizableFileIndex \"/../../../../tmp/evil\""_s)) << qPrintable(refused[0]);
    EXPECT_TRUE(refused[1].contains(u"NVJobTypeNibName \"../../../../tmp/evil\\u001B[2J\""_s)) << qPrintable(refused[1]);
    EXPECT_FALSE(refused.join(QString()).contains(QChar(0x1b)));
}

// Whichever goes first, the panel or the host's dialog holding the view,
// nothing is used after it was freed or freed twice (run under ASan).
TEST(Panel, TheHostsDialogAndThePanelMayGoInEitherOrder)
{
    for (const bool dialogFirst : {false, true}) {
        Callback callback("plugin-allow-null-True.ppd");
        std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
        auto dialog = std::make_unique<QWidget>();
        QWidget *view = panel->panelView();
        ASSERT_NE(view, nullptr);
        view->setParent(dialog.get());
        enter(view, {1, u"taro"_s, u"12"_s, {}, {}});
        if (dialogFirst) {
            dialog.reset();
            EXPECT_EQ(panel->panelView(), nullptr);
            EXPECT_TRUE(panel->saveValuesAndReturnError(nullptr)) << "the values outlive the view";
            EXPECT_EQ(callback.settings.value(recordKey("PrintTypeUserName")), QVariant(u"taro"_s));
            panel->willShow();
            panel->summaryInfo();
        } else {
            panel.reset(); // takes its view out of the dialog and deletes it
            EXPECT_TRUE(dialog->findChildren<QWidget *>().isEmpty());
        }
    }
}

// The title comes from the model's table, which a copy may add: two copies
// of the bundle under other identifiers work side by side, and a factory
// keeps its first bundle.
TEST(Bundles, TitleFromTheModelTableAndTwoCopiesSideBySide)
{
    const BundleCopy copy(u"org.example.second.JobType"_s);
    testsupport::writeFile(copy.path + u"/Contents/Resources/en.lproj/Localizable5.strings"_s,
                           "\"Custom PDE Title\" = \"Job Type Five\";\n");
    pde::PDEPlugIn *first = loadFactory();
    pde::PDEPlugIn *second = loadFactory(copy.path);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ASSERT_NE(static_cast<void *>(first), static_cast<void *>(second));
    EXPECT_TRUE(first->initWithBundle(pde::Bundle::open(copy.path))); // ignored: it has one
    const QString builtKind = u"com.norvanta.qs.o.vellumark.pde.JobTypeQTRN"_s;
    const struct { pde::PDEPlugIn *factory; const char *ppd, *language; QString title, kind; } rows[] = {
        {first, "plugin-allow-null-True.ppd", "en", u"Job Type"_s, builtKind},
        {first, "plugin-model-2.ppd", "en", u"Job Type (Storage Kit)"_s, builtKind},
        {first, "plugin-model-2.ppd", "ja_JP", u"ジョブタイプ（ストレージキット）"_s, builtKind},
        {first, "plugin-model-5.ppd", "en", u"Job Type"_s, builtKind}, // table 5: only the second copy has it
        {second, "plugin-model-5.ppd", "en", u"Job Type Five"_s, u"org.example.second.JobType"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.ppd << " " << row.language);
        const testsupport::LanguagesGuard languages({QString::fromLatin1(row.language)});
        Callback callback(row.ppd);
        const std::unique_ptr<pde::PDEPanel> panel = printPanel(row.factory, &callback);
        EXPECT_EQ(panel->panelName(), row.title);
        EXPECT_EQ(panel->panelKind(), row.kind);
        ASSERT_NE(panel->panelView(), nullptr);
        panel->restoreValuesAndReturnError(nullptr);
        enter(panel->panelView(), {3, u"taro"_s, {}, {}, {}});
        ASSERT_TRUE(panel->saveValuesAndReturnError(nullptr));
        EXPECT_EQ(record(callback.settings), u"201|4|taro||2|"_s);
    }
}

const QByteArray kRegistration = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>RegisteredBooks</key><dict><key>org.example.helpsetup.JobType</key>
<array><dict><key>url</key><string>file:///opt/Example.plugin/Contents/Resources/en.lproj/Help/</string></dict></array></dict>
<key>RegistrationOrder</key><array><string>org.example.helpsetup.JobType</string></array>
</dict></plist>
)";

std::string g_release;

TEST(HelpSetup, StaleRegistrationIsRemovedOnlyOnTheTenSixFamilyAndTheBookIsAlwaysRegistered)
{
    const BundleCopy copy(u"org.example.helpsetup.JobType"_s);
    pde::Bundle *bundle = pde::Bundle::open(copy.path);
    ASSERT_NE(bundle, nullptr);
    jt::registerPanelClasses(bundle->classes());
    const QByteArray previousHome = qgetenv("HOME");
    const jt::KernelReleaseReader previousReader =
        jt::setKernelReleaseReader([]() -> std::optional<std::string> { return g_release; });

    // Packed: 10.8 -> 0x1068, 9.8 -> 0x1058, 11.5 -> 0x1075.
    const std::pair<const char *, bool> rows[] = {{"10.8.0", true}, {"9.8.0", false}, {"11.5.0", false}};
    for (const auto &[release, removed] : rows) {
        SCOPED_TRACE(release);
        QTemporaryDir home;
        QFile file(home.path() + u"/Library/Preferences/com.apple.help.plist"_s);
        testsupport::writeFile(file.fileName(), kRegistration);
        qputenv("HOME", home.path().toUtf8());
        g_release = release;
        jt::resetSystemQueryCache();

        Callback callback;
        jt::VirtualMailboxPdeInterface panel(&callback, bundle);
        ASSERT_NE(panel.panelView(), nullptr);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray after = file.readAll();
        EXPECT_EQ(!after.contains("org.example.helpsetup.JobType"), removed);
        EXPECT_EQ(after == kRegistration, !removed);
        EXPECT_TRUE(pde::HelpViewer::instance().registeredBooks().contains(
            u"com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.help"_s));
    }
    jt::setKernelReleaseReader(previousReader);
    jt::resetSystemQueryCache();
    qputenv("HOME", previousHome);
}

} // namespace
