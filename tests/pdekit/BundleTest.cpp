// SPDX-License-Identifier: MIT
// Bundles on disk: opening, the registry, localization order, strings and resources.
#include "TestBundle.h"

#include "pdekit/Bundle.h"
#include "pdekit/PreferredLanguages.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QVariant &value, std::ostream *out)
{
    QString text;
    QDebug(&text) << value;
    *out << text.toStdString();
}

namespace {

using namespace Qt::StringLiterals;
using pde::Bundle;
using testsupport::PlistFormat;
using testsupport::TestBundle;
using testsupport::TextEncoding;

struct RowName {
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row> &info) const { return info.param.name; }
};

// The preferred languages are process-wide; every test leaves the
// environment's list in place.
struct LanguagesGuard {
    explicit LanguagesGuard(const QStringList &languages) { pde::setPreferredLanguages(languages); }
    ~LanguagesGuard() { pde::setPreferredLanguages(std::nullopt); }
};

void writeInfo(const TestBundle &bundle, const QByteArray &data)
{
    QFile file(bundle.path() + u"/Contents/Info.plist"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
}

TEST(Bundle, OpenRefusesWhatIsNotABundle)
{
    TestBundle noInfo;
    noInfo.resource(u"plain"_s, "x");
    const TestBundle arrayInfo, garbageInfo;
    writeInfo(arrayInfo, testsupport::propertyListData(QVariantList{u"x"_s}, PlistFormat::Binary));
    writeInfo(garbageInfo, "CFBundleIdentifier = org.example.garbage");

    EXPECT_EQ(Bundle::open(noInfo.path() + u"/../Missing.plugin"_s), nullptr);
    EXPECT_EQ(Bundle::open(noInfo.path() + u"/Contents/Resources/plain"_s), nullptr);
    EXPECT_EQ(noInfo.open(), nullptr);
    EXPECT_EQ(arrayInfo.open(), nullptr);
    EXPECT_EQ(garbageInfo.open(), nullptr);
}

TEST(Bundle, OpensXmlAndBinaryInfoAlikeAndRegistersByPath)
{
    // Bundles outlive their folders; a repeated run must not find an earlier one.
    static int run = 0;
    const QString identifier = u"org.example.registry.%1"_s.arg(++run);
    const QVariantMap info{{u"CFBundleIdentifier"_s, identifier},
                           {u"CFBundleExecutable"_s, u"Sample"_s},
                           {u"Nested"_s, QVariantMap{{u"flag"_s, true}, {u"list"_s, QVariantList{u"a"_s, 2}}}}};
    TestBundle xml(u"Xml.plugin"_s), binary(u"Binary.plugin"_s);
    xml.info(info, PlistFormat::Xml);
    binary.info(info, PlistFormat::Binary);
    ASSERT_TRUE(QFile::link(xml.path(), xml.path() + u"/../Link.plugin"_s));
    Bundle *opened = xml.open();
    ASSERT_NE(opened, nullptr);
    ASSERT_NE(binary.open(), nullptr);
    EXPECT_EQ(binary.open()->infoDictionary(), opened->infoDictionary());
    EXPECT_EQ(opened->infoDictionary().value(u"Nested"_s).toMap().value(u"flag"_s), QVariant(true));

    EXPECT_EQ(Bundle::open(xml.path() + u"/."_s), opened);
    EXPECT_EQ(Bundle::open(xml.path() + u"/../Link.plugin"_s), opened);
    EXPECT_EQ(Bundle::withIdentifier(identifier), opened); // the first one opened
    EXPECT_EQ(Bundle::withIdentifier(u"org.example.unknown"_s), nullptr);

    const QString canonical = QFileInfo(xml.path()).canonicalFilePath();
    EXPECT_EQ(opened->identifier(), identifier);
    EXPECT_EQ(opened->bundleURL(), QUrl::fromLocalFile(canonical));
    EXPECT_EQ(opened->resourcePath(), canonical + u"/Contents/Resources"_s);
    EXPECT_EQ(opened->executablePath(), canonical + u"/Contents/Linux/Sample"_s);
}

TEST(Bundle, BundleWithoutIdentifierIsNotFoundByAnEmptyOne)
{
    TestBundle anonymous;
    anonymous.info({{u"CFBundleName"_s, u"Anonymous"_s}});
    ASSERT_NE(anonymous.open(), nullptr);
    EXPECT_EQ(anonymous.open()->executablePath(), std::nullopt);
    EXPECT_EQ(Bundle::withIdentifier(QString()), nullptr);
}

// "ja en" -> {"ja", "en"}: keeps the order tables readable.
QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
}

