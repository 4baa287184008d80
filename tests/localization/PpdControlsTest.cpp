// SPDX-License-Identifier: MIT
// Pop-ups and labels filled from the options of a fixture PPD, and found again by keyword.
#include "LocalizationTestSupport.h"

#include "localization/BasicPdeView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

using namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;
using loctest::shownText;

class SizePopup : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;
};

// A widget holding the text "Old", as a fill must replace or leave it.
template <typename T>
QWidget *makeOld(QWidget *parent)
{
    auto *widget = new T(parent);
    if constexpr (std::is_base_of_v<QComboBox, T>)
        widget->addItems({u"Old"_s, u"Older"_s});
    else
        widget->setText(u"Old"_s);
    return widget;
}

// "title=keyword" for each item, so that a mismatch shows both at once.
QStringList items(const QComboBox *popup)
{
    QStringList result;
    for (int i = 0; i < popup->count(); ++i)
        result.append(popup->itemText(i) + u'=' + popup->itemData(i).toString());
    return result;
}

class PpdControls : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(m_ppd, nullptr);
        m_view.setPPD(m_ppd.get());
    }

    loctest::Ppd m_ppd = loctest::openPpd("localization-options.ppd");
    BasicPdeView m_view;
    QComboBox *m_popup = new QComboBox(&m_view);
};

TEST_F(PpdControls, FillsPopupInPpdOrderAndShowsTheFirstItem)
{
    const std::pair<const char *, QStringList> rows[] = {
        {"PaperFormat", {u"A4=IsoA4"_s, u"Letter=UsLetter"_s, u"Legal=UsLegal"_s}},
        {"Finish", {u"Plain=Matte"_s, u"Glossy=Silk"_s}}, // two choices are "Glossy": the later stays
        {"Tray", {}},
    };
    for (const auto &[keyword, expected] : rows) {
        auto *popup = static_cast<QComboBox *>(makeOld<QComboBox>(&m_view));
        popup->setCurrentIndex(1);
        m_view.localizePPDPopup(popup, keyword);
        EXPECT_EQ(items(popup), expected) << keyword;
        // Not the PPD's default choice: showing that is the caller's business.
        EXPECT_EQ(popup->currentIndex(), expected.isEmpty() ? -1 : 0) << keyword;
        EXPECT_EQ(m_view.ppdKeywordForObject(popup), QString::fromLatin1(keyword));
    }
}

TEST_F(PpdControls, SetValueSelectsByChoiceText)
{
    const std::tuple<QString, QString, int> rows[] = {
        {u"Legal"_s, u"PaperFormat"_s, 2},
        {u"UsLegal"_s, u"PaperFormat"_s, -1}, // the keyword is no title
        {u"Legal"_s, u"Finish"_s, 1},         // nothing is bound under Finish
    };
    for (const auto &[value, keyword, expected] : rows) {
        m_view.localizePPDPopup(m_popup, "PaperFormat");
        m_popup->setCurrentIndex(1);
        m_view.setValueForPPDKeyword(value, keyword);
        EXPECT_EQ(m_popup->currentIndex(), expected) << qPrintable(value + u' ' + keyword);
    }
}

TEST_F(PpdControls, SetEnabledReachesOnlyTheControlBoundNow)
{
    auto *other = new QComboBox(&m_view);
    m_view.localizePPDPopup(m_popup, "Finish");
    m_view.localizePPDPopup(m_popup, "PaperFormat");
    m_view.localizePPDPopup(other, "PaperFormat");

    m_view.setEnabledForPPDKeyword(false, u"PaperFormat"_s);
    EXPECT_TRUE(m_popup->isEnabled());
    EXPECT_FALSE(other->isEnabled());
    m_view.setEnabledForPPDKeyword(false, u"Finish"_s); // still bound there
    EXPECT_FALSE(m_popup->isEnabled());
    EXPECT_EQ(m_view.ppdKeywordForObject(m_popup), u"Finish"_s);
}

