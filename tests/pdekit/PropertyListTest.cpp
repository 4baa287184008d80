// SPDX-License-Identifier: MIT
// Property lists in both formats, as Qt values and back to XML.
#include "pdekit/PropertyList.h"

#include <QDateTime>
#include <QDebug>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <plist/plist.h>

inline void PrintTo(const QVariant &value, std::ostream *out)
{
    QString text;
    QDebug(&text) << value;
    *out << text.toStdString();
}

namespace {

using namespace Qt::StringLiterals;

// Written as XML because the Qt-side test helper cannot make dates; the
// binary form is made from it by libplist.
const QByteArray kXml = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
 <key>name</key><string>議事録 &amp; more</string>
 <key>count</key><integer>42</integer>
 <key>ratio</key><real>2.5</real>
 <key>on</key><true/>
 <key>off</key><false/>
 <key>blob</key><data>AAEC/w==</data>
 <key>when</key><date>2024-03-05T12:34:56Z</date>
 <key>before</key><date>1999-12-31T23:59:59Z</date>
 <key>list</key><array><string>a</string><dict><key>inner</key><integer>1</integer></dict></array>
</dict></plist>
)";

QByteArray toBinary(const QByteArray &xml)
{
    const pde::PropertyListNode node = pde::parsePropertyList(xml);
    char *data = nullptr;
    uint32_t length = 0;
    plist_to_bin(static_cast<plist_t>(node.get()), &data, &length);
    QByteArray bytes(data, static_cast<qsizetype>(length));
    std::free(data);
    return bytes;
}

const QVariantMap kExpected{
    {u"name"_s, u"議事録 & more"_s},
    {u"count"_s, QVariant::fromValue<qulonglong>(42)},
    {u"ratio"_s, 2.5},
    {u"on"_s, true},
    {u"off"_s, false},
    {u"blob"_s, QByteArray("\x00\x01\x02\xff", 4)},
    {u"when"_s, QDateTime(QDate(2024, 3, 5), QTime(12, 34, 56), QTimeZone::utc())},
    {u"before"_s, QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59), QTimeZone::utc())},
    {u"list"_s, QVariantList{u"a"_s, QVariantMap{{u"inner"_s, QVariant::fromValue<qulonglong>(1)}}}},
};

TEST(PropertyList, BothFormatsGiveTheSameTypedValuesAndXmlReadsBack)
{
    for (const QByteArray &data : {kXml, toBinary(kXml)}) {
        const bool binary = data.startsWith("bplist");
        SCOPED_TRACE(binary ? "binary" : "xml");
        EXPECT_EQ(pde::isBinaryPropertyList(data), binary);
        const pde::PropertyListNode node = pde::parsePropertyList(data);
        const QVariantMap map = pde::propertyListValue(node.get()).toMap();
        EXPECT_EQ(map.keys(), kExpected.keys());
        for (auto it = kExpected.cbegin(); it != kExpected.cend(); ++it) {
            EXPECT_EQ(map.value(it.key()).typeId(), it.value().typeId()) << it.key().toStdString();
            EXPECT_EQ(map.value(it.key()), it.value()) << it.key().toStdString();
        }
        const QByteArray xml = pde::xmlPropertyList(node.get());
        EXPECT_FALSE(pde::isBinaryPropertyList(xml));
        EXPECT_EQ(pde::propertyListValue(pde::parsePropertyList(xml).get()), QVariant(map));
    }
}

// XML dates carry whole seconds only; binary ones, made here directly, keep
// fractions, also before 2001 where the seconds are negative.
TEST(PropertyList, DatesKeepFractionsOfASecond)
{
    const pde::PropertyListNode after(plist_new_date(1, 500000));   // +1.5 s
    const pde::PropertyListNode before(plist_new_date(-2, 500000)); // -1.5 s
    EXPECT_EQ(pde::propertyListValue(after.get()),
              QVariant(QDateTime(QDate(2001, 1, 1), QTime(0, 0, 1, 500), QTimeZone::utc())));
    EXPECT_EQ(pde::propertyListValue(before.get()),
              QVariant(QDateTime(QDate(2000, 12, 31), QTime(23, 59, 58, 500), QTimeZone::utc())));
}

TEST(PropertyList, GarbageIsNoPropertyList)
{
    for (const QByteArray &data : {QByteArray(), QByteArray("just some words"), QByteArray("bplist00"),
                                   kXml.left(kXml.size() / 2), toBinary(kXml).left(40)}) {
        EXPECT_EQ(pde::parsePropertyList(data), nullptr) << data.toHex().constData();
    }
    EXPECT_EQ(pde::readPropertyListFile(u"/nonexistent/Info.plist"_s), std::nullopt);
    EXPECT_FALSE(pde::propertyListValue(nullptr).isValid());
    EXPECT_TRUE(pde::xmlPropertyList(nullptr).isEmpty());
}

} // namespace
