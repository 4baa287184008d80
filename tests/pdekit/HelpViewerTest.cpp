// SPDX-License-Identifier: MIT
// Help books: pages opened in the user's language, with their anchors.
#include "TestSupport.h"

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
    const QString resources = QUrl::fromLocalFile(files.open()->resourcePath()).toString() + u'/';
    testsupport::Recorder recorder;
    const struct {
        QStringList languages;
        QString book;
        std::optional<QString> page, anchor;
        QString expected; // after the resources folder; empty: refused
    } rows[] = {
        {{u"ja_JP"_s}, u"Page Help"_s, u"page.html"_s, u"printing"_s, u"ja.lproj/Guide/page.html#printing"_s},
        {{u"de"_s}, u"Page Help"_s, u"page.html"_s, std::nullopt, u"Guide/page.html"_s},
        {{u"ja"_s}, u"Page Help"_s, std::nullopt, u"top"_s, u"Guide/index.html#top"_s},
        {{u"ja"_s}, u"Page Help"_s, u""_s, u""_s, u"Guide/index.html"_s}, // empty, not absent
        {{u"ja"_s}, u"Unknown Help"_s, std::nullopt, std::nullopt, {}},
        {{u"ja"_s}, u"Page Help"_s, u"absent.html"_s, u"x"_s, {}},
    };
    for (const auto &row : rows) {
        const testsupport::LanguagesGuard languages(row.languages);
        recorder.helpPages.clear();
        EXPECT_EQ(viewer.gotoPage(row.book, row.page, row.anchor), !row.expected.isEmpty()) << qPrintable(row.expected);
        EXPECT_EQ(recorder.helpPages,
                  row.expected.isEmpty() ? QStringList() : QStringList{u"Page Help "_s + resources + row.expected});
    }
}

} // namespace
