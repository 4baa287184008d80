// SPDX-License-Identifier: MIT
// The record's private values at the scheduler: shown to every local user
// under the stock policy, hidden from them after `pde-host protect-record`,
// and still handed to the printer's filter byte for byte.
#include "EndToEndFixture.h"

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
    ASSERT_TRUE(keys.contains(kPrefix + u"PrintTypePassword"_s)) << qPrintable(keys.join(u' '));
    ASSERT_TRUE(keys.contains(kPrefix + u"PrintTypeUserName"_s));

    const QStringList secure = words("--set printType=1 --set userName=taro --password-stdin");
    const QStringList record = recordIn(runHost(forPrinter(u"e2e"_s, QStringList{u"record"_s} + secure), "2468\n").out);
    const auto printed = [&secure] {
        const HostRun print = runHost(forPrinter(u"e2e"_s, QStringList{u"print"_s, kDocument} + secure), "2468\n");
        EXPECT_EQ(print.exitCode, 0) << qPrintable(print.err);
        return print.out.trimmed().section(u'-', -1).toInt();
    };
    const QString configuration = cupsd->serverRoot() + u"/cupsd.conf"_s;
    const auto shownToOthers = [&keys](int job) {
        QString error;
        const std::optional<QStringList> shown = pdehost::recordKeysShownToOthers(job, keys, &error);
        return (shown ? shown->join(u' ') : u"<cannot tell: %1>"_s.arg(error)).toStdString();
    };

    const int before = printed();
    ASSERT_GT(before, 0);
    EXPECT_NE(shownToOthers(before).find("PrintTypePassword"), std::string::npos) << shownToOthers(before);
    EXPECT_EQ(shownToOthers(0), shownToOthers(before)) << "the newest own job is the one asked about";

    const QByteArray stock = readFile(configuration);
    const HostRun dryRun = runHost({u"--bundle"_s, kBundle, u"protect-record"_s, u"--dry-run"_s});
    ASSERT_EQ(dryRun.exitCode, 0) << qPrintable(dryRun.err);
    EXPECT_TRUE(dryRun.out.contains(u"+   JobPrivateValues "_s + kPrefix));
    EXPECT_EQ(readFile(configuration), stock) << "a dry run writes nothing";

    const HostRun protect = runHost({u"--bundle"_s, kBundle, u"protect-record"_s});
    ASSERT_EQ(protect.exitCode, 0) << qPrintable(protect.err);
    EXPECT_TRUE(readFile(configuration).contains("JobPrivateValues " + kPrefix.toUtf8()));
    // The scheduler restarts with the new policy once it is idle.
    QElapsedTimer waited;
    waited.start();
    while (!shownToOthers(before).empty() && waited.elapsed() < 30000)
        QThread::msleep(200);
    EXPECT_EQ(shownToOthers(before), "") << "the job history is hidden as well";

    const HostRun again = runHost({u"--bundle"_s, kBundle, u"protect-record"_s});
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_TRUE(again.out.contains(u"nothing to change"_s));

    const int after = printed();
    ASSERT_GT(after, 0);
    EXPECT_EQ(shownToOthers(after), "");
    EXPECT_EQ(recordSeenByFilter(after), record) << "the filter still gets the record";
    EXPECT_FALSE(record[3].isEmpty());
}

} // namespace
