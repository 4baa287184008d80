// SPDX-License-Identifier: MIT
// Nib loading driven as a user would: real .ui files in a bundle, typing and
// clicking under the offscreen platform.
#include "NibTestClasses.h"
#include "TestBundle.h"

#include "pdekit/Bundle.h"
#include "pdekit/Nib.h"
#include "pdekit/PreferredLanguages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using nibtest::Controller;
using nibtest::Model;
using nibtest::Owner;
using testsupport::TestBundle;

const QStringList kObjects{QStringLiteral("Model model"), QStringLiteral("Controller controller")};
const QStringList kOutlets{
    QStringLiteral("File's Owner.controller = controller"),
    QStringLiteral("controller.model = model"),
    QStringLiteral("controller.nameField = nameField"),
    QStringLiteral("controller.view = panelView"),
};
const QStringList kActions{
    QStringLiteral("applyButton.clicked -> controller.apply"),
    QStringLiteral("defaultsButton.clicked -> controller.clickDefaults"),
};
const QStringList kBindings{
    QStringLiteral("nameField.text <-> model.name"),
    QStringLiteral("nameField.enabled <- model.editable"),
    QStringLiteral("nameLabel.captionColor <- model.captionColor"),
    QStringLiteral("choiceCombo.currentIndex <-> model.choice"),
    QStringLiteral("flagCheck.checked <-> model.flag"),
};

QString stringList(const QString &name, const QStringList &items)
{
    QString xml = QStringLiteral("<property name=\"%1\" stdset=\"0\"><stringlist>").arg(name);
    for (const QString &item : items)
        xml += QStringLiteral("<string>%1</string>").arg(item.toHtmlEscaped());
    return xml + QStringLiteral("</stringlist></property>");
}

QByteArray panelUi(const QStringList &objects = kObjects, const QStringList &outlets = kOutlets,
                   const QStringList &actions = kActions, const QStringList &bindings = kBindings,
                   const QString &labelText = QStringLiteral("Name"))
{
    return (QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<ui version="4.0">
 <class>Panel</class>
 <widget class="View" name="panelView">)")
            + stringList(QStringLiteral("nibObjects"), objects)
            + stringList(QStringLiteral("nibOutlets"), outlets)
            + stringList(QStringLiteral("nibActions"), actions)
            + stringList(QStringLiteral("nibBindings"), bindings)
            + QStringLiteral(R"(
  <layout class="QVBoxLayout" name="layout">
   <item><widget class="QLabel" name="nameLabel"><property name="text"><string>%1</string></property></widget></item>
   <item><widget class="QLineEdit" name="nameField"/></item>
   <item><widget class="QComboBox" name="choiceCombo">
     <item><property name="text"><string>None</string></property></item>
     <item><property name="text"><string>One</string></property></item>
     <item><property name="text"><string>Two</string></property></item>
   </widget></item>
   <item><widget class="QCheckBox" name="flagCheck"><property name="text"><string>Flag</string></property></widget></item>
   <item><widget class="QPushButton" name="applyButton"><property name="text"><string>Apply</string></property></widget></item>
   <item><widget class="QPushButton" name="defaultsButton"><property name="text"><string>Defaults</string></property></widget></item>
  </layout>
 </widget>
 <customwidgets>
  <customwidget><class>View</class><extends>QWidget</extends><header>View.h</header><container>1</container></customwidget>
 </customwidgets>
</ui>
)").arg(labelText))
        .toUtf8();
}

pde::Bundle *panelBundle(TestBundle &files, const QByteArray &ui)
{
    files.info({{QStringLiteral("CFBundleIdentifier"), QStringLiteral("org.example.nibtest")}})
        .resource(QStringLiteral("Panel.ui"), ui);
    pde::Bundle *bundle = files.open();
    bundle->classes().registerClass<Model>(QStringLiteral("Model"));
    bundle->classes().registerClass<Controller>(QStringLiteral("Controller"));
    bundle->classes().registerClass<nibtest::View>(QStringLiteral("View"));
    return bundle;
}

class NibTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        nibtest::awakeLog().clear();
        bundle = panelBundle(files, panelUi());
        ASSERT_TRUE(pde::Nib::load(*bundle, QStringLiteral("Panel"), &owner, &objects));
        controller = owner.controller;
        ASSERT_NE(controller, nullptr);
        model = controller->model;
        view = controller->view;
        view->show();
    }

    template <typename T>
    T *child(const char *name) const
    {
        return view->findChild<T *>(QString::fromLatin1(name));
    }

    TestBundle files;
    pde::Bundle *bundle = nullptr;
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    Controller *controller = nullptr;
    Model *model = nullptr;
    QWidget *view = nullptr;
};

TEST_F(NibTest, LoadCreatesObjectsConnectsOutletsAndWakesThemInOrder)
{
    ASSERT_EQ(objects.size(), 3u);
    EXPECT_EQ(objects[0].get(), view);
    EXPECT_EQ(objects[1].get(), model);
    EXPECT_EQ(objects[2].get(), controller);
    EXPECT_EQ(controller->nameField, child<QLineEdit>("nameField"));
    EXPECT_EQ(nibtest::awakeLog(),
              (QStringList{QStringLiteral("model"), QStringLiteral("controller"), QStringLiteral("panelView")}));
}

TEST_F(NibTest, TypedTextReachesTheModelAndModelTextReachesTheField)
{
    auto *field = child<QLineEdit>("nameField");
    model->setName(QStringLiteral("ab"));
    EXPECT_EQ(field->text(), QStringLiteral("ab"));

    field->setFocus();
    field->setCursorPosition(1);
    const int writesBefore = model->nameWrites;
    QTest::keyClicks(field, QStringLiteral("xy"));
    EXPECT_EQ(model->name().toString(), QStringLiteral("axyb"));
    EXPECT_EQ(model->nameWrites - writesBefore, 2);
    // The model's echo of the edit must not move the cursor.
    EXPECT_EQ(field->cursorPosition(), 3);

    model->setName(QVariant());
    EXPECT_EQ(field->text(), QString());
}

TEST_F(NibTest, PopUpShowsOnlyIndexesItHasAndWritesOnlyUserChoices)
{
    auto *combo = child<QComboBox>("choiceCombo");
    struct Row {
        const char *name;
        QVariant value;
        int shownIndex;
    };
    const Row rows[] = {
        {"first item", 0, 0},
        {"last item", 2, 2},
        {"past the end", 7, -1},
        {"negative", -1, -1},
        {"nil", QVariant(), -1},
        {"text", QStringLiteral("x"), -1},
    };
    for (const Row &row : rows) {
        const int writesBefore = model->choiceWrites;
        model->setChoice(row.value);
        EXPECT_EQ(combo->currentIndex(), row.shownIndex) << row.name;
        EXPECT_EQ(model->choice(), row.value) << row.name << ": not written back";
        EXPECT_EQ(model->choiceWrites - writesBefore, 1) << row.name;
    }

    model->setChoice(0);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(model->choice().toInt(), 1);
}

TEST_F(NibTest, CheckBoxFollowsTheModelAndWritesClicks)
{
    auto *check = child<QCheckBox>("flagCheck");
    model->setFlag(true);
    EXPECT_TRUE(check->isChecked());
    check->setFocus();
    QTest::keyClick(check, Qt::Key_Space);
    EXPECT_FALSE(check->isChecked());
    EXPECT_EQ(model->flag(), QVariant(false));
}

TEST_F(NibTest, DisabledFieldRefusesTyping)
{
    auto *field = child<QLineEdit>("nameField");
    model->setName(QStringLiteral("kept"));
    model->setEditable(false);
    EXPECT_FALSE(field->isEnabled());
    QTest::keyClicks(field, QStringLiteral("zz"));
    EXPECT_EQ(model->name().toString(), QStringLiteral("kept"));
    model->setEditable(true);
    EXPECT_TRUE(field->isEnabled());
}

TEST_F(NibTest, CaptionColourFollowsTheModelAndReturnsToThePalettes)
{
    auto *label = child<QLabel>("nameLabel");
    const QColor original = label->palette().color(QPalette::Active, label->foregroundRole());
    model->setCaptionColor(QColor(Qt::lightGray));
    EXPECT_EQ(label->palette().color(QPalette::Active, label->foregroundRole()), QColor(Qt::lightGray));
    model->setCaptionColor(QColor());
    EXPECT_EQ(label->palette().color(QPalette::Active, label->foregroundRole()), original);
}

