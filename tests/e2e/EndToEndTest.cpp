// SPDX-License-Identifier: MIT
// Printing for real through a private CUPS scheduler: jobs submitted by
// pde-host reach the printer's filter with the panel's record intact, byte
// for byte (the desktop dialog's are in PrintDialogTest.cpp).
#include "EndToEndFixture.h"

#include "host/OrderedJson.h"

namespace {

using namespace e2e;

struct JobRow {
    const char *name;
    QStringList values; // --set arguments
    QByteArray password;
    QString settings;   // a --settings file's content, or empty
};

TEST_F(EndToEnd, PdeHostPrintDeliversTheRecordByteForByte)
{
    const JobRow rows[] = {
        {"none", {QStringLiteral("printType=0")}, {}, {}},
        {"secure with a comma in the name",
         {QStringLiteral("printType=1"), QStringLiteral("userName=taro"), QStringLiteral("documentName=Q3,report")}, "2468", {}},
        {"sample with a slash, automatic name",
         {QStringLiteral("printType=2"), QStringLiteral("userName=x/y"), QStringLiteral("documentNameType=0")}, {}, {}},
        {"public with accents and a backslash",
         {QStringLiteral("printType=3"), QStringLiteral(u"userName=caf\u00e9"), QStringLiteral("documentName=a'b\\c")}, {}, {}},
        {"a name in braces, not a collection",
         {QStringLiteral("printType=3"), QStringLiteral("userName=a\"b"), QStringLiteral("documentName={draft}")}, {}, {}},
        {"second secure kind from saved settings", {QStringLiteral("userName=u")}, "1357",
         QStringLiteral(R"({"com.norvanta.qs.o.print.printsettings.PrintType": "5"})")},
    };
    for (const JobRow &row : rows) {
        QStringList values;
        for (const QString &value : row.values)
            values << QStringLiteral("--set") << value;
        if (!row.password.isEmpty())
            values << QStringLiteral("--password-stdin");
        QStringList common{QStringLiteral("--printer"), QStringLiteral("e2e")};
        QTemporaryDir scratch;
        if (!row.settings.isEmpty()) {
            const QString path = scratch.filePath(QStringLiteral("settings.json"));
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(row.settings.toUtf8());
            file.close();
            common << QStringLiteral("--settings") << path;
        }

        const std::unique_ptr<QProcess> record = runHost(common + QStringList{QStringLiteral("record")} + values, row.password + '\n');
        ASSERT_EQ(record->exitCode(), 0) << row.name << ": " << record->readAllStandardError().constData();
        QString error;
        const std::optional<pdehost::OrderedStrings> entries = pdehost::parseStringObject(record->readAllStandardOutput(), &error);
        ASSERT_TRUE(entries) << row.name << ": " << qPrintable(error);
        QStringList expected;
        for (const char *suffix : kSuffixes) {
            QString value = QStringLiteral("<absent>");
            for (const auto &[key, entry] : *entries) {
                if (key == kPrefix + QLatin1StringView(suffix))
                    value = entry;
            }
            expected.append(value);
        }

        // record wrote the settings back; start the print from the same ones.
        if (!row.settings.isEmpty()) {
            QFile file(scratch.filePath(QStringLiteral("settings.json")));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(row.settings.toUtf8());
        }
        const std::unique_ptr<QProcess> print =
            runHost(common + QStringList{QStringLiteral("print"), kDocument} + values, row.password + '\n');
        ASSERT_EQ(print->exitCode(), 0) << row.name << ": " << print->readAllStandardError().constData();
        const int job = QString::fromUtf8(print->readAllStandardOutput()).trimmed().section(u'-', -1).toInt();
        ASSERT_GT(job, 0) << row.name;
        EXPECT_EQ(recordSeenByFilter(job), expected) << row.name;
    }
}

TEST_F(EndToEnd, AJobThatFailsOnTheWayIsCancelled)
{
    QTemporaryDir scratch;
    const QString empty = scratch.filePath(QStringLiteral("empty.txt"));
    QFile(empty).open(QIODevice::WriteOnly);
    const struct {
        const char *name;
        QStringList files;
    } rows[] = {
        {"a single empty file", {empty}},
        {"an empty file after a document", {kDocument, empty, kDocument}},
    };
    for (const auto &row : rows) {
        const std::unique_ptr<QProcess> print = runHost(
            QStringList{QStringLiteral("--printer"), QStringLiteral("e2e"), QStringLiteral("print")} + row.files
            + QStringList{QStringLiteral("--set"), QStringLiteral("printType=1"), QStringLiteral("--set"),
                          QStringLiteral("userName=taro"), QStringLiteral("--password-stdin")},
            "2468\n");
        const QString error = QString::fromUtf8(print->readAllStandardError());
        EXPECT_EQ(print->exitCode(), 2) << row.name;
        const int job = error.section(QStringLiteral("; job "), 1).section(u' ', 0, 0).toInt();
        ASSERT_GT(job, 0) << row.name << ": " << qPrintable(error);
        EXPECT_TRUE(error.contains(QStringLiteral("job %1 was cancelled").arg(job))) << row.name << ": " << qPrintable(error);

        cups_job_t *jobs = nullptr;
        const int count = cupsGetJobs2(CUPS_HTTP_DEFAULT, &jobs, "e2e", 0, CUPS_WHICHJOBS_ALL);
        ipp_jstate_t state = IPP_JSTATE_PENDING;
        for (int i = 0; i < count; ++i) {
            if (jobs[i].id == job)
                state = jobs[i].state;
        }
        cupsFreeJobs(count, jobs);
        EXPECT_EQ(state, IPP_JSTATE_CANCELED) << row.name;
        EXPECT_EQ(cupsd->optionsOfJob(job, 1000), std::nullopt) << row.name << ": no part of it reached the printer";
    }
}

} // namespace
