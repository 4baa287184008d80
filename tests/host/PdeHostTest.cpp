// SPDX-License-Identifier: MIT
// The pde-host command as a user runs it: its outputs, every exit status,
// and a refused save that leaves the settings file as it was.
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString kHost = QStringLiteral(PDE_HOST_BINARY);
const QString kBundle = QStringLiteral(PDE_BUNDLE_DIR);
const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");

struct HostRun {
    int exitCode = -1;
    QString out;
    QString err;
};

HostRun pdeHost(const QStringList &arguments, const QByteArray &input = {}, const QStringList &environment = {})
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("PDE_PLUGIN_PATH"));
    for (const QString &entry : environment)
        env.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    process.setProcessEnvironment(env);
    process.start(kHost, arguments);
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
    const StatusRow rows[] = {
        {"panels", withPrinter({QStringLiteral("panels")}), 0, {}},
        {"no command", withPrinter({}), 1, QStringLiteral("no command")},
        {"unknown command", withPrinter({QStringLiteral("dance")}), 1, QStringLiteral("\"dance\"")},
        {"both printers", withPrinter({QStringLiteral("--printer"), QStringLiteral("p"), QStringLiteral("panels")}), 1, QStringLiteral("exactly one")},
        {"set without a value", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("userName")}), 1, QStringLiteral("KEY=VALUE")},
        {"unknown format", withPrinter({QStringLiteral("record"), QStringLiteral("--format"), QStringLiteral("xml")}), 1, QStringLiteral("xml")},
        {"missing PPD", {QStringLiteral("--bundle"), kBundle, QStringLiteral("--ppd"), QStringLiteral("/nonexistent.ppd"), QStringLiteral("panels")}, 2, QStringLiteral("/nonexistent.ppd")},
        {"PPD that is not one", {QStringLiteral("--bundle"), kBundle, QStringLiteral("--ppd"), QStringLiteral(PDE_SOURCE_DIR "/README.md"), QStringLiteral("panels")}, 2, QStringLiteral("not a PPD file")},
        {"bundle the printer calls for is nowhere", {QStringLiteral("--ppd"), kPpd, QStringLiteral("panels")}, 2, QStringLiteral("JobTypeQTRN.plugin")},
        {"bundle that is not one", {QStringLiteral("--bundle"), QStringLiteral("/tmp"), QStringLiteral("--ppd"), kPpd, QStringLiteral("panels")}, 2, QStringLiteral("/tmp")},
        {"refused save", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=3"), QStringLiteral("--set"), QStringLiteral("userName=")}), 3, QStringLiteral("alert: Enter a user ID.")},
        {"disabled control", withPrinter({QStringLiteral("--option"), QStringLiteral("Option2=False"), QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=1")}), 4, QStringLiteral("printType: its control is disabled")},
        {"refused character", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=1"), QStringLiteral("--set"), QStringLiteral("password=12a")}), 4, QStringLiteral("password: it refused the character at position 3")},
        {"choice that does not exist", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("printType=7")}), 4, QStringLiteral("not one of its choices")},
        {"key no panel has", withPrinter({QStringLiteral("record"), QStringLiteral("--set"), QStringLiteral("colour=red")}), 4, QStringLiteral("colour")},
    };
    for (const StatusRow &row : rows) {
        const HostRun run = pdeHost(row.arguments);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.name << ": " << qPrintable(run.err);
        EXPECT_TRUE(run.err.contains(row.errorPart)) << row.name << ": " << qPrintable(run.err);
        if (row.exitCode == 0) {
            EXPECT_EQ(run.err, QString()) << row.name << ": nothing but results on a success";
        }
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

    const HostRun saved = pdeHost(withPrinter({QStringLiteral("--settings"), path, QStringLiteral("record"), QStringLiteral("--password-stdin"),
                                           QStringLiteral("--set"), QStringLiteral("printType=1")}),
                              "5678\n");
    ASSERT_EQ(saved.exitCode, 0) << qPrintable(saved.err);
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
