// SPDX-License-Identifier: MIT
// Help books: registration from a bundle and pages opened in the user's language.
#include "TestBundle.h"

#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "pdekit/PreferredLanguages.h"

#include <gtest/gtest.h>

#include <ostream>
#include <utility>
#include <vector>

inline void PrintTo(const QUrl &url, std::ostream *out)
{
    *out << url.toString().toStdString();
}

namespace {

using namespace Qt::StringLiterals;
using pde::HelpViewer;
using testsupport::TestBundle;

// A book in Resources/Guide, with a Japanese translation of page.html only.
QUrl writeHelpBundle(TestBundle &bundle, const QVariantMap &info)
{
    bundle.info(info)
        .resource(u"Guide/index.html"_s, "index")
        .resource(u"Guide/page.html"_s, "page")
        .resource(u"Guide/sub/deep.html"_s, "deep")
        .resource(u"ja.lproj/Guide/page.html"_s, "ja page");
    return QUrl::fromLocalFile(bundle.path());
}

QVariantMap helpInfo(const QString &name)
{
    return {{u"CFBundleHelpBookName"_s, name}, {u"CFBundleHelpBookFolder"_s, u"Guide"_s}};
}

QUrl pageUrl(const TestBundle &bundle, const QString &relative, const QString &fragment = {})
{
    QUrl url = QUrl::fromLocalFile(bundle.open()->resourcePath() + u'/' + relative);
    if (!fragment.isEmpty())
        url.setFragment(fragment);
    return url;
}

// The viewer, its handler and the preferred languages are process-wide; each
// test records pages through its own handler and puts everything back.
class HelpBook : public testing::Test
{
protected:
    void SetUp() override
    {
        m_previous = viewer.setPageHandler([this](const QString &book, const QUrl &page) {
            opened.emplace_back(book.toStdString(), page);
        });
    }
    void TearDown() override
    {
        viewer.setPageHandler(std::move(m_previous));
        pde::setPreferredLanguages(std::nullopt);
    }

    HelpViewer &viewer = HelpViewer::instance();
    std::vector<std::pair<std::string, QUrl>> opened;

private:
    HelpViewer::PageHandler m_previous;
};

TEST_F(HelpBook, OpensTheLocalizedPageWithItsAnchor)
{
    const struct {
        QStringList languages;
        std::optional<QString> page, anchor;
        QString expected, fragment;
    } rows[] = {
        {{u"ja_JP"_s}, u"page.html"_s, u"printing"_s, u"ja.lproj/Guide/page.html"_s, u"printing"_s},
        {{u"de"_s}, u"page.html"_s, std::nullopt, u"Guide/page.html"_s, {}},
        {{u"ja"_s}, u"sub/deep.html"_s, QString(), u"Guide/sub/deep.html"_s, {}},
        {{u"ja"_s}, std::nullopt, u"top"_s, u"Guide/index.html"_s, u"top"_s},
        {{u"de"_s}, QString(), std::nullopt, u"Guide/index.html"_s, {}},
    };
    TestBundle bundle;
    ASSERT_TRUE(viewer.registerHelpBook(writeHelpBundle(bundle, helpInfo(u"Page Help"_s))));
    for (const auto &row : rows) {
        SCOPED_TRACE(row.expected.toStdString());
        pde::setPreferredLanguages(row.languages);
        opened.clear();
        EXPECT_TRUE(viewer.gotoPage(u"Page Help"_s, row.page, row.anchor));
        ASSERT_EQ(opened.size(), 1u);
        EXPECT_EQ(opened[0], std::pair(std::string("Page Help"), pageUrl(bundle, row.expected, row.fragment)));
    }
}

TEST_F(HelpBook, UnknownBookOrPageOpensNothing)
{
    TestBundle bundle;
    ASSERT_TRUE(viewer.registerHelpBook(writeHelpBundle(bundle, helpInfo(u"Known Help"_s))));
    EXPECT_FALSE(viewer.gotoPage(u"Unknown Help"_s, std::nullopt, std::nullopt));
    EXPECT_FALSE(viewer.gotoPage(u"Known Help"_s, u"absent.html"_s, u"x"_s));
    EXPECT_FALSE(viewer.gotoPage(u"Known Help"_s, u"sub"_s, std::nullopt));
    EXPECT_TRUE(opened.empty());
}

} // namespace
