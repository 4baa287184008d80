// SPDX-License-Identifier: MIT
// Removing a stale help registration from the help viewer's file under a
// temporary home directory: what is removed, what is left byte for byte.
#include "QStringPrinter.h"

#include "pdekit/PropertyList.h"
#include "platform/UtilityService.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <plist/plist.h>

namespace {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

const QString kId = QStringLiteral("org.example.help");

QByteArray registration(const QString &url, const QString &extra = {})
{
    return QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>RegisteredBooks</key><dict>
<key>org.example.help</key><array><dict><key>url</key><string>%1</string></dict></array>
<key>org.example.other</key><array><dict><key>url</key><string>file:///o/en.lproj/</string></dict></array>
</dict>
<key>RegistrationOrder</key><array><string>org.example.other</string><string>org.example.help</string><string>org.example.help</string></array>
%2</dict></plist>
)")
        .arg(url, extra)
        .toUtf8();
}

QByteArray binary(const QByteArray &xml)
{
    const pde::PropertyListNode root = pde::parsePropertyList(xml);
    char *data = nullptr;
    uint32_t length = 0;
    plist_to_bin(static_cast<plist_t>(root.get()), &data, &length);
    QByteArray bytes(data, static_cast<qsizetype>(length));
    std::free(data);
    return bytes;
}

class HelpCache : public ::testing::Test
{
protected:
    void SetUp() override
    {
        previousHome = qgetenv("HOME");
        qputenv("HOME", home.path().toUtf8());
        QDir().mkpath(home.path() + QStringLiteral("/Library/Preferences"));
        path = home.path() + QStringLiteral("/Library/Preferences/com.apple.help.plist");
    }
    void TearDown() override { qputenv("HOME", previousHome); }

    void write(const QByteArray &content)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
    }
    QByteArray read() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir home;
    QByteArray previousHome;
    QString path;
};

TEST_F(HelpCache, AnEntryFromALocalizationFolderIsRemovedAndTheFileRewrittenAsXml)
{
    for (const bool asBinary : {false, true}) {
        const QByteArray xml = registration(QStringLiteral("file:///b/JobType.plugin/Contents/Resources/en.lproj/Help/"));
        write(asBinary ? binary(xml) : xml);
        jt::UtilityService::removeHelpCacheForBundleID(kId);
        const QByteArray after = read();
        EXPECT_FALSE(pde::isBinaryPropertyList(after)) << asBinary;
        const QVariantMap root = pde::propertyListValue(pde::parsePropertyList(after).get()).toMap();
        const QVariantMap books = root.value(QStringLiteral("RegisteredBooks")).toMap();
        EXPECT_FALSE(books.contains(kId)) << asBinary;
        EXPECT_TRUE(books.contains(QStringLiteral("org.example.other"))) << asBinary;
        EXPECT_EQ(root.value(QStringLiteral("RegistrationOrder")).toStringList(),
                  (QStringList{QStringLiteral("org.example.other"), kId}))
            << asBinary << ": only the first occurrence goes";
    }
}

TEST_F(HelpCache, AnythingElseLeavesTheFileByteForByte)
{
    const QByteArray plain = registration(QStringLiteral("file:///b/JobType.plugin/Contents/Resources/Help/"));
    const struct {
        const char *name;
        QByteArray content;
        std::optional<QString> id;
    } rows[] = {
        {"url without a localization folder", plain, kId},
        {"the same in binary form", binary(plain), kId},
        {"identifier not registered", registration(QStringLiteral("file:///x/en.lproj/")), QStringLiteral("org.example.none")},
        {"no identifier", registration(QStringLiteral("file:///x/en.lproj/")), std::nullopt},
        {"not a property list", QByteArrayLiteral("RegisteredBooks org.example.help en.lproj"), kId},
        {"empty file", QByteArray(), kId},
        {"url that is not a string",
         registration(QStringLiteral("x")).replace("<string>x</string>", "<integer>1</integer>"), kId},
        {"entry that is not an array",
         QByteArrayLiteral("<plist version=\"1.0\"><dict><key>RegisteredBooks</key><dict><key>org.example.help</key>"
                           "<string>en.lproj</string></dict></dict></plist>"), kId},
    };
    for (const auto &row : rows) {
        write(row.content);
        jt::UtilityService::removeHelpCacheForBundleID(row.id);
        EXPECT_EQ(read(), row.content) << row.name;
    }
    QFile::remove(path);
    jt::UtilityService::removeHelpCacheForBundleID(kId);
    EXPECT_FALSE(QFile::exists(path)) << "no file is made where there was none";
}

TEST_F(HelpCache, AListXmlCannotHoldIsLoggedAndWrittenAllTheSame)
{
    plist_t root = nullptr;
    const QByteArray xml = registration(QStringLiteral("file:///b/en.lproj/"));
    plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &root);
    plist_dict_set_item(root, "Archive", plist_new_uid(3));
    char *data = nullptr;
    uint32_t length = 0;
    plist_to_bin(root, &data, &length);
    write(QByteArray(data, static_cast<qsizetype>(length)));
    std::free(data);
    plist_free(root);

    static QStringList messages;
    messages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &message) { messages.append(message); });
    jt::UtilityService::removeHelpCacheForBundleID(kId);
    qInstallMessageHandler(previous);
    EXPECT_EQ(messages, QStringList{QStringLiteral("Illegal Property List.")});
    EXPECT_FALSE(read().contains("org.example.help</key>"));
}

} // namespace