struct OrderRow {
    std::string name;
    const char *languages, *folders, *developmentRegion, *expected;
};

class BundleOrder : public testing::TestWithParam<OrderRow> {};

TEST_P(BundleOrder, LanguagesThenDevelopmentRegionThenBase)
{
    const OrderRow &row = GetParam();
    TestBundle bundle;
    bundle.info({{u"CFBundleDevelopmentRegion"_s, QString::fromUtf8(row.developmentRegion)}});
    for (const QString &folder : words(row.folders))
        bundle.strings(folder, u"Localizable"_s, QString());
    const LanguagesGuard languages(words(row.languages));
    ASSERT_NE(bundle.open(), nullptr);
    QStringList localizations = bundle.open()->localizations();
    localizations.sort(Qt::CaseInsensitive);
    EXPECT_EQ(localizations, words(row.folders));
    EXPECT_EQ(bundle.open()->preferredLocalizations(), words(row.expected));
}

INSTANTIATE_TEST_SUITE_P(Bundle, BundleOrder,
                         testing::Values(OrderRow{"LanguageFolder", "ja_JP", "Base en fr ja", "en", "ja en Base"},
                                         OrderRow{"LegacyFolders", "ja_JP", "English Japanese", "English",
                                                  "Japanese English"},
                                         OrderRow{"RegionFolderFirst", "pt_BR fr", "en fr pt pt-BR", "en",
                                                  "pt-BR pt fr en"},
                                         OrderRow{"UnmatchedLanguage", "ko", "Base de en", "de", "de Base"},
                                         OrderRow{"EnglishWithoutRegion", "ko", "de en", "", "en"}),
                         RowName{});

// Japanese, the development region English, Base, a French table nobody
// asks for, and a second table in UTF-16.
void writeLookupBundle(TestBundle &bundle)
{
    bundle.info({{u"CFBundleDevelopmentRegion"_s, u"en"_s}})
        .strings(u"ja"_s, u"Localizable"_s, u"\"Print\" = \"印刷\";"_s)
        .strings(u"en"_s, u"Localizable"_s, u"\"Print\" = \"Print\";\n\"Cancel\" = \"Cancel (en)\";"_s)
        .strings(u"Base"_s, u"Localizable"_s, u"\"Cancel\" = \"(base)\";\n\"Close\" = \"Close (base)\";"_s)
        .strings(u"fr"_s, u"Localizable"_s, u"\"Print\" = \"Imprimer\";\n\"Close\" = \"Fermer\";"_s)
        .strings(u"ja"_s, u"Localizable2"_s, u"\"Print\" = \"印刷 2\";"_s, TextEncoding::Utf16BE);
}

struct LookupRow {
    std::string name;
    QString key;
    std::optional<QString> value;
    std::optional<QString> table;
    QString expected;
};

class BundleLookup : public testing::TestWithParam<LookupRow> {};

TEST_P(BundleLookup, FindsTheBestTranslation)
{
    TestBundle bundle;
    writeLookupBundle(bundle);
    const LanguagesGuard languages({u"ja_JP"_s});
    ASSERT_NE(bundle.open(), nullptr);
    const LookupRow &row = GetParam();
    EXPECT_EQ(bundle.open()->localizedStringForKey(row.key, row.value, row.table), row.expected);
}

const std::optional<QString> kNone;

