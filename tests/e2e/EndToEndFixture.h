// SPDX-License-Identifier: MIT
// What the end-to-end and pde-host tests share: the hosts run to their end,
// the record pde-host prints, whole files read and written, and, for the end-to-end tests, one private scheduler per
// test process with the example printer's queue "e2e" and two that hold
// every job, as a panel printer's queue does for a session agent: "held" of
// the same printer and "e2e-colour" of a colour one; a private home (its
// lpoptions), jobs submitted as other applications do and what the
// scheduler and the printer's filter got.
#pragma once

#include "PrivateCupsd.h"

#include "host/LpOptions.h"
#include "host/OrderedJson.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <cups/cups.h>
#include <gtest/gtest.h>

#include <memory>
#include <unistd.h>

namespace e2e {

using namespace Qt::StringLiterals;

inline const QString kBundle = QStringLiteral(PDE_BUNDLE_DIR);
inline const QString kHost = QStringLiteral(PDE_HOST_BINARY);
inline const QString kPrint = QStringLiteral(PDE_PRINT_BINARY);
inline const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");
inline const QString kDocument = QStringLiteral(PDE_SOURCE_DIR "/examples/quarterly-report.txt");
inline const QString kPrefix = QStringLiteral("com.norvanta.qs.o.print.printsettings.");
inline const QString kHeld = QStringLiteral("held");
inline const QString kColour = QStringLiteral("e2e-colour");
inline const char *const kSuffixes[] = {"SecureVersion",    "PrintType",        "PrintTypeUserName",
                                        "PrintTypePassword", "DocumentNameType", "DocumentName"};

// The words of `line`, a command line without paths.
inline QStringList words(const char *line)
{
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

// pde-host's arguments with the built bundle for `printer`: a queue, or a
// PPD file when it is a path.
inline QStringList forPrinter(const QString &printer, const QStringList &rest)
{
    return QStringList{u"--bundle"_s, kBundle, printer.contains(u'/') ? u"--ppd"_s : u"--printer"_s, printer} + rest;
}

struct HostRun {
    int exitCode = -1; // -1 when it did not end by itself within a minute
    QString out;
    QString err;
};

// `program` (pde-host unless named) run to its end, with `environment`
// ("NAME=value" to set, a bare "NAME" to unset) applied to the test's own and
// `input` on its standard input, or instead `stdinFrom` there: a file, or
// "closed" for none at all.
inline HostRun runHost(const QStringList &arguments, const QByteArray &input = {}, const QStringList &environment = {},
                       const QString &stdinFrom = {}, const QString &program = kHost)
{
    QProcess process;
    if (stdinFrom == u"closed")
        process.setChildProcessModifier([] { ::close(STDIN_FILENO); });
    else if (!stdinFrom.isEmpty())
        process.setStandardInputFile(stdinFrom);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(u"PDE_PLUGIN_PATH"_s);
    for (const QString &entry : environment) {
        if (entry.contains(u'='))
            env.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
        else
            env.remove(entry);
    }
    process.setProcessEnvironment(env);
    process.start(program, arguments);
    if (stdinFrom.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

// The content of the file at `path`; empty when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Writes `content` to the file at `path`; false when that fails.
inline bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

// The six record entries among `options` ("name=value"), in the record's
// order; "<absent>" for one they lack.
inline QStringList recordOf(const QStringList &options)
{
    QStringList values;
    for (const char *suffix : kSuffixes) {
        const QString name = kPrefix + QLatin1StringView(suffix) + u'=';
        const QStringList given = options.filter(QRegularExpression(u'^' + QRegularExpression::escape(name)));
        values.append(given.isEmpty() ? u"<absent>"_s : given.last().mid(name.size()));
    }
    return values;
}

// The record as `pde-host record` printed it.
inline QStringList recordIn(const QString &json)
{
    QString error;
    const std::optional<pdehost::OrderedStrings> entries = pdehost::parseStringObject(json.toUtf8(), &error);
    if (!entries)
        return {u"<not a record: "_s + error + u'>'};
    QStringList options;
    for (const auto &[key, value] : *entries)
        options.append(key + u'=' + value);
    return recordOf(options);
}

class EndToEnd : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        home = new QTemporaryDir;
        previousHome = qgetenv("HOME");
        qputenv("HOME", home->path().toUtf8()); // ~/.cups/lpoptions stays in here
        cupsd = new PrivateCupsd;
        if (!cupsd->running())
            return;
        qputenv("CUPS_SERVER", cupsd->server().toUtf8());
        qputenv("CUPS_SERVERROOT", cupsd->serverRoot().toUtf8());
        cupsSetServer(cupsd->server().toUtf8().constData());
        const QStringList holding{u"job-hold-until-default=indefinite"_s};
        queued = cupsd->addQueue(u"e2e"_s, kPpd) && cupsd->addQueue(kHeld, kPpd, holding)
                 && cupsd->addQueue(kColour, QStringLiteral(PDE_SOURCE_DIR "/tests/data/dialog-colour-mfp.ppd"), holding);
    }
    static void TearDownTestSuite()
    {
        delete cupsd;
        cupsd = nullptr;
        qputenv("HOME", previousHome);
        delete home;
    }
    void SetUp() override
    {
        // A developer without the scheduler installed may skip; CI installs
        // it, so there a scheduler that does not start is a failure.
        if (!cupsd->running() && qEnvironmentVariableIsSet("CI"))
            FAIL() << qPrintable(cupsd->problem());
        if (!cupsd->running())
            GTEST_SKIP() << qPrintable(cupsd->problem());
        ASSERT_TRUE(queued) << qPrintable(cupsd->problem());
        QFile::remove(pdehost::userLpOptionsPath());
    }

    // A job as an application without panels submits it, as `user` when
    // one is given: no options at all; 0 when it fails.
    static int submitWithLp(const QString &title, const QString &queue = kHeld, const QString &user = {})
    {
        QStringList arguments{u"-h"_s, cupsd->server(), u"-d"_s, queue, u"-t"_s, title, kDocument};
        if (!user.isEmpty())
            arguments << u"-U"_s << user;
        // "request id is held-12 (1 file(s))"
        return runHost(arguments, {}, {}, {}, u"lp"_s).out.section(u' ', 3, 3).section(u'-', -1).toInt();
    }

    // The same job as a GTK application submits it, through the destination
    // API (Create-Job, then Send-Document); 0 when it fails.
    static int submitAsGtk(const QString &title)
    {
        const std::unique_ptr<cups_dest_t, void (*)(cups_dest_t *)> dest(
            cupsGetNamedDest(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), nullptr),
            [](cups_dest_t *d) { cupsFreeDests(1, d); });
        const std::unique_ptr<cups_dinfo_t, decltype(&cupsFreeDestInfo)> info(
            dest ? cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest.get()) : nullptr, &cupsFreeDestInfo);
        const QByteArray text = readFile(kDocument);
        int job = 0;
        if (!info
            || cupsCreateDestJob(CUPS_HTTP_DEFAULT, dest.get(), info.get(), &job, title.toUtf8().constData(), 0, nullptr)
                   != IPP_STATUS_OK
            || cupsStartDestDocument(CUPS_HTTP_DEFAULT, dest.get(), info.get(), job, "report", CUPS_FORMAT_TEXT, 0,
                                     nullptr, 1)
                   != HTTP_STATUS_CONTINUE
            || cupsWriteRequestData(CUPS_HTTP_DEFAULT, text.constData(), size_t(text.size())) != HTTP_STATUS_CONTINUE
            || cupsFinishDestDocument(CUPS_HTTP_DEFAULT, dest.get(), info.get()) != IPP_STATUS_OK)
            return 0;
        return job;
    }

