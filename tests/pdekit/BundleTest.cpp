// SPDX-License-Identifier: MIT
// Bundles on disk: Info.plist in both forms, the registry, localization order, strings and resources.
#include "TestBundle.h"

#include "pdekit/PropertyList.h"

#include <QDateTime>
#include <QTimeZone>

#include <plist/plist.h>
#include <sys/stat.h>

#include <vector>

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

// An XML property list of `depth` arrays in one another.
QByteArray nestedXml(int depth)
{
    return "<plist version=\"1.0\">" + QByteArray("<array>").repeated(depth) + QByteArray("</array>").repeated(depth)
           + "</plist>";
}

// A binary property list whose object i is an array of the objects refs[i]
// (two-byte offsets and references); object 0 is the top.
QByteArray binaryArrays(const std::vector<std::vector<int>> &refs)
{
    QByteArray list("bplist00");
    QByteArray offsets;
    for (const std::vector<int> &array : refs) {
        offsets += char(list.size() >> 8) + QByteArray(1, char(list.size()));
        list += char(0xA0 | array.size());
        for (const int ref : array)
            list += char(ref >> 8) + QByteArray(1, char(ref));
    }
    const qsizetype table = list.size();
    list += offsets;
    QByteArray trailer(32, '\0');
    trailer[6] = 2; // offset size
    trailer[7] = 2; // reference size
    trailer[14] = char(refs.size() >> 8);
    trailer[15] = char(refs.size());
    trailer[30] = char(table >> 8);
    trailer[31] = char(table);
    return list + trailer;
}

// What cannot be a bundle is refused with the Info.plist and the reason; a
// hostile one neither crashes, hangs nor fills the memory.
TEST(Bundle, OpenRefusesWhatIsNotABundleNamingTheFileAndTheReason)
{
    std::vector<std::vector<int>> chain(300), doubling(40), itself{{0}};
    for (int i = 0; i + 1 < 300; ++i)
        chain[static_cast<std::size_t>(i)] = {i + 1};
    for (int i = 0; i + 1 < 40; ++i)
        doubling[static_cast<std::size_t>(i)] = {i + 1, i + 1}; // 2^40 values once read
    enum Kind { kContent, kNone, kFifo };
    const struct {
        const char *name;
        Kind kind;
        QByteArray info;
        QString reason;
    } rows[] = {
        {"no Info.plist", kNone, {}, u"does not exist"_s},
        {"not a property list", kContent, "CFBundleIdentifier = org.example.garbage", u"is not a property list"_s},
        {"an array", kContent, "<plist version=\"1.0\"><array/></plist>", u"does not hold a dictionary"_s},
        {"XML nested 50,000 deep", kContent, nestedXml(50000), u"holds more than 10000 arrays and dictionaries"_s},
        {"XML nested 300 deep", kContent, nestedXml(300), u"nests arrays and dictionaries more than 256 deep"_s},
        {"binary nested 300 deep", kContent, binaryArrays(chain), u"nests arrays and dictionaries more than 256 deep"_s},
        {"binary that contains itself", kContent, binaryArrays(itself), u"is a binary property list that contains itself"_s},
        {"binary that doubles 40 times", kContent, binaryArrays(doubling), u"expands to more than 1048576 values"_s},
        // {"a\0": "v"}: libplist aborts walking a dictionary with such a key.
        {"binary with a zero in a key", kContent,
         QByteArray("bplist00\xD1\x01\x02\x52" "a\0\x51v\x08\x0B\x0E", 19) + QByteArray(6, '\0') + "\x01\x01"
             + QByteArray(7, '\0') + "\x03" + QByteArray(15, '\0') + "\x10",
         u"is not a property list"_s},
        {"larger than 4 MiB", kContent, nestedXml(1) + QByteArray(4 << 20, ' '), u"is larger than 4194304 bytes"_s},
        {"a FIFO", kFifo, {}, u"is not a regular file"_s},
    };
    for (const auto &row : rows) {
        TestBundle bundle;
        const QString info = bundle.path() + u"/Contents/Info.plist"_s;
        if (row.kind == kContent) {
            bundle.file(u"Info.plist"_s, row.info);
        } else if (row.kind == kFifo) {
            ASSERT_EQ(mkfifo(QFile::encodeName(info).constData(), 0600), 0);
        }
        const testsupport::MessageRecorder log;
        QString error;
        EXPECT_EQ(Bundle::open(bundle.path(), &error), nullptr) << row.name;
        EXPECT_EQ(error, bundle.path() + u": not a bundle: "_s + QFileInfo(info).absoluteFilePath() + u' ' + row.reason)
            << row.name;
        EXPECT_EQ(testsupport::MessageRecorder::messages(), QStringList{u"pde.bundle: "_s + error}) << row.name;
    }
    EXPECT_EQ(Bundle::open(TestBundle().path() + u"/../Missing.plugin"_s), nullptr);
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
        {u"Print"_s, none, u"../ja.lproj/Localizable"_s, u"Print"_s}, // a name that is not plain names none
    };
    for (const auto &row : rows)
        EXPECT_EQ(opened->localizedStringForKey(row.key, row.value, row.table), row.expected) << qPrintable(row.key);
}

