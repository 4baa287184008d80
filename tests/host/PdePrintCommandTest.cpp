// SPDX-License-Identifier: MIT
// The pde-print command without a display, as over SSH or when man pages are
// made from its help: help, usage errors and the missing display.
#include <QProcess>

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

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
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "LANGUAGE", "LC_ALL", "LC_MESSAGES"})
        environment.remove(QString::fromLatin1(name));
    environment.insert(u"LANG"_s, u"C.UTF-8"_s);
    for (const auto &row : rows) {
        QProcess process;
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
            EXPECT_TRUE(err.startsWith(u"pde-print: "_s) && err.contains(row.errPart))
                << row.name << ": " << qPrintable(err);
    }
}

} // namespace
