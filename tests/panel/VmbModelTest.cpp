// SPDX-License-Identifier: MIT
// The model's defaults, its notifications and its tear-down.
#include "panel/VmbModel.h"

#include <QColor>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

TEST(VmbModel, AwakeFromNibSetsTheDefaults)
{
    jt::VmbModel model;
    model.awakeFromNib();
    EXPECT_EQ(model.printType(), QVariant(0));
    EXPECT_EQ(model.userName(), QVariant(QString()));
    EXPECT_EQ(model.password(), QVariant(QString()));
    EXPECT_EQ(model.documentNameType(), QVariant(1));
    EXPECT_EQ(model.documentName(), QVariant(QString()));
    EXPECT_EQ(model.canStore(), QVariant(false));
    EXPECT_EQ(model.isStored(), QVariant(false));
    EXPECT_EQ(model.isSecure(), QVariant(false));
    EXPECT_EQ(model.isCustomDocName(), QVariant(true));
    for (const QVariant &colour : {model.canStoreColor(), model.isStoredColor(), model.isSecureColor(),
                                   model.isCustomDocNameColor()})
        EXPECT_EQ(colour.value<QColor>(), QColor(Qt::lightGray));
}

TEST(VmbModel, EverySetNotifiesEvenWithAnEqualValue)
{
    jt::VmbModel model;
    QSignalSpy spy(&model, &jt::VmbModel::printTypeChanged);
    model.setPrintType(2);
    model.setPrintType(2);
    EXPECT_EQ(spy.count(), 2);
}

struct Property {
    const char *name;
    void (jt::VmbModel::*changed)();
    QVariant (jt::VmbModel::*read)() const;
};

const Property kProperties[] = {
    {"printType", &jt::VmbModel::printTypeChanged, &jt::VmbModel::printType},
    {"userName", &jt::VmbModel::userNameChanged, &jt::VmbModel::userName},
    {"password", &jt::VmbModel::passwordChanged, &jt::VmbModel::password},
    {"documentNameType", &jt::VmbModel::documentNameTypeChanged, &jt::VmbModel::documentNameType},
    {"documentName", &jt::VmbModel::documentNameChanged, &jt::VmbModel::documentName},
    {"canStore", &jt::VmbModel::canStoreChanged, &jt::VmbModel::canStore},
    {"isStored", &jt::VmbModel::isStoredChanged, &jt::VmbModel::isStored},
    {"isSecure", &jt::VmbModel::isSecureChanged, &jt::VmbModel::isSecure},
    {"isCustomDocName", &jt::VmbModel::isCustomDocNameChanged, &jt::VmbModel::isCustomDocName},
    {"canStoreColor", &jt::VmbModel::canStoreColorChanged, &jt::VmbModel::canStoreColor},
    {"isStoredColor", &jt::VmbModel::isStoredColorChanged, &jt::VmbModel::isStoredColor},
    {"isSecureColor", &jt::VmbModel::isSecureColorChanged, &jt::VmbModel::isSecureColor},
    {"isCustomDocNameColor", &jt::VmbModel::isCustomDocNameColorChanged, &jt::VmbModel::isCustomDocNameColor},
};

TEST(VmbModel, TearDownSetsEveryPropertyToNoValueInOrder)
{
    QStringList seen;
    {
        jt::VmbModel model;
        model.awakeFromNib();
        for (const Property &property : kProperties) {
            QObject::connect(&model, property.changed, &model, [&seen, &model, property] {
                if (!(model.*property.read)().isValid())
                    seen.append(QString::fromLatin1(property.name));
            });
        }
    }
    QStringList expected;
    for (const Property &property : kProperties)
        expected.append(QString::fromLatin1(property.name));
    EXPECT_EQ(seen, expected);
}

} // namespace
