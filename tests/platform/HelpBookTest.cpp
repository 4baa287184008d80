// SPDX-License-Identifier: MIT
// Which help book a page opens in, from the PPD and the bundle's information
// dictionary, with bundles written to a temporary folder.
#include "QStringPrinter.h"

#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "platform/HelpBook.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

struct PpdClose {
    void operator()(ppd_file_t *ppd) const { ppdClose(ppd); }
};
using Ppd = std::unique_ptr<ppd_file_t, PpdClose>;

Ppd openPpd(const char *name)
{
    return Ppd(ppdOpenFile((QByteArray(PDE_TEST_DATA_DIR) + '/' + name).constData()));
}

// A bundle whose Info.plist holds `entries` (string values, or <integer>
// when the value starts with '#') and whose help folder has `pages`.
pde::Bundle *writeBundle(const QTemporaryDir &dir, const QString &name, const QList<std::pair<QString, QString>> &entries,
                         const QStringList &pages)
{
    const QString path = dir.path() + u'/' + name + QStringLiteral(".plugin");
    QDir().mkpath(path + QStringLiteral("/Contents/Resources/Help"));
    QByteArray plist = "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>";
    for (const auto &[key, value] : entries) {
        plist += "<key>" + key.toUtf8() + "</key>";
        plist += value.startsWith(u'#') ? "<integer>" + value.mid(1).toUtf8() + "</integer>"
                                        : "<string>" + value.toUtf8() + "</string>";
    }
    plist += "</dict></plist>";
    QFile info(path + QStringLiteral("/Contents/Info.plist"));
    info.open(QIODevice::WriteOnly);
    info.write(plist);
    info.close();
    for (const QString &page : pages) {
        QDir().mkpath(QFileInfo(path + QStringLiteral("/Contents/Resources/Help/") + page).absolutePath());
        QFile file(path + QStringLiteral("/Contents/Resources/Help/") + page);
        file.open(QIODevice::WriteOnly);
        file.write("<html></html>");
        file.close();
    }
    pde::Bundle *bundle = pde::Bundle::open(path);
    jt::RegisterHelpBook(bundle);
    return bundle;
}

class HelpBook : public ::testing::Test
{
protected:
    void SetUp() override
    {
        previous = pde::HelpViewer::instance().setPageHandler(
            [this](const QString &book, const QUrl &page) { opened.append({book, page}); });
        // Book "Other Book" exists as a bundle of its own, so that a page
        // opened in it can be seen.
        writeBundle(dir, QStringLiteral("Other"),
                    {{QStringLiteral("CFBundleIdentifier"), QStringLiteral("org.example.other")},
                     {QStringLiteral("CFBundleHelpBookName"), QStringLiteral("Other Book")},
                     {QStringLiteral("CFBundleHelpBookFolder"), QStringLiteral("Help")}},
                    {QStringLiteral("page.html"), QStringLiteral("Vendor/Pages/page.html")});
    }
    void TearDown() override { pde::HelpViewer::instance().setPageHandler(previous); }

    pde::Bundle *mainBundle(const QList<std::pair<QString, QString>> &extra)
    {
        QList<std::pair<QString, QString>> entries{
            {QStringLiteral("CFBundleIdentifier"), QStringLiteral("org.example.main%1").arg(++serial)},
            {QStringLiteral("CFBundleHelpBookName"), QStringLiteral("Main Book")},
            {QStringLiteral("CFBundleHelpBookFolder"), QStringLiteral("Help")}};
        entries.append(extra);
        return writeBundle(dir, QStringLiteral("Main%1").arg(serial), entries,
                           {QStringLiteral("page.html"), QStringLiteral("Help/page.html"), QStringLiteral("Vendor/Pages/page.html")});
    }

    QTemporaryDir dir;
    QList<std::pair<QString, QUrl>> opened;
    pde::HelpViewer::PageHandler previous;
    int serial = 0;
};

TEST_F(HelpBook, GotoHelpPage2_105FindsTheBookInOrder)
{
    const struct {
        const char *name;
        const char *ppd;
        QList<std::pair<QString, QString>> info;
        std::optional<QString> book; // where the page opens, if anywhere
    } rows[] = {
        {"the bundle's book", nullptr, {}, QStringLiteral("Main Book")},
        {"the bundle's book names a key holding the book",
         nullptr, {{QStringLiteral("Main Book"), QStringLiteral("Other Book")}}, QStringLiteral("Other Book")},
        {"the PPD names a key holding a book",
         "help-string-key.ppd", {{QStringLiteral("OtherBookKey"), QStringLiteral("Other Book")}}, QStringLiteral("Other Book")},
        {"the PPD names a key holding a number: nothing opens",
         "help-number.ppd", {{QStringLiteral("NumberKey"), QStringLiteral("#7")}}, std::nullopt},
        {"the PPD names a key the bundle lacks: the bundle's book", "help-missing-key.ppd", {}, QStringLiteral("Main Book")},
    };
    for (const auto &row : rows) {
        opened.clear();
        const Ppd ppd = row.ppd != nullptr ? openPpd(row.ppd) : Ppd();
        jt::GotoHelpPage2_105(ppd.get(), "NVPTHelpBookName", mainBundle(row.info), QStringLiteral("page.html"), std::nullopt);
        if (row.book) {
            ASSERT_EQ(opened.size(), 1) << row.name;
            EXPECT_EQ(opened.front().first, *row.book) << row.name;
        } else {
            EXPECT_TRUE(opened.isEmpty()) << row.name;
        }
    }
    opened.clear();
    jt::GotoHelpPage2_105(nullptr, "NVPTHelpBookName", nullptr, QStringLiteral("page.html"), std::nullopt);
    EXPECT_TRUE(opened.isEmpty()) << "no bundle, no page";
}

TEST_F(HelpBook, GotoHelpPage2_106TakesTheFolderFromThePPDWhenItHasOne)
{
    pde::Bundle *bundle = mainBundle({});
    const Ppd ppd = openPpd("help-folder.ppd");
    jt::GotoHelpPage2_106(ppd.get(), "NVPTHelpBookName", bundle, QStringLiteral("Help"), QStringLiteral("page.html"),
                          QStringLiteral("limits"));
    jt::GotoHelpPage2_106(nullptr, "NVPTHelpBookName", bundle, QStringLiteral("Help"), QStringLiteral("page.html"),
                          std::nullopt);
    jt::GotoHelpPage2_106(nullptr, "NVPTHelpBookName", bundle, QStringLiteral("Help"), std::nullopt, std::nullopt);
    ASSERT_EQ(opened.size(), 2);
    EXPECT_TRUE(opened[0].second.path().endsWith(QStringLiteral("/Help/Vendor/Pages/page.html")));
    EXPECT_EQ(opened[0].second.fragment(), QStringLiteral("limits"));
    EXPECT_TRUE(opened[1].second.path().endsWith(QStringLiteral("/Help/Help/page.html")));
}

TEST_F(HelpBook, GotoHelpPageUsesTheBundlesBookName)
{
    jt::GotoHelpPage(mainBundle({}), QStringLiteral("page.html"), QStringLiteral("top"));
    jt::GotoHelpPage(nullptr, QStringLiteral("page.html"), std::nullopt);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.front().first, QStringLiteral("Main Book"));
}

} // namespace
