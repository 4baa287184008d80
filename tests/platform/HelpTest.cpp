// SPDX-License-Identifier: MIT
// Help: which book the panel's Help button opens its page in, from the PPD
// and the bundle's information dictionary, and removing a stale help
// registration from the help viewer's file, with bundles and home directory
// in temporary folders. (The other ways of opening a help page have no
// caller in the bundle or the hosts; they have no tests here.)
#include "FixturePpd.h"
#include "MessageRecorder.h"

#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "pdekit/PropertyList.h"
#include "platform/HelpBook.h"
#include "platform/UtilityService.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <plist/plist.h>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;

namespace {

// A registered bundle in `dir` with book `book`, `extra` entries in its
// Info.plist, `localized` as its en.lproj/InfoPlist.strings (none when empty)
// and the page opened here.
pde::Bundle *bundle(const QTemporaryDir &dir, const QByteArray &book, const QByteArray &extra = {},
                    const QByteArray &localized = {})
{
    static int serial = 0;
    const QString path = dir.filePath(QString::number(++serial));
    const auto write = [&path](const QString &name, const QByteArray &content) {
        QFile file(path + name);
        QDir().mkpath(QFileInfo(file).path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    write(QStringLiteral("/Contents/Resources/Help/page.html"), {});
    if (!localized.isEmpty())
        write(QStringLiteral("/Contents/Resources/en.lproj/InfoPlist.strings"), localized);
    write(QStringLiteral("/Contents/Info.plist"),
          "<plist version=\"1.0\"><dict><key>CFBundleHelpBookFolder</key><string>Help</string>"
          "<key>CFBundleHelpBookName</key><string>" + book + "</string>" + extra + "</dict></plist>");
    pde::Bundle *opened = pde::Bundle::open(path);
    jt::RegisterHelpBook(opened);
    return opened;
}

TEST(HelpBook, PagesOpenInTheBookFound)
{
    QStringList opened; // "book: page in the bundle's resources#anchor"
    const pde::HelpViewer::PageHandler previous = pde::HelpViewer::instance().setPageHandler(
        [&opened](const QString &book, const QUrl &page) {
            opened.append(book + u": "_s + page.path().section(u"/Contents/Resources/"_s, 1) + u'#' + page.fragment());
        });
    const QTemporaryDir dir;
    bundle(dir, "Other Book"); // a book of its own, to see pages opened in it
    // The bundle renames its book in a language folder (en, the development
    // region, is always searched): registration and the lookup read the
    // localized information dictionary and so open the localized book.
    pde::Bundle *localized = bundle(dir, "Raw Book", {}, "\"CFBundleHelpBookName\" = \"Local Book\";\n");
    const char *key = "NVPTHelpBookName";
    const QString page = QStringLiteral("page.html");
    // GotoHelpPage2_105 looks for the book in the key the PPD names, in the
    // key the bundle's book names, then in the bundle's book.
    const auto open105 = [&](const char *ppdName, const QByteArray &info) {
        const testsupport::Ppd ppd = ppdName != nullptr ? testsupport::openFixturePpd(ppdName) : nullptr;
        jt::GotoHelpPage2_105(ppd.get(), key, bundle(dir, "Main Book", info), page, std::nullopt);
    };
    open105(nullptr, {});
    open105(nullptr, "<key>Main Book</key><string>Other Book</string>");
    open105("help-string-key.ppd", "<key>OtherBookKey</key><string>Other Book</string>");
    open105("help-number.ppd", "<key>NumberKey</key><integer>7</integer>"); // nothing opens
    open105("help-missing-key.ppd", {});
    jt::GotoHelpPage2_105(nullptr, key, localized, page, std::nullopt);
    jt::GotoHelpPage2_105(nullptr, key, nullptr, page, std::nullopt);
    pde::HelpViewer::instance().setPageHandler(previous);
    EXPECT_EQ(opened, (QStringList{u"Main Book: Help/page.html#"_s, u"Other Book: Help/page.html#"_s,
                                   u"Other Book: Help/page.html#"_s, u"Main Book: Help/page.html#"_s,
                                   u"Local Book: Help/page.html#"_s}));
}

QByteArray registration(const char *url)
{
    return "<plist version=\"1.0\"><dict><key>RegisteredBooks</key><dict><key>org.example.help</key><array><dict>"
           "<key>url</key><string>" + QByteArray(url) + "</string></dict></array><key>org.example.other</key><array>"
           "<dict><key>url</key><string>file:///o/en.lproj/</string></dict></array></dict><key>RegistrationOrder</key>"
           "<array><string>org.example.other</string><string>org.example.help</string><string>org.example.help</string>"
           "</array></dict></plist>\n";
}

// The binary form of the XML with a keyed-archive reference added, which XML
// cannot hold.
QByteArray binary(const QByteArray &xml)
{
    const pde::PropertyListNode root = pde::parsePropertyList(xml);
    plist_dict_set_item(root.get(), "Archive", plist_new_uid(3));
    char *data = nullptr;
    uint32_t length = 0;
    plist_to_bin(root.get(), &data, &length);
    const QByteArray bytes(data, static_cast<qsizetype>(length));
    std::free(data);
    return bytes;
}

TEST(HelpCache, RemovesOnlyAnEntryFromALocalizationFolder)
{
    const QByteArray savedHome = qgetenv("HOME");
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    const QDir preferences(home.filePath(QStringLiteral("Library/Preferences")));
    QDir().mkpath(preferences.path());
    QFile file(preferences.filePath(QStringLiteral("com.apple.help.plist")));
    const QByteArray lproj = registration("file:///b/JobType.plugin/Contents/Resources/en.lproj/Help/");
    // What the removal leaves, in the XML form it is written in.
    const QByteArray left = "<plist version=\"1.0\"><dict><key>RegisteredBooks</key><dict><key>org.example.other</key>"
                            "<array><dict><key>url</key><string>file:///o/en.lproj/</string></dict></array></dict>"
                            "<key>RegistrationOrder</key><array><string>org.example.other</string>"
                            "<string>org.example.help</string></array></dict></plist>";
    const auto asXml = [](const QByteArray &list) { return pde::xmlPropertyList(pde::parsePropertyList(list).get()); };
    const QString id = QStringLiteral("org.example.help");
    const QByteArray noLproj = registration("file:///b/JobType.plugin/Contents/Resources/Help/");
    // content: the file before (none when nullopt); after: the file after,
    // nullopt when it must be left byte for byte (or, without one, not made).
    const struct {
        const char *name;
        std::optional<QByteArray> content;
        std::optional<QString> id;
        std::optional<QByteArray> after;
        QStringList messages = {};
    } rows[] = {
        {"removed, first in the order only", lproj, id, asXml(left)},
        {"binary rewritten as XML that cannot hold it", binary(lproj), id, asXml(binary(left)),
         {u"com.norvanta.qs.o.vellumark.pde.JobTypeQTRN.utilityservice: Illegal Property List."_s}},
        {"url without .lproj", noLproj, id, std::nullopt},
        {"no entry", lproj, QStringLiteral("org.example.none"), std::nullopt},
        {"no file", std::nullopt, id, std::nullopt},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        file.remove();
        if (row.content) {
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(*row.content);
            file.close();
        }
        const testsupport::MessageRecorder log;
        jt::UtilityService::removeHelpCacheForBundleID(row.id);
        // Nothing made beside it either, such as a left-over temporary file.
        EXPECT_EQ(preferences.entryList(QDir::Files | QDir::Hidden),
                  row.content ? QStringList{QStringLiteral("com.apple.help.plist")} : QStringList{});
        if (row.content) {
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            EXPECT_EQ(file.readAll(), row.after.value_or(*row.content));
            file.close();
        }
        EXPECT_EQ(testsupport::MessageRecorder::messages(), row.messages);
    }
    qputenv("HOME", savedHome);
}

} // namespace
