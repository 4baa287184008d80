// SPDX-License-Identifier: MIT
// The pde-host command as a user runs it: its outputs, every exit status,
// and a refused save that leaves the settings file as it was; and pde-print
// without a display, as over SSH or when man pages are made from its help.
#include "../e2e/EndToEndFixture.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTcpServer>

#include <sys/stat.h>

namespace {

using namespace e2e;

// pde-host with the built bundle and the example printer's PPD.
QStringList withPrinter(const char *line)
{
    return forPrinter(kPpd, words(line));
}

struct StatusRow {
    const char *name;
    QStringList arguments;
    int exitCode;
    QString errorPart;            // a part of what standard error must say
    QString stdinFrom = {};       // as runHost takes them
    QStringList environment = {}; // as runHost takes them
};

TEST(PdeHost, EveryExitStatusWithAMessageThatNamesTheProblem)
{
    QTemporaryDir dir;
    const QString fifo = dir.filePath(u"fifo"_s);
    ASSERT_EQ(::mkfifo(fifo.toUtf8().constData(), 0600), 0);
    QTcpServer gone;
    ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
    const QString goneAddress = u"127.0.0.1:%1"_s.arg(gone.serverPort());
    gone.close();
    // The system accepts connections for a listening socket; nobody answers.
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const QString silentAddress = u"127.0.0.1:%1"_s.arg(silent.serverPort());
    const QStringList secure = withPrinter("record --password-stdin --set printType=1");
    const StatusRow rows[] = {
        {"panels", withPrinter("panels"), 0, {}},
        {"no command", withPrinter(""), 1, u"no command"_s},
        {"unknown command", withPrinter("dance"), 1, u"\"dance\""_s},
        {"control characters in a message are escaped", forPrinter(kPpd, {u"\x1b[2J\x9b"_s}), 1,
         u"\"\\e[2J\\u009b\""_s},
        {"both printers", withPrinter("--printer p panels"), 1, u"exactly one"_s},
        {"set without a value", withPrinter("record --set userName"), 1, u"KEY=VALUE"_s},
        {"unknown format", withPrinter("record --format xml"), 1, u"xml"_s},
        // --password-stdin takes one bounded line from a readable standard input.
        {"password longer than a line may be", secure, 1, u"longer than 1024 bytes"_s, u"/dev/zero"_s},
        {"password from a folder", secure, 1, u"standard input cannot be read: "_s, u"/"_s},
        {"password from a closed standard input", secure, 1, u"standard input is closed"_s, u"closed"_s},
        {"missing PPD", forPrinter(u"/nonexistent.ppd"_s, {u"panels"_s}), 2, u"/nonexistent.ppd"_s},
        {"PPD that is not one", forPrinter(QStringLiteral(PDE_SOURCE_DIR "/README.md"), {u"panels"_s}), 2,
         u"not a PPD file"_s},
        {"settings that are a device", withPrinter("--settings /dev/zero record"), 2,
         u"/dev/zero: not a regular file"_s},
        {"settings that are a FIFO, never opened to wait for a writer",
         forPrinter(kPpd, {u"--settings"_s, fifo, u"record"_s}), 2, u"fifo: not a regular file"_s},
        {"bundle the printer calls for is nowhere", {u"--ppd"_s, kPpd, u"panels"_s}, 2, u"JobTypeQTRN.plugin"_s},
        {"bundle that is not one", {u"--bundle"_s, u"/tmp"_s, u"--ppd"_s, kPpd, u"panels"_s}, 2, u"/tmp"_s},
        {"scheduler down", forPrinter(u"mfp"_s, {u"panels"_s}), 2,
         u"the scheduler at %1 cannot be reached: Connection refused"_s.arg(goneAddress), {},
         {u"CUPS_SERVER="_s + goneAddress, u"PDE_SCHEDULER_TIMEOUT=1"_s}},
        {"scheduler that never answers", forPrinter(u"mfp"_s, {u"panels"_s}), 2,
         u"the scheduler at %1 did not answer within 1 s"_s.arg(silentAddress), {},
         {u"CUPS_SERVER="_s + silentAddress, u"PDE_SCHEDULER_TIMEOUT=1"_s}},
        {"refused save", withPrinter("record --set printType=3 --set userName="), 3, u"alert: Enter a user ID."_s},
        {"disabled control", withPrinter("--option Option2=False record --set printType=1"), 4,
         u"printType: its control is disabled"_s},
        {"disabled control given the value it has", withPrinter("--option Option2=False record --set printType=0"), 0,
         {}},
        {"refused character", withPrinter("record --set printType=1 --set password=12a"), 4,
         u"password: it refused the character at position 3"_s},
        {"choice that does not exist", withPrinter("record --set printType=7"), 4, u"not one of its choices"_s},
        {"key no panel has", withPrinter("record --set colour=red"), 4, u"colour"_s},
    };
    for (const StatusRow &row : rows) {
        QElapsedTimer took;
        took.start();
        const HostRun run = runHost(row.arguments, {}, row.environment, row.stdinFrom);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.name << ": " << qPrintable(run.err);
        EXPECT_TRUE(run.err.contains(row.errorPart)) << row.name << ": " << qPrintable(run.err);
        EXPECT_FALSE(run.err.contains(QChar(0x1b))) << row.name << ": no escape reaches the terminal";
        if (row.exitCode == 0) {
            EXPECT_EQ(run.err, QString()) << row.name << ": nothing but results on a success";
        }
        EXPECT_LT(took.elapsed(), 15000) << row.name << ": gives up instead of waiting for the system's timeouts";
    }
}

TEST(PdeHost, RecordLpArgumentsSummaryPanelsAndScreenshotAreWhatTheySay)
{
    const char *const values = "record --set printType=2 --set userName=it's --option copies=2";
    const HostRun json = runHost(withPrinter(values));
    ASSERT_EQ(json.exitCode, 0) << qPrintable(json.err);
    EXPECT_EQ(json.out, uR"({
  "copies": "2",
  "com.norvanta.qs.o.print.printsettings.SecureVersion": "201",
  "com.norvanta.qs.o.print.printsettings.PrintType": "3",
  "com.norvanta.qs.o.print.printsettings.PrintTypeUserName": "/105/116/39/115",
  "com.norvanta.qs.o.print.printsettings.PrintTypePassword": "",
  "com.norvanta.qs.o.print.printsettings.DocumentNameType": "2",
  "com.norvanta.qs.o.print.printsettings.DocumentName": ""
}
)"_s);
    const HostRun lp = runHost(withPrinter(values) + words("--format lp"));
    EXPECT_TRUE(lp.out.startsWith(u"-o 'copies=2' -o 'com.norvanta.qs.o.print.printsettings.SecureVersion=201'"_s))
        << qPrintable(lp.out);
    const HostRun summary =
        runHost(withPrinter("summary --password-stdin --set printType=1 --set userName=taro"), "24680\n");
    EXPECT_EQ(summary.out, u"Job Type: Secure Print\nUser ID: taro\nPassword: *****\nDocument Name: Enter a Name\n"_s);

