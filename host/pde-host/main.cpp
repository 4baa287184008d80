// SPDX-License-Identifier: MIT
// pde-host: a command-line print dialog host. It loads the extension bundles
// a printer calls for, drives their panels headlessly as a user would, and
// prints the resulting record, summary or control state, renders the panel,
// or submits a job to CUPS with the record as job options.
#include "host/BundleLocator.h"
#include "host/CupsJob.h"
#include "host/HeldJobs.h"
#include "host/OrderedJson.h"
#include "host/PanelDriver.h"
#include "host/PrinterPanels.h"
#include "host/RecordPrivacy.h"
#include "host/SecretInput.h"
#include "host/SettingsFile.h"
#include "host/TerminalText.h"
#include "pdekit/Alert.h"
#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "pdekit/PreferredLanguages.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QTextStream>
#include <QWidget>

#include <cstdio>

namespace {

using namespace pdehost;

enum ExitCode {
    kSuccess = 0,
    kUsage = 1,
    kCannotLoad = 2,
    kSaveRefused = 3,
    kValueRefused = 4,
};

const char *const kHelp = R"(Usage: pde-host [OPTION]... (--ppd FILE | --printer NAME) COMMAND [ARGUMENTS]
  or:  pde-host [OPTION]... [--printer NAME] jobs

A print dialog host without a window. It loads the print dialog extension
bundles that a printer's PPD calls for (*APDialogExtension), shows their
panels to nobody, and does what a user of the print dialog would do.

Printer:
  --ppd FILE             the printer described by a PPD file
  --printer NAME         a CUPS destination (NAME or NAME/INSTANCE); its PPD
                         comes from the scheduler, its saved options
                         (lpoptions) seed the job's print settings
  --option KEY=VALUE     a job option, marked in the PPD as well (repeatable)

Bundles:
  --bundle PATH          load this bundle (repeatable). Bundles the PPD calls
                         for are found by file name among these, then in the
                         folders of PDE_PLUGIN_PATH, then in
                         @INSTALLED_BUNDLE_DIR@

Values:
  --settings FILE        a JSON object of string values that the panels
                         restore from; `record` writes it back after a
                         successful save (atomically)
  --set KEY=VALUE        a value entered in the control bound to KEY
                         (repeatable); for the job-type panel the keys are
                         printType (0 none, 1 secure, 2 sample, 3 public,
                         4 second secure kind),
                         userName, password, documentNameType (0 automatic,
                         1 entered) and documentName
  --password-stdin       read the password (the first line, at most 1024
                         bytes) from standard input, so that it never shows
                         in the process list
  --lang LANG            the language of the panels (e.g. ja)
  --format json|lp       how `record` prints the settings (default json;
                         lp prints shell-quoted -o arguments for lp)

Commands:
  panels                 one line per panel: its kind, a tab, its name
  record                 restore, enter the --set values, save; print the
                         job's print settings in the order they were written
  summary                as record, then print each panel's summary lines,
                         "Title: value", in display order
  state                  after entering the values: the controls as the user
                         sees them, as JSON (value, enabled, caption colour)
  screenshot OUT.png     after entering the values: render the panels
  print FILE...          as record, then submit the files to the printer
                         (--printer) with the settings as job options; a job
                         that fails on the way is cancelled
  protect-record [--dry-run]
                         for administrators: add the record keys that the
                         installed bundles declare private to JobPrivateValues
                         of every policy of the scheduler, so that other users
                         cannot read them from its jobs; prints the change
                         (--dry-run: only prints it)
  jobs                   one line per job of yours that its queue holds and
                         whose PPD calls for a panel (only NAME's with
                         --printer): JOBID, PRINTER, TITLE and STATE, tab
                         separated
  release JOBID          restore the panels from the held job's own options,
                         enter the --set values, save, write the entries the
                         panels wrote into the job and release it (--printer
                         names the job's queue)

Exit status:
  0  success
  1  usage error
  2  a bundle, PPD, settings file, printer, job or scheduler that cannot be
     loaded or reached (PDE_SCHEDULER_TIMEOUT seconds, default 10), or a job
     that the scheduler does not let this user change (its reason follows)
  3  a panel refused the save; its alert is on standard error as "alert: TEXT"
  4  a control refused a value (which key, and what it refused)
)";

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

int fail(ExitCode code, const QString &message)
{
    err() << "pde-host: " << terminalText(message) << Qt::endl;
    return code;
}

std::optional<std::pair<QString, QString>> keyValue(const QString &text)
{
    const qsizetype equals = text.indexOf(u'=');
    if (equals <= 0)
        return std::nullopt;
    return std::make_pair(text.left(equals), text.mid(equals + 1));
}

QString shellQuoted(const QString &text)
{
    QString quoted = text;
    quoted.replace(QStringLiteral("'"), QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}

void writeOut(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

// A field of a tab-separated line: control characters become spaces, so
// that a title cannot start a new field or line.
QString field(QString text)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return text;
}

// `jobs`: the user's held jobs on queues whose PPD calls for a panel. A
// queue that calls for a bundle that cannot be found is said on standard
// error, its jobs still listed: they wait for a panel.
int listHeldJobs(const QString &printer, const QStringList &explicitBundles)
{
    QString error;
    const std::unique_ptr<SchedulerConnection> scheduler = SchedulerConnection::open(&error);
    if (!scheduler)
        return fail(kCannotLoad, error);
    const QString queue = printer.section(u'/', 0, 0);
    if (!queue.isEmpty()) {
        const std::optional<QStringList> bundles = bundlesCalledForBy(*scheduler, queue, &error);
        if (!bundles)
            return fail(kCannotLoad, error);
        if (bundles->isEmpty()) {
            err() << "pde-host: " << queue << ": its PPD calls for no panel (or it has none), so no job waits for one"
                  << Qt::endl;
            return kSuccess;
        }
    }
    const std::optional<QList<HeldJob>> jobs = heldJobsOf(*scheduler, QString::fromUtf8(cupsUser()), queue, &error);
    if (!jobs)
        return fail(kCannotLoad, queue.isEmpty() ? error : QStringLiteral("%1: %2").arg(queue, error));
    QHash<QString, bool> callsForPanels;
    for (const HeldJob &job : *jobs) {
        if (!callsForPanels.contains(job.printer)) {
            const std::optional<QStringList> bundles = bundlesCalledForBy(*scheduler, job.printer, &error);
            if (!bundles)
                err() << "pde-host: " << error << Qt::endl;
            callsForPanels[job.printer] = bundles && !bundles->isEmpty();
            if (bundles) {
                for (const QString &problem : locateBundles(explicitBundles, *bundles, bundleSearchDirectories()).problems)
                    err() << "pde-host: " << job.printer << ": " << problem << Qt::endl;
            }
        }
        if (callsForPanels.value(job.printer))
            writeOut(QStringLiteral("%1\t%2\t%3\t%4\n").arg(job.id).arg(field(job.printer), field(job.title), job.state).toUtf8());
    }
    // Once: whether other users can read the record's private values from
    // the user's jobs (judged by the newest job that carries them).
    QStringList problems;
    const QStringList privateKeys = installedPrivateSettingsKeys(explicitBundles, &problems);
    const std::optional<QStringList> shown =
        privateKeys.isEmpty() ? std::nullopt : recordKeysShownToOthers(0, privateKeys, &error);
    if (shown && !shown->isEmpty())
        err() << "pde-host: " << terminalText(recordPrivacyWarning(*shown)) << Qt::endl;
    return kSuccess;
}

// Standard error carries this host's own messages and the extensions' logs;
// Qt's remarks about running without a display are not the user's concern.
void filterMessages(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QByteArray category(context.category != nullptr ? context.category : "");
    if (category.startsWith("pde.") || category.startsWith("com.") || type == QtFatalMsg)
        err() << category << ": " << terminalText(message) << Qt::endl;
}

} // namespace

int main(int argc, char **argv)
{
    standardInputWasOpen(); // before anything opens a file that could take its number
    // Panels are widgets; this host shows them to nobody.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(filterMessages);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pde-host"));

    QCommandLineParser parser;
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    const QCommandLineOption bundleOption(QStringLiteral("bundle"), {}, QStringLiteral("PATH"));
    const QCommandLineOption ppdOption(QStringLiteral("ppd"), {}, QStringLiteral("FILE"));
    const QCommandLineOption printerOption(QStringLiteral("printer"), {}, QStringLiteral("NAME"));
    const QCommandLineOption optionOption(QStringLiteral("option"), {}, QStringLiteral("KEY=VALUE"));
    const QCommandLineOption settingsOption(QStringLiteral("settings"), {}, QStringLiteral("FILE"));
    const QCommandLineOption langOption(QStringLiteral("lang"), {}, QStringLiteral("LANG"));
    const QCommandLineOption setOption(QStringLiteral("set"), {}, QStringLiteral("KEY=VALUE"));
    const QCommandLineOption passwordStdinOption(QStringLiteral("password-stdin"));
    const QCommandLineOption dryRunOption(QStringLiteral("dry-run"));
    const QCommandLineOption formatOption(QStringLiteral("format"), {}, QStringLiteral("FORMAT"), QStringLiteral("json"));
    const QCommandLineOption helpOption(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    for (const QCommandLineOption &option : {bundleOption, ppdOption, printerOption, optionOption, settingsOption,
                                             langOption, setOption, passwordStdinOption, dryRunOption, formatOption,
                                             helpOption})
        parser.addOption(option);
    if (!parser.parse(QApplication::arguments()))
        return fail(kUsage, parser.errorText() + QStringLiteral(" (see pde-host --help)"));
    if (parser.isSet(helpOption)) {
        writeOut(QString::fromUtf8(kHelp).replace(QStringLiteral("@INSTALLED_BUNDLE_DIR@"),
                                                  QStringLiteral(PDE_INSTALLED_BUNDLE_DIR)).toUtf8());
        return kSuccess;
    }

    const QStringList positional = parser.positionalArguments();
    const QString command = positional.value(0);
    const QStringList commandArguments = positional.mid(1);
    static const QStringList kCommands{QStringLiteral("panels"), QStringLiteral("record"), QStringLiteral("summary"),
                                       QStringLiteral("state"), QStringLiteral("screenshot"), QStringLiteral("print"),
                                       QStringLiteral("jobs"), QStringLiteral("release"),
                                       QStringLiteral("protect-record")};
    if (command.isEmpty())
        return fail(kUsage, QStringLiteral("no command given (see pde-host --help)"));
    if (!kCommands.contains(command))
        return fail(kUsage, QStringLiteral("unknown command \"%1\" (see pde-host --help)").arg(command));
    if (command == u"jobs") {
        if (parser.isSet(ppdOption) || !commandArguments.isEmpty())
            return fail(kUsage, QStringLiteral("jobs takes no arguments and no --ppd (see pde-host --help)"));
        return listHeldJobs(parser.value(printerOption), parser.values(bundleOption));
    }
    if (command == u"protect-record") {
        if (!commandArguments.isEmpty())
            return fail(kUsage, QStringLiteral("protect-record takes no arguments, but got \"%1\"").arg(commandArguments.first()));
        QStringList problems;
        const QStringList keys = installedPrivateSettingsKeys(parser.values(bundleOption), &problems);
        for (const QString &problem : problems)
            err() << "pde-host: " << terminalText(problem) << Qt::endl;
        QString error;
        const std::optional<QStringList> report = protectRecord(keys, parser.isSet(dryRunOption), &error);
        if (!report)
            return fail(kCannotLoad, error);
        for (const QString &line : *report)
            writeOut((terminalText(line) + u'\n').toUtf8());
        return kSuccess;
    }
    if (parser.isSet(ppdOption) == parser.isSet(printerOption))
        return fail(kUsage, QStringLiteral("give exactly one of --ppd FILE and --printer NAME"));
    if (command == u"screenshot" && commandArguments.size() != 1)
        return fail(kUsage, QStringLiteral("screenshot needs one output file: screenshot OUT.png"));
    if (command == u"print" && commandArguments.isEmpty())
        return fail(kUsage, QStringLiteral("print needs at least one file to print"));
    if (command == u"print" && !parser.isSet(printerOption))
        return fail(kUsage, QStringLiteral("print needs a CUPS printer (--printer NAME), not a PPD file"));
    if (command == u"release" && (commandArguments.size() != 1 || !parser.isSet(printerOption)))
        return fail(kUsage, QStringLiteral("release needs the job's queue and id: --printer NAME release JOBID"));
    if (command == u"release" && parser.isSet(settingsOption))
        return fail(kUsage, QStringLiteral("release restores the panels from the job; --settings does not apply"));
    if (command != u"print" && command != u"screenshot" && command != u"release" && !commandArguments.isEmpty())
        return fail(kUsage, QStringLiteral("%1 takes no arguments, but got \"%2\"").arg(command, commandArguments.first()));
    const QString format = parser.value(formatOption);
    if (format != u"json" && format != u"lp")
        return fail(kUsage, QStringLiteral("--format must be json or lp, not \"%1\"").arg(format));

    Options options;
    for (const QString &text : parser.values(optionOption)) {
        const auto pair = keyValue(text);
        if (!pair)
            return fail(kUsage, QStringLiteral("--option \"%1\" is not KEY=VALUE").arg(text));
        options.append(*pair);
    }
    QList<std::pair<QString, QString>> values;
    for (const QString &text : parser.values(setOption)) {
        const auto pair = keyValue(text);
        if (!pair)
            return fail(kUsage, QStringLiteral("--set \"%1\" is not KEY=VALUE").arg(text));
        values.append(*pair);
    }
    if (parser.isSet(passwordStdinOption)) {
        QString problem;
        std::optional<QString> password = readSecretLine(&problem);
        if (!password)
            return fail(kUsage, QStringLiteral("--password-stdin: %1").arg(problem));
        values.append({QStringLiteral("password"), std::move(*password)});
    }
    if (parser.isSet(langOption))
        pde::setPreferredLanguages(QStringList{parser.value(langOption)});

    // A job to release: its own options come first, as the panels restore
    // from them.
    QString error;
    std::unique_ptr<SchedulerConnection> scheduler;
    std::optional<HeldJobOptions> heldJob;
    if (command == u"release") {
        bool isNumber = false;
        const int id = commandArguments.front().toInt(&isNumber);
        if (!isNumber || id <= 0)
            return fail(kUsage, QStringLiteral("release needs a job id, not \"%1\"").arg(commandArguments.front()));
        scheduler = SchedulerConnection::open(&error);
        if (!scheduler)
            return fail(kCannotLoad, error);
        heldJob = readHeldJob(*scheduler, id, parser.value(printerOption), QString::fromUtf8(cupsUser()), &error);
        if (!heldJob)
            return fail(kCannotLoad, error);
        options = heldJob->options + options;
    }

    // The printer and its panels.
    const std::unique_ptr<PrinterPanels> printer = PrinterPanels::open(
        {parser.value(ppdOption), parser.value(printerOption)}, options, parser.values(bundleOption), &error);
    if (!printer)
        return fail(kCannotLoad, error);
    PrinterSession *session = &printer->session();

    const QString settingsFile = parser.value(settingsOption);
    if (!settingsFile.isEmpty()) {
        const std::optional<OrderedStrings> entries = readSettingsFile(settingsFile, &error);
        if (!entries)
            return fail(kCannotLoad, error);
        for (const auto &[key, value] : *entries)
            session->printSettings()->setValue(key, value);
    }

    for (const QString &problem : printer->problems())
        err() << "pde-host: " << terminalText(problem) << Qt::endl;
    if (printer->panels().empty())
        return fail(kCannotLoad, printer->problems().isEmpty() ? QStringLiteral("the printer calls for no extension bundle, and none was given with --bundle")
                                                               : QStringLiteral("no panel could be loaded"));

    if (command == u"panels") {
        for (HostedPanel &hosted : printer->panels())
            writeOut((terminalText(hosted.panel->panelKind()) + u'\t' + terminalText(hosted.panel->panelName()) + u'\n').toUtf8());
        return kSuccess;
    }

    // Alerts and help pages go to standard error: nobody is there to click.
    pde::setAlertHandler([](const pde::Alert &alert) { err() << "alert: " << terminalText(alert.messageText) << Qt::endl; });
    pde::HelpViewer::instance().setPageHandler(
        [](const QString &, const QUrl &page) { err() << "help: " << terminalText(page.toString()) << Qt::endl; });

    // What a dialog does when it opens: views, restore, show.
    QList<QWidget *> views;
    for (HostedPanel &hosted : printer->panels()) {
        QWidget *view = hosted.panel->panelView();
        if (view == nullptr)
            return fail(kCannotLoad, QStringLiteral("%1: the panel has no view").arg(hosted.bundle->bundlePath()));
        hosted.panel->restoreValuesAndReturnError(nullptr);
        hosted.panel->willShow();
        view->show();
        views.append(view);
    }

    for (const auto &[key, value] : values) {
        bool taken = false;
        for (QWidget *view : views) {
            PanelDriver driver(view);
            if (!driver.hasKey(key))
                continue;
            if (const std::optional<QString> refused = driver.enter(key, value))
                return fail(kValueRefused, QStringLiteral("%1: %2").arg(key, *refused));
            taken = true;
            break;
        }
        if (!taken)
            return fail(kValueRefused, QStringLiteral("%1: no panel has a control for this key").arg(key));
    }

    if (command == u"state") {
        for (QWidget *view : views)
            writeOut(PanelDriver(view).stateJson());
        return kSuccess;
    }
    if (command == u"screenshot") {
        QImage image;
        int width = 0;
        int height = 0;
        for (QWidget *view : views) {
            view->adjustSize();
            width = std::max(width, view->width());
            height += view->height();
        }
        image = QImage(width, height, QImage::Format_ARGB32_Premultiplied);
        image.fill(views.front()->palette().color(QPalette::Window));
        int top = 0;
        for (QWidget *view : views) {
            view->render(&image, QPoint(0, top));
            top += view->height();
        }
        if (!image.save(commandArguments.front()))
            return fail(kCannotLoad, QStringLiteral("%1: cannot be written").arg(commandArguments.front()));
        return kSuccess;
    }

    // record, summary, print: the save of every panel.
    const pde::PrintSettings beforeSave = *session->printSettings();
    if (const std::optional<std::size_t> refused = printer->saveAll())
        return fail(kSaveRefused, QStringLiteral("%1 refused the save").arg(printer->panels()[*refused].panel->panelName()));
    // The panels hold the protected form now; the clear text is not needed.
    for (auto &[key, value] : values)
        wipe(value);
    OrderedStrings record;
    for (const QString &key : session->printSettings()->keys())
        record.append({key, pde::PrintSettings::optionText(*session->printSettings()->value(key))});

    if (command == u"release") {
        if (!releaseWithEntries(*scheduler, heldJob->job.id, changedEntries(beforeSave, *session->printSettings()), &error))
            return fail(kCannotLoad, error);
        writeOut(QStringLiteral("%1-%2\n").arg(heldJob->job.printer).arg(heldJob->job.id).toUtf8());
        return kSuccess;
    }

    if (command == u"record" && !settingsFile.isEmpty() && !writeSettingsFile(settingsFile, record, &error))
        return fail(kCannotLoad, error);

    if (command == u"record") {
        if (format == u"lp") {
            QString line;
            for (const auto &[key, value] : record)
                line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + QStringLiteral("-o ") + shellQuoted(key + u'=' + value);
            writeOut((line + u'\n').toUtf8());
        } else {
            writeOut(formatStringObject(record));
        }
        return kSuccess;
    }
    if (command == u"summary") {
        for (HostedPanel &hosted : printer->panels()) {
            const std::optional<pde::SummaryInfo> summary = hosted.panel->summaryInfo();
            if (!summary)
                continue;
            for (const QString &title : summary->value(QString(pde::kSummaryDisplayOrderKey)).toStringList())
                writeOut((terminalText(title) + QStringLiteral(": ") + terminalText(summary->value(title).toString()) + u'\n').toUtf8());
        }
        return kSuccess;
    }

    // print
    const std::variant<int, QString> job =
        submitJob(session->destination(), commandArguments, QFileInfo(commandArguments.front()).fileName(),
                  *session->printSettings(), StandardOptions{});
    if (const QString *problem = std::get_if<QString>(&job))
        return fail(kCannotLoad, *problem);
    writeOut(QStringLiteral("%1-%2\n").arg(session->destinationName()).arg(std::get<int>(job)).toUtf8());
    return kSuccess;
}