// A panel looks texts up many times; its tables are read on the first
// lookup and a broken or unreadable one is reported then (naming the file
// and the reason), not on every lookup, nor again when the language list is
// set anew. A FIFO or a device as a table neither hangs nor fills memory.
TEST(Bundle, EachTableIsReadOnceAndABrokenOrUnreadableOneReportedOnce)
{
    enum Kind { kContent, kFifo, kDevice };
    const struct {
        const char *name;
        Kind kind;
        QByteArray table;
        QString a;      // what "a" reads as
        QString reason; // in the one message
    } rows[] = {
        {"malformed", kContent, "\"a\" = \"1\";\n\"b\" = ;\n", u"1"_s, u":2: "_s},
        {"a FIFO", kFifo, {}, u"a"_s, u": is not a regular file; the table is not used"_s},
        {"a link to /dev/zero", kDevice, {}, u"a"_s, u": is not a regular file; the table is not used"_s},
        {"larger than 4 MiB", kContent, "\"a\" = \"1\";" + QByteArray(4 << 20, ' '), u"a"_s,
         u": is larger than 4194304 bytes; the table is not used"_s},
    };
    for (const auto &row : rows) {
        TestBundle bundle;
        bundle.info({}).strings(u"en"_s, u"Localizable"_s, QString());
        const QString table = bundle.path() + u"/Contents/Resources/en.lproj/Localizable.strings"_s;
        QFile::remove(table);
        if (row.kind == kContent) {
            bundle.resource(u"en.lproj/Localizable.strings"_s, row.table);
        } else if (row.kind == kFifo) {
            ASSERT_EQ(mkfifo(QFile::encodeName(table).constData(), 0600), 0);
        } else {
            ASSERT_TRUE(QFile::link(u"/dev/zero"_s, table));
        }
        const Bundle *opened = bundle.open();
        ASSERT_NE(opened, nullptr);
        const testsupport::MessageRecorder log;
        for (int round = 0; round < 2; ++round) {
            const LanguagesGuard languages({u"en"_s});
            for (int i = 0; i < 10; ++i) {
                for (const std::optional<QString> &name : {std::optional<QString>(), std::optional(u"Localizable"_s)}) {
                    EXPECT_EQ(opened->localizedStringForKey(u"a"_s, {}, name), row.a) << row.name;
                    EXPECT_EQ(opened->localizedStringForKey(u"b"_s, {}, name), u"b"_s) << row.name;
                }
            }
            // The file changed on disk is not read again.
            if (row.kind == kContent)
                bundle.strings(u"en"_s, u"Localizable"_s, u"\"a\" = \"2\";"_s);
        }
        const QStringList &messages = testsupport::MessageRecorder::messages();
        ASSERT_EQ(messages.size(), 1) << row.name << ": " << qPrintable(messages.join(u'\n'));
        const QString named = QFileInfo(bundle.path()).canonicalFilePath() + u"/Contents/Resources/en.lproj/Localizable.strings"_s;
        EXPECT_TRUE(messages.front().startsWith(u"pde.bundle: "_s + named + row.reason)) << qPrintable(messages.front());
    }
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
