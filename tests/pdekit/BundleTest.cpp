// SPDX-License-Identifier: MIT
// Bundles on disk: Info.plist in both forms, the registry, localization order, strings and resources.
#include "TestBundle.h"

#include "pdekit/PropertyList.h"

#include <QDateTime>
#include <QTimeZone>

#include <plist/plist.h>

namespace {

using namespace Qt::StringLiterals;
using pde::Bundle;
using testsupport::LanguagesGuard;
using testsupport::TestBundle;

// Every value type; %1 is the identifier. Both Info.plist forms are made from it.
const char kInfoXml[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
 <key>CFBundleIdentifier</key><string>%1</string>
 <key>CFBundleExecutable</key><string>Sample</string>
 <key>name</key><string>議事録 &amp; more</string>
 <key>count</key><integer>42</integer>
 <key>ratio</key><real>2.5</real>
 <key>blob</key><data>AAEC/w==</data>
 <key>when</key><date>2024-03-05T12:34:56Z</date>
 <key>list</key><array><true/><dict><key>inner</key><false/></dict></array>
</dict></plist>
)";

TEST(Bundle, OpenRefusesWhatIsNotABundle)
{
    TestBundle noInfo, garbage, array;
    EXPECT_EQ(Bundle::open(noInfo.path() + u"/../Missing.plugin"_s), nullptr);
    EXPECT_EQ(noInfo.open(), nullptr);
    EXPECT_EQ(garbage.file(u"Info.plist"_s, "CFBundleIdentifier = org.example.garbage").open(), nullptr);
    EXPECT_EQ(array.file(u"Info.plist"_s, "<plist version=\"1.0\"><array/></plist>").open(), nullptr);
}

TEST(Bundle, XmlAndBinaryInfoReadAlikeAndTheRegistryKnowsBundlesByPath)
{
    // Bundles outlive their folders; a repeated run must not find an earlier one.
    static int run = 0;
    const QString identifier = u"org.example.registry.%1"_s.arg(++run);
    const pde::PropertyListNode root = pde::parsePropertyList(QString::fromUtf8(kInfoXml).arg(identifier).toUtf8());
    const QVariantMap expected{
        {u"CFBundleIdentifier"_s, identifier}, {u"CFBundleExecutable"_s, u"Sample"_s},
        {u"name"_s, u"議事録 & more"_s}, {u"count"_s, 42}, {u"ratio"_s, 2.5},
        {u"blob"_s, QByteArray("\x00\x01\x02\xff", 4)},
        {u"when"_s, QDateTime(QDate(2024, 3, 5), QTime(12, 34, 56), QTimeZone::utc())},
        {u"list"_s, QVariantList{true, QVariantMap{{u"inner"_s, false}}}}};
    char *binary = nullptr;
    uint32_t binarySize = 0;
    plist_to_bin(static_cast<plist_t>(root.get()), &binary, &binarySize);
    TestBundle xmlFiles(u"Xml.plugin"_s), binaryFiles(u"Binary.plugin"_s), anonymous;
    xmlFiles.file(u"Info.plist"_s, pde::xmlPropertyList(root.get())); // written back from the parsed list
    binaryFiles.file(u"Info.plist"_s, QByteArray(binary, static_cast<qsizetype>(binarySize)));
    std::free(binary);
    ASSERT_TRUE(QFile::link(xmlFiles.path(), xmlFiles.path() + u"/../Link.plugin"_s));
    Bundle *opened = xmlFiles.open();
    ASSERT_NE(opened, nullptr);
    ASSERT_NE(binaryFiles.open(), nullptr);
    ASSERT_NE(anonymous.info({}).open(), nullptr);
    EXPECT_EQ(opened->infoDictionary(), expected);
    EXPECT_EQ(binaryFiles.open()->infoDictionary(), expected);

    EXPECT_EQ(Bundle::open(xmlFiles.path() + u"/../Link.plugin"_s), opened);
    EXPECT_EQ(Bundle::withIdentifier(identifier), opened); // the first one opened
    EXPECT_EQ(Bundle::withIdentifier(u"org.example.unknown"_s), nullptr);
    EXPECT_EQ(Bundle::withIdentifier(QString()), nullptr); // not the bundle without one
    EXPECT_EQ(opened->executablePath(), QFileInfo(xmlFiles.path()).canonicalFilePath() + u"/Contents/Linux/Sample"_s);
    EXPECT_EQ(anonymous.open()->executablePath(), std::nullopt);
}

// libplist's forms of +1.5 s and -1.5 s from 2001: before, the seconds count back.
TEST(PropertyList, BinaryDatesKeepFractionsOfASecond)
{
    const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
    const pde::PropertyListNode after(plist_new_date(1, 500000)), before(plist_new_date(-2, 500000));
    EXPECT_EQ(pde::propertyListValue(after.get()), QVariant(epoch.addMSecs(1500)));
    EXPECT_EQ(pde::propertyListValue(before.get()), QVariant(epoch.addMSecs(-1500)));
}

// "ja en" -> {"ja", "en"}: keeps the order tables readable.
QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

TEST(Bundle, LanguagesThenDevelopmentRegionThenBase)
{
    const struct {
        const char *languages, *folders, *developmentRegion, *expected;
    } rows[] = {
        {"ja_JP", "Base en fr ja", "fr", "ja fr Base"},
        {"ja_JP", "English Japanese", "English", "Japanese English"}, // folders named in English
        {"pt_BR fr", "en fr pt pt-BR", "en", "pt-BR pt fr en"},
        {"ko", "de en", "", "en"},
    };
    for (const auto &row : rows) {
        TestBundle bundle;
        bundle.info({{u"CFBundleDevelopmentRegion"_s, QString::fromUtf8(row.developmentRegion)}});
        for (const QString &folder : words(row.folders))
            bundle.strings(folder, u"Localizable"_s, QString());
        const LanguagesGuard languages(words(row.languages));
        ASSERT_NE(bundle.open(), nullptr);
        EXPECT_EQ(bundle.open()->preferredLocalizations(), words(row.expected)) << row.languages;
    }
}

TEST(Bundle, LookupTakesPreferredLanguagesThenDevelopmentRegionThenBaseThenValueThenKey)
{
    // Japanese, the development region English, Base, a French table nobody
    // asks for, and a second table.
    TestBundle bundle;
    bundle.info({{u"CFBundleDevelopmentRegion"_s, u"en"_s}})
        .strings(u"ja"_s, u"Localizable"_s, u"\"Print\" = \"印刷\";"_s)
        .strings(u"en"_s, u"Localizable"_s, u"\"Print\" = \"Print\";\n\"Cancel\" = \"Cancel (en)\";"_s)
        .strings(u"Base"_s, u"Localizable"_s, u"\"Cancel\" = \"(base)\";\n\"Close\" = \"Close (base)\";"_s)
        .strings(u"fr"_s, u"Localizable"_s, u"\"Print\" = \"Imprimer\";\n\"Close\" = \"Fermer\";"_s)
        .strings(u"ja"_s, u"Localizable2"_s, u"\"Print\" = \"印刷 2\";"_s);
    const LanguagesGuard languages({u"ja_JP"_s});
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    const std::optional<QString> none;
    const struct {
        QString key;
        std::optional<QString> value, table;
        QString expected;
    } rows[] = {
        {u"Print"_s, u"Fallback"_s, none, u"印刷"_s},
        {u"Cancel"_s, none, none, u"Cancel (en)"_s},
        {u"Close"_s, none, none, u"Close (base)"_s},
        {u"Nope"_s, u"Fallback"_s, none, u"Fallback"_s},
        {u"Nope"_s, none, none, u"Nope"_s},
        {u"Nope"_s, QString(), none, u"Nope"_s},
        {u"Print"_s, none, u"Localizable2"_s, u"印刷 2"_s},
        {u"Cancel"_s, none, u"Localizable2"_s, u"Cancel"_s}, // a named table alone
    };
    for (const auto &row : rows)
        EXPECT_EQ(opened->localizedStringForKey(row.key, row.value, row.table), row.expected) << qPrintable(row.key);
}

// A panel looks texts up many times; its tables are read on the first
// lookup and a broken one is reported then, not on every lookup, nor again
// when the language list is set anew.
TEST(Bundle, EachTableIsReadOnceAndABrokenOneReportedOnce)
{
    TestBundle bundle;
    bundle.info({}).strings(u"en"_s, u"Localizable"_s, u"\"a\" = \"1\";\n\"b\" = ;\n"_s);
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    const testsupport::MessageRecorder log;
    for (int round = 0; round < 2; ++round) {
        const LanguagesGuard languages({u"en"_s});
        for (int i = 0; i < 10; ++i) {
            for (const std::optional<QString> &table : {std::optional<QString>(), std::optional(u"Localizable"_s)}) {
                EXPECT_EQ(opened->localizedStringForKey(u"a"_s, {}, table), u"1"_s);
                EXPECT_EQ(opened->localizedStringForKey(u"b"_s, {}, table), u"b"_s);
            }
        }
        // The file changed on disk is not read again.
        bundle.strings(u"en"_s, u"Localizable"_s, u"\"a\" = \"2\";"_s);
    }
    EXPECT_EQ(testsupport::MessageRecorder::messages().size(), 1)
        << qPrintable(testsupport::MessageRecorder::messages().join(u'\n'));
}

TEST(Bundle, InfoDictionaryLocalizedByInfoPlistStrings)
{
    TestBundle bundle;
    bundle.info({{u"CFBundleName"_s, u"Sample"_s}, {u"Copyright"_s, u"raw"_s}, {u"Version"_s, u"1.0"_s}})
        .strings(u"ja"_s, u"InfoPlist"_s, u"CFBundleName = \"サンプル\";"_s)
        .strings(u"en"_s, u"InfoPlist"_s, u"CFBundleName = \"Sample (en)\";\nCopyright = \"(en)\";"_s);
    const LanguagesGuard languages({u"ja_JP"_s});
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    const QVariantMap localized = opened->localizedInfoDictionary();
    for (const auto &[key, expected] : {std::pair{u"CFBundleName"_s, QVariant(u"サンプル"_s)},
                                        std::pair{u"Copyright"_s, QVariant(u"(en)"_s)},
                                        std::pair{u"Version"_s, QVariant(u"1.0"_s)}}) {
        EXPECT_EQ(opened->objectForInfoDictionaryKey(key), expected) << key.toStdString();
        EXPECT_EQ(localized.value(key), expected) << key.toStdString();
    }
    EXPECT_EQ(opened->infoDictionary().value(u"CFBundleName"_s), QVariant(u"Sample"_s));
}

TEST(Bundle, PathForResourceSearchesInTheRequestedOrder)
{
    TestBundle bundle;
    bundle.info({});
    for (const char *path : {"pic.png", "ja.lproj/pic.png", "en.lproj/en.txt", "fr.lproj/fr.txt", "Help/x"})
        bundle.resource(QString::fromUtf8(path), path);
    const LanguagesGuard languages({u"ja_JP"_s});
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    const struct {
        QString file, type;
        Bundle::Search search;
        QString expected; // relative to Resources/; empty when not found
    } rows[] = {
        {u"pic"_s, u"png"_s, Bundle::Search::PlainFirst, u"pic.png"_s},
        {u"pic"_s, u"png"_s, Bundle::Search::LocalizedFirst, u"ja.lproj/pic.png"_s},
        {u"en"_s, u"txt"_s, Bundle::Search::PlainFirst, u"en.lproj/en.txt"_s}, // the development region
        {u"fr"_s, u"txt"_s, Bundle::Search::LocalizedFirst, {}},               // not a preferred language
        {u"Help"_s, {}, Bundle::Search::PlainFirst, {}}, // a folder is no resource
    };
    for (const auto &row : rows) {
        const std::optional<QString> found = opened->pathForResource(row.file, row.type, {}, row.search);
        EXPECT_EQ(found.value_or(QString()).remove(opened->resourcePath() + u'/'), row.expected)
            << row.file.toStdString();
    }
}

} // namespace
