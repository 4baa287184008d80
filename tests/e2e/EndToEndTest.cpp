// SPDX-License-Identifier: MIT
// Printing for real through a private CUPS scheduler: the record reaches the
// printer's filter byte for byte whether pde-host prints the job or releases
// one that an application without panels left held; a refused save leaves
// the held job as it was, a job that fails on the way is cancelled, only the
// user's own held jobs are listed and released, and the record's private
// values, hidden from other local users after `pde-host protect-record`,
// still reach the filter (the desktop dialog's jobs are in
// PrintDialogTest.cpp).
#include "EndToEndFixture.h"

#include "host/RecordPrivacy.h"
#include "pdekit/Bundle.h"

#include <QElapsedTimer>
#include <QThread>

namespace {

using namespace e2e;

struct RecordRow {
    const char *name;
    bool print;         // else released from the held queue
    const char *values; // pde-host's arguments
    QByteArray password;
    QByteArray settings = {}; // a --settings file's content, or empty
    int exitCode = 0;
    QString errorPart = {}; // in what a refusal prints
    bool asGtk = false;     // the held job made as a GTK application makes it, else with lp
};

TEST_F(EndToEnd, PrintAndReleaseDeliverTheRecordByteForByteAndARefusalChangesNothing)
{
    // Of the record's values only these reach the scheduler as they are;
    // the panel writes the others as character codes.
    const char *const raw = "--set printType=1 --set userName=\"caf\xc3\xa9\" --set documentName={draft}";
    const RecordRow rows[] = {
        {"printed: a quote, accents and braces (not a collection)", true, raw, "2468"},
        {"released: the same", false, raw, "2468"},
        {"released: the same job made as GTK applications make it", false, raw, "2468", {}, 0, {}, true},
        {"released: ordinary print", false, "--set printType=0", {}},
        {"released: sample print, automatic name", false,
         "--set printType=2 --set userName=x/y --set documentNameType=0", {}},
        {"released: public print, commas", false,
         "--set printType=3 --set userName=a,b --set documentName=Q3,report", {}},
        {"printed from saved settings: the second secure kind", true, "--set userName=u", "1357",
         R"({"com.norvanta.qs.o.print.printsettings.PrintType": "5"})"},
        {"refused save: no password", false, "--set printType=1 --set userName=taro", {}, {}, 3, u"alert: "_s},
        {"refused value", false, "--set printType=1 --set password=12a", {}, {}, 4, u"password:"_s},
    };
    for (const RecordRow &row : rows) {
        const QString queue = row.print ? u"e2e"_s : kHeld;
        QStringList values = words(row.values);
        if (!row.password.isEmpty())
            values << u"--password-stdin"_s;
        // record writes the settings back; each run starts from the same.
        QTemporaryDir scratch;
        const QString path = scratch.filePath(u"settings.json"_s);
        const auto settings = [&] {
            return !row.settings.isEmpty() && writeFile(path, row.settings) ? QStringList{u"--settings"_s, path}
                                                                            : QStringList();
        };
        const HostRun record = runHost(forPrinter(queue, (settings() << u"record"_s) + values), row.password + '\n');

        int job = 0;
        QStringList before;
        HostRun run;
        if (row.print) {
            run = runHost(forPrinter(queue, settings() + QStringList{u"print"_s, kDocument} + values),
                          row.password + '\n');
            job = run.out.trimmed().section(u'-', -1).toInt();
        } else {
            job = row.asGtk ? submitAsGtk(u"Quarterly report"_s) : submitWithLp(u"Quarterly report"_s);
            before = jobAttributes(job);
            ASSERT_TRUE(before.contains(u"job-state=pending-held"_s)) << row.name;
            run = runHost(forPrinter(queue, QStringList{u"release"_s, QString::number(job)} + values),
                          row.password + '\n');
        }
        ASSERT_EQ(run.exitCode, row.exitCode) << row.name << ": " << qPrintable(run.err);
        if (row.exitCode != 0) {
            EXPECT_TRUE(run.err.contains(row.errorPart)) << row.name << ": " << qPrintable(run.err);
            EXPECT_EQ(jobAttributes(job), before) << row.name;
            cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), job, 0);
            continue;
        }
        ASSERT_GT(job, 0) << row.name;
        if (!row.print) {
            EXPECT_EQ(run.out, u"%1-%2\n"_s.arg(kHeld).arg(job)) << row.name;
        }
        EXPECT_EQ(recordSeenByFilter(job), recordIn(record.out)) << row.name;
    }
}

TEST_F(EndToEnd, AJobThatFailsOnTheWayIsCancelled)
{
    QTemporaryDir scratch;
    const QString empty = scratch.filePath(u"empty.txt"_s);
    ASSERT_TRUE(writeFile(empty, {}));
    const struct {
        const char *name;
        QStringList files;
    } rows[] = {
        {"a single empty file", {empty}},
        {"an empty file after a document", {kDocument, empty, kDocument}},
    };
    for (const auto &row : rows) {
        const QStringList values = words("--set printType=1 --set userName=taro --password-stdin");
        const HostRun print = runHost(forPrinter(u"e2e"_s, QStringList{u"print"_s} + row.files + values), "2468\n");
        EXPECT_EQ(print.exitCode, 2) << row.name;
        const int job = print.err.section(u"; job "_s, 1).section(u' ', 0, 0).toInt();
        ASSERT_GT(job, 0) << row.name << ": " << qPrintable(print.err);
        EXPECT_TRUE(print.err.contains(u"job %1 was cancelled"_s.arg(job))) << row.name;
        EXPECT_EQ(jobAttribute(job, u"job-state"_s), u"canceled"_s) << row.name;
        EXPECT_EQ(cupsd->optionsOfJob(job, 1000), std::nullopt) << row.name << ": no part of it reached the printer";
    }
}

TEST_F(EndToEnd, OnlyTheUsersHeldJobsAreListedAndReleased)
{
    const int mine = submitWithLp(u"mine"_s);
    const int theirs = submitWithLp(u"theirs"_s, kHeld, u"visitor"_s);
    const int released = submitWithLp(u"released"_s);
    ASSERT_GT(mine * theirs * released, 0);
    ASSERT_EQ(runHost(forPrinter(kHeld, {u"release"_s, QString::number(released)})).exitCode, 0);

    const QString lines = runHost({u"--bundle"_s, kBundle, u"jobs"_s}).out;
    EXPECT_TRUE(lines.contains(u"%1\theld\tmine\tpending-held\n"_s.arg(mine))) << qPrintable(lines);
    EXPECT_FALSE(lines.contains(u"theirs"_s));
    EXPECT_FALSE(lines.contains(u"released"_s));

    const struct {
        const char *name;
        int job;
        QString errorPart;
    } refused[] = {
        {"another user's job", theirs, u"is not yours"_s},
        {"a released job", released, u"is not held"_s},
        {"a job that does not exist", 99999, u"job 99999: "_s},
    };
    for (const auto &row : refused) {
        const HostRun release = runHost(forPrinter(kHeld, {u"release"_s, QString::number(row.job)}));
        EXPECT_EQ(release.exitCode, 2) << row.name << ": " << qPrintable(release.err);
        EXPECT_TRUE(release.err.contains(row.errorPart)) << row.name << ": " << qPrintable(release.err);
    }
    cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), mine, 0);
    cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), theirs, 0);
}

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
