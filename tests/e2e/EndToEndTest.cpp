// SPDX-License-Identifier: MIT
// Printing for real through a private CUPS scheduler: jobs submitted by
// pde-host and by the desktop dialog reach the printer's filter with the
// panel's record intact, byte for byte.
#include "PrivateCupsd.h"

#include "host/BundleLocator.h"
#include "host/OrderedJson.h"
#include "host/PanelDriver.h"
#include "host/PanelHost.h"
#include "host/PdePrintDialog.h"
#include "host/PrinterSession.h"
#include "pdekit/Alert.h"

#include <QPrinter>
#include <QProcess>
#include <QTemporaryDir>

#include <cups/cups.h>
#include <gtest/gtest.h>

namespace {

const QString kBundle = QStringLiteral(PDE_BUNDLE_DIR);
const QString kHost = QStringLiteral(PDE_HOST_BINARY);
const QString kPpd = QStringLiteral(PDE_SOURCE_DIR "/examples/example-mfp.ppd");
const QString kDocument = QStringLiteral(PDE_SOURCE_DIR "/examples/quarterly-report.txt");
const QString kPrefix = QStringLiteral("com.norvanta.qs.o.print.printsettings.");
const char *const kSuffixes[] = {"SecureVersion", "PrintType", "PrintTypeUserName",
                                 "PrintTypePassword", "DocumentNameType", "DocumentName"};

class EndToEnd : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        home = new QTemporaryDir;
        previousHome = qgetenv("HOME");
        qputenv("HOME", home->path().toUtf8()); // ~/.cups/lpoptions stays in here
        cupsd = new e2e::PrivateCupsd;
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

    // The six record entries as the filter received them.
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

    static QProcess *runHost(const QStringList &arguments, const QByteArray &input = {})
    {
        auto *process = new QProcess;
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
    static inline e2e::PrivateCupsd *cupsd = nullptr;
    static inline bool queued = false;
};

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

        std::unique_ptr<QProcess> record(runHost(common + QStringList{QStringLiteral("record")} + values, row.password + '\n'));
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
        std::unique_ptr<QProcess> print(
            runHost(common + QStringList{QStringLiteral("print"), kDocument} + values, row.password + '\n'));
        ASSERT_EQ(print->exitCode(), 0) << row.name << ": " << print->readAllStandardError().constData();
        const int job = QString::fromUtf8(print->readAllStandardOutput()).trimmed().section(u'-', -1).toInt();
        ASSERT_GT(job, 0) << row.name;
        EXPECT_EQ(recordSeenByFilter(job), expected) << row.name;
    }
}

TEST_F(EndToEnd, TheDesktopDialogSavesEveryPanelThenPrints)
{
    QString error;
    std::unique_ptr<pdehost::PrinterSession> session = pdehost::PrinterSession::fromDestination(QStringLiteral("e2e"), {}, &error);
    ASSERT_TRUE(session) << qPrintable(error);
    pdehost::PanelHost host;
    host.load(pdehost::locateBundles({kBundle}, pdehost::dialogExtensionsOf(session->ppdFile()), {}).paths, session.get());
    ASSERT_EQ(host.panels().size(), 1u) << qPrintable(host.problems().join(u'\n'));

    QList<pde::Alert> alerts;
    const pde::AlertHandler previous = pde::setAlertHandler([&alerts](const pde::Alert &alert) { alerts.append(alert); });
    QPrinter printer;
    printer.setPrinterName(QStringLiteral("e2e"));
    {
        pdehost::PdePrintDialog dialog(&printer, session.get(), &host);
        dialog.show();
        pdehost::PanelDriver driver(host.panels().front().panel->panelView());
        ASSERT_EQ(driver.enter(QStringLiteral("printType"), QStringLiteral("1")), std::nullopt);

        // No user ID: the panel refuses, the dialog stays open on its tab.
        dialog.accept();
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
        ASSERT_EQ(alerts.size(), 1);

        ASSERT_EQ(driver.enter(QStringLiteral("userName"), QStringLiteral("hanako")), std::nullopt);
        ASSERT_EQ(driver.enter(QStringLiteral("password"), QStringLiteral("9753")), std::nullopt);
        ASSERT_EQ(driver.enter(QStringLiteral("documentName"), QStringLiteral("plan/B")), std::nullopt);
        EXPECT_TRUE(dialog.summaryLines().contains(QStringLiteral("User ID: hanako")));
        dialog.setSaveAsPrinterDefaults(true);
        dialog.accept();
        EXPECT_EQ(dialog.result(), QDialog::Accepted);

        const std::variant<int, QString> job = dialog.printFiles({kDocument});
        ASSERT_TRUE(std::holds_alternative<int>(job)) << qPrintable(std::get<QString>(job));
        QStringList expected;
        for (const char *suffix : kSuffixes)
            expected.append(session->printSettings()->value(kPrefix + QLatin1StringView(suffix))->toString());
        EXPECT_EQ(recordSeenByFilter(std::get<int>(job)), expected);
        EXPECT_EQ(expected[2], QStringLiteral("hanako"));
        EXPECT_EQ(expected[5], QStringLiteral("/112/108/97/110/47/66"));
    }
    pde::setAlertHandler(previous);

    // Saved as the printer's defaults: the next session starts from them.
    std::unique_ptr<pdehost::PrinterSession> next = pdehost::PrinterSession::fromDestination(QStringLiteral("e2e"), {}, &error);
    ASSERT_TRUE(next) << qPrintable(error);
    EXPECT_EQ(next->printSettings()->value(kPrefix + QStringLiteral("PrintTypeUserName")),
              QVariant(QStringLiteral("hanako")));
}

} // namespace
