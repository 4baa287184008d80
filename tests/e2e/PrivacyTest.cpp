// SPDX-License-Identifier: MIT
// The record's private values at the scheduler: shown to every local user
// under the stock policy, hidden from them after `pde-host protect-record`,
// and still handed to the printer's filter byte for byte.
#include "EndToEndFixture.h"

#include "host/OrderedJson.h"
#include "host/RecordPrivacy.h"
#include "pdekit/Bundle.h"

#include <QElapsedTimer>
#include <QThread>

namespace {

using namespace e2e;

// A suite of its own, so that it gets a scheduler whose policy nobody else
// has changed.
using Privacy = EndToEnd;

TEST_F(Privacy, ProtectRecordHidesTheRecordFromOtherUsersButNotFromTheFilter)
{
    const pde::Bundle *bundle = pde::Bundle::open(kBundle);
    ASSERT_NE(bundle, nullptr);
    const QStringList keys = pdehost::privateSettingsKeys(*bundle);
    ASSERT_TRUE(keys.contains(kPrefix + QStringLiteral("PrintTypePassword"))) << qPrintable(keys.join(u' '));
    ASSERT_TRUE(keys.contains(kPrefix + QStringLiteral("PrintTypeUserName")));

    const QStringList secure{QStringLiteral("--printer"), QStringLiteral("e2e"), QStringLiteral("--set"), QStringLiteral("printType=1"),
                             QStringLiteral("--set"), QStringLiteral("userName=taro"), QStringLiteral("--password-stdin")};
    const std::unique_ptr<QProcess> record = runHost(secure + QStringList{QStringLiteral("record")}, "2468\n");
    const std::optional<pdehost::OrderedStrings> entries = pdehost::parseStringObject(record->readAllStandardOutput(), nullptr);
    ASSERT_TRUE(entries);
    const auto printed = [&secure] {
        const std::unique_ptr<QProcess> print = runHost(secure + QStringList{QStringLiteral("print"), kDocument}, "2468\n");
        EXPECT_EQ(print->exitCode(), 0) << print->readAllStandardError().constData();
        return QString::fromUtf8(print->readAllStandardOutput()).trimmed().section(u'-', -1).toInt();
    };
    const auto configuration = [] {
        QFile file(cupsd->serverRoot() + QStringLiteral("/cupsd.conf"));
        file.open(QIODevice::ReadOnly);
        return file.readAll();
    };
    const auto shownToOthers = [&keys](int job) {
        QString error;
        const std::optional<QStringList> shown = pdehost::recordKeysShownToOthers(job, keys, &error);
        return (shown ? shown->join(u' ') : QStringLiteral("<cannot tell: %1>").arg(error)).toStdString();
    };

    const int before = printed();
    ASSERT_GT(before, 0);
    EXPECT_NE(shownToOthers(before).find("PrintTypePassword"), std::string::npos) << shownToOthers(before);
    EXPECT_EQ(shownToOthers(0), shownToOthers(before)) << "the newest own job is the one asked about";

    const QByteArray stock = configuration();
    const std::unique_ptr<QProcess> dryRun = runHost({QStringLiteral("protect-record"), QStringLiteral("--dry-run")});
    ASSERT_EQ(dryRun->exitCode(), 0) << dryRun->readAllStandardError().constData();
    EXPECT_TRUE(dryRun->readAllStandardOutput().contains("+   JobPrivateValues " + kPrefix.toUtf8()));
    EXPECT_EQ(configuration(), stock) << "a dry run writes nothing";

    const std::unique_ptr<QProcess> protect = runHost({QStringLiteral("protect-record")});
    ASSERT_EQ(protect->exitCode(), 0) << protect->readAllStandardError().constData();
    EXPECT_TRUE(configuration().contains("JobPrivateValues " + kPrefix.toUtf8()));

    // The scheduler restarts with the new policy once it is idle.
    QElapsedTimer waited;
    waited.start();
    while (!shownToOthers(before).empty() && waited.elapsed() < 30000)
        QThread::msleep(200);
    EXPECT_EQ(shownToOthers(before), "") << "the job history is hidden as well";

    const std::unique_ptr<QProcess> again = runHost({QStringLiteral("protect-record")});
    EXPECT_EQ(again->exitCode(), 0);
    EXPECT_TRUE(again->readAllStandardOutput().contains("nothing to change"));

    const int after = printed();
    ASSERT_GT(after, 0);
    EXPECT_EQ(shownToOthers(after), "");
    QStringList expected;
    for (const char *suffix : kSuffixes) {
        QString value = QStringLiteral("<absent>");
        for (const auto &[key, entry] : *entries) {
            if (key == kPrefix + QLatin1StringView(suffix))
                value = entry;
        }
        expected.append(value);
    }
    EXPECT_EQ(recordSeenByFilter(after), expected) << "the filter still gets the record";
    EXPECT_FALSE(expected[3].isEmpty());
}

} // namespace
