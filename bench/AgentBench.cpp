// SPDX-License-Identifier: MIT
// The session agent against a private scheduler: how long a held job waits
// for its window (from the job's creation to the window shown, beside the
// job's creation alone), how much CPU time an idle agent takes per second,
// and the resident memory of an idle agent beside an idle pde-print.
//
//   PDE_BENCH_IDLE_SECONDS  how long the idle processes are watched (60)
//   PDE_BENCH_REPETITIONS   jobs whose latency is measured (21)
#include "RatioReporter.h"

#include "../tests/e2e/PrivateCupsd.h"
#include "host/HeldJobWindow.h"
#include "host/SessionAgent.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPointer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cups/cups.h>
#include <unistd.h>

#include <chrono>
#include <memory>

namespace {

const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");
const QString kBundle = QStringLiteral(PDE_BUNDLE_DIR);
const QString kBin = QStringLiteral(PDE_BIN_DIR);
const QString kQueue = QStringLiteral("bench");

e2e::PrivateCupsd *cupsd = nullptr;
// One agent for every repetition, as in a session: its polling goes on
// between the jobs.
pdehost::SessionAgent *agent = nullptr;

int environmentNumber(const char *name, int fallback)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok && value > 0 ? value : fallback;
}

bool ready(benchmark::State &state)
{
    if (cupsd == nullptr || !cupsd->running()) {
        state.SkipWithError(cupsd != nullptr ? qPrintable(cupsd->problem()) : "no scheduler");
        return false;
    }
    return true;
}

// A one-page job to the holding queue, as an application sends it.
int submitJob()
{
    cups_dest_t *dest = cupsGetNamedDest(CUPS_HTTP_DEFAULT, kQueue.toUtf8().constData(), nullptr);
    cups_dinfo_t *info = dest != nullptr ? cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest) : nullptr;
    int job = 0;
    if (info != nullptr && cupsCreateDestJob(CUPS_HTTP_DEFAULT, dest, info, &job, "bench", 0, nullptr) == IPP_STATUS_OK
        && cupsStartDestDocument(CUPS_HTTP_DEFAULT, dest, info, job, "bench", CUPS_FORMAT_TEXT, 0, nullptr, 1)
               == HTTP_STATUS_CONTINUE) {
        cupsWriteRequestData(CUPS_HTTP_DEFAULT, "page\n", 5);
        cupsFinishDestDocument(CUPS_HTTP_DEFAULT, dest, info);
    }
    cupsFreeDestInfo(info);
    cupsFreeDests(1, dest);
    return job;
}

void BM_Baseline_SubmitJob(benchmark::State &state)
{
    if (!ready(state))
        return;
    for (auto _ : state) {
        const int job = submitJob();
        state.PauseTiming();
        cupsCancelJob2(CUPS_HTTP_DEFAULT, kQueue.toUtf8().constData(), job, 1);
        state.ResumeTiming();
    }
}

// Manual time: each iteration is one job, from before its creation until
// the agent has shown its window.
void BM_JobCreatedToWindowShown(benchmark::State &state)
{
    if (!ready(state))
        return;
    // Windows of earlier benchmarks' jobs may still come: each is known by
    // its job.
    QHash<int, QPointer<pdehost::HeldJobWindow>> shown;
    const QMetaObject::Connection connection = QObject::connect(
        agent, &pdehost::SessionAgent::windowShown,
        [&shown](pdehost::HeldJobWindow *window) { shown.insert(window->job().id, window); });
    static QRandomGenerator random(20261123);
    for (auto _ : state) {
        // Jobs come at any moment of the agent's polling cycle, not right
        // after the window of the previous one.
        QTest::qWait(static_cast<int>(random.bounded(500)));
        const auto start = std::chrono::steady_clock::now();
        const int job = submitJob();
        if (!QTest::qWaitFor([&shown, job] { return shown.contains(job); }, 5000)) {
            state.SkipWithError("no window within 5 s");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        if (shown.value(job))
            shown.value(job)->close();
        cupsCancelJob2(CUPS_HTTP_DEFAULT, kQueue.toUtf8().constData(), job, 1);
    }
    QObject::disconnect(connection);
}

struct ProcessUse {
    double cpuSecondsPerSecond = 0;
    double residentKiB = 0;
};

// Watches an idle process for `seconds` after it settled: its CPU time per
// second of wall time and its resident memory at the end.
ProcessUse watchIdle(QProcess &process, int seconds)
{
    const auto cpuSeconds = [&process] {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(process.processId()));
        if (!stat.open(QIODevice::ReadOnly))
            return 0.0;
        // The fields after the command's closing parenthesis; utime and
        // stime are the 12th and 13th of them.
        const QList<QByteArray> fields = stat.readAll().split(')').last().trimmed().split(' ');
        return (fields.value(11).toDouble() + fields.value(12).toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
    };
    QTest::qWait(3000);
    const double before = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    QTest::qWait(seconds * 1000);
    ProcessUse use;
    use.cpuSecondsPerSecond = (cpuSeconds() - before) / (static_cast<double>(wall.elapsed()) / 1000.0);
    QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                use.residentKiB = line.mid(6).trimmed().split(' ').value(0).toDouble();
        }
    }
    process.terminate();
    process.waitForFinished(10000);
    return use;
}