    // Bundles are found by the name the printer calls for, past a folder that
    // does not exist.
    const HostRun panels = runHost({u"--ppd"_s, kPpd, u"--lang"_s, u"ja"_s, u"panels"_s}, {},
                                   {u"PDE_PLUGIN_PATH=/nonexistent:"_s + QFileInfo(kBundle).absolutePath()});
    EXPECT_EQ(panels.exitCode, 0) << qPrintable(panels.err);
    EXPECT_EQ(panels.out, u"com.norvanta.qs.o.vellumark.pde.JobTypeQTRN\tジョブタイプ（ストレージキット）\n"_s);

    QTemporaryDir dir;
    const QString png = dir.filePath(u"panel.png"_s);
    EXPECT_EQ(runHost(forPrinter(kPpd, {u"screenshot"_s, png, u"--set"_s, u"printType=1"_s})).exitCode, 0);
    EXPECT_GT(QFileInfo(png).size(), 1000);
}

TEST(PdeHost, SettingsAreRestoredFromAndWrittenBackOnlyAfterASuccessfulSave)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"settings.json"_s);
    const QByteArray earlier = "{\"" + kPrefix.toUtf8() + "PrintType\": \"4\", \"" + kPrefix.toUtf8()
                               + "PrintTypeUserName\": \"/97/44/98\", \"other\": \"kept\"}";
    ASSERT_TRUE(writeFile(path, earlier));
    const auto withSettings = [](const QString &file, const char *line) {
        return forPrinter(kPpd, QStringList{u"--settings"_s, file} + words(line));
    };

    // Restored: the user ID field shows "a,b".
    const HostRun state = runHost(withSettings(path, "state"));
    EXPECT_TRUE(state.out.contains(u"\"userName\": {\"value\": \"a,b\""_s)) << qPrintable(state.out);
    EXPECT_EQ(readFile(path), earlier) << "state does not write";
    EXPECT_EQ(runHost(withSettings(path, "record --set printType=1")).exitCode, 3);
    EXPECT_EQ(readFile(path), earlier) << "a refused save leaves the file byte for byte";

    const auto mode = [](const QString &file) { return QFile::permissions(file) & 0x7077; };
    const QFileDevice::Permissions owners = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    ASSERT_TRUE(QFile::setPermissions(path, owners | QFileDevice::ReadGroup));
    const HostRun saved = runHost(withSettings(path, "record --password-stdin --set printType=1"), "5678\n");
    ASSERT_EQ(saved.exitCode, 0) << qPrintable(saved.err);
    EXPECT_EQ(mode(path), owners | QFileDevice::ReadGroup) << "an existing file keeps its mode";
    const QString fresh = dir.filePath(u"fresh.json"_s);
    EXPECT_EQ(runHost(withSettings(fresh, "record")).exitCode, 0);
    EXPECT_EQ(mode(fresh), owners) << "a new file that may hold the password is its owner's alone";
    EXPECT_FALSE(saved.out.contains(u"5678"_s)) << "the clear password never reaches the output";
    const QByteArray after = readFile(path);
    EXPECT_TRUE(after.startsWith("{\n  \"" + kPrefix.toUtf8() + "PrintType\": \"2\",\n")) << after.constData();
    EXPECT_TRUE(after.contains("\"other\": \"kept\"")) << after.constData();

    ASSERT_TRUE(writeFile(path, "{\"PrintType\": 5}"));
    const HostRun broken = runHost(withSettings(path, "record"));
    EXPECT_EQ(broken.exitCode, 2);
    EXPECT_TRUE(broken.err.contains(u"not a string"_s)) << qPrintable(broken.err);
}

