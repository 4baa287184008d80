// SPDX-License-Identifier: MIT
// The model-specific table over the default one, and one walk over a panel
// loaded from a .ui file in Japanese with the table a PPD names. (How the
// plug-in takes a table name from its PPD, and refuses one that leaves the
// bundle, is checked through the panel's title in tests/plugin.)
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

// A button class of the panel's own is translated like any button.
class FancyButton : public QPushButton
{
    Q_OBJECT
public:
    using QPushButton::QPushButton;
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

} // namespace

#include "LocalizationTest.moc"