QProcessEnvironment sessionEnvironment(const QString &runtime)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

// Manual time: the CPU time the idle agent took per second. The resident
// memory of the agent and of an idle pde-print are counters beside it.
void BM_IdleAgentCpuPerSecond(benchmark::State &state)
{
    if (!ready(state))
        return;
    const int seconds = environmentNumber("PDE_BENCH_IDLE_SECONDS", 60);
    QTemporaryDir runtime;
    for (auto _ : state) {
        QProcess agent;
        agent.setProcessEnvironment(sessionEnvironment(runtime.path()));
        agent.start(kBin + QStringLiteral("/pde-agent"), {});
        QProcess dialog;
        dialog.setProcessEnvironment(sessionEnvironment(runtime.path()));
        dialog.start(kBin + QStringLiteral("/pde-print"), {QStringLiteral("--printer"), kQueue, QStringLiteral(PDE_SOURCE_DIR "/examples/quarterly-report.txt")});
        if (!agent.waitForStarted() || !dialog.waitForStarted()) {
            state.SkipWithError("pde-agent or pde-print did not start");
            break;
        }
        const ProcessUse idleAgent = watchIdle(agent, seconds);
        const ProcessUse idleDialog = watchIdle(dialog, 1);
        state.SetIterationTime(idleAgent.cpuSecondsPerSecond);
        state.counters["agent_rss_KiB"] = idleAgent.residentKiB;
        state.counters["pde_print_rss_KiB"] = idleDialog.residentKiB;
    }
}

} // namespace

BENCHMARK(BM_Baseline_SubmitJob)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_JobCreatedToWindowShown)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(environmentNumber("PDE_BENCH_REPETITIONS", 21))
    ->ReportAggregatesOnly();
BENCHMARK(BM_IdleAgentCpuPerSecond)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("PDE_PLUGIN_PATH", QFileInfo(kBundle).path().toUtf8());
    QApplication app(argc, argv);
    e2e::PrivateCupsd scheduler;
    if (scheduler.running()) {
        qputenv("CUPS_SERVER", scheduler.server().toUtf8());
        cupsSetServer(scheduler.server().toUtf8().constData());
        scheduler.addQueue(kQueue, kPpd, {QStringLiteral("job-hold-until-default=indefinite")});
        cupsd = &scheduler;
    }
    pdehost::SessionAgent sessionAgent({});
    sessionAgent.start();
    QTest::qWait(500); // its first scan
    agent = &sessionAgent;
    // Latency: the median job's window within 300 ms; idle: at most 1 ms of
    // CPU time per second (0.1 %).
    const std::string latency = "BM_JobCreatedToWindowShown/iterations:1/repeats:"
                                + std::to_string(environmentNumber("PDE_BENCH_REPETITIONS", 21)) + "/manual_time";
    return runWithRatioReport(argc, argv, {
        {latency, "", 300e6},
        {latency, "BM_Baseline_SubmitJob", 300.0},
        {"BM_IdleAgentCpuPerSecond/iterations:1/manual_time", "", 1e6},
    });
}