TEST_F(NibTest, ActionsCallMethodsWithAndWithoutTheSender)
{
    QTest::mouseClick(child<QPushButton>("applyButton"), Qt::LeftButton);
    QTest::mouseClick(child<QPushButton>("defaultsButton"), Qt::LeftButton);
    EXPECT_EQ(controller->applied, 1);
    EXPECT_EQ(controller->lastSender, child<QPushButton>("defaultsButton"));
}

TEST(NibLoad, LocalizedCopyComesFirst)
{
    TestBundle files;
    files.resource(QStringLiteral("ja.lproj/Panel.ui"), panelUi(kObjects, kOutlets, kActions, kBindings,
                                                                 QStringLiteral("名前")));
    pde::Bundle *bundle = panelBundle(files, panelUi());
    pde::setPreferredLanguages(QStringList{QStringLiteral("ja_JP")});
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    const bool loaded = pde::Nib::load(*bundle, QStringLiteral("Panel"), &owner, &objects);
    pde::setPreferredLanguages(std::nullopt);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(objects.front()->findChild<QLabel *>(QStringLiteral("nameLabel"))->text(), QStringLiteral("名前"));
}

struct BrokenNib {
    const char *name;
    QByteArray ui;
};

class NibLoadFailure : public ::testing::TestWithParam<BrokenNib>
{
};

TEST_P(NibLoadFailure, KeepsNothingAndLeavesTheOwnerUnset)
{
    TestBundle files;
    pde::Bundle *bundle = panelBundle(files, GetParam().ui);
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    EXPECT_FALSE(pde::Nib::load(*bundle, QStringLiteral("Panel"), &owner, &objects));
    EXPECT_TRUE(objects.empty());
    EXPECT_EQ(owner.controller, nullptr);
}

QStringList with(QStringList list, const QString &extra)
{
    list.append(extra);
    return list;
}

INSTANTIATE_TEST_SUITE_P(
    Nib, NibLoadFailure,
    ::testing::Values(
        BrokenNib{"NotXml", "this is not a ui file"},
        BrokenNib{"TruncatedXml", panelUi().left(200)},
        BrokenNib{"UnknownClass", panelUi(with(kObjects, QStringLiteral("Missing missing")))},
        BrokenNib{"ObjectDeclarationWithoutName", panelUi(with(kObjects, QStringLiteral("Model")))},
        BrokenNib{"NameTakenByAWidget", panelUi(with(kObjects, QStringLiteral("Model nameField")))},
        BrokenNib{"OutletThatDoesNotExist", panelUi(kObjects, with(kOutlets, QStringLiteral("controller.nothing = model")))},
        BrokenNib{"OutletOfTheWrongType", panelUi(kObjects, with(kOutlets, QStringLiteral("controller.model = controller")))},
        BrokenNib{"OutletToAnUnknownObject", panelUi(kObjects, with(kOutlets, QStringLiteral("controller.model = ghost")))},
        BrokenNib{"ActionWithoutMethod", panelUi(kObjects, kOutlets, with(kActions, QStringLiteral("applyButton.clicked -> controller.nothing")))},
        BrokenNib{"ActionWithoutSignal", panelUi(kObjects, kOutlets, with(kActions, QStringLiteral("applyButton.nothing -> controller.apply")))},
        BrokenNib{"BindingWithoutNotify", panelUi(kObjects, kOutlets, kActions, with(kBindings, QStringLiteral("nameLabel.text <- model.plain")))},
        BrokenNib{"TwoWayBindingOfALabel", panelUi(kObjects, kOutlets, kActions, with(kBindings, QStringLiteral("nameLabel.text <-> model.name")))},
        BrokenNib{"BindingWithoutArrow", panelUi(kObjects, kOutlets, kActions, with(kBindings, QStringLiteral("nameField.text = model.name")))}),
    [](const ::testing::TestParamInfo<BrokenNib> &info) { return std::string(info.param.name); });

TEST(NibLoad, MissingNibFails)
{
    TestBundle files;
    pde::Bundle *bundle = panelBundle(files, panelUi());
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    EXPECT_FALSE(pde::Nib::load(*bundle, QStringLiteral("NoSuchNib"), &owner, &objects));
    EXPECT_TRUE(objects.empty());
}

} // namespace
