// SPDX-License-Identifier: MIT
// UTF-16 buffers and the sandbox flag.
#include "platform/SystemQueryCache.h"
#include "platform/UnicodeBuffer.h"
#include "platform/UtilityService.h"

#include "QStringPrinter.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

TEST(UnicodeBuffer, MeasuresAndConverts)
{
    const struct {
        const char *name;
        std::vector<char16_t> units; // exactly the buffer, so reading past it trips ASan
        int size;
        int length;
        std::optional<QString> text;
    } rows[] = {
        {"one unit then zero", {u'A', 0}, 4, 1, QStringLiteral("A")},
        {"no zero unit", {u'A', u'B'}, 4, -1, std::nullopt},
        {"zero beyond size", {u'A', u'B', 0}, 4, -1, std::nullopt},
        {"empty text", {0, u'A'}, 4, 0, std::nullopt},
        {"odd size drops half unit", {u'A', 0}, 3, -1, std::nullopt},
        {"odd size rounds down", {u'A', 0, u'B'}, 5, 1, QStringLiteral("A")},
        {"size one", {0}, 1, -1, std::nullopt},
        {"negative size", {0}, -2, -1, std::nullopt},
        {"byte order mark kept", {0xFEFF, u'A', 0}, 6, 2, QStringView(u"\uFEFFA").toString()},
        {"swapped mark kept", {0xFFFE, u'A', 0}, 6, 2, QStringView(u"\uFFFEA").toString()},
        {"lone surrogate kept", {0xD800, 0}, 4, 1, QString(QChar(0xD800))},
        {"surrogate pair", {0xD83D, 0xDE00, u'\u00E9', 0}, 8, 3, QStringView(u"\U0001F600\u00E9").toString()},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(qs::unicharLength(row.units.data(), row.size), row.length);
        EXPECT_EQ(qs::UtilityService::stringFromUnicodeBuf(row.units.data(), row.size), row.text);
    }
    EXPECT_EQ(qs::unicharLength(nullptr, 16), -1);
    EXPECT_EQ(qs::UtilityService::stringFromUnicodeBuf(nullptr, 16), std::nullopt);
}

// Each test starts outside Flatpak and Snap and gives the caller's
// environment back.
class SandboxTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *name : kVariables)
            saved_.push_back(qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
        qunsetenv("FLATPAK_ID");
        qunsetenv("SNAP_NAME");
        if (QFileInfo::exists(QStringLiteral("/.flatpak-info")))
            GTEST_SKIP() << "running inside Flatpak";
    }
    void TearDown() override
    {
        for (std::size_t i = 0; i < saved_.size(); ++i)
            saved_[i] ? qputenv(kVariables[i], *saved_[i]) : qunsetenv(kVariables[i]);
        qs::resetSystemQueryCache();
    }
    void useHome(const char *relative)
    {
        const QString path = temp_.filePath(QString::fromUtf8(relative));
        ASSERT_TRUE(QDir().mkpath(path));
        qputenv("HOME", QFile::encodeName(path));
    }

private:
    static constexpr const char *kVariables[] = {"HOME", "FLATPAK_ID", "SNAP_NAME"};
    std::vector<std::optional<QByteArray>> saved_;
    QTemporaryDir temp_;
};

TEST_F(SandboxTest, DetectsContainerHomeFlatpakAndSnap)
{
    const struct {
        const char *home;
        const char *variable; // set to a non-empty value unless null
        bool sandboxed;
    } rows[] = {
        {"Library/Containers/x/Data", nullptr, true},
        {"home", nullptr, false},
        {"containers/x", nullptr, false},
        {"home", "FLATPAK_ID", true},
        {"home", "SNAP_NAME", true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.home) + " " + (row.variable ? row.variable : ""));
        qs::resetSystemQueryCache();
        useHome(row.home);
        if (row.variable != nullptr)
            qputenv(row.variable, "org.example.Viewer");
        EXPECT_EQ(qs::UtilityService::isSandboxed(), row.sandboxed);
        if (row.variable != nullptr)
            qunsetenv(row.variable);
    }
}

TEST_F(SandboxTest, FlagIsKeptUntilReset)
{
    qs::resetSystemQueryCache();
    useHome("Library/Containers/x/Data");
    EXPECT_TRUE(qs::UtilityService::isSandboxed());
    useHome("home");
    EXPECT_TRUE(qs::UtilityService::isSandboxed());
    qs::resetSystemQueryCache();
    EXPECT_FALSE(qs::UtilityService::isSandboxed());
}

} // namespace
