// SPDX-License-Identifier: MIT
// Help books: pages opened in the user's language, with their anchors.
#include "TestBundle.h"

#include "pdekit/HelpViewer.h"

namespace {

using namespace Qt::StringLiterals;

TEST(HelpViewer, OpensThePageInTheUsersLanguageWithItsAnchor)
{
    testsupport::TestBundle files;
    files.info({{u"CFBundleHelpBookName"_s, u"Page Help"_s}, {u"CFBundleHelpBookFolder"_s, u"Guide"_s}})
        .resource(u"Guide/index.html"_s, "index")
        .resource(u"Guide/page.html"_s, "page")
        .resource(u"ja.lproj/Guide/page.html"_s, "ja page");
    pde::HelpViewer &viewer = pde::HelpViewer::instance();
    ASSERT_TRUE(viewer.registerHelpBook(QUrl::fromLocalFile(files.path())));
    const QString resources = QUrl::fromLocalFile(files.open()->resourcePath()).toString();
    QStringList opened;
    // The viewer is process-wide: its handler is put back at the end.
    const pde::HelpViewer::PageHandler previous = viewer.setPageHandler(
        [&opened](const QString &book, const QUrl &page) { opened.append(book + u' ' + page.toString()); });

    const struct {
        QStringList languages;
        std::optional<QString> page, anchor;
        QString expected;
    } rows[] = {
        {{u"ja_JP"_s}, u"page.html"_s, u"printing"_s, u"ja.lproj/Guide/page.html#printing"_s},
        {{u"de"_s}, u"page.html"_s, std::nullopt, u"Guide/page.html"_s},
        {{u"ja"_s}, std::nullopt, u"top"_s, u"Guide/index.html#top"_s},
        {{u"ja"_s}, u""_s, u""_s, u"Guide/index.html"_s}, // empty, not absent
    };
    for (const auto &row : rows) {
        const testsupport::LanguagesGuard languages(row.languages);
        opened.clear();
        EXPECT_TRUE(viewer.gotoPage(u"Page Help"_s, row.page, row.anchor));
        EXPECT_EQ(opened, QStringList{u"Page Help "_s + resources + u'/' + row.expected});
    }
    opened.clear();
    EXPECT_FALSE(viewer.gotoPage(u"Unknown Help"_s, std::nullopt, std::nullopt));
    EXPECT_FALSE(viewer.gotoPage(u"Page Help"_s, u"absent.html"_s, u"x"_s));
    EXPECT_EQ(opened, QStringList());
    viewer.setPageHandler(previous);
}

} // namespace
