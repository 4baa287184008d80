// SPDX-License-Identifier: MIT
// Bundles on disk: Info.plist in both forms, the registry, localization order, strings and resources.
#include "TestSupport.h"

#include "pdekit/PropertyList.h"

#include <QDateTime>
#include <QTimeZone>

#include <plist/plist.h>
#include <sys/stat.h>

#include <tuple>

namespace {

using namespace Qt::StringLiterals;
using pde::Bundle;
using testsupport::LanguagesGuard;
using testsupport::MessageRecorder;
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

// A binary property list of `count` arrays, two-byte offsets and references:
// each array but the last holds `width` references to the next one; a single
// array holds itself.
QByteArray binaryArrays(int count, int width)
{
    const auto twoBytes = [](qsizetype n) { return QByteArray(1, char(n >> 8)) + char(n); };
    QByteArray list("bplist00");
    QByteArray offsets;
    for (int i = 0; i < count; ++i) {
        offsets += twoBytes(list.size());
        const int next = count == 1 ? 0 : i + 1;
        list += char(0xA0 | (next < count ? width : 0));
        for (int ref = 0; next < count && ref < width; ++ref)
            list += twoBytes(next);
    }
    // The trailer: offset and reference sizes, the number of objects, the top one, where the offsets are.
    return list + offsets + QByteArray(6, '\0') + "\x02\x02" + QByteArray(6, '\0') + twoBytes(count)
           + QByteArray(14, '\0') + twoBytes(list.size());
}

// What cannot be a bundle is refused with the Info.plist and the reason; a
// hostile one neither crashes, hangs nor fills the memory.
TEST(Bundle, OpenRefusesWhatIsNotABundleNamingTheFileAndTheReason)
{
    // An XML property list of `depth` arrays, or dictionaries, in one another.
    const auto nestedXml = [](int depth, bool dictionaries = false) {
        const QByteArray open = dictionaries ? "<dict><key>k</key>" : "<array>";
        const QByteArray close = dictionaries ? "</dict>" : "</array>";
        return "<plist version=\"1.0\">" + open.repeated(depth) + close.repeated(depth) + "</plist>";
    };
    const struct {
        const char *name;
        std::optional<QByteArray> info; // none: no Info.plist
        QString reason;
    } rows[] = {
        {"no Info.plist", std::nullopt, u"does not exist"_s},
        {"not a property list", "CFBundleIdentifier = org.example.garbage", u"is not a property list"_s},
        {"an array", "<plist version=\"1.0\"><array/></plist>", u"does not hold a dictionary"_s},
        {"XML nested 50,000 deep", nestedXml(50000), u"holds more than 10000 arrays and dictionaries"_s},
        {"XML dictionaries nested 300 deep", nestedXml(300, true), u"nests arrays and dictionaries more than 256 deep"_s},
        {"binary nested 300 deep", binaryArrays(300, 1), u"nests arrays and dictionaries more than 256 deep"_s},
        {"binary that contains itself", binaryArrays(1, 1), u"is a binary property list that contains itself"_s},
        {"binary that doubles 40 times", binaryArrays(40, 2), // 2^40 values once read
         u"expands to more than 1048576 values"_s},
        // {"a\0": "v"}: libplist aborts walking a dictionary with such a key.
        {"binary with a zero in a key",
         QByteArray("bplist00\xD1\x01\x02\x52" "a\0\x51v\x08\x0B\x0E", 19) + QByteArray(6, '\0') + "\x01\x01"
             + QByteArray(7, '\0') + "\x03" + QByteArray(15, '\0') + "\x10",
         u"is not a property list"_s},
        {"larger than 4 MiB", nestedXml(1) + QByteArray(4 << 20, ' '), u"is larger than 4194304 bytes"_s},
    };
    for (const auto &row : rows) {
        TestBundle bundle;
        if (row.info)
            bundle.file(u"Info.plist"_s, *row.info);
        const QString info = QFileInfo(bundle.path() + u"/Contents/Info.plist"_s).absoluteFilePath();
        const MessageRecorder log;
        QString error;
        EXPECT_EQ(Bundle::open(bundle.path(), &error), nullptr) << row.name;
        EXPECT_EQ(error, bundle.path() + u": not a bundle: "_s + info + u' ' + row.reason) << row.name;
        EXPECT_EQ(MessageRecorder::messages(), QStringList{u"pde.bundle: "_s + error}) << row.name;
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

TEST(Bundle, LocalizationsInOrderOfTheLanguagesThenTheDevelopmentRegionThenBase)
{
    // "ja en" -> {"ja", "en"}: keeps the rows readable.
    const auto words = [](const char *text) { return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts); };
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

// Texts, Info.plist values and resources in Japanese, the development region
// English, Base, and French that nobody asks for. A panel looks texts up many
// times: each table is read on its first lookup and a broken or unreadable
// one reported then (naming the file and the reason), not on every lookup nor
// again when the language list is set anew.
TEST(Bundle, LookupsTakeThePreferredLanguagesThenTheDevelopmentRegionThenBase)
{
    TestBundle bundle;
    bundle.info({{u"CFBundleDevelopmentRegion"_s, u"en"_s}, {u"CFBundleName"_s, u"Sample"_s},
                 {u"Copyright"_s, u"raw"_s}, {u"Version"_s, u"1.0"_s}})
        .strings(u"ja"_s, u"Localizable"_s, u"\"Print\" = \"印刷\";"_s)
        .strings(u"en"_s, u"Localizable"_s, u"\"Print\" = \"Print\";\n\"Cancel\" = \"Cancel (en)\";"_s)
        .strings(u"Base"_s, u"Localizable"_s, u"\"Cancel\" = \"(base)\";\n\"Close\" = \"Close (base)\";"_s)
        .strings(u"fr"_s, u"Localizable"_s, u"\"Print\" = \"Imprimer\";\n\"Close\" = \"Fermer\";"_s)
        .strings(u"ja"_s, u"Localizable2"_s, u"\"Print\" = \"印刷 2\";"_s)
        .strings(u"en"_s, u"Broken"_s, u"\"a\" = \"1\";\n\"b\" = ;\n"_s)
        .strings(u"Base"_s, u"Fifo"_s, QString())
        .strings(u"ja"_s, u"InfoPlist"_s, u"CFBundleName = \"サンプル\";"_s)
        .strings(u"en"_s, u"InfoPlist"_s, u"CFBundleName = \"Sample (en)\";\nCopyright = \"(en)\";"_s);
    for (const char *path : {"pic.png", "ja.lproj/pic.png", "en.lproj/en.txt", "fr.lproj/fr.txt", "Help/x"})
        bundle.resource(QString::fromUtf8(path), path);
    const QString resources = QFileInfo(bundle.path()).canonicalFilePath() + u"/Contents/Resources/"_s;
    ASSERT_TRUE(QFile::remove(resources + u"Base.lproj/Fifo.strings"_s));
    ASSERT_EQ(mkfifo(QFile::encodeName(resources + u"Base.lproj/Fifo.strings"_s).constData(), 0600), 0);
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    const auto text = [opened](const QString &key, const std::optional<QString> &value = {},
                               const std::optional<QString> &table = {}) {
        return opened->localizedStringForKey(key, value, table);
    };
    const auto path = [opened, &resources](const QString &file, const QString &type, Bundle::Search search) {
        return opened->pathForResource(file, type, {}, search).value_or(QString()).remove(resources);
    };
    const MessageRecorder log;
    const LanguagesGuard languages({u"ja_JP"_s});
    const std::tuple<const char *, QVariant, QVariant> rows[] = {
        {"a preferred language first", text(u"Print"_s, u"Fallback"_s), u"印刷"_s},
        {"then the development region", text(u"Cancel"_s), u"Cancel (en)"_s},
        {"then Base", text(u"Close"_s), u"Close (base)"_s},
        {"then the value", text(u"Nope"_s, u"Fallback"_s), u"Fallback"_s},
        {"then the key", text(u"Nope"_s), u"Nope"_s},
        {"an empty value is none", text(u"Nope"_s, QString()), u"Nope"_s},
        {"a named table", text(u"Print"_s, {}, u"Localizable2"_s), u"印刷 2"_s},
        {"a named table alone", text(u"Cancel"_s, {}, u"Localizable2"_s), u"Cancel"_s},
        {"a table name that is not plain names none", text(u"Print"_s, {}, u"../ja.lproj/Localizable"_s), u"Print"_s},
        {"the pairs before a fault", text(u"a"_s, {}, u"Broken"_s), u"1"_s},
        {"a FIFO is no table", text(u"a"_s, {}, u"Fifo"_s), u"a"_s},
        {"Info.plist value in Japanese", opened->objectForInfoDictionaryKey(u"CFBundleName"_s), u"サンプル"_s},
        {"Info.plist value in English", opened->objectForInfoDictionaryKey(u"Copyright"_s), u"(en)"_s},
        {"Info.plist value in no table", opened->objectForInfoDictionaryKey(u"Version"_s), u"1.0"_s},
        {"resource: plain first", path(u"pic"_s, u"png"_s, Bundle::Search::PlainFirst), u"pic.png"_s},
        {"resource: localized first", path(u"pic"_s, u"png"_s, Bundle::Search::LocalizedFirst), u"ja.lproj/pic.png"_s},
        {"resource: development region", path(u"en"_s, u"txt"_s, Bundle::Search::PlainFirst), u"en.lproj/en.txt"_s},
        {"resource: not a preferred language", path(u"fr"_s, u"txt"_s, Bundle::Search::LocalizedFirst), QString()},
        {"resource: a folder is none", path(u"Help"_s, {}, Bundle::Search::PlainFirst), QString()},
    };
    for (const auto &[name, actual, expected] : rows)
        EXPECT_EQ(actual, expected) << name;
    EXPECT_EQ(opened->localizedInfoDictionary(),
              (QVariantMap{{u"CFBundleDevelopmentRegion"_s, u"en"_s}, {u"CFBundleName"_s, u"サンプル"_s},
                           {u"Copyright"_s, u"(en)"_s}, {u"Version"_s, u"1.0"_s}}));
    EXPECT_EQ(opened->infoDictionary().value(u"CFBundleName"_s), QVariant(u"Sample"_s));

    // Changed on disk and looked up again under a new language list: not read again.
    bundle.strings(u"en"_s, u"Broken"_s, u"\"a\" = \"2\";"_s);
    const LanguagesGuard again({u"ja_JP"_s});
    EXPECT_EQ(text(u"a"_s, {}, u"Broken"_s), u"1"_s);
    EXPECT_EQ(text(u"a"_s, {}, u"Fifo"_s), u"a"_s);
    const QStringList &messages = MessageRecorder::messages();
    ASSERT_EQ(messages.size(), 3) << qPrintable(messages.join(u'\n'));
    EXPECT_TRUE(messages[0].contains(u" the table name \"../ja.lproj/Localizable\" is not a plain name"_s))
        << qPrintable(messages[0]);
    EXPECT_TRUE(messages[1].startsWith(u"pde.bundle: "_s + resources + u"en.lproj/Broken.strings:2: "_s))
        << qPrintable(messages[1]);
    EXPECT_EQ(messages[2], u"pde.bundle: "_s + resources + u"Base.lproj/Fifo.strings: is not a regular file; the table is not used"_s);
}

} // namespace