TEST(PdePrint, AnswersWithoutADisplay)
{
    const struct {
        const char *name;
        QStringList arguments;
        int exitCode;
        QString outPart; // a part of standard output
        QString errPart; // a part of standard error; empty: nothing there
    } rows[] = {
        {"help", {u"--help"_s}, 0, u"--lang <LANG>"_s, {}},
        {"help in Japanese", {u"--lang"_s, u"ja"_s, u"--help"_s}, 0, u"このヘルプを表示して終了します"_s, {}},
        {"no file", {}, 1, {}, u"give at least one file"_s},
        {"unknown option", {u"--bogus"_s, u"a.txt"_s}, 1, {}, u"bogus"_s},
        {"not a language", {u"--lang"_s, u"ja;rm"_s, u"a.txt"_s}, 1, {}, u"ja;rm"_s},
        {"nothing to show the dialog on", {u"a.txt"_s}, 2, {}, u"no display"_s},
    };
    // No display to show anything on, and messages in English.
    const QStringList environment =
        words("DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM LANGUAGE LC_ALL LC_MESSAGES LANG=C.UTF-8");
    for (const auto &row : rows) {
        const HostRun run = runHost(row.arguments, {}, environment, {}, kPrint);
        EXPECT_EQ(run.exitCode, row.exitCode) << row.name << ": " << qPrintable(run.err);
        EXPECT_TRUE(run.out.contains(row.outPart)) << row.name << ": " << qPrintable(run.out);
        if (row.errPart.isEmpty())
            EXPECT_EQ(run.err, QString()) << row.name;
        else
            EXPECT_TRUE(run.err.startsWith(u"pde-print: "_s) && run.err.contains(row.errPart))
                << row.name << ": " << qPrintable(run.err);
    }
}

} // namespace
