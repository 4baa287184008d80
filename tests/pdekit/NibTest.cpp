// SPDX-License-Identifier: MIT
// Nib loading and bindings driven as a user would: real .ui files in a
// bundle, typing and clicking under the offscreen platform.
#include "TestSupport.h"

#include "pdekit/Binding.h"
#include "pdekit/Nib.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <array>

namespace nibtest {

// Which objects woke from the nib, in order.
QStringList awakeLog;
// The declared objects and root views made, so a test can see that a failed
// load destroyed them.
std::vector<QPointer<QObject>> made;

// A declared object with a property for each kind of control property (a
// colour goes in a QVariant too).
class Model : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant name MEMBER m_name NOTIFY nameChanged)
    Q_PROPERTY(QVariant choice MEMBER m_choice NOTIFY choiceChanged)
    Q_PROPERTY(QVariant flag MEMBER m_flag NOTIFY flagChanged)

public:
    Model() { made.emplace_back(this); }
    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }

Q_SIGNALS:
    void nameChanged();
    void choiceChanged();
    void flagChanged();

private:
    QVariant m_name, m_choice;
    QVariant m_flag = true;
};

// The nib's owner: outlets, actions, and a widget's properties to bind.
class Owner : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(nibtest::Model *model MEMBER model)
    Q_PROPERTY(QWidget *view MEMBER view)

public:
    Model *model = nullptr;
    QWidget *view = nullptr;
    int applied = 0;
    QObject *lastSender = nullptr;

public Q_SLOTS:
    void apply() { ++applied; }
    void clickDefaults(QObject *sender) { lastSender = sender; }

Q_SIGNALS:
    void poked();
};

class View : public QWidget
{
    Q_OBJECT

public:
    explicit View(QWidget *parent = nullptr) : QWidget(parent) { made.emplace_back(this); }
    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }
};

} // namespace nibtest

namespace {

using namespace Qt::StringLiterals;
using nibtest::Model;
using nibtest::Owner;
using testsupport::TestBundle;

// One more declaration: the property it goes in ("nibOutlets"), and its line.
using Extra = std::pair<QString, QString>;

// A view that declares a model, connects it and the view to the owner, sends
// the owner actions, and binds each kind of control property; the extra
// declarations come after the view's own, in their order.
QByteArray panelUi(const std::vector<Extra> &extras = {}, const QString &labelText = u"Name"_s)
{
    QString ui = uR"(<ui version="4.0"><class>Panel</class><widget class="View" name="panelView">
 <property name="nibObjects" stdset="0"><stringlist><string>Model model</string><!--nibObjects--></stringlist></property>
 <property name="nibOutlets" stdset="0"><stringlist><string>File's Owner.model = model</string>
  <string>File's Owner.view = panelView</string><!--nibOutlets--></stringlist></property>
 <property name="nibActions" stdset="0"><stringlist><string>applyButton.clicked -> File's Owner.apply</string>
  <string>defaultsButton.clicked -> File's Owner.clickDefaults</string><!--nibActions--></stringlist></property>
 <property name="nibBindings" stdset="0"><stringlist><string>nameField.text &lt;-> model.name</string>
  <string>nameField.enabled &lt;- model.flag</string><string>choiceCombo.currentIndex &lt;-> model.choice</string>
  <string>flagCheck.checked &lt;-> model.flag</string><!--nibBindings--></stringlist></property>
 <layout class="QVBoxLayout" name="layout">
  <item><widget class="QLabel" name="nameLabel"><property name="text"><string>%1</string></property></widget></item>
  <item><widget class="QLabel" name="logo"><property name="pixmap"><pixmap>Logo.png</pixmap></property></widget></item>
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
</customwidgets></ui>
)"_s.arg(labelText);
    for (const auto &[property, line] : extras)
        ui.replace(u"<!--%1-->"_s.arg(property), u"<string>%1</string><!--%2-->"_s.arg(line.toHtmlEscaped(), property));
    return ui.toUtf8();
}

pde::Bundle *panelBundle(TestBundle &files, const QByteArray &ui)
{
    pde::Bundle *bundle = files.info({}).resource(u"Panel.ui"_s, ui).open();
    bundle->classes().registerClass<Model>(u"Model"_s);
    bundle->classes().registerClass<nibtest::View>(u"View"_s);
    return bundle;
}

