// SPDX-License-Identifier: MIT
// The model-specific table over the default one, how a PPD names it, one walk
// over a panel loaded from a .ui file in Japanese, and controls filled from
// the options of a fixture PPD and found again by keyword.
#include "TestSupport.h"

#include "localization/BasicPdeView.h"
#include "localization/LocalizedString.h"
#include "pdekit/Nib.h"

#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

#include <tuple>

namespace {

using namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;

// The checked-in Localization.plugin ("en" is its development region), opened
// in place: nothing here writes to it. The tests read it in Japanese.
pde::Bundle *localizationBundle()
{
    return pde::Bundle::open(QStringLiteral(LOCALIZATION_TEST_DIR "/Localization.plugin"));
}

TEST(LocalizedString, ModelTableComesFirstAndOnlyAKeysSpellingFallsBack)
{
    const testsupport::LanguagesGuard languages({u"ja"_s});
    const pde::Bundle *bundle = localizationBundle();
    ASSERT_NE(bundle, nullptr);
    const auto text = [bundle](const QString &key, const std::optional<QString> &value = {}) {
        return nvktraLocalizedStringForKey(bundle, key, value, u"Localizable2"_s);
    };
    const std::tuple<const char *, std::optional<QString>, QString> rows[] = {
        {"model table in English over the default in Japanese", text(u"ModelInEnglish"_s), u"Model in English"_s},
        {"translation spelled like its key", text(u"SameAsKey"_s), u"既定の同綴り"_s},
        {"translation differing in case only", text(u"Tray"_s), u"TRAY"_s},
        {"the fallback keeps the value", text(u"SpelledLikeKeyOnly"_s, u"Fallback"_s), u"Fallback"_s},
        {"a differing value stops the fallback", text(u"DefaultOnly"_s, u"Fallback"_s), u"Fallback"_s},
        {"no table: one lookup, in the default",
         nvktraLocalizedStringForKey(bundle, u"ModelOnly"_s, std::nullopt, std::nullopt), u"ModelOnly"_s},
    };
    for (const auto &[name, actual, expected] : rows)
        EXPECT_EQ(actual, expected) << name;
}

TEST(TableName, OnlyAPpdThatNamesATableReplacesTheViewsTable)
{
    // Each step starts from the table that the steps before it left the view.
    const struct {
        const char *ppd; // null: no PPD
        std::optional<QString> fromPpd, ofView;
    } steps[] = {
        {"localization-plain.ppd", std::nullopt, std::nullopt},
        {"localization-options.ppd", u"Localizable2"_s, u"Localizable2"_s},
        {"localization-plain.ppd", std::nullopt, u"Localizable2"_s},
        {nullptr, std::nullopt, u"Localizable2"_s},
        {"localization-model-code.ppd", u"LocalizableLX-9"_s, u"LocalizableLX-9"_s},
        {"plugin-hostile-names.ppd", std::nullopt, u"LocalizableLX-9"_s}, // "Localizable/../../…": no table
    };
    BasicPdeView view;
    std::vector<testsupport::Ppd> ppds; // the view borrows each PPD it is given
    for (const auto &step : steps) {
        ppds.push_back(step.ppd != nullptr ? testsupport::openFixturePpd(step.ppd) : nullptr);
        ASSERT_EQ(ppds.back() == nullptr, step.ppd == nullptr);
        EXPECT_EQ(localizedTableNameForPPD(ppds.back().get()), step.fromPpd) << (step.ppd ? step.ppd : "no PPD");
        view.setPPD(ppds.back().get());
        EXPECT_EQ(view.localizedFileName(), step.ofView) << (step.ppd ? step.ppd : "no PPD");
    }
}

// A button class of the panel's own is translated like any button; a pop-up
// class of its own is not filled from the PPD.
class FancyButton : public QPushButton
{
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};

class SizePopup : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;
};

// What a control shows: a group box's title; a pop-up's items as
// "title=keyword", after the text typed in an editable one; the text of a
// label, field or button.
QStringList shown(const QWidget *control)
{
    if (const auto *popup = qobject_cast<const QComboBox *>(control)) {
        QStringList items = popup->isEditable() ? QStringList{popup->currentText()} : QStringList();
        for (int i = 0; i < popup->count(); ++i)
            items.append(popup->itemText(i) + u'=' + popup->itemData(i).toString());
        return items;
    }
    return {control->property(qobject_cast<const QGroupBox *>(control) ? "title" : "text").toString()};
}

