// SPDX-License-Identifier: MIT
// The host library's own rules: ordered JSON settings and the bundles a PPD
// calls for.
#include "host/BundleLocator.h"
#include "host/OrderedJson.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using pdehost::OrderedStrings;

TEST(OrderedJson, ReadsObjectsOfStringsInOrderAndRefusesEverythingElse)
{
    const struct {
        const char *name;
        QByteArray json;
        std::optional<OrderedStrings> entries;
    } rows[] = {
        {"empty object", " { } ", OrderedStrings{}},
        {"order kept", R"({"b": "1", "a": "2"})", OrderedStrings{{QStringLiteral("b"), QStringLiteral("1")}, {QStringLiteral("a"), QStringLiteral("2")}}},
        {"escapes", R"({"k": "a\"b\\c\/d\n\u00e9\ud83d\ude00"})",
         OrderedStrings{{QStringLiteral("k"), QStringLiteral(u"a\"b\\c/d\n\u00e9\U0001F600")}}},
        {"UTF-8 as it is", "{\"k\": \"\xe8\xb3\x87\xe6\x96\x99\"}", OrderedStrings{{QStringLiteral("k"), QStringLiteral(u"資料")}}},
        {"byte-order mark", "\xef\xbb\xbf{\"k\": \"v\"}", OrderedStrings{{QStringLiteral("k"), QStringLiteral("v")}}},
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
            EXPECT_TRUE(error.startsWith(QStringLiteral("at byte "))) << row.name;
        }
    }
    // Offsets count from the file's first byte, a byte-order mark included.
    QString error;
    pdehost::parseStringObject("\xef\xbb\xbf{\"k\": \"ok\xe8\xb3\"}", &error);
    EXPECT_EQ(error, QStringLiteral("at byte 12: not valid UTF-8"));
}

TEST(OrderedJson, WhatIsWrittenReadsBackTheSame)
{
    const OrderedStrings entries{{QStringLiteral("z"), QStringLiteral("/97/44/98")},
                                 {QStringLiteral("a"), QStringLiteral(u"tab\there \"q\" \u0001 \u00e9")},
                                 {QStringLiteral("empty"), QString()}};
    EXPECT_EQ(pdehost::parseStringObject(pdehost::formatStringObject(entries), nullptr), entries);
}

TEST(BundleLocator, PpdCallsAndSearchOrder)
{
    QTemporaryDir dir;
    const QString ppdPath = dir.filePath(QStringLiteral("calls.ppd"));
    QFile ppd(ppdPath);
    ASSERT_TRUE(ppd.open(QIODevice::WriteOnly));
    ppd.write("*PPD-Adobe: \"4.3\"\n"
              "*APDialogExtension: \"/Library/Printers/Example/PDEs/First.plugin\"\n"
              "*APDialogExtension: \"/opt/other/Second.plugin/\"\n"
              "*APDialogExtension: \"First.plugin\"\n");
    ppd.close();
    ppd_file_t *opened = ppdOpenFile(ppdPath.toUtf8().constData());
    ASSERT_NE(opened, nullptr);
    const QStringList called = pdehost::dialogExtensionsOf(opened);
    ppdClose(opened);
    EXPECT_EQ(called, (QStringList{QStringLiteral("First.plugin"), QStringLiteral("Second.plugin")}));

    for (const char *folder : {"one/Second.plugin", "two/Second.plugin", "two/First.plugin"})
        QDir().mkpath(dir.filePath(QString::fromLatin1(folder)));
    const pdehost::LocatedBundles located = pdehost::locateBundles(
        {dir.filePath(QStringLiteral("given/First.plugin"))}, called,
        {dir.filePath(QStringLiteral("one")), dir.filePath(QStringLiteral("two"))});
    EXPECT_EQ(located.paths, (QStringList{dir.filePath(QStringLiteral("given/First.plugin")),
                                          dir.filePath(QStringLiteral("one/Second.plugin"))}));
    EXPECT_TRUE(located.problems.isEmpty());

    const pdehost::LocatedBundles missing = pdehost::locateBundles({}, {QStringLiteral("Third.plugin")}, {dir.path()});
    EXPECT_TRUE(missing.paths.isEmpty());
    ASSERT_EQ(missing.problems.size(), 1);
    EXPECT_TRUE(missing.problems.front().startsWith(QStringLiteral("Third.plugin: ")));
}

} // namespace
