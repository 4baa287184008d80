// SPDX-License-Identifier: MIT
// The host library's own rules: ordered JSON settings, the bundles a PPD
// calls for, the saved printer options file, and the scheduler policies that
// keep the record private.
#include "../e2e/EndToEndFixture.h"

#include "host/BundleLocator.h"
#include "host/SchedulerPolicy.h"

#include <QDir>

namespace {

using namespace Qt::StringLiterals;
using pdehost::OrderedStrings;

TEST(OrderedJson, ReadsObjectsOfStringsInOrderAndRefusesEverythingElse)
{
    const struct {
        const char *name;
        QByteArray json;
        std::optional<OrderedStrings> entries;
    } rows[] = {
        {"empty object", " { } ", OrderedStrings{}},
        {"order kept", R"({"b": "1", "a": "2"})", OrderedStrings{{u"b"_s, u"1"_s}, {u"a"_s, u"2"_s}}},
        {"escapes", R"({"k": "a\"b\\c\/d\n\u00e9\ud83d\ude00"})",
         OrderedStrings{{u"k"_s, u"a\"b\\c/d\n\u00e9\U0001F600"_s}}},
        {"UTF-8 as it is", "{\"k\": \"\xe8\xb3\x87\xe6\x96\x99\"}", OrderedStrings{{u"k"_s, u"資料"_s}}},
        {"byte-order mark", "\xef\xbb\xbf{\"k\": \"v\"}", OrderedStrings{{u"k"_s, u"v"_s}}},
        {"truncated UTF-8", "{\"k\": \"ok\xe8\xb3\"}", std::nullopt},
        {"UTF-8 of a surrogate", "{\"k\": \"\xed\xa0\x80\"}", std::nullopt},
        {"overlong UTF-8", "{\"k\": \"\xc0\xaf\"}", std::nullopt},
        {"number value", R"({"k": 5})", std::nullopt},
        {"repeated key", R"({"k": "1", "k": "2"})", std::nullopt},
        {"array", R"(["k"])", std::nullopt},
        {"trailing text", R"({"k": "1"} x)", std::nullopt},
        {"unterminated", R"({"k": "1)", std::nullopt},
        {"bad escape", R"({"k": "\x"})", std::nullopt},
        {"raw newline in a string", "{\"k\": \"a\nb\"}", std::nullopt},
        {"trailing comma", R"({"k": "1",})", std::nullopt},
    };
    for (const auto &row : rows) {
        QString error;
        EXPECT_EQ(pdehost::parseStringObject(row.json, &error), row.entries) << row.name << ": " << qPrintable(error);
        if (!row.entries) {
            EXPECT_TRUE(error.startsWith(u"at byte "_s)) << row.name;
        }
    }
    // Offsets count from the file's first byte, a byte-order mark included.
    QString error;
    pdehost::parseStringObject("\xef\xbb\xbf{\"k\": \"ok\xe8\xb3\"}", &error);
    EXPECT_EQ(error, u"at byte 12: not valid UTF-8"_s);

    // What is written reads back the same.
    const OrderedStrings entries{
        {u"z"_s, u"/97/44/98"_s}, {u"a"_s, u"tab\there \"q\" \u0001 \u00e9"_s}, {u"empty"_s, QString()}};
    EXPECT_EQ(pdehost::parseStringObject(pdehost::formatStringObject(entries), nullptr), entries);
}