TEST(ControlLocalization, WalkTranslatesLabelsButtonsAndTitlesFromThePpdsTableFirst)
{
    const testsupport::LanguagesGuard languages({u"ja"_s});
    pde::Bundle *bundle = localizationBundle();
    ASSERT_NE(bundle, nullptr);
    bundle->classes().registerClass<BasicPdeView>(u"BasicPdeView"_s);
    bundle->classes().registerClass<FancyButton>(u"FancyButton"_s);
    pde::Nib::TopLevelObjects objects;
    ASSERT_TRUE(pde::Nib::load(*bundle, u"LocalizedPanel"_s, nullptr, &objects));
    auto *view = qobject_cast<BasicPdeView *>(objects.front().get());
    ASSERT_NE(view, nullptr);
    const testsupport::Ppd ppd = testsupport::openFixturePpd("localization-options.ppd"); // names Localizable2
    ASSERT_NE(ppd, nullptr);
    view->setBundle(bundle);
    view->setPPD(ppd.get());
    const auto child = [view](const char *name) { return view->findChild<QWidget *>(QString::fromLatin1(name)); };
    auto *popup = qobject_cast<QComboBox *>(child("sizePopup")); // in a group box on a tab page
    popup->setCurrentIndex(2);
    // An editable combo box is a field: what the user typed over its current
    // item stays, and so do its items.
    qobject_cast<QComboBox *>(child("typedPopup"))->setEditText(u"Name"_s);
    view->localizeAllControls();

    const std::pair<const char *, QStringList> rows[] = {
        {"nameLabel", {u"名前"_s}},         {"nameField", {u"Name"_s}}, // editable: the user's text
        {"copiesField", {u"部数"_s}},       {"passwordField", {u"Password"_s}}, // read-only; secret
        {"pinField", {u"Password"_s}},      {"sizeBox", {u"用紙の大きさ"_s}}, // secret though read-only; model table
        {"collateCheck", {u"丁合い"_s}},    {"draftRadio", {u"下書き"_s}}, // on the tab not shown
        {"applyButton", {u"適用する"_s}},   {"fancyButton", {u"適用する"_s}}, // model table; a subclass
        {"toolButton", {u"丁合い"_s}},      {"serialLabel", {u"Serial Number"_s}}, // in no table
        {"sizePopup", {u"小="_s, u"大="_s, u"特大="_s}},
        {"typedPopup", {u"Name"_s, u"Small="_s, u"Large="_s}}, // editable: the user's text, and its items
    };
    for (const auto &[object, expected] : rows)
        EXPECT_EQ(shown(child(object)), expected) << object;
    EXPECT_EQ(popup->currentIndex(), 2);
    // A field's help texts are translated whatever the field holds.
    const auto *nameField = qobject_cast<QLineEdit *>(child("nameField"));
    EXPECT_EQ((QStringList{nameField->toolTip(), nameField->placeholderText()}), (QStringList{u"名前を入力"_s, u"名前を入力"_s}));
    const auto *tabs = qobject_cast<QTabWidget *>(child("tabs"));
    EXPECT_EQ((QStringList{tabs->tabText(0), tabs->tabText(1)}), (QStringList{u"用紙"_s, u"仕上げ"_s}));
    const auto *table = qobject_cast<QTableWidget *>(child("jobTable"));
    EXPECT_EQ((QStringList{table->horizontalHeaderItem(0)->text(), table->horizontalHeaderItem(1)->text(),
                           table->verticalHeaderItem(0)->text(), table->item(0, 0)->text()}),
              (QStringList{u"ジョブ"_s, u"所有者"_s, u"Name"_s, u"Apply"_s})); // column headers only
    // The view is its own window here: that title is not the panel's.
    EXPECT_EQ(view->windowTitle(), u"Print Options"_s);

    QDialog dialog;
    dialog.setWindowTitle(u"Print Options"_s);
    view->setParent(&dialog);
    view->localizeAllControls();
    view->setParent(nullptr); // the list of top-level objects, not the dialog, deletes the view
    EXPECT_EQ(dialog.windowTitle(), u"印刷オプション"_s);
}

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

TEST(PpdControls, PopupsAreFilledInPpdOrderThenSelectedByTextAndForgottenWithTheNextPpd)
{
    // Without a PPD nothing binds, so nothing is found or changed by keyword.
    BasicPdeView view;
    const QStringList old{u"Old="_s, u"Older="_s};
    auto *early = makeOld<QComboBox>(&view);
    view.localizePPDPopup(early, "PaperFormat");
    view.setEnabledForPPDKeyword(false, u"PaperFormat"_s);
    view.setValueForPPDKeyword(u"Older"_s, u"PaperFormat"_s);
    EXPECT_EQ(shown(early), old);
    EXPECT_EQ((std::pair{early->isEnabled(), early->currentIndex()}), (std::pair{true, 0}));
    EXPECT_EQ(view.ppdKeywordForObject(early), std::nullopt);

    const testsupport::Ppd ppd = testsupport::openFixturePpd("localization-options.ppd");
    ASSERT_NE(ppd, nullptr);
    view.setPPD(ppd.get());
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
        EXPECT_EQ(shown(row.control), row.expected) << row.keyword;
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
    // A pop-up bound anew under a keyword takes it over; one pop-up may
    // stand under two keywords, and each reaches it.
    auto *other = new QComboBox(&view);
    view.localizePPDPopup(other, "PaperFormat");
    view.localizePPDPopup(other, "Finish");
    EXPECT_TRUE((QStringList{u"PaperFormat"_s, u"Finish"_s}).contains(view.ppdKeywordForObject(other).value_or(QString())));
    for (const QString &keyword : {u"PaperFormat"_s, u"Finish"_s}) {
        view.setEnabledForPPDKeyword(false, keyword);
        EXPECT_EQ((std::pair{popup->isEnabled(), other->isEnabled()}), (std::pair{true, false})) << qPrintable(keyword);
        view.setEnabledForPPDKeyword(true, keyword);
        EXPECT_TRUE(other->isEnabled()) << qPrintable(keyword);
    }

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

} // namespace

#include "LocalizationTest.moc"
