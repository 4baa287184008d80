// SPDX-License-Identifier: MIT
// pde-agent: the session agent. It shows the printer's panels for every job
// of the user that a panel printer's queue holds, whichever application
// printed it, and prints, keeps or cancels the job as the user says.
#include "host/HostTranslations.h"
#include "host/SessionAgent.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLockFile>
#include <QStandardPaths>

#include <cstdio>

namespace {

const char *const kHelp = R"(Usage: pde-agent [--once] [--bundle PATH]...

The session agent of print dialog extensions. Applications that know nothing
of extension panels (web browsers, office suites, document viewers, lp)
print to a queue whose PPD calls for a panel; the administrator lets that
queue hold every job (lpadmin -p NAME -o job-hold-until-default=indefinite).
The agent notices each of your jobs that such a queue holds and opens a
window for it: the printer's panels, restored from the job's own options,
and a Summary. Print saves every panel, writes their settings into the job
and releases it; Keep Held leaves it waiting; Cancel Job cancels it. A job
that is released, cancelled or printed elsewhere closes its window, which
says so. When the scheduler goes away the agent waits for it, pausing longer
each time, and then picks up every job that waits.

One agent runs per user session (started by the desktop's autostart);
another start exits at once. Without an agent, held jobs wait: list them
with "pde-host jobs", release them with "pde-host --printer NAME release
JOBID".

Options:
  --once          handle the jobs waiting now, and exit when their windows
                  are closed
  --bundle PATH   also load this bundle (repeatable); bundles are otherwise
                  found by file name in the folders of PDE_PLUGIN_PATH, then
                  in @INSTALLED_BUNDLE_DIR@
  -h, --help      show this help

Environment:
  CUPS_SERVER            the scheduler to watch (default: the local one)
  PDE_SCHEDULER_TIMEOUT  seconds a scheduler request may take (default 10)

Exit status: 0 when it ends (or another agent runs), 1 for a usage error or
no display.
)";

} // namespace

int main(int argc, char **argv)
{
    // The arguments are read before the application exists, so that --help
    // and usage errors work without a display.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    const QCommandLineOption onceOption(QStringLiteral("once"));
    const QCommandLineOption bundleOption(QStringLiteral("bundle"), {}, QStringLiteral("PATH"));
    const QCommandLineOption helpOption(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    parser.addOptions({onceOption, bundleOption, helpOption});
    if (!parser.parse(arguments) || !parser.positionalArguments().isEmpty()) {
        const QString problem = parser.errorText().isEmpty()
                                    ? QStringLiteral("unexpected argument \"%1\"").arg(parser.positionalArguments().value(0))
                                    : parser.errorText();
        std::fprintf(stderr, "pde-agent: %s (see pde-agent --help)\n", qUtf8Printable(problem));
        return 1;
    }
    if (parser.isSet(helpOption)) {
        std::fputs(qUtf8Printable(QString::fromUtf8(kHelp).replace(QStringLiteral("@INSTALLED_BUNDLE_DIR@"),
                                                                   QStringLiteral(PDE_INSTALLED_BUNDLE_DIR))),
                   stdout);
        return 0;
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        std::fputs("pde-agent: there is no display to show windows on (neither DISPLAY nor WAYLAND_DISPLAY is set)\n",
                   stderr);
        return 1;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pde-agent"));
    QApplication::setQuitOnLastWindowClosed(false);
    pdehost::installTranslations();

    // One agent per user session.
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    QDir().mkpath(runtime);
    QLockFile lock(QDir(runtime).filePath(QStringLiteral("pde-agent.lock")));
    if (!lock.tryLock(0)) {
        qint64 pid = 0;
        QString host;
        QString application;
        lock.getLockInfo(&pid, &host, &application);
        std::fprintf(stderr, "pde-agent: an agent already runs in this session (process %lld)\n",
                     static_cast<long long>(pid));
        return 0;
    }

    pdehost::SessionAgent::Settings settings;
    settings.once = parser.isSet(onceOption);
    settings.explicitBundles = parser.values(bundleOption);
    pdehost::SessionAgent agent(settings);
    QObject::connect(&agent, &pdehost::SessionAgent::finished, &app, &QCoreApplication::quit);
    agent.start();
    return app.exec();
}
