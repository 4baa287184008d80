// SPDX-License-Identifier: MIT
// The help set-up of the panel's first view: a stale help registration is
// removed on the one system family that needs it, and the book is registered
// on every system. The panel is made directly here, so that the system
// version can be fixed.
#include "HostHarness.h"

#include "panel/PanelClasses.h"
#include "pdekit/Bundle.h"
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"
#include "plugin/VirtualMailboxPdeInterface.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace {

using namespace hosttest;

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
        QTemporaryDir home;
        QDir().mkpath(home.path() + u"/Library/Preferences"_s);
        QFile file(home.path() + u"/Library/Preferences/com.apple.help.plist"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(kRegistration);
        file.close();
        qputenv("HOME", home.path().toUtf8());
        g_release = release;
        jt::resetSystemQueryCache();

        Callback callback;
        jt::VirtualMailboxPdeInterface panel(&callback, bundle);
        ASSERT_NE(panel.panelView(), nullptr) << release;
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray after = file.readAll();
        file.close();
        EXPECT_EQ(!after.contains("org.example.helpsetup.JobType"), removed) << release;
        EXPECT_EQ(after == kRegistration, !removed) << release;
        EXPECT_TRUE(pde::HelpViewer::instance().registeredBooks().contains(
            u"com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.help"_s))
            << release;
    }
    jt::setKernelReleaseReader(previousReader);
    jt::resetSystemQueryCache();
    qputenv("HOME", previousHome);
}

} // namespace