// The panel, whose Japanese copy comes before the one in Resources/, loaded
// and then used: the model and the controls show each other's values, and
// only the user's edits reach the model. A relative file name in a .ui names
// a file beside the .ui, wherever the process runs.
TEST(Nib, LoadsThePanelAndOnlyTheUsersEditsReachTheModel)
{
    const testsupport::LanguagesGuard languages{{u"ja_JP"_s}};
    TestBundle files;
    files.resource(u"ja.lproj/Panel.ui"_s, panelUi({}, u"名前"_s));
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(files.path() + u"/Contents/Resources/ja.lproj/Logo.png"_s));
    ASSERT_FALSE(QFileInfo::exists(u"Logo.png"_s)); // not in the working directory
    Owner owner;
    pde::Nib::TopLevelObjects objects;
    nibtest::awakeLog.clear();
    ASSERT_TRUE(pde::Nib::load(*panelBundle(files, panelUi()), u"Panel"_s, &owner, &objects));
    Model *model = owner.model;
    QWidget *view = owner.view;
    ASSERT_NE(model, nullptr);
    ASSERT_NE(view, nullptr);
    view->show();
    EXPECT_EQ(objects.front().get(), view);
    EXPECT_EQ(objects.back().get(), model);
    EXPECT_EQ(nibtest::awakeLog, (QStringList{u"model"_s, u"panelView"_s}));
    EXPECT_EQ(view->findChild<QLabel *>(u"nameLabel"_s)->text(), u"名前"_s);
    EXPECT_FALSE(view->findChild<QLabel *>(u"logo"_s)->pixmap().isNull());

    auto *field = view->findChild<QLineEdit *>(u"nameField"_s);
    model->setProperty("name", u"ab"_s);
    EXPECT_EQ(field->text(), u"ab"_s);
    field->setFocus();
    field->setCursorPosition(1);
    QTest::keyClicks(field, u"xy"_s);
    EXPECT_EQ(model->property("name"), QVariant(u"axyb"_s));
    EXPECT_EQ(field->cursorPosition(), 3); // the model's echo of the edit must not move the cursor
    field->setText(u"set by code"_s);
    EXPECT_EQ(model->property("name"), QVariant(u"axyb"_s));

    // A pop-up shows only the indexes it has, and writes nothing back then.
    auto *combo = view->findChild<QComboBox *>(u"choiceCombo"_s);
    for (const auto &[value, shownIndex] : {std::pair{QVariant(1), 1}, std::pair{QVariant(2), -1},
                                            std::pair{QVariant(), -1}, std::pair{QVariant(u"x"_s), -1}}) {
        model->setProperty("choice", value);
        EXPECT_EQ(combo->currentIndex(), shownIndex) << qPrintable(value.toString());
        EXPECT_EQ(model->property("choice"), value) << "written back";
    }
    model->setProperty("choice", 0);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(model->property("choice"), QVariant(1));
    combo->setCurrentIndex(0);
    EXPECT_EQ(model->property("choice"), QVariant(1));

    // The flag that the check box edits also enables the name field.
    auto *check = view->findChild<QCheckBox *>(u"flagCheck"_s);
    model->setProperty("flag", false);
    EXPECT_FALSE(check->isChecked());
    QTest::keyClicks(field, u"zz"_s);
    EXPECT_EQ(model->property("name"), QVariant(u"axyb"_s));
    check->setFocus();
    QTest::keyClick(check, Qt::Key_Space);
    EXPECT_EQ(model->property("flag"), QVariant(true));
    EXPECT_TRUE(field->isEnabled());

    // Actions call methods with and without the sender.
    auto *defaults = view->findChild<QPushButton *>(u"defaultsButton"_s);
    QTest::mouseClick(view->findChild<QPushButton *>(u"applyButton"_s), Qt::LeftButton);
    QTest::mouseClick(defaults, Qt::LeftButton);
    EXPECT_EQ(owner.applied, 1);
    EXPECT_EQ(owner.lastSender, defaults);
}

