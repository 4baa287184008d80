// SPDX-License-Identifier: MIT
// One walk over a panel loaded from a .ui file, translated from the test bundle's tables.
#include "LocalizationTestSupport.h"

#include "localization/BasicPdeView.h"
#include "pdekit/Bundle.h"
#include "pdekit/Nib.h"

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>

#include <gtest/gtest.h>

namespace {

using namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;
using loctest::shownText;

// Control classes of the panel's own take the general path, where only a
// "title" property is translated, and these have none.
class FancyButton : public QPushButton
{
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};

class FancyPopup : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;
};

class ControlLocalization : public testing::Test
{
protected:
    void SetUp() override
    {
        pde::Bundle *bundle = m_files.open();
        ASSERT_NE(bundle, nullptr);
        bundle->classes().registerClass<BasicPdeView>(u"BasicPdeView"_s);
        bundle->classes().registerClass<FancyButton>(u"FancyButton"_s);
        bundle->classes().registerClass<FancyPopup>(u"FancyPopup"_s);
        ASSERT_TRUE(pde::Nib::load(*bundle, u"LocalizedPanel"_s, nullptr, &m_objects));
        m_view = qobject_cast<BasicPdeView *>(m_objects.front().get());
        ASSERT_NE(m_view, nullptr);
        m_view->setBundle(bundle);
    }

    template <typename T = QWidget>
    T *child(const char *name) const
    {
        T *found = m_view->findChild<T *>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    loctest::PreferredLanguagesOverride m_languages{{u"ja"_s}};
    loctest::TestBundle m_files;
    pde::Nib::TopLevelObjects m_objects;
    BasicPdeView *m_view = nullptr;
};

TEST_F(ControlLocalization, WalkTranslatesLabelsButtonsAndTitlesOnly)
{
    child<QComboBox>("sizePopup")->setCurrentIndex(2);
    m_view->localizeAllControls();

    const std::pair<const char *, QString> rows[] = {
        {"nameLabel", u"名前"_s},        {"nameField", u"Name"_s}, // editable: the user's text
        {"copiesField", u"部数"_s},      {"passwordField", u"Password"_s},
        {"sizeBox", u"用紙サイズ"_s},    {"collateCheck", u"丁合い"_s}, // on the tab not shown
        {"draftRadio", u"下書き"_s},     {"applyButton", u"適用"_s},
        {"fancyButton", u"Apply"_s},     {"fancyPopup", u"Small"_s},
        {"serialLabel", u"Serial Number"_s},
    };
    for (const auto &[object, expected] : rows)
        EXPECT_EQ(shownText(child(object)), expected) << object;

    const auto *tabs = child<QTabWidget>("tabs");
    EXPECT_EQ((QStringList{tabs->tabText(0), tabs->tabText(1)}), (QStringList{u"用紙"_s, u"仕上げ"_s}));
    const auto *popup = child<QComboBox>("sizePopup");
    EXPECT_EQ((QStringList{popup->itemText(0), popup->itemText(1), popup->itemText(2)}),
              (QStringList{u"小"_s, u"大"_s, u"特大"_s}));
    EXPECT_EQ(popup->currentIndex(), 2);
    const auto *table = child<QTableWidget>("jobTable");
    EXPECT_EQ(table->horizontalHeaderItem(0)->text(), u"ジョブ"_s);
    EXPECT_EQ(table->horizontalHeaderItem(1)->text(), u"所有者"_s);
    EXPECT_EQ(table->verticalHeaderItem(0)->text(), u"Name"_s);
    EXPECT_EQ(table->item(0, 0)->text(), u"Apply"_s);
    // The view is its own window here: that title is not the panel's.
    EXPECT_EQ(m_view->windowTitle(), u"Print Options"_s);
}

TEST_F(ControlLocalization, ReadOnlyPasswordFieldKeepsItsSecret)
{
    // A password field stands for a secure text field, which no walk
    // translates, whether or not the user may edit it.
    m_view->localizeAllControls();
    EXPECT_EQ(shownText(child("pinField")), u"Password"_s);
}

TEST_F(ControlLocalization, TranslatesTheTitleOfTheWindowItSitsIn)
{
    QDialog dialog;
    dialog.setWindowTitle(u"Print Options"_s);
    m_view->setParent(&dialog);
    m_view->localizeAllControls();
    m_view->setParent(nullptr); // the fixture, not the dialog, deletes the view

    EXPECT_EQ(dialog.windowTitle(), u"印刷オプション"_s);
}

TEST_F(ControlLocalization, ModelTableOfThePpdComesFirst)
{
    const loctest::Ppd ppd = loctest::openPpd("localization-options.ppd");
    ASSERT_NE(ppd, nullptr);
    m_view->setPPD(ppd.get());
    m_view->localizeAllControls();

    EXPECT_EQ(shownText(child("applyButton")), u"適用する"_s);
    EXPECT_EQ(shownText(child("sizeBox")), u"用紙の大きさ"_s);
    EXPECT_EQ(shownText(child("nameLabel")), u"名前"_s);
}

TEST_F(ControlLocalization, WithoutBundleVisitedTextsAreBlanked)
{
    m_view->setBundle(nullptr);
    m_view->localizeAllControls();

    for (const char *object : {"nameLabel", "applyButton", "sizeBox"})
        EXPECT_EQ(shownText(child(object)), QString()) << object;
    EXPECT_EQ(child<QComboBox>("sizePopup")->itemText(0), QString());
    EXPECT_EQ(shownText(child("nameField")), u"Name"_s);
}

} // namespace

#include "ControlLocalizationTest.moc"
