// SPDX-License-Identifier: MIT
// The help set-up of the panel's first view: a stale help registration is
// removed on the one system family that needs it, and the book is registered
// on every system. The panel is made directly here, so that the system
// version can be fixed.
#include "BundleCopy.h"

#include "panel/PanelClasses.h"
#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"
#include "plugin/VirtualMailboxPdeInterface.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

const QString kIdentifier = QStringLiteral("org.example.helpsetup.JobType");

const QByteArray kRegistration = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>RegisteredBooks</key>
	<dict>
		<key>org.example.helpsetup.JobType</key>
		<array><dict><key>url</key><string>file:///opt/Example.plugin/Contents/Resources/en.lproj/Help/</string></dict></array>
	</dict>
	<key>RegistrationOrder</key>
	<array><string>org.example.helpsetup.JobType</string></array>
</dict>
</plist>
)";

class NoCallback : public pde::PDEPluginCallback
{
public:
    ppd_file_t *ppdFile() override { return nullptr; }
    pde::PrintSettings *printSettings() override { return nullptr; }
};

std::string g_release;

std::optional<std::string> fixedRelease()
{
    return g_release;
}

TEST(HelpSetup, StaleRegistrationIsRemovedOnlyOnTheTenSixFamilyAndTheBookIsAlwaysRegistered)
{
    hosttest::BundleCopy copy(kIdentifier);
    pde::Bundle *bundle = pde::Bundle::open(copy.path());
    ASSERT_NE(bundle, nullptr);
    jt::registerPanelClasses(bundle->classes());
    const QByteArray previousHome = qgetenv("HOME");
    const jt::KernelReleaseReader previousReader = jt::setKernelReleaseReader(&fixedRelease);

    const struct {
        const char *release; // packed: 10.8 -> 0x1068, 9.8 -> 0x1058, 11.5 -> 0x1075
        bool removed;
    } rows[] = {{"10.8.0", true}, {"9.8.0", false}, {"11.5.0", false}};
    for (const auto &row : rows) {
        QTemporaryDir home;
        const QString preferences = home.path() + QStringLiteral("/Library/Preferences");
        QDir().mkpath(preferences);
        QFile file(preferences + QStringLiteral("/com.apple.help.plist"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(kRegistration);
        file.close();
        qputenv("HOME", home.path().toUtf8());
        g_release = row.release;
        jt::resetSystemQueryCache();

        NoCallback callback;
        jt::VirtualMailboxPdeInterface panel(&callback, bundle);
        ASSERT_NE(panel.panelView(), nullptr) << row.release;
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray after = file.readAll();
        file.close();
        EXPECT_EQ(!after.contains(kIdentifier.toUtf8()), row.removed) << row.release;
        EXPECT_EQ(after == kRegistration, !row.removed) << row.release;
        EXPECT_TRUE(pde::HelpViewer::instance().registeredBooks().contains(
            QStringLiteral("com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.help")))
            << row.release;
    }
    jt::setKernelReleaseReader(previousReader);
    jt::resetSystemQueryCache();
    qputenv("HOME", previousHome);
}

} // namespace
