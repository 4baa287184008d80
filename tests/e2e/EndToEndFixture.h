// SPDX-License-Identifier: MIT
// What every end-to-end test shares: one private scheduler per test process
// with the example printer's queue "e2e", a private home (its lpoptions), a
// way to run pde-host against it and the record as the filter received it.
#pragma once

#include "PrivateCupsd.h"

#include <QProcess>
#include <QTemporaryDir>

#include <cups/cups.h>
#include <gtest/gtest.h>

#include <memory>

namespace e2e {

inline const QString kBundle = QStringLiteral(PDE_BUNDLE_DIR);
inline const QString kHost = QStringLiteral(PDE_HOST_BINARY);
inline const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");
inline const QString kDocument = QStringLiteral(PDE_SOURCE_DIR "/examples/quarterly-report.txt");
inline const QString kPrefix = QStringLiteral("com.norvanta.qs.o.print.printsettings.");
inline const char *const kSuffixes[] = {"SecureVersion", "PrintType", "PrintTypeUserName",
                                        "PrintTypePassword", "DocumentNameType", "DocumentName"};

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
        queued = cupsd->addQueue(QStringLiteral("e2e"), kPpd);
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
    }

    // The six record entries as the filter received them for `job`, in the
    // record's order; "<absent>" for an entry it did not get.
    static QStringList recordSeenByFilter(int job)
    {
        const std::optional<QByteArray> options = cupsd->optionsOfJob(job);
        if (!options)
            return {QStringLiteral("<the filter never ran>")};
        cups_option_t *parsed = nullptr;
        const int count = cupsParseOptions(options->constData(), 0, &parsed);
        QStringList values;
        for (const char *suffix : kSuffixes) {
            const char *value = cupsGetOption((kPrefix + QLatin1StringView(suffix)).toUtf8().constData(), count, parsed);
            values.append(value != nullptr ? QString::fromUtf8(value) : QStringLiteral("<absent>"));
        }
        cupsFreeOptions(count, parsed);
        return values;
    }

    // pde-host with the built bundle, run to its end.
    static std::unique_ptr<QProcess> runHost(const QStringList &arguments, const QByteArray &input = {})
    {
        auto process = std::make_unique<QProcess>();
        process->setProgram(kHost);
        process->setArguments(QStringList{QStringLiteral("--bundle"), kBundle} + arguments);
        process->start();
        process->write(input);
        process->closeWriteChannel();
        process->waitForFinished(60000);
        return process;
    }

    static inline QTemporaryDir *home = nullptr;
    static inline QByteArray previousHome;
    static inline PrivateCupsd *cupsd = nullptr;
    static inline bool queued = false;
};

} // namespace e2e
