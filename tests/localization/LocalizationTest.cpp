// SPDX-License-Identifier: MIT
// The model-specific table over the default one, how a PPD names it, and one
// walk over a panel loaded from a .ui file, in Japanese.
#include "FixturePpd.h"

#include "localization/BasicPdeView.h"
#include "localization/LocalizedString.h"
#include "pdekit/Bundle.h"
#include "pdekit/Nib.h"
#include "pdekit/PreferredLanguages.h"

#include <QComboBox>
#include <QDialog>
#include <QDirIterator>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>

#include <gtest/gtest.h>

static void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace {

using namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;

// A fresh copy of the checked-in Localization.plugin, read in Japanese while
// the copy lives. Bundles are registered by path for the life of the
// process, so each copy is a new bundle whose class registry no earlier test
// has filled.
class TestBundle
{
public:
    TestBundle()
    {
        const QString source = QStringLiteral(LOCALIZATION_TEST_DIR);
        QDirIterator files(source + u"/Localization.plugin"_s, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString from = files.next();
            const QString to = m_dir.path() + from.mid(source.size());
            // A test without its bundle cannot mean anything.
            if (!QDir().mkpath(QFileInfo(to).absolutePath()) || !QFile::copy(from, to))
                std::abort();
        }
        pde::setPreferredLanguages(QStringList{u"ja"_s}); // "en" is the development region
    }
    // The language list is process-wide: the environment's comes back.
    ~TestBundle() { pde::setPreferredLanguages(std::nullopt); }

    pde::Bundle *open() const { return pde::Bundle::open(m_dir.path() + u"/Localization.plugin"_s); }

private:
    QTemporaryDir m_dir;
};

TEST(LocalizedString, ModelTableComesFirstAndOnlyAKeysSpellingFallsBack)
{
    const TestBundle files;
    const pde::Bundle *bundle = files.open();
    ASSERT_NE(bundle, nullptr);
    const QString model = u"Localizable2"_s;
    const struct {
        const char *name;
        QString key;
        std::optional<QString> value, table;
        QString expected;
    } rows[] = {
        {"model table in English over the default in Japanese", u"ModelInEnglish"_s, {}, model, u"Model in English"_s},
        {"translation spelled like its key", u"SameAsKey"_s, {}, model, u"既定の同綴り"_s},
        {"translation differing in case only", u"Tray"_s, {}, model, u"TRAY"_s},
        {"the fallback keeps the value", u"SpelledLikeKeyOnly"_s, u"Fallback"_s, model, u"Fallback"_s},
        {"a differing value stops the fallback", u"DefaultOnly"_s, u"Fallback"_s, model, u"Fallback"_s},
        {"no table: one lookup, in the default", u"ModelOnly"_s, {}, std::nullopt, u"ModelOnly"_s},
    };
    for (const auto &row : rows)
        EXPECT_EQ(nvktraLocalizedStringForKey(bundle, row.key, row.value, row.table), row.expected) << row.name;
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

// A button class of the panel's own is translated like any button.
class FancyButton : public QPushButton
{
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};

// The text a widget shows: a group box's title, a pop-up's current item,
// the text of a label, field or button.
QString shownText(const QWidget *widget)
{
    const char *property = qobject_cast<const QGroupBox *>(widget)   ? "title"
                           : qobject_cast<const QComboBox *>(widget) ? "currentText"
                                                                     : "text";
    return widget->property(property).toString();
}

TEST(ControlLocalization, WalkTranslatesLabelsButtonsAndTitlesFromThePpdsTableFirst)
{
    const TestBundle files;
    pde::Bundle *bundle = files.open();
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
    auto *typed = qobject_cast<QComboBox *>(child("typedPopup"));
    typed->setEditText(u"Name"_s);
    view->localizeAllControls();

    const std::pair<const char *, QString> rows[] = {
        {"nameLabel", u"名前"_s},          {"nameField", u"Name"_s}, // editable: the user's text
        {"copiesField", u"部数"_s},        {"passwordField", u"Password"_s}, // read-only; secret
        {"pinField", u"Password"_s},       {"sizeBox", u"用紙の大きさ"_s}, // secret though read-only; model table
        {"collateCheck", u"丁合い"_s},     {"draftRadio", u"下書き"_s}, // on the tab not shown
        {"applyButton", u"適用する"_s},    {"fancyButton", u"適用する"_s}, // model table; a subclass
        {"toolButton", u"丁合い"_s},
        {"serialLabel", u"Serial Number"_s}, // in no table
        {"typedPopup", u"Name"_s},           // editable: the user's text
    };
    for (const auto &[object, expected] : rows)
        EXPECT_EQ(shownText(child(object)), expected) << object;
    // A field's help texts are translated whatever the field holds.
    const auto *nameField = qobject_cast<QLineEdit *>(child("nameField"));
    EXPECT_EQ((QStringList{nameField->toolTip(), nameField->placeholderText()}), (QStringList{u"名前を入力"_s, u"名前を入力"_s}));
    const auto *tabs = qobject_cast<QTabWidget *>(child("tabs"));
    EXPECT_EQ((QStringList{tabs->tabText(0), tabs->tabText(1)}), (QStringList{u"用紙"_s, u"仕上げ"_s}));
    EXPECT_EQ((QStringList{popup->itemText(0), popup->itemText(1), popup->itemText(2)}),
              (QStringList{u"小"_s, u"大"_s, u"特大"_s}));
    EXPECT_EQ(popup->currentIndex(), 2);
    EXPECT_EQ((QStringList{typed->itemText(0), typed->itemText(1)}), (QStringList{u"Small"_s, u"Large"_s}));
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

    // Without a bundle, every text the walk visits is blanked.
    view->setBundle(nullptr);
    view->localizeAllControls();
    EXPECT_EQ(shownText(child("applyButton")), QString());
    EXPECT_EQ(shownText(child("nameField")), u"Name"_s);
}

} // namespace

#include "LocalizationTest.moc"