TEST(SchedulerPolicy, EveryPolicyGainsTheKeysItDoesNotHideYetAndKeepsTheRest)
{
    const QStringList keys{u"x.Password"_s, u"x.UserName"_s};
    const struct {
        const char *name;
        QByteArray conf;
        std::optional<QByteArray> edited; // nullopt: refused
    } rows[] = {
        {"no directive: the default list stays, the keys join it",
         "Listen 631\n<Policy default>\n  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n",
         "Listen 631\n<Policy default>\n  JobPrivateValues default x.Password x.UserName\n"
         "  <Limit All>\n    Order deny,allow\n  </Limit>\n</Policy>\n"},
        {"the stock directive: a line after it",
         "<Policy default>\n  JobPrivateAccess default\n  JobPrivateValues default\n</Policy>\n",
         "<Policy default>\n  JobPrivateAccess default\n  JobPrivateValues default\n"
         "  JobPrivateValues x.Password x.UserName\n</Policy>\n"},
        {"only the keys it lacks", "<Policy p>\nJobPrivateValues x.UserName job-name\n</Policy>\n",
         "<Policy p>\nJobPrivateValues x.UserName job-name\nJobPrivateValues x.Password\n</Policy>\n"},
        {"already hidden: nothing changes",
         "<Policy p>\n JobPrivateValues x.Password\n JobPrivateValues x.UserName\n</Policy>\n",
         "<Policy p>\n JobPrivateValues x.Password\n JobPrivateValues x.UserName\n</Policy>\n"},
        {"all hides everything already", "<Policy p>\n  JobPrivateValues all\n</Policy>\n",
         "<Policy p>\n  JobPrivateValues all\n</Policy>\n"},
        {"none would hide nothing: it goes", "<Policy p>\n  JobPrivateValues None\n</Policy>\n",
         "<Policy p>\n  JobPrivateValues x.Password x.UserName\n</Policy>\n"},
        {"names compared with their case", "<Policy p>\n  JobPrivateValues X.PASSWORD x.UserName\n</Policy>\n",
         "<Policy p>\n  JobPrivateValues X.PASSWORD x.UserName\n  JobPrivateValues x.Password\n</Policy>\n"},
        {"a directive inside <Limit> does not count",
         "<Policy p>\n  <Limit All>\n    JobPrivateValues x.Password x.UserName\n  </Limit>\n</Policy>\n",
         "<Policy p>\n  JobPrivateValues default x.Password x.UserName\n"
         "  <Limit All>\n    JobPrivateValues x.Password x.UserName\n  </Limit>\n</Policy>\n"},
        {"comments, case and CRLF as the scheduler reads them",
         "<policy Default> # first\r\n  jobprivatevalues default # x.Password x.UserName\r\n</POLICY>\r\n",
         "<policy Default> # first\r\n  jobprivatevalues default # x.Password x.UserName\r\n"
         "  JobPrivateValues x.Password x.UserName\r\n</POLICY>\r\n"},
        {"every policy", "<Policy a>\n</Policy>\n# <Policy b>\n<Policy c>\n</Policy>",
         "<Policy a>\n  JobPrivateValues default x.Password x.UserName\n</Policy>\n# <Policy b>\n"
         "<Policy c>\n  JobPrivateValues default x.Password x.UserName\n</Policy>"},
        {"a policy never closed", "<Policy p>\n  JobPrivateValues default\n", std::nullopt},
        {"a policy inside a policy", "<Policy p>\n<Policy q>\n</Policy>\n</Policy>\n", std::nullopt},
        {"a policy without a name", "<Policy >\n</Policy>\n", std::nullopt},
    };
    for (const auto &row : rows) {
        QString error;
        const std::optional<pdehost::PolicyEdit> edit = pdehost::addJobPrivateValues(row.conf, keys, &error);
        EXPECT_EQ(edit ? std::optional<QByteArray>(edit->text) : std::nullopt, row.edited)
            << row.name << ": " << qPrintable(error);
        if (!edit) {
            EXPECT_TRUE(error.startsWith(u"line "_s)) << row.name << ": " << qPrintable(error);
            continue;
        }
        EXPECT_EQ(edit->changes.isEmpty(), edit->text == row.conf) << row.name << ": a change is reported, if any";
        const std::optional<pdehost::PolicyEdit> again = pdehost::addJobPrivateValues(edit->text, keys, &error);
        ASSERT_TRUE(again) << row.name;
        EXPECT_TRUE(again->changes.isEmpty()) << row.name << ": a second run changes nothing";
    }

    QString error;
    EXPECT_EQ(pdehost::addJobPrivateValues("<Policy p>\n</Policy>\n", {u"a b"_s}, &error), std::nullopt);
    EXPECT_TRUE(error.contains(u"\"a b\""_s)) << qPrintable(error);
    const std::optional<pdehost::PolicyEdit> none =
        pdehost::addJobPrivateValues("<Policy p>\n  JobPrivateValues none x.Password\n</Policy>\n", keys, &error);
    ASSERT_TRUE(none);
    EXPECT_EQ(pdehost::describeChanges(none->changes),
              u"<Policy p> (line 2):\n-   JobPrivateValues none x.Password\n"
              u"+   JobPrivateValues x.Password\n+   JobPrivateValues x.UserName\n"_s);
}