TEST(Nib, FailureKeepsNothingAndLeavesTheOwnerAsItWas)
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
        QString logged = {}; // a part of the message, after the nib's path
    } rows[] = {
        // Names and files that must not reach the loader.
        {"name that leaves the resources", panelUi(), u"../Resources/Panel"_s,
         u" is not a plain name inside the bundle's resources"_s},
        {"nested deeper than the loader may go", deep, u"Panel"_s, u"Panel.ui: nests elements more than 256 deep"_s},
        {"unknown class", panelUi({{u"nibObjects"_s, u"Missing missing"_s}})},
        {"outlet of the wrong type", panelUi({{u"nibOutlets"_s, u"File's Owner.view = model"_s}})},
        {"action without method", panelUi({{u"nibActions"_s, u"applyButton.clicked -> File's Owner.nothing"_s}})},
        // What the load hung on the owner goes with the rest.
        {"owner sends an action", panelUi({{u"nibActions"_s, u"File's Owner.poked -> File's Owner.clickDefaults"_s},
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
        const testsupport::MessageRecorder log;
        EXPECT_FALSE(pde::Nib::load(*panelBundle(files, row.ui), row.nib, &owner, &objects)) << row.name;
        if (!row.logged.isEmpty()) {
            EXPECT_EQ(testsupport::MessageRecorder::messages().filter(row.logged).size(), 1)
                << row.name << ": " << qPrintable(testsupport::MessageRecorder::messages().join(u'\n'));
        }
        EXPECT_TRUE(objects.empty()) << row.name;
        EXPECT_EQ(owner.model, nullptr) << row.name;
        EXPECT_EQ(owner.view, nullptr) << row.name;
        EXPECT_TRUE(owner.children().isEmpty()) << row.name;
        for (const QPointer<QObject> &object : nibtest::made)
            EXPECT_EQ(object, nullptr) << row.name;
    }
}

// Radios a and b bound to the flags of two models and an unbound radio c,
// exclusive as children of one parent or through a button group whose
// buttons have parents of their own. Each step starts where the one before
// it left the radios.
TEST(Binding, ClickingAnExclusiveRadioWritesBackTheRadiosItUnchecked)
{
    const struct {
        const char *name;
        int click; // the radio clicked; -1: the model checks b
        std::array<bool, 3> shown;
        std::array<bool, 2> flags;
    } steps[] = {
        {"click b: a unchecked", 1, {false, true, false}, {false, true}},
        {"click a: b unchecked", 0, {true, false, false}, {true, false}},
        {"click the unbound c: a unchecked", 2, {false, false, true}, {false, false}},
        {"click a again", 0, {true, false, false}, {true, false}},
        // The model's change reaches the radios; the radio it unchecks is no
        // user's edit and writes nothing.
        {"model checks b", -1, {false, true, false}, {true, true}},
    };
    for (const bool grouped : {false, true}) {
        const char *setup = grouped ? "button group" : "auto-exclusive";
        QWidget window;
        QButtonGroup group;
        std::array<QRadioButton *, 3> radios{};
        for (std::size_t i = 0; i < radios.size(); ++i) {
            QWidget *parent = grouped ? new QWidget(&window) : &window;
            radios[i] = new QRadioButton(u"radio"_s, parent);
            (grouped ? parent : radios[i])->move(0, 30 * static_cast<int>(i)); // one below the other
            if (grouped)
                group.addButton(radios[i]);
        }
        std::array<Model, 2> models;
        models[1].setProperty("flag", false);
        for (int i = 0; i < 2; ++i)
            ASSERT_TRUE(pde::bindProperty(radios[i], "checked", &models[i], "flag", pde::BindingDirection::TwoWay));
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

        for (const auto &step : steps) {
            if (step.click >= 0) {
                QRadioButton *radio = radios[static_cast<std::size_t>(step.click)];
                QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(8, radio->height() / 2));
            } else {
                models[1].setProperty("flag", true);
            }
            EXPECT_EQ((std::array{radios[0]->isChecked(), radios[1]->isChecked(), radios[2]->isChecked()}), step.shown)
                << setup << ": " << step.name;
            EXPECT_EQ((std::array{models[0].property("flag").toBool(), models[1].property("flag").toBool()}), step.flags)
                << setup << ": " << step.name;
        }
    }
}

// A .ui may give a label palette roles of its own; the caption colour
// changes only the text's role, and the roles the label never set still
// follow its parent.
TEST(Binding, CaptionColourKeepsTheLabelsOtherPaletteRoles)
{
    QWidget parent;
    auto *label = new QLabel(u"Caption"_s, &parent);
    QPalette own = label->palette();
    own.setColor(QPalette::Window, Qt::yellow);
    label->setPalette(own);
    const QColor originalText = label->palette().color(label->foregroundRole());
    Model model;
    ASSERT_TRUE(pde::bindProperty(label, "captionColor", &model, "name", pde::BindingDirection::ToControl));

    model.setProperty("name", QColor(Qt::red));
    QPalette parentPalette = parent.palette();
    parentPalette.setColor(QPalette::Base, Qt::green);
    parent.setPalette(parentPalette);
    EXPECT_EQ(label->palette().color(label->foregroundRole()), QColor(Qt::red));
    EXPECT_EQ(label->palette().color(QPalette::Window), QColor(Qt::yellow));
    EXPECT_EQ(label->palette().color(QPalette::Base), QColor(Qt::green));

    model.setProperty("name", QColor());
    EXPECT_EQ(label->palette().color(label->foregroundRole()), originalText);
    EXPECT_EQ(label->palette().color(QPalette::Window), QColor(Qt::yellow));
}

} // namespace

#include "NibTest.moc"