    // The job's attributes as the scheduler shows them to its owner,
    // "name=value", but for the scheduler's clock.
    static QStringList jobAttributes(int job)
    {
        ipp_t *request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
        ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr,
                     u"ipp://localhost/jobs/%1"_s.arg(job).toUtf8().constData());
        ipp_t *response = cupsDoRequest(CUPS_HTTP_DEFAULT, request, "/");
        QStringList seen;
        for (ipp_attribute_t *attribute = ippFirstAttribute(response); attribute != nullptr;
             attribute = ippNextAttribute(response)) {
            char value[1024];
            const QByteArray name = ippGetName(attribute);
            if (ippGetGroupTag(attribute) == IPP_TAG_JOB && !name.isEmpty() && name != "job-printer-up-time") {
                ippAttributeString(attribute, value, sizeof value);
                seen.append(QString::fromUtf8(name) + u'=' + QString::fromUtf8(value));
            }
        }
        ippDelete(response);
        return seen;
    }

    // The value of the job's attribute `name`; empty when it has none.
    static QString jobAttribute(int job, const QString &name)
    {
        const QStringList given = jobAttributes(job).filter(QRegularExpression(u'^' + name + u'='));
        return given.isEmpty() ? QString() : given.first().mid(name.size() + 1);
    }

    // The options the printer's filter got for `job`, "name=value".
    static QStringList optionsSeenByFilter(int job)
    {
        const std::optional<QByteArray> options = cupsd->optionsOfJob(job);
        if (!options)
            return {u"<the filter never ran>"_s};
        cups_option_t *parsed = nullptr;
        const int count = cupsParseOptions(options->constData(), 0, &parsed);
        QStringList seen;
        for (int i = 0; i < count; ++i)
            seen.append(QString::fromUtf8(parsed[i].name) + u'=' + QString::fromUtf8(parsed[i].value));
        cupsFreeOptions(count, parsed);
        return seen;
    }

    static QStringList recordSeenByFilter(int job) { return recordOf(optionsSeenByFilter(job)); }

    static inline QTemporaryDir *home = nullptr;
    static inline QByteArray previousHome;
    static inline PrivateCupsd *cupsd = nullptr;
    static inline bool queued = false;
};

} // namespace e2e