TEST(BundleLocator, PpdCallsAndSearchOrder)
{
    QTemporaryDir dir;
    const QString ppdPath = dir.filePath(u"calls.ppd"_s);
    ASSERT_TRUE(e2e::writeFile(ppdPath, "*PPD-Adobe: \"4.3\"\n"
                                        "*APDialogExtension: \"/Library/Printers/Example/PDEs/First.plugin\"\n"
                                        "*APDialogExtension: \"/opt/other/Second.plugin/\"\n"
                                        "*APDialogExtension: \"First.plugin\"\n"));
    ppd_file_t *opened = ppdOpenFile(ppdPath.toUtf8().constData());
    ASSERT_NE(opened, nullptr);
    const QStringList called = pdehost::dialogExtensionsOf(opened);
    ppdClose(opened);
    EXPECT_EQ(called, (QStringList{u"First.plugin"_s, u"Second.plugin"_s}));

    for (const char *folder : {"one/Second.plugin", "two/Second.plugin", "two/First.plugin"})
        QDir().mkpath(dir.filePath(QString::fromLatin1(folder)));
    const pdehost::LocatedBundles located = pdehost::locateBundles(
        {dir.filePath(u"given/First.plugin"_s)}, called, {dir.filePath(u"one"_s), dir.filePath(u"two"_s)});
    EXPECT_EQ(located.paths,
              (QStringList{dir.filePath(u"given/First.plugin"_s), dir.filePath(u"one/Second.plugin"_s)}));
    EXPECT_TRUE(located.problems.isEmpty());
}

TEST(LpOptions, RewritesOnlyTheDestinationsLineAndReadsItBack)
{
    const struct {
        const char *name;
        QByteArray before; // the file; empty: there is none
        QString destination;
        OrderedStrings set;
        QStringList removed;
        QByteArray after;
    } rows[] = {
        {"new file: values quoted, an empty one kept empty", {}, u"p"_s, {{u"a"_s, u"1"_s}, {u"empty"_s, QString()}},
         {}, "Dest p a='1' empty=''\n"},
        {"other lines and comments stay, the printer's lines become one",
         "# mine\nDest p a=1\nDest q z=0\nDest p b=2\n", u"p"_s, {{u"c"_s, u"3"_s}}, {},
         "# mine\nDest p a='1' b='2' c='3'\nDest q z=0\n"},
        {"name matched without case, keyword and spelling kept", "Default P a=1\n", u"p"_s, {{u"a"_s, u"2"_s}}, {},
         "Default P a='2'\n"},
        {"a line left empty goes, but a default printer's stays", "Dest p a=1\nDefault P b=2\n", u"p"_s, {},
         {u"a"_s, u"b"_s}, "Default p\n"},
        {"an instance has a line of its own", "Dest p a=1\n", u"p/draft"_s, {{u"b"_s, u"2"_s}}, {},
         "Dest p a=1\nDest p/draft b='2'\n"},
        {"quotes and backslashes", {}, u"p"_s, {{u"v"_s, u"it's a \"test\" \\ x"_s}}, {},
         "Dest p v='it\\'s a \"test\" \\\\ x'\n"},
    };
    for (const auto &row : rows) {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"cups/lpoptions"_s);
        if (!row.before.isEmpty()) {
            QDir().mkpath(dir.filePath(u"cups"_s));
            ASSERT_TRUE(e2e::writeFile(path, row.before));
        }
        pde::PrintSettings set;
        for (const auto &[key, value] : row.set)
            set.setValue(key, value);
        QString error;
        ASSERT_TRUE(pdehost::updateLpOptions(path, row.destination, set, row.removed, &error))
            << row.name << ": " << qPrintable(error);
        EXPECT_EQ(e2e::readFile(path), row.after) << row.name;
        // What is read back is what was set.
        const pde::PrintSettings read = pdehost::lpOptionsFor(path, row.destination);
        for (const auto &[key, value] : row.set)
            EXPECT_EQ(read.value(key), QVariant(value)) << row.name << ": " << qPrintable(key);
        for (const QString &key : row.removed)
            EXPECT_FALSE(read.contains(key)) << row.name << ": " << qPrintable(key);
    }
    EXPECT_EQ(pdehost::lpOptionsFor(u"/nonexistent/lpoptions"_s, u"p"_s), pde::PrintSettings());
}

} // namespace
