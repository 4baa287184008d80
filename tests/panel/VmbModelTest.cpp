// SPDX-License-Identifier: MIT
// The model's defaults, its notifications and its tear-down.
#include "panel/VmbModel.h"

#include <QApplication>
#include <QColor>
#include <QPalette>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

struct Property {
    const char *name;
    void (jt::VmbModel::*changed)();
    QVariant awakeValue;
};

// In declaration order: the order awakeFromNib sets them and the tear-down
// empties them.
const Property kProperties[] = {
    {"printType", &jt::VmbModel::printTypeChanged, 0},
    {"userName", &jt::VmbModel::userNameChanged, QString()},
    {"password", &jt::VmbModel::passwordChanged, QString()},
    {"documentNameType", &jt::VmbModel::documentNameTypeChanged, 1},
    {"documentName", &jt::VmbModel::documentNameChanged, QString()},
    {"canStore", &jt::VmbModel::canStoreChanged, false},
    {"isStored", &jt::VmbModel::isStoredChanged, false},
    {"isSecure", &jt::VmbModel::isSecureChanged, false},
    {"isCustomDocName", &jt::VmbModel::isCustomDocNameChanged, true},
    // A colour stands for the palette's disabled text colour, known only
    // once the application exists.
    {"canStoreColor", &jt::VmbModel::canStoreColorChanged, QColor()},
    {"isStoredColor", &jt::VmbModel::isStoredColorChanged, QColor()},
    {"isSecureColor", &jt::VmbModel::isSecureColorChanged, QColor()},
    {"isCustomDocNameColor", &jt::VmbModel::isCustomDocNameColorChanged, QColor()},
};

TEST(VmbModel, AwakeFromNibSetsTheDefaultsInOrder)
{
    QStringList seen; // outlives the model, whose tear-down notifies too
    QStringList expected;
    jt::VmbModel model;
    for (const Property &property : kProperties) {
        expected.append(QString::fromLatin1(property.name));
        QObject::connect(&model, property.changed, &model,
                         [&seen, name = property.name] { seen.append(QString::fromLatin1(name)); });
    }
    model.awakeFromNib();
    EXPECT_EQ(seen, expected);
    const QVariant grey = QApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
    for (const Property &property : kProperties) {
        EXPECT_EQ(model.property(property.name),
                  property.awakeValue.typeId() == QMetaType::QColor ? grey : property.awakeValue)
            << property.name;
    }
}

TEST(VmbModel, EverySetNotifiesEvenWithAnEqualValue)
{
    jt::VmbModel model;
    model.awakeFromNib();
    for (const Property &property : kProperties) {
        QSignalSpy spy(&model, property.changed);
        model.setProperty(property.name, property.awakeValue);
        model.setProperty(property.name, property.awakeValue);
        EXPECT_EQ(spy.count(), 2) << property.name;
    }
}

TEST(VmbModel, TearDownWipesThePasswordThenSetsEveryPropertyToNoValueInOrder)
{
    QStringList seen;
    QStringList expected;
    QString shown; // a field's copy of the password, sharing its characters
    {
        jt::VmbModel model;
        model.awakeFromNib();
        model.setPassword(QString::number(1234));
        shown = model.password().toString();
        for (const Property &property : kProperties) {
            expected.append(QString::fromLatin1(property.name));
            QObject::connect(&model, property.changed, &model, [&seen, &model, name = property.name] {
                if (!model.property(name).isValid())
                    seen.append(QString::fromLatin1(name));
            });
        }
    }
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(shown, QString(4, QChar(0)));
}

} // namespace
