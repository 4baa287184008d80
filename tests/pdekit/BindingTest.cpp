// SPDX-License-Identifier: MIT
// Bindings made directly: exclusive radio buttons clicked by the user, and
// the caption colour over a palette the control already had.
#include "NibTestClasses.h"
#include "TestBundle.h"

#include "pdekit/Binding.h"

#include <QButtonGroup>
#include <QLabel>
#include <QRadioButton>
#include <QTest>
#include <QVBoxLayout>

#include <array>

namespace {

using namespace Qt::StringLiterals;
using nibtest::Model;

// Radios a and b bound to the flags of two models and an unbound radio c,
// exclusive as children of one parent or through a button group whose
// buttons have parents of their own. Each step starts where the one before
// it left the radios.
TEST(Binding, ClickingAnExclusiveRadioWritesBackTheRadiosItUnchecked)
{
    enum class Act { ClickA, ClickB, ClickC, ModelChecksB };
    const struct {
        const char *name;
        Act act;
        std::array<bool, 3> shown;
        std::array<bool, 2> flags;
    } steps[] = {
        {"click b: a unchecked", Act::ClickB, {false, true, false}, {false, true}},
        {"click a: b unchecked", Act::ClickA, {true, false, false}, {true, false}},
        {"click the unbound c: a unchecked", Act::ClickC, {false, false, true}, {false, false}},
        {"click a again", Act::ClickA, {true, false, false}, {true, false}},
        // The model's change reaches the radios; the radio it unchecks is no
        // user's edit and writes nothing.
        {"model checks b", Act::ModelChecksB, {false, true, false}, {true, true}},
    };
    for (const bool grouped : {false, true}) {
        const char *setup = grouped ? "button group" : "auto-exclusive";
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        QButtonGroup group;
        std::array<QRadioButton *, 3> radios{};
        for (QRadioButton *&radio : radios) {
            QWidget *parent = &window;
            if (grouped) {
                parent = new QWidget(&window);
                layout->addWidget(parent);
                new QVBoxLayout(parent);
            }
            radio = new QRadioButton(u"radio"_s, parent);
            parent->layout()->addWidget(radio);
            if (grouped)
                group.addButton(radio);
        }
        std::array<Model, 2> models;
        models[1].setProperty("flag", false);
        for (int i = 0; i < 2; ++i)
            ASSERT_TRUE(pde::bindProperty(radios[i], "checked", &models[i], "flag", pde::BindingDirection::TwoWay));
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

        for (const auto &step : steps) {
            switch (step.act) {
            case Act::ClickA:
            case Act::ClickB:
            case Act::ClickC: {
                QRadioButton *radio = radios[static_cast<int>(step.act) - static_cast<int>(Act::ClickA)];
                QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(8, radio->height() / 2));
                break;
            }
            case Act::ModelChecksB:
                models[1].setProperty("flag", true);
                break;
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
    ASSERT_TRUE(pde::bindProperty(label, "captionColor", &model, "captionColor", pde::BindingDirection::ToControl));

    model.setProperty("captionColor", QColor(Qt::red));
    QPalette parentPalette = parent.palette();
    parentPalette.setColor(QPalette::Base, Qt::green);
    parent.setPalette(parentPalette);
    EXPECT_EQ(label->palette().color(label->foregroundRole()), QColor(Qt::red));
    EXPECT_EQ(label->palette().color(QPalette::Window), QColor(Qt::yellow));
    EXPECT_EQ(label->palette().color(QPalette::Base), QColor(Qt::green));

    model.setProperty("captionColor", QColor());
    EXPECT_EQ(label->palette().color(label->foregroundRole()), originalText);
    EXPECT_EQ(label->palette().color(QPalette::Window), QColor(Qt::yellow));
}

} // namespace