INSTANTIATE_TEST_SUITE_P(
    Bundle, BundleLookup,
    testing::Values(LookupRow{"PreferredLanguage", u"Print"_s, u"Fallback"_s, kNone, u"印刷"_s},
                    LookupRow{"DevelopmentRegionNext", u"Cancel"_s, kNone, kNone, u"Cancel (en)"_s},
                    LookupRow{"BaseLast", u"Close"_s, kNone, kNone, u"Close (base)"_s},
                    LookupRow{"MissingKeyGivesValue", u"Nope"_s, u"Fallback"_s, kNone, u"Fallback"_s},
                    LookupRow{"MissingKeyWithoutValue", u"Nope"_s, kNone, kNone, u"Nope"_s},
                    LookupRow{"MissingKeyWithEmptyValue", u"Nope"_s, QString(), kNone, u"Nope"_s},
                    LookupRow{"NamedUtf16Table", u"Print"_s, kNone, u"Localizable2"_s, u"印刷 2"_s},
                    LookupRow{"NamedTableOnly", u"Cancel"_s, kNone, u"Localizable2"_s, u"Cancel"_s},
                    LookupRow{"AbsentTable", u"Print"_s, u"Fallback"_s, u"Localizable9"_s, u"Fallback"_s}),
    RowName{});

TEST(Bundle, InfoDictionaryLocalizedByInfoPlistStrings)
{
    TestBundle bundle;
    bundle.info({{u"CFBundleName"_s, u"Sample"_s}, {u"Copyright"_s, u"raw"_s}, {u"Version"_s, u"1.0"_s}})
        .strings(u"ja"_s, u"InfoPlist"_s, u"CFBundleName = \"サンプル\";"_s, TextEncoding::Utf16LE)
        .strings(u"en"_s, u"InfoPlist"_s, u"CFBundleName = \"Sample (en)\";\nCopyright = \"(en)\";"_s);
    const LanguagesGuard languages({u"ja_JP"_s});
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    const QVariantMap localized = opened->localizedInfoDictionary();
    for (const auto &[key, expected] : {std::pair{u"CFBundleName"_s, QVariant(u"サンプル"_s)},
                                        std::pair{u"Copyright"_s, QVariant(u"(en)"_s)},
                                        std::pair{u"Version"_s, QVariant(u"1.0"_s)},
                                        std::pair{u"Absent"_s, QVariant()}}) {
        EXPECT_EQ(opened->objectForInfoDictionaryKey(key), expected) << key.toStdString();
        EXPECT_EQ(localized.value(key), expected) << key.toStdString();
    }
    EXPECT_EQ(opened->infoDictionary().value(u"CFBundleName"_s), QVariant(u"Sample"_s));
}

TEST(Bundle, PathForResourceSearchesInTheRequestedOrder)
{
    TestBundle bundle;
    bundle.info({});
    for (const char *path : {"pic.png", "ja.lproj/pic.png", "en.lproj/en.txt", "fr.lproj/fr.txt", "Help/page.html",
                             "ja.lproj/Help/page.html", "README"})
        bundle.resource(QString::fromUtf8(path), path);
    const LanguagesGuard languages({u"ja_JP"_s});
    const Bundle *opened = bundle.open();
    ASSERT_NE(opened, nullptr);
    constexpr auto plain = Bundle::Search::PlainFirst;
    constexpr auto localized = Bundle::Search::LocalizedFirst;
    const struct {
        QString file, type, subdirectory;
        Bundle::Search search;
        QString expected; // relative to Resources/; empty when not found
    } rows[] = {
        {u"pic"_s, u"png"_s, {}, plain, u"pic.png"_s},
        {u"pic"_s, u"png"_s, {}, localized, u"ja.lproj/pic.png"_s},
        {u"en"_s, u"txt"_s, {}, plain, u"en.lproj/en.txt"_s}, // the development region
        {u"fr"_s, u"txt"_s, {}, localized, {}}, // not a preferred language
        {u"page"_s, u"html"_s, u"Help"_s, plain, u"Help/page.html"_s},
        {u"page"_s, u"html"_s, u"Help"_s, localized, u"ja.lproj/Help/page.html"_s},
        {u"README"_s, {}, {}, localized, u"README"_s},
        {u"Help"_s, {}, {}, plain, {}}, // a folder is no resource
    };
    for (const auto &row : rows) {
        const std::optional<QString> found = opened->pathForResource(row.file, row.type, row.subdirectory, row.search);
        EXPECT_EQ(found.value_or(QString()).remove(opened->resourcePath() + u'/'), row.expected)
            << row.file.toStdString() << " in " << row.subdirectory.toStdString();
    }
}

} // namespace
