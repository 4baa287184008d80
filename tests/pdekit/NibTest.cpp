// SPDX-License-Identifier: MIT
// Nib loading driven as a user would: real .ui files in a bundle, typing and
// clicking under the offscreen platform.
#include "NibTestClasses.h"
#include "TestBundle.h"

#include "pdekit/Nib.h"

#include <QBuffer>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <sys/stat.h>

namespace {

using namespace Qt::StringLiterals;
using nibtest::Controller;
using nibtest::Model;
using nibtest::Owner;
using testsupport::TestBundle;

// One more declaration: the property it goes in ("nibOutlets"), and its line.
using Extra = std::pair<QString, QString>;

// A view that declares a model and a controller, connects them to the owner
// and the controls, and binds each kind of control property; the extra
// declarations come after the view's own, in their order.
QByteArray panelUi(const std::vector<Extra> &extras = {}, const QString &labelText = u"Name"_s)
{
    const std::pair<QString, QStringList> declarations[] = {
        {u"nibObjects"_s, {u"Model model"_s, u"Controller controller"_s}},
        {u"nibOutlets"_s,
         {u"File's Owner.controller = controller"_s, u"controller.model = model"_s,
          u"controller.nameField = nameField"_s, u"controller.view = panelView"_s}},
        {u"nibActions"_s,
         {u"applyButton.clicked -> controller.apply"_s, u"defaultsButton.clicked -> controller.clickDefaults"_s}},
        {u"nibBindings"_s,
         {u"nameField.text <-> model.name"_s, u"nameField.enabled <- model.flag"_s,
          u"nameLabel.captionColor <- model.captionColor"_s, u"choiceCombo.currentIndex <-> model.choice"_s,
          u"flagCheck.checked <-> model.flag"_s}},
    };
    QString ui = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<ui version=\"4.0\"><class>Panel</class><widget class=\"View\" name=\"panelView\">"_s;
    for (auto [property, lines] : declarations) {
        for (const auto &[extraProperty, line] : extras) {
            if (property == extraProperty)
                lines.append(line);
        }
        ui += u"<property name=\"%1\" stdset=\"0\"><stringlist>"_s.arg(property);
        for (const QString &line : lines)
            ui += u"<string>%1</string>"_s.arg(line.toHtmlEscaped());
        ui += u"</stringlist></property>"_s;
    }
    return (ui + uR"(
  <layout class="QVBoxLayout" name="layout">
   <item><widget class="QLabel" name="nameLabel"><property name="text"><string>%1</string></property></widget></item>
   <item><widget class="QLineEdit" name="nameField"/></item>
   <item><widget class="QComboBox" name="choiceCombo">
     <item><property name="text"><string>None</string></property></item>
     <item><property name="text"><string>One</string></property></item>
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
)"_s.arg(labelText))
        .toUtf8();
}

pde::Bundle *panelBundle(TestBundle &files, const QByteArray &ui)
{
    pde::Bundle *bundle = files.info({}).resource(u"Panel.ui"_s, ui).open();
    bundle->classes().registerClass<Model>(u"Model"_s);
    bundle->classes().registerClass<Controller>(u"Controller"_s);
    bundle->classes().registerClass<nibtest::View>(u"View"_s);
    return bundle;
}

// Loads the panel, whose Japanese copy comes before the one in Resources/.
class NibTest : public testing::Test
{
protected:
    void SetUp() override
    {
        nibtest::awakeLog.clear();
        files.resource(u"ja.lproj/Panel.ui"_s, panelUi({}, u"名前"_s));
        ASSERT_TRUE(pde::Nib::load(*panelBundle(files, panelUi()), u"Panel"_s, &owner, &objects));
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

    const testsupport::LanguagesGuard languages{{u"ja_JP"_s}};
    TestBundle files;
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    Controller *controller = nullptr;
    Model *model = nullptr;
    QWidget *view = nullptr;
};

TEST_F(NibTest, LoadCreatesObjectsConnectsOutletsAndWakesThemInOrder)
{
    std::vector<QObject *> loaded;
    for (const auto &object : objects)
        loaded.push_back(object.get());
    EXPECT_EQ(loaded, (std::vector<QObject *>{view, model, controller}));
    EXPECT_EQ(controller->nameField, child<QLineEdit>("nameField"));
    EXPECT_EQ(nibtest::awakeLog, (QStringList{u"model"_s, u"controller"_s, u"panelView"_s}));
    EXPECT_EQ(child<QLabel>("nameLabel")->text(), u"名前"_s);
}

TEST_F(NibTest, TypedTextReachesTheModelAndModelTextReachesTheField)
{
    auto *field = child<QLineEdit>("nameField");
    model->setProperty("name", u"ab"_s);
    EXPECT_EQ(field->text(), u"ab"_s);

    field->setFocus();
    field->setCursorPosition(1);
    QTest::keyClicks(field, u"xy"_s);
    EXPECT_EQ(model->property("name"), QVariant(u"axyb"_s));
    // The model's echo of the edit must not move the cursor.
    EXPECT_EQ(field->cursorPosition(), 3);

    field->setText(u"set by code"_s); // not the user's typing
    EXPECT_EQ(model->property("name"), QVariant(u"axyb"_s));
}

TEST_F(NibTest, PopUpShowsOnlyIndexesItHasAndWritesOnlyUserChoices)
{
    auto *combo = child<QComboBox>("choiceCombo");
    const std::pair<QVariant, int> rows[] = {{1, 1}, {2, -1}, {QVariant(), -1}, {u"x"_s, -1}};
    for (const auto &[value, shownIndex] : rows) {
        model->setProperty("choice", value);
        EXPECT_EQ(combo->currentIndex(), shownIndex) << qPrintable(value.toString());
        EXPECT_EQ(model->property("choice"), value) << "written back";
    }

    model->setProperty("choice", 0);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(model->property("choice"), QVariant(1));
    combo->setCurrentIndex(0); // not the user's choice
    EXPECT_EQ(model->property("choice"), QVariant(1));
}

// The flag that the check box edits also enables the name field; the
// label's colour comes from the model and goes back to the palette's.
TEST_F(NibTest, CheckBoxEnablesTheFieldAndTheModelColoursTheLabel)
{
    auto *check = child<QCheckBox>("flagCheck");
    auto *field = child<QLineEdit>("nameField");
    model->setProperty("name", u"kept"_s);
    model->setProperty("flag", false);
    EXPECT_FALSE(check->isChecked());
    QTest::keyClicks(field, u"zz"_s);
    EXPECT_EQ(model->property("name"), QVariant(u"kept"_s));

    check->setFocus();
    QTest::keyClick(check, Qt::Key_Space);
    EXPECT_EQ(model->property("flag"), QVariant(true));
    EXPECT_TRUE(field->isEnabled());

    auto *label = child<QLabel>("nameLabel");
    const QColor original = label->palette().color(QPalette::Active, label->foregroundRole());
    model->setProperty("captionColor", QColor(Qt::lightGray));
    EXPECT_EQ(label->palette().color(QPalette::Active, label->foregroundRole()), QColor(Qt::lightGray));
    model->setProperty("captionColor", QColor());
    EXPECT_EQ(label->palette().color(QPalette::Active, label->foregroundRole()), original);
}

TEST_F(NibTest, ActionsCallMethodsWithAndWithoutTheSender)
{
    QTest::mouseClick(child<QPushButton>("applyButton"), Qt::LeftButton);
    QTest::mouseClick(child<QPushButton>("defaultsButton"), Qt::LeftButton);
    EXPECT_EQ(controller->applied, 1);
    EXPECT_EQ(controller->lastSender, child<QPushButton>("defaultsButton"));
}

// A relative file name in a .ui names a file beside the .ui, wherever the
// process runs.
TEST(NibLoad, PixmapsAreReadFromTheNibsFolder)
{
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG"));
    TestBundle files;
    files.info({}).resource(u"Logo.png"_s, png).resource(u"Logo.ui"_s, R"(<ui version="4.0"><widget class="QLabel" name="logo">
 <property name="pixmap"><pixmap>Logo.png</pixmap></property></widget></ui>)");
    ASSERT_FALSE(QFileInfo::exists(u"Logo.png"_s)); // not in the working directory
    pde::Nib::TopLevelObjects objects;
    ASSERT_TRUE(pde::Nib::load(*files.open(), u"Logo"_s, nullptr, &objects));
    const auto *logo = qobject_cast<QLabel *>(objects.front().get());
    ASSERT_NE(logo, nullptr);
    EXPECT_FALSE(logo->pixmap().isNull());
}

TEST(NibLoad, FailureKeepsNothingAndLeavesTheOwnerAsItWas)
{
    const Extra failingBinding{u"nibBindings"_s, u"nameLabel.text <-> model.name"_s};
    const QByteArray deep = panelUi().replace("<item><widget class=\"QLabel\"",
                                              QByteArray("<item><widget class=\"QWidget\"><layout class=\"QVBoxLayout\">").repeated(100)
                                                  + QByteArray("</layout></widget></item>").repeated(100)
                                                  + "<item><widget class=\"QLabel\"");
    const struct {
        const char *name;
        QByteArray ui;
        QString nib = u"Panel"_s;
        bool fifo = false;
        QString logged = {}; // a part of the message, after the nib's path
    } rows[] = {
        {"nib missing", panelUi(), u"Absent"_s},
        // Names and files that must not reach the loader.
        {"name that leaves the resources", panelUi(), u"../Resources/Panel"_s, false,
         u" is not a plain name inside the bundle's resources"_s},
        {"nested deeper than the loader may go", deep, u"Panel"_s, false, u"Panel.ui: nests elements more than 256 deep"_s},
        {"a FIFO", {}, u"Panel"_s, true, u"no nib named Panel"_s}, // not taken for a file
        {"larger than 4 MiB", panelUi() + QByteArray(4 << 20, ' '), u"Panel"_s, false,
         u"Panel.ui: is larger than 4194304 bytes"_s},
        {"not XML", "this is not a ui file"},
        {"unknown class", panelUi({{u"nibObjects"_s, u"Missing missing"_s}})},
        {"outlet of the wrong type", panelUi({{u"nibOutlets"_s, u"controller.model = controller"_s}})},
        {"action without method", panelUi({{u"nibActions"_s, u"applyButton.clicked -> controller.nothing"_s}})},
        {"two-way binding of a label", panelUi({failingBinding})},
        // What the load hung on the owner goes with the rest.
        {"owner sends an action", panelUi({{u"nibActions"_s, u"File's Owner.poked -> controller.clickDefaults"_s},
                                           failingBinding})},
        {"owner is bound", panelUi({{u"nibBindings"_s, u"File's Owner.enabled <- model.flag"_s}, failingBinding})},
        // Qt would make a plain QWidget in place of the panel's own class.
        {"root class not registered",
         panelUi().replace("class=\"View\"", "class=\"Stranger\"").replace("<class>View<", "<class>Stranger<")},
    };
    for (const auto &row : rows) {
        TestBundle files;
        Owner owner;
        pde::Nib::TopLevelObjects objects;
        nibtest::made.clear();
        pde::Bundle *bundle = panelBundle(files, row.ui);
        if (row.fifo) {
            const QByteArray ui = QFile::encodeName(bundle->resourcePath() + u"/Panel.ui"_s);
            ASSERT_TRUE(QFile::remove(QString::fromUtf8(ui)) && mkfifo(ui.constData(), 0600) == 0);
        }
        const testsupport::MessageRecorder log;
        EXPECT_FALSE(pde::Nib::load(*bundle, row.nib, &owner, &objects)) << row.name;
        if (!row.logged.isEmpty()) {
            EXPECT_EQ(testsupport::MessageRecorder::messages().filter(row.logged).size(), 1)
                << row.name << ": " << qPrintable(testsupport::MessageRecorder::messages().join(u'\n'));
        }
        EXPECT_TRUE(objects.empty()) << row.name;
        EXPECT_EQ(owner.controller, nullptr) << row.name;
        EXPECT_TRUE(owner.children().isEmpty()) << row.name;
        for (const QPointer<QObject> &object : nibtest::made)
            EXPECT_EQ(object, nullptr) << row.name;
    }
}

} // namespace