TEST_F(PpdControls, DeletedControlIsNoLongerReached)
{
    auto *deleted = new QComboBox(&m_view);
    m_view.localizePPDPopup(deleted, "Finish");
    delete deleted;
    // Under the address sanitizer, reaching the deleted pop-up fails here.
    m_view.setEnabledForPPDKeyword(false, u"Finish"_s);
    m_view.setValueForPPDKeyword(u"Plain"_s, u"Finish"_s);
}

TEST_F(PpdControls, NewPpdForgetsBindings)
{
    m_view.localizePPDPopup(m_popup, "PaperFormat");
    const loctest::Ppd plain = loctest::openPpd("localization-plain.ppd");
    ASSERT_NE(plain, nullptr);
    m_view.setPPD(plain.get());

    m_view.setEnabledForPPDKeyword(false, u"PaperFormat"_s);
    m_view.setValueForPPDKeyword(u"Legal"_s, u"PaperFormat"_s);
    EXPECT_EQ(m_view.ppdKeywordForObject(m_popup), std::nullopt);
    EXPECT_TRUE(m_popup->isEnabled());
    EXPECT_EQ(m_popup->currentIndex(), 0);
}

struct DispatchRow {
    const char *name;
    QWidget *(*make)(QWidget *parent);
    const char *keyword;
    QString expectedText;
    bool bound;
};

void PrintTo(const DispatchRow &row, std::ostream *out)
{
    *out << row.name;
}

class PpdDispatch : public PpdControls, public testing::WithParamInterface<DispatchRow>
{
};

TEST_P(PpdDispatch, FillsByExactClass)
{
    const DispatchRow &row = GetParam();
    QWidget *control = row.make(&m_view);
    m_view.localizePPDControl(control, row.keyword);

    EXPECT_EQ(shownText(control), row.expectedText);
    EXPECT_EQ(m_view.ppdKeywordForObject(control).has_value(), row.bound);
    m_view.setEnabledForPPDKeyword(false, QString::fromLatin1(row.keyword));
    EXPECT_EQ(control->isEnabled(), !row.bound);
}

INSTANTIATE_TEST_SUITE_P(
    Controls, PpdDispatch,
    testing::Values(DispatchRow{"Popup", makeOld<QComboBox>, "PaperFormat", u"A4"_s, true},
                    DispatchRow{"Label", makeOld<QLabel>, "Finish", u"Oberfläche"_s, false},
                    DispatchRow{"LineEdit", makeOld<QLineEdit>, "PaperFormat", u"Paper Format"_s, false},
                    DispatchRow{"PopupSubclass", makeOld<SizePopup>, "PaperFormat", u"Old"_s, false},
                    DispatchRow{"Button", makeOld<QPushButton>, "PaperFormat", u"Old"_s, false},
                    DispatchRow{"UnknownKeywordPopup", makeOld<QComboBox>, "Stapling", u"Old"_s, false},
                    DispatchRow{"UnknownKeywordLabel", makeOld<QLabel>, "Stapling", u"Old"_s, false}),
    [](const testing::TestParamInfo<DispatchRow> &info) { return std::string(info.param.name); });

TEST(PpdControlsWithoutPpd, FillNothingAndBindNothing)
{
    BasicPdeView view;
    QWidget *popup = makeOld<QComboBox>(&view);
    QWidget *label = makeOld<QLabel>(&view);
    // Before any setPPD, then after one without a PPD.
    for (int round = 0; round < 2; ++round) {
        view.localizePPDControl(popup, "PaperFormat");
        view.localizePPDControl(label, "PaperFormat");
        view.setEnabledForPPDKeyword(false, u"PaperFormat"_s);
        view.setPPD(nullptr);
    }
    EXPECT_EQ(shownText(popup), u"Old"_s);
    EXPECT_EQ(shownText(label), u"Old"_s);
    EXPECT_EQ(view.ppdKeywordForObject(popup), std::nullopt);
    EXPECT_TRUE(popup->isEnabled());
}

} // namespace

#include "PpdControlsTest.moc"
