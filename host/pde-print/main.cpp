// SPDX-License-Identifier: MIT
// pde-print: print files through Qt's print dialog with the printer's
// extension panels in it, to CUPS or to a PDF file.
#include "host/HostTranslations.h"
#include "host/PdePrintDialog.h"
#include "host/PrinterPanels.h"
#include "host/RecordPrivacy.h"
#include "host/TerminalText.h"

#include <QApplication>
#include <QCoreApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QImage>
#include <QMessageBox>
#include <QPrinter>
#include <QRegularExpression>
#include <QTimer>

#include <cstdio>
#include <optional>
#include <variant>

namespace {

// The messages' translation context.
class PdePrint
{
    Q_DECLARE_TR_FUNCTIONS(PdePrint)
};

void complain(const QString &message)
{
    std::fprintf(stderr, "pde-print: %s\n", qUtf8Printable(pdehost::terminalText(message)));
}

// What the command line asks for, read before any window can be had, so
// that --help and usage errors work without a display.
struct Request {
    QString printer;
    QString ppd;
    QStringList bundles;
    QString language;
    QString title;
    QString screenshot;
    QStringList files;
};

// The request, or the exit status when there is nothing more to do (help
// printed: 0; usage error reported: 1).
std::variant<Request, int> readCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        PdePrint::tr("Prints FILEs to a CUPS printer (the default printer unless --printer or --ppd\n"
                     "says otherwise) through Qt's print dialog, with one tab per print dialog\n"
                     "extension that the printer's PPD calls for (*APDialogExtension) and a Summary\n"
                     "tab. Choosing another printer in the dialog brings its own extensions and\n"
                     "saved settings; \"Print to File (PDF)\" writes a PDF file (a PDF copied, text\n"
                     "and pictures laid out) and sends no job. Print saves every panel; a panel that\n"
                     "refuses (after its alert) keeps the dialog open on its tab. The panels'\n"
                     "settings and every setting of the dialog travel with the job as CUPS job\n"
                     "options, and the job is not held unless a hold is chosen under Properties >\n"
                     "Job Options. \"Save as printer defaults\" keeps the panels' settings in\n"
                     "~/.cups/lpoptions (mode 0600) for later jobs through lp, lpr and these hosts;\n"
                     "\"Clear Saved Settings\" on the Summary tab removes them.\n"
                     "\n"
                     "Bundles are found by file name in the folders of PDE_PLUGIN_PATH, then in %1,\n"
                     "unless --bundle names them. The dialog speaks the user's language (LANGUAGE,\n"
                     "LC_ALL, LC_MESSAGES, LANG) when it is English or Japanese, or the one --lang\n"
                     "names.\n"
                     "\n"
                     "On success it prints PRINTER-JOBID, or the PDF file's path. Exit status: 0\n"
                     "printed, 1 usage error or cancelled, 2 the printer, its PPD, the display or\n"
                     "the job could not be had.")
            .arg(QStringLiteral(PDE_INSTALLED_BUNDLE_DIR)));
    const QCommandLineOption helpOption(
        {QStringLiteral("h"), QStringLiteral("help")}, PdePrint::tr("Show this help and exit."));
    const QCommandLineOption printerOption(QStringLiteral("printer"), PdePrint::tr("The CUPS printer to start with."),
                                           QStringLiteral("NAME"));
    const QCommandLineOption ppdOption(
        QStringLiteral("ppd"), PdePrint::tr("Start with the extensions of this PPD file; the job goes to the printer chosen in the dialog."),
        QStringLiteral("FILE"));
    const QCommandLineOption bundleOption(QStringLiteral("bundle"),
                                          PdePrint::tr("Load this extension bundle too, for every printer (repeatable)."),
                                          QStringLiteral("PATH"));
    const QCommandLineOption langOption(QStringLiteral("lang"),
                                        PdePrint::tr("Show the dialog and the panels in this language (en, ja)."),
                                        QStringLiteral("LANG"));
    const QCommandLineOption titleOption(QStringLiteral("title"),
                                         PdePrint::tr("The job's name (default: the first file's name, without its folder)."),
                                         QStringLiteral("TITLE"));
    const QCommandLineOption screenshotOption(
        QStringLiteral("screenshot"),
        PdePrint::tr("Show the dialog, save a picture of it as the screen shows it to FILE (PNG; the option tabs' places "
           "are in its text entries) and exit without printing."),
        QStringLiteral("FILE"));
    parser.addOption(helpOption);
    for (const QCommandLineOption &option :
         {printerOption, ppdOption, bundleOption, langOption, titleOption, screenshotOption})
        parser.addOption(option);
    parser.addPositionalArgument(QStringLiteral("FILE"), PdePrint::tr("The files to print."), QStringLiteral("FILE..."));

    if (!parser.parse(arguments)) {
        complain(parser.errorText() + PdePrint::tr(" (see --help)"));
        return 1;
    }
    if (parser.isSet(helpOption)) {
        std::fputs(qUtf8Printable(parser.helpText()), stdout);
        return 0;
    }
    Request request{parser.value(printerOption), parser.value(ppdOption), parser.values(bundleOption),
                    parser.value(langOption),    parser.value(titleOption), parser.value(screenshotOption),
                    parser.positionalArguments()};
    if (request.files.isEmpty() && request.screenshot.isEmpty()) {
        complain(PdePrint::tr("give at least one file to print (see --help)"));
        return 1;
    }
    if (parser.isSet(printerOption) && parser.isSet(ppdOption)) {
        complain(PdePrint::tr("give at most one of --printer NAME and --ppd FILE (see --help)"));
        return 1;
    }
    static const QRegularExpression languageTag(QStringLiteral("^[A-Za-z]{2,3}([_-][A-Za-z0-9]{2,8})*$"));
    if (parser.isSet(langOption) && !languageTag.match(request.language).hasMatch()) {
        complain(PdePrint::tr("--lang %1: not a language (en, ja, ja_JP)").arg(request.language));
        return 1;
    }
    if (request.title.isEmpty() && !request.files.isEmpty())
        request.title = QFileInfo(request.files.front()).fileName();
    return request;
}

