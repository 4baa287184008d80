// SPDX-License-Identifier: MIT
// Pop-ups and labels filled from the options of a fixture PPD, and found again by keyword.
#include "FixturePpd.h"

#include "localization/BasicPdeView.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

static void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace {

using namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;

class SizePopup : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;
};

// A control showing "Old"; a pop-up holds "Old" and "Older".
template <typename T>
T *makeOld(QWidget *parent)
{
    auto *control = new T(parent);
    if constexpr (std::is_base_of_v<QComboBox, T>)
        control->addItems({u"Old"_s, u"Older"_s});
    else
        control->setText(u"Old"_s);
    return control;
}

// "title=keyword" for each item of a pop-up, the text of another control.
QStringList contents(const QWidget *control)
{
    const auto *popup = qobject_cast<const QComboBox *>(control);
    if (popup == nullptr)
        return {control->property("text").toString()};
    QStringList items;
    for (int i = 0; i < popup->count(); ++i)
        items.append(popup->itemText(i) + u'=' + popup->itemData(i).toString());
    return items;
}

TEST(PpdControls, PopupsAreFilledInPpdOrderThenSelectedByTextAndForgottenWithTheNextPpd)
{
    const testsupport::Ppd ppd = testsupport::openFixturePpd("localization-options.ppd");
    ASSERT_NE(ppd, nullptr);
    BasicPdeView view;
    view.setPPD(ppd.get());
    const QStringList old{u"Old="_s, u"Older="_s};
    const struct {
        QWidget *control;
        const char *keyword;
        QStringList expected;
        bool bound;
    } rows[] = {
        {makeOld<QComboBox>(&view), "PaperFormat", {u"A4=IsoA4"_s, u"Letter=UsLetter"_s, u"Legal=UsLegal"_s}, true},
        {makeOld<QComboBox>(&view), "Finish", {u"Matt=Matte"_s, u"Glänzend=Silk"_s}, true}, // the later "Glänzend"
        {makeOld<QLabel>(&view), "Finish", {u"Oberfläche"_s}, false},
        {makeOld<QLineEdit>(&view), "PaperFormat", {u"Paper Format"_s}, false},
        {makeOld<SizePopup>(&view), "PaperFormat", old, false},
        {makeOld<QComboBox>(&view), "Tray", {}, true},        // no choices: emptied, still bound
        {makeOld<QComboBox>(&view), "Stapling", old, false}, // no such option
        {makeOld<QLabel>(&view), "Stapling", {u"Old"_s}, false},
    };
    for (const auto &row : rows) {
        view.localizePPDControl(row.control, row.keyword);
        EXPECT_EQ(contents(row.control), row.expected) << row.keyword;
        const std::optional<QString> boundAs = row.bound ? std::optional(QString::fromLatin1(row.keyword)) : std::nullopt;
        EXPECT_EQ(view.ppdKeywordForObject(row.control), boundAs) << row.keyword;
    }
    auto *popup = static_cast<QComboBox *>(rows[0].control);
    // The first item, not the PPD's default choice (the second): showing that is the caller's business.
    EXPECT_EQ(popup->currentIndex(), 0);

    const std::tuple<QString, QString, int> selections[] = {
        {u"Legal"_s, u"PaperFormat"_s, 2},
        {u"UsLegal"_s, u"PaperFormat"_s, -1}, // the keyword is no title
        {u"Legal"_s, u"Finish"_s, 1},         // reaches the pop-up bound under Finish only
    };
    for (const auto &[value, keyword, expected] : selections) {
        popup->setCurrentIndex(1);
        view.setValueForPPDKeyword(value, keyword);
        EXPECT_EQ(popup->currentIndex(), expected) << qPrintable(value + u' ' + keyword);
    }
    auto *other = new QComboBox(&view);
    view.localizePPDPopup(other, "PaperFormat"); // binds the keyword anew
    view.setEnabledForPPDKeyword(false, u"PaperFormat"_s);
    EXPECT_TRUE(popup->isEnabled());
    EXPECT_FALSE(other->isEnabled());

    // Under the address sanitizer, reaching a deleted pop-up fails here.
    auto *deleted = new QComboBox(&view);
    view.localizePPDPopup(deleted, "Tray");
    delete deleted;
    view.setValueForPPDKeyword(u"Matt"_s, u"Tray"_s);

    view.setPPD(ppd.get());
    view.setValueForPPDKeyword(u"Legal"_s, u"PaperFormat"_s);
    EXPECT_EQ(other->currentIndex(), 0);
    EXPECT_EQ(view.ppdKeywordForObject(other), std::nullopt);
}

// Without a PPD nothing binds, so nothing is found or changed by keyword;
// with one, a pop-up may stand under two keywords and each reaches it.
TEST(PpdControls, NothingBindsBeforeAPpdAndAPopupMayStandUnderTwoKeywords)
{
    BasicPdeView view;
    auto *popup = makeOld<QComboBox>(&view);
    view.localizePPDPopup(popup, "PaperFormat");
    view.setEnabledForPPDKeyword(false, u"PaperFormat"_s);
    view.setValueForPPDKeyword(u"Older"_s, u"PaperFormat"_s);
    EXPECT_EQ(contents(popup), (QStringList{u"Old="_s, u"Older="_s}));
    EXPECT_TRUE(popup->isEnabled());
    EXPECT_EQ(popup->currentIndex(), 0);
    EXPECT_EQ(view.ppdKeywordForObject(popup), std::nullopt);

    const testsupport::Ppd ppd = testsupport::openFixturePpd("localization-options.ppd");
    ASSERT_NE(ppd, nullptr);
    view.setPPD(ppd.get());
    view.localizePPDPopup(popup, "PaperFormat");
    view.localizePPDPopup(popup, "Finish");
    const QStringList keywords{u"PaperFormat"_s, u"Finish"_s};
    EXPECT_TRUE(keywords.contains(view.ppdKeywordForObject(popup).value_or(QString())));
    for (const QString &keyword : keywords) {
        view.setEnabledForPPDKeyword(false, keyword);
        EXPECT_FALSE(popup->isEnabled()) << qPrintable(keyword);
        view.setEnabledForPPDKeyword(true, keyword);
        EXPECT_TRUE(popup->isEnabled()) << qPrintable(keyword);
    }
}

} // namespace

#include "PpdControlsTest.moc"
