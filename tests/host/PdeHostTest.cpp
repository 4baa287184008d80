// SPDX-License-Identifier: MIT
// The pde-host command as a user runs it: its outputs, every exit status,
// and a refused save that leaves the settings file as it was.
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString kHost = QStringLiteral(PDE_HOST_BINARY);
const QString kBundle = QStringLiteral(PDE_BUNDLE_DIR);
const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");

struct HostRun {
    int exitCode = -1;
    QString out;
    QString err;
};

// Where a run's standard input comes from instead of `input`: a file, or
// "closed" for none at all.
HostRun pdeHost(const QStringList &arguments, const QByteArray &input = {}, const QStringList &environment = {},
                const QString &stdinFrom = {})
{
    QProcess process;
    if (stdinFrom == u"closed")
        process.setChildProcessModifier([] { ::close(STDIN_FILENO); });
    else if (!stdinFrom.isEmpty())
        process.setStandardInputFile(stdinFrom);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("PDE_PLUGIN_PATH"));
    for (const QString &entry : environment)
        env.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    process.setProcessEnvironment(env);
    process.start(kHost, arguments);
    if (stdinFrom.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(60000);
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QStringList withPrinter(const QStringList &rest)
{
    return QStringList{QStringLiteral("--bundle"), kBundle, QStringLiteral("--ppd"), kPpd} + rest;
}

struct StatusRow {
    const char *name;
    QStringList arguments;
    int exitCode;
    QString errorPart; // a part of what standard error must say
};

TEST(PdeHost, EveryExitStatusWithAMessageThatNamesTheProblem)
{
    QTemporaryDir dir;
    const QString fifo = dir.filePath(QStringLiteral("fifo"));
    ASSERT_EQ(::mkfifo(fifo.toUtf8().constData(), 0600), 0);
    const QStringList secure{QStringLiteral("record"), QStringLiteral("--password-stdin"), QStringLiteral("--set"), QStringLiteral("printType=1")};
    const StatusRow rows[] = {
        {"panels", withPrinter({QStringLiteral("panels")}), 0, {}},
        {"no command", withPrinter({}), 1, QStringLiteral("no command")},
        {"unknown command", withPrinter({QStringLiteral("dance")}), 1, QStringLiteral("\"dance\"")},
        {"control characters in a message are escaped", withPrinter({QStringLiteral("\x1b[2J\x9b")}), 1, QStringLiteral("\"\\e[2J\\u009b\"")},
        {"both printers", withPrinter({QStringLiteral("--printer"), QStringLiteral("p"), QStringLiteral("panels")}), 1, QStringLiteral("exactly one")},
        {"set without a value", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("userName")}), 1, QStringLiteral("KEY=VALUE")},
        {"unknown format", withPrinter({QStringLiteral("record"), QStringLiteral("--format"), QStringLiteral("xml")}), 1, QStringLiteral("xml")},
        {"missing PPD", {QStringLiteral("--bundle"), kBundle, QStringLiteral("--ppd"), QStringLiteral("/nonexistent.ppd"), QStringLiteral("panels")}, 2, QStringLiteral("/nonexistent.ppd")},
        {"PPD that is not one", {QStringLiteral("--bundle"), kBundle, QStringLiteral("--ppd"), QStringLiteral(PDE_SOURCE_DIR "/README.md"), QStringLiteral("panels")}, 2, QStringLiteral("not a PPD file")},
        {"settings that are a device", withPrinter({QStringLiteral("--settings"), QStringLiteral("/dev/zero"), QStringLiteral("record")}), 2, QStringLiteral("/dev/zero: not a regular file")},
        {"settings that are a FIFO", withPrinter({QStringLiteral("--settings"), fifo, QStringLiteral("record")}), 2, QStringLiteral("fifo: not a regular file")},
        {"bundle the printer calls for is nowhere", {QStringLiteral("--ppd"), kPpd, QStringLiteral("panels")}, 2, QStringLiteral("JobTypeQTRN.plugin")},
        {"bundle that is not one", {QStringLiteral("--bundle"), QStringLiteral("/tmp"), QStringLiteral("--ppd"), kPpd, QStringLiteral("panels")}, 2, QStringLiteral("/tmp")},
        {"refused save", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=3"), QStringLiteral("--set"), QStringLiteral("userName=")}), 3, QStringLiteral("alert: Enter a user ID.")},
        {"disabled control", withPrinter({QStringLiteral("--option"), QStringLiteral("Option2=False"), QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=1")}), 4, QStringLiteral("printType: its control is disabled")},
        {"disabled control given the value it has", withPrinter({QStringLiteral("--option"), QStringLiteral("Option2=False"), QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=0")}), 0, {}},
        {"refused character", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=1"), QStringLiteral("--set"), QStringLiteral("password=12a")}), 4, QStringLiteral("password: it refused the character at position 3")},
        {"choice that does not exist", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=7")}), 4, QStringLiteral("not one of its choices")},
        {"key no panel has", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("colour=red")}), 4, QStringLiteral("colour")},
    };
    for (const StatusRow &row : rows) {
        const HostRun run = pdeHost(row.arguments);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.name << ": " << qPrintable(run.err);
        EXPECT_TRUE(run.err.contains(row.errorPart)) << row.name << ": " << qPrintable(run.err);
        EXPECT_FALSE(run.err.contains(QChar(0x1b))) << row.name << ": no escape reaches the terminal";
        if (row.exitCode == 0) {
            EXPECT_EQ(run.err, QString()) << row.name << ": nothing but results on a success";
        }
    }

    // --password-stdin takes one bounded line from a readable standard input.
    const StatusRow stdinRows[] = {
        {"password longer than a line may be", {QStringLiteral("/dev/zero")}, 1, QStringLiteral("longer than 1024 bytes")},
        {"password from a folder", {QStringLiteral("/")}, 1, QStringLiteral("standard input cannot be read: ")},
        {"password from a closed standard input", {QStringLiteral("closed")}, 1, QStringLiteral("standard input is closed")},
    };
    for (const StatusRow &row : stdinRows) {
        const HostRun run = pdeHost(withPrinter(secure), {}, {}, row.arguments.front());
        EXPECT_EQ(run.exitCode, row.exitCode) << row.name << ": " << qPrintable(run.err);
        EXPECT_TRUE(run.err.contains(row.errorPart)) << row.name << ": " << qPrintable(run.err);
    }
}

TEST(PdeHost, RecordPrintsTheSettingsInOrderAndAsLpArguments)
{
    const QStringList values{QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=2"),
                             QStringLiteral("--set"), QStringLiteral("userName=it's"), QStringLiteral("--option"),
                             QStringLiteral("copies=2")};
    const HostRun json = pdeHost(withPrinter(values));
    ASSERT_EQ(json.exitCode, 0) << qPrintable(json.err);
    EXPECT_EQ(json.out, QStringLiteral(R"({
  "copies": "2",
  "com.norvanta.qs.o.print.printsettings.SecureVersion": "201",
  "com.norvanta.qs.o.print.printsettings.PrintType": "3",
  "com.norvanta.qs.o.print.printsettings.PrintTypeUserName": "/105/116/39/115",
  "com.norvanta.qs.o.print.printsettings.PrintTypePassword": "",
  "com.norvanta.qs.o.print.printsettings.DocumentNameType": "2",
  "com.norvanta.qs.o.print.printsettings.DocumentName": ""
}
)"));
    const HostRun lp = pdeHost(withPrinter(values + QStringList{QStringLiteral("--format"), QStringLiteral("lp")}));
    EXPECT_TRUE(lp.out.startsWith(QStringLiteral("-o 'copies=2' -o 'com.norvanta.qs.o.print.printsettings.SecureVersion=201'")))
        << qPrintable(lp.out);
}

TEST(PdeHost, SettingsAreRestoredFromAndWrittenBackOnlyAfterASuccessfulSave)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("settings.json"));
    const QByteArray earlier = R"({"com.norvanta.qs.o.print.printsettings.PrintType": "4", "com.norvanta.qs.o.print.printsettings.PrintTypeUserName": "/97/44/98", "other": "kept"})";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(earlier);
    file.close();
    const auto read = [&path] {
        QFile in(path);
        in.open(QIODevice::ReadOnly);
        return in.readAll();
    };

    // Restored: the user ID field shows "a,b".
    const HostRun state = pdeHost(withPrinter({QStringLiteral("--settings"), path, QStringLiteral("state")}));
    EXPECT_TRUE(state.out.contains(QStringLiteral("\"userName\": {\"value\": \"a,b\""))) << qPrintable(state.out);
    EXPECT_EQ(read(), earlier) << "state does not write";

    const HostRun refused = pdeHost(withPrinter({QStringLiteral("--settings"), path, QStringLiteral("record"), QStringLiteral("--set"),
                                             QStringLiteral("printType=1")}));
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_EQ(read(), earlier) << "a refused save leaves the file byte for byte";

    const auto mode = [](const QString &file) {
        struct stat info {};
        ::stat(file.toUtf8().constData(), &info);
        return info.st_mode & 0777;
    };
    ASSERT_EQ(::chmod(path.toUtf8().constData(), 0640), 0);
    const HostRun saved = pdeHost(withPrinter({QStringLiteral("--settings"), path, QStringLiteral("record"), QStringLiteral("--password-stdin"),
                                           QStringLiteral("--set"), QStringLiteral("printType=1")}),
                              "5678\n");
    ASSERT_EQ(saved.exitCode, 0) << qPrintable(saved.err);
    EXPECT_EQ(mode(path), 0640u) << "an existing file keeps its mode";
    const QString fresh = dir.filePath(QStringLiteral("fresh.json"));
    EXPECT_EQ(pdeHost(withPrinter({QStringLiteral("--settings"), fresh, QStringLiteral("record")})).exitCode, 0);
    EXPECT_EQ(mode(fresh), 0600u) << "a new file that may hold the password is its owner's alone";
    EXPECT_FALSE(saved.out.contains(QStringLiteral("5678"))) << "the clear password never reaches the output";
    const QByteArray after = read();
    EXPECT_TRUE(after.startsWith("{\n  \"com.norvanta.qs.o.print.printsettings.PrintType\": \"2\",\n")) << after.constData();
    EXPECT_TRUE(after.contains("\"other\": \"kept\"")) << after.constData();

    file.open(QIODevice::WriteOnly);
    file.write("{\"PrintType\": 5}");
    file.close();
    const HostRun broken = pdeHost(withPrinter({QStringLiteral("--settings"), path, QStringLiteral("record")}));
    EXPECT_EQ(broken.exitCode, 2);
    EXPECT_TRUE(broken.err.contains(QStringLiteral("not a string"))) << qPrintable(broken.err);
}

TEST(PdeHost, AnUnreachableSchedulerIsNamedAndGivenUpOn)
{
    QTcpServer gone;
    ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
    const QString goneAddress = QStringLiteral("127.0.0.1:%1").arg(gone.serverPort());
    gone.close();
    // The system accepts connections for a listening socket; nobody answers.
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const QString silentAddress = QStringLiteral("127.0.0.1:%1").arg(silent.serverPort());

    const struct {
        const char *name;
        QString server;
        QString message;
    } rows[] = {
        {"scheduler down", goneAddress, QStringLiteral("the scheduler at %1 cannot be reached: Connection refused").arg(goneAddress)},
        {"scheduler that never answers", silentAddress, QStringLiteral("the scheduler at %1 did not answer within 1 s").arg(silentAddress)},
    };
    for (const auto &row : rows) {
        QElapsedTimer took;
        took.start();
        const HostRun run = pdeHost({QStringLiteral("--bundle"), kBundle, QStringLiteral("--printer"), QStringLiteral("mfp"), QStringLiteral("panels")},
                                    {}, {QStringLiteral("CUPS_SERVER=") + row.server, QStringLiteral("PDE_SCHEDULER_TIMEOUT=1")});
        EXPECT_EQ(run.exitCode, 2) << row.name;
        EXPECT_TRUE(run.err.contains(row.message)) << row.name << ": " << qPrintable(run.err);
        EXPECT_LT(took.elapsed(), 15000) << row.name << ": gives up instead of waiting for the system's timeouts";
    }
}

TEST(PdeHost, BundlesAreFoundByTheNameThePrinterCallsFor)
{
    const QString folder = QFileInfo(kBundle).absolutePath();
    const HostRun run = pdeHost({QStringLiteral("--ppd"), kPpd, QStringLiteral("--lang"), QStringLiteral("ja"), QStringLiteral("panels")},
                            {}, {QStringLiteral("PDE_PLUGIN_PATH=/nonexistent:") + folder});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.err);
    EXPECT_EQ(run.out, QStringLiteral("com.norvanta.qs.o.vellumark.pde.JobTypeQTRN\tジョブタイプ（ストレージキット）\n"));
}

TEST(PdeHost, ScreenshotAndSummary)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("panel.png"));
    EXPECT_EQ(pdeHost(withPrinter({QStringLiteral("screenshot"), png, QStringLiteral("--set"), QStringLiteral("printType=1")})).exitCode, 0);
    EXPECT_GT(QFileInfo(png).size(), 1000);
    const HostRun summary = pdeHost(withPrinter({QStringLiteral("summary"), QStringLiteral("--password-stdin"), QStringLiteral("--set"),
                                             QStringLiteral("printType=1"), QStringLiteral("--set"), QStringLiteral("userName=taro")}),
                                "24680\n");
    EXPECT_EQ(summary.out, QStringLiteral("Job Type: Secure Print\nUser ID: taro\nPassword: *****\nDocument Name: Enter a Name\n"));
}

} // namespace
