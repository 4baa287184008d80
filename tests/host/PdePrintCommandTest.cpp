// SPDX-License-Identifier: MIT
// The pde-print command without a display, as over SSH or when man pages are
// made from its help: help, usage errors and the missing display.
#include <QProcess>

#include <gtest/gtest.h>

namespace {

struct CommandRow {
    const char *name;
    QStringList arguments;
    int exitCode;
    QString outPart; // a part of standard output
    QString errPart; // a part of standard error; empty: nothing there
};

TEST(PdePrint, AnswersWithoutADisplay)
{
    const CommandRow rows[] = {
        {"help", {QStringLiteral("--help")}, 0, QStringLiteral("--lang <LANG>"), {}},
        {"help in Japanese", {QStringLiteral("--lang"), QStringLiteral("ja"), QStringLiteral("--help")}, 0,
         QStringLiteral(u"このヘルプを表示して終了します"), {}},
        {"no file", {}, 1, {}, QStringLiteral("give at least one file")},
        {"unknown option", {QStringLiteral("--bogus"), QStringLiteral("a.txt")}, 1, {}, QStringLiteral("bogus")},
        {"not a language", {QStringLiteral("--lang"), QStringLiteral("ja;rm"), QStringLiteral("a.txt")}, 1, {}, QStringLiteral("ja;rm")},
        {"nothing to show the dialog on", {QStringLiteral("a.txt")}, 2, {}, QStringLiteral("no display")},
    };
    for (const CommandRow &row : rows) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "LANGUAGE", "LC_ALL", "LC_MESSAGES"})
            environment.remove(QString::fromLatin1(name));
        environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PDE_PRINT_BINARY), row.arguments);
        ASSERT_TRUE(process.waitForFinished(30000)) << row.name;
        const QString out = QString::fromUtf8(process.readAllStandardOutput());
        const QString err = QString::fromUtf8(process.readAllStandardError());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << row.name;
        EXPECT_EQ(process.exitCode(), row.exitCode) << row.name << ": " << qPrintable(err);
        EXPECT_TRUE(out.contains(row.outPart)) << row.name << ": " << qPrintable(out);
        if (row.errPart.isEmpty())
            EXPECT_EQ(err, QString()) << row.name;
        else
            EXPECT_TRUE(err.startsWith(QStringLiteral("pde-print: ")) && err.contains(row.errPart)) << row.name << ": " << qPrintable(err);
    }
}

} // namespace