bool displayAvailable()
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY")
           || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// Shows the dialog and saves its picture once the screen shows it.
int saveScreenshot(pdehost::PdePrintDialog &dialog, const QString &path)
{
    dialog.show();
    int status = 2;
    QTimer::singleShot(1500, &dialog, [&dialog, &path, &status] {
        const QImage picture = dialog.screenshot();
        if (!picture.isNull() && picture.save(path, "PNG"))
            status = 0;
        else
            complain(PdePrint::tr("%1: the picture cannot be written").arg(path));
        QApplication::quit();
    });
    QApplication::exec();
    return status;
}

} // namespace

int main(int argc, char **argv)
{
    Request request;
    {
        QCoreApplication core(argc, argv);
        QCoreApplication::setApplicationName(QStringLiteral("pde-print"));
        const QStringList arguments = QCoreApplication::arguments();
        // The messages about the command line in the language asked for.
        QString language;
        for (qsizetype i = 1; i < arguments.size(); ++i) {
            if (arguments[i] == u"--lang")
                language = arguments.value(i + 1);
            else if (arguments[i].startsWith(QStringLiteral("--lang=")))
                language = arguments[i].mid(7);
        }
        pdehost::installTranslations(language);
        std::variant<Request, int> read = readCommandLine(arguments);
        if (const int *status = std::get_if<int>(&read))
            return *status;
        request = std::get<Request>(std::move(read));
        if (!displayAvailable()) {
            complain(PdePrint::tr("there is no display to show the dialog on (DISPLAY is not set); pde-host prints without one"));
            return 2;
        }
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pde-print"));
    const pdehost::InstalledTranslations translations = pdehost::installTranslations(request.language);
    for (const QString &missing : translations.missing)
        complain(PdePrint::tr("%1: not installed, so some texts stay English (Debian package qt6-translations-l10n)").arg(missing));

    QString printerName = request.printer;
    if (printerName.isEmpty() && request.ppd.isEmpty()) {
        cups_dest_t *dests = nullptr;
        const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
        if (const cups_dest_t *fallback = cupsGetDest(nullptr, nullptr, count, dests))
            printerName = QString::fromUtf8(fallback->name);
        cupsFreeDests(count, dests);
        if (printerName.isEmpty()) {
            complain(PdePrint::tr("there is no default printer; name one with --printer NAME"));
            return 2;
        }
    }

    QString error;
    std::unique_ptr<pdehost::PrinterPanels> panels =
        pdehost::PrinterPanels::open({request.ppd, printerName}, {}, request.bundles, &error);
    if (!panels) {
        QMessageBox::critical(nullptr, QStringLiteral("pde-print"), error);
        complain(error);
        return 2;
    }
    for (const QString &problem : panels->problems())
        complain(problem);

    QPrinter printer;
    if (panels->session().destination() != nullptr)
        printer.setPrinterName(panels->session().destinationName());
    printer.setDocName(request.title);
    pdehost::PdePrintDialog dialog(&printer, std::move(panels), request.bundles);
    if (!request.screenshot.isEmpty())
        return saveScreenshot(dialog, request.screenshot);
    if (dialog.exec() != QDialog::Accepted)
        return 1;
    const pdehost::PrintOutcome outcome = dialog.printFiles(request.files, request.title);
    if (!outcome.error.isEmpty()) {
        QMessageBox::critical(nullptr, QStringLiteral("pde-print"), outcome.error);
        complain(outcome.error);
        return 2;
    }
    if (outcome.job == 0) {
        std::printf("%s\n", qUtf8Printable(outcome.destination));
        return 0;
    }
    // Once per run: whether other users can read this job's private values.
    QStringList privateKeys;
    if (pdehost::PrinterPanels *used = dialog.panels()) {
        for (const pdehost::HostedPanel &hosted : used->panels())
            privateKeys += pdehost::privateSettingsKeys(*hosted.bundle);
    }
    QString unknown;
    const std::optional<QStringList> shown =
        privateKeys.isEmpty() ? std::nullopt : pdehost::recordKeysShownToOthers(outcome.job, privateKeys, &unknown);
    if (shown && !shown->isEmpty()) {
        const QString warning = pdehost::recordPrivacyWarning(*shown);
        complain(warning);
        QMessageBox::warning(nullptr, QStringLiteral("pde-print"), warning);
    }
    std::printf("%s-%d\n", qUtf8Printable(outcome.destination), outcome.job);
    return 0;
}
