// SPDX-License-Identifier: MIT
// Jobs from applications that know nothing of panels, held by their queue:
// pde-host lists them and releases them with the record the panels wrote,
// which the filter then receives byte for byte, and a refused save or value
// leaves the job held and unchanged; the session agent opens a window for
// each, typed into with real key events, and follows the scheduler.
#include "EndToEndFixture.h"

#include "host/HeldJobWindow.h"
#include "host/HeldJobs.h"
#include "host/OrderedJson.h"
#include "host/SessionAgent.h"
#include "pdekit/Alert.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

namespace {

using namespace e2e;

const QString kHeld = QStringLiteral("held");

class HeldJobs : public EndToEnd
{
protected:
    void SetUp() override
    {
        EndToEnd::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        static const bool added = cupsd->addQueue(kHeld, kPpd, {QStringLiteral("job-hold-until-default=indefinite")});
        ASSERT_TRUE(added) << qPrintable(cupsd->problem());
    }

    // A job as `lp` submits it: no options at all.
    static int submitWithLp(const QString &title, const QString &queue = kHeld)
    {
        QProcess lp;
        lp.start(QStringLiteral("lp"), {QStringLiteral("-h"), cupsd->server(), QStringLiteral("-d"), queue,
                                        QStringLiteral("-t"), title, kDocument});
        lp.waitForFinished(30000);
        // "request id is held-12 (1 file(s))"
        return QString::fromUtf8(lp.readAllStandardOutput()).section(u' ', 3, 3).section(u'-', -1).toInt();
    }

    // A job as a GTK application submits it: the destination API, with the
    // user the application runs as.
    static int submitWithDestinationApi(const QString &title, const char *user = nullptr)
    {
        cupsSetUser(user);
        cups_dest_t *dest = cupsGetNamedDest(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), nullptr);
        cups_dinfo_t *info = dest != nullptr ? cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest) : nullptr;
        int job = 0;
        if (info != nullptr
            && cupsCreateDestJob(CUPS_HTTP_DEFAULT, dest, info, &job, title.toUtf8().constData(), 0, nullptr) == IPP_STATUS_OK
            && cupsStartDestDocument(CUPS_HTTP_DEFAULT, dest, info, job, "report", CUPS_FORMAT_TEXT, 0, nullptr, 1)
                   == HTTP_STATUS_CONTINUE) {
            cupsWriteRequestData(CUPS_HTTP_DEFAULT, "Quarterly report\n", 17);
            cupsFinishDestDocument(CUPS_HTTP_DEFAULT, dest, info);
        }
        cupsFreeDestInfo(info);
        cupsFreeDests(1, dest);
        cupsSetUser(nullptr);
        return job;
    }

    // The job's options as the scheduler holds them, with its state.
    static QString jobAsHeld(int job)
    {
        QString error;
        const std::unique_ptr<pdehost::SchedulerConnection> scheduler = pdehost::SchedulerConnection::open(&error);
        const std::optional<pdehost::HeldJobOptions> read =
            pdehost::readHeldJob(*scheduler, job, kHeld, QString::fromUtf8(cupsUser()), &error);
        if (!read)
            return error;
        QString text = read->job.state;
        for (const auto &[key, value] : read->options)
            text += u'\n' + key + u'=' + value;
        return text;
    }

    // The record `record` prints for the same values: what a release must
    // deliver.
    static QStringList expectedRecord(const QStringList &values, const QByteArray &password)
    {
        const std::unique_ptr<QProcess> record =
            runHost(QStringList{QStringLiteral("--printer"), kHeld, QStringLiteral("record")} + values, password);
        const std::optional<pdehost::OrderedStrings> entries = pdehost::parseStringObject(record->readAllStandardOutput(), nullptr);
        QStringList expected;
        for (const char *suffix : kSuffixes) {
            QString value = QStringLiteral("<absent>");
            for (const auto &[key, entry] : entries.value_or(pdehost::OrderedStrings{})) {
                if (key == kPrefix + QLatin1StringView(suffix))
                    value = entry;
            }
            expected.append(value);
        }
        return expected;
    }
};

struct ReleaseRow {
    const char *name;
    bool withLp;        // else the destination API, as a GTK application
    QStringList values; // --set arguments
    QByteArray password;
    int exitCode;
    QString errorPart;
};

TEST_F(HeldJobs, ReleaseDeliversTheTypedRecordAndARefusalLeavesTheJobAsItWas)
{
    const auto set = [](std::initializer_list<const char *> pairs) {
        QStringList arguments;
        for (const char *pair : pairs)
            arguments << QStringLiteral("--set") << QString::fromUtf8(pair);
        return arguments;
    };
    const ReleaseRow rows[] = {
        {"ordinary print from lp", true, set({"printType=0"}), {}, 0, {}},
        {"secure print with a comma in the name", true, set({"printType=1", "userName=taro", "documentName=Q3,report"}), "2468", 0, {}},
        {"sample print, automatic name, from an application", false, set({"printType=2", "userName=x/y", "documentNameType=0"}), {}, 0, {}},
        {"public print with quotes and brackets", false, set({"printType=3", "userName=a\"b", "documentName={draft}"}), {}, 0, {}},
        {"second secure kind with accents", true, set({"printType=4", "userName=caf\xc3\xa9", "documentName=a'b\\c"}), "1357", 0, {}},
        {"refused save: no password", true, set({"printType=1", "userName=taro"}), {}, 3, QStringLiteral("alert: ")},
        {"refused value", false, set({"printType=1", "password=12a"}), {}, 4, QStringLiteral("password:")},
    };
    for (const ReleaseRow &row : rows) {
        const int job = row.withLp ? submitWithLp(QStringLiteral("Quarterly report")) : submitWithDestinationApi(QStringLiteral("Q3"));
        ASSERT_GT(job, 0) << row.name;
        const QString before = jobAsHeld(job);
        ASSERT_TRUE(before.startsWith(QStringLiteral("pending-held"))) << row.name << ": " << qPrintable(before);

        const std::unique_ptr<QProcess> listed = runHost({QStringLiteral("--printer"), kHeld, QStringLiteral("jobs")});
        EXPECT_TRUE(QString::fromUtf8(listed->readAllStandardOutput())
                        .contains(QStringLiteral("%1\t%2\t").arg(job).arg(kHeld)))
            << row.name;

        QStringList arguments{QStringLiteral("--printer"), kHeld, QStringLiteral("release"), QString::number(job)};
        arguments += row.values;
        if (!row.password.isEmpty())
            arguments << QStringLiteral("--password-stdin");
        const std::unique_ptr<QProcess> release = runHost(arguments, row.password + '\n');
        const QString error = QString::fromUtf8(release->readAllStandardError());
        ASSERT_EQ(release->exitCode(), row.exitCode) << row.name << ": " << qPrintable(error);
        if (row.exitCode == 0) {
            EXPECT_EQ(QString::fromUtf8(release->readAllStandardOutput()), QStringLiteral("%1-%2\n").arg(kHeld).arg(job));
            QStringList recordArguments = row.values;
            if (!row.password.isEmpty())
                recordArguments << QStringLiteral("--password-stdin");
            EXPECT_EQ(recordSeenByFilter(job), expectedRecord(recordArguments, row.password + '\n')) << row.name;
        } else {
            EXPECT_TRUE(error.contains(row.errorPart)) << row.name << ": " << qPrintable(error);
            EXPECT_EQ(jobAsHeld(job), before) << row.name;
            cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), job, 0);
        }
    }
}

TEST_F(HeldJobs, OnlyTheUsersHeldJobsAreListedAndReleased)
{
    const int mine = submitWithDestinationApi(QStringLiteral("mine"));
    const int theirs = submitWithDestinationApi(QStringLiteral("theirs"), "visitor");
    const int released = submitWithLp(QStringLiteral("released"));
    ASSERT_GT(mine * theirs * released, 0);
    ASSERT_EQ(runHost({QStringLiteral("--printer"), kHeld, QStringLiteral("release"), QString::number(released)})->exitCode(), 0);

    const std::unique_ptr<QProcess> listed = runHost({QStringLiteral("jobs")});
    const QString lines = QString::fromUtf8(listed->readAllStandardOutput());
    EXPECT_TRUE(lines.contains(QStringLiteral("%1\theld\tmine\tpending-held\n").arg(mine))) << qPrintable(lines);
    EXPECT_FALSE(lines.contains(QStringLiteral("theirs")));
    EXPECT_FALSE(lines.contains(QStringLiteral("released")));
    EXPECT_FALSE(lines.contains(QStringLiteral("\te2e\t"))) << "the e2e queue does not hold its jobs";

    const struct {
        const char *name;
        int job;
        QString errorPart;
    } refused[] = {
        {"another user's job", theirs, QStringLiteral("is not yours")},
        {"a released job", released, QStringLiteral("is not held")},
        {"a job that does not exist", 99999, QStringLiteral("job 99999: ")},
    };
    for (const auto &row : refused) {
        const std::unique_ptr<QProcess> release =
            runHost({QStringLiteral("--printer"), kHeld, QStringLiteral("release"), QString::number(row.job)});
        const QString error = QString::fromUtf8(release->readAllStandardError());
        EXPECT_EQ(release->exitCode(), 2) << row.name << ": " << qPrintable(error);
        EXPECT_TRUE(error.contains(row.errorPart)) << row.name << ": " << qPrintable(error);
    }
    cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), mine, 0);
    cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), theirs, 0);
}

// The session agent in this process, its windows offscreen.
class Agent : public HeldJobs
{
protected:
    void SetUp() override
    {
        HeldJobs::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        alerts = pde::setAlertHandler([this](const pde::Alert &alert) { shownAlerts.append(alert.messageText); });
        // Bundles are found by name, as in a session.
        qputenv("PDE_PLUGIN_PATH", QFileInfo(kBundle).path().toUtf8());
        pdehost::SessionAgent::Settings settings;
        settings.timing.pollMs = 50;
        settings.timing.firstRetryMs = 100;
        settings.timing.maxRetryMs = 400;
        agent = std::make_unique<pdehost::SessionAgent>(settings);
        agent->start();
    }
    void TearDown() override
    {
        agent.reset();
        pde::setAlertHandler(alerts);
        for (QWidget *widget : QApplication::topLevelWidgets())
            delete qobject_cast<QMessageBox *>(widget);
    }

    pdehost::HeldJobWindow *windowFor(int job)
    {
        pdehost::HeldJobWindow *found = nullptr;
        const bool shown = QTest::qWaitFor([&] {
            for (pdehost::HeldJobWindow *window : agent->windows()) {
                if (window->job().id == job)
                    found = window;
            }
            return found != nullptr;
        }, 10000);
        return shown ? found : nullptr;
    }

    // The texts of the messages the agent showed.
    static QStringList messages()
    {
        QStringList texts;
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *box = qobject_cast<QMessageBox *>(widget); box != nullptr && box->isVisible())
                texts.append(box->text());
        }
        return texts;
    }

    static std::optional<pdehost::JobFate> fate(int job)
    {
        QString error;
        const std::unique_ptr<pdehost::SchedulerConnection> scheduler = pdehost::SchedulerConnection::open(&error);
        return scheduler ? pdehost::fateOf(*scheduler, job, &error) : std::nullopt;
    }

    std::unique_ptr<pdehost::SessionAgent> agent;
    pde::AlertHandler alerts;
    QStringList shownAlerts;
};

TEST_F(Agent, PrintKeepHeldAndCancelJobDoWhatTheySay)
{
    const int typed = submitWithLp(QStringLiteral("Quarterly report"));
    const int kept = submitWithDestinationApi(QStringLiteral("Draft"));
    const int cancelled = submitWithDestinationApi(QStringLiteral("Old draft"));
    pdehost::HeldJobWindow *window = windowFor(typed);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), QStringLiteral(u"Print \u201cQuarterly report\u201d on held"));
    ASSERT_EQ(window->problem(), QString());

    // The user types into the panel: a secure print, a password refused
    // first, then given.
    QWidget *panel = window->tabs()->widget(0);
    auto *jobType = panel->findChild<QComboBox *>(QStringLiteral("jobTypePopUp"));
    auto *userName = panel->findChild<QLineEdit *>(QStringLiteral("userNameTextField"));
    auto *password = panel->findChild<QLineEdit *>(QStringLiteral("passwordTextField"));
    ASSERT_TRUE(jobType && userName && password);
    jobType->setFocus();
    QTest::keyClick(jobType, Qt::Key_Down);
    ASSERT_EQ(jobType->currentIndex(), 1);
    userName->selectAll();
    QTest::keyClicks(userName, QStringLiteral("hanako"));
    QTest::mouseClick(window->printButton(), Qt::LeftButton);
    EXPECT_EQ(shownAlerts.size(), 1) << "no password: the panel refuses";
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(fate(typed), pdehost::JobFate::Held);
    QTest::keyClicks(password, QStringLiteral("2468"));
    // The README's picture of the agent: PDE_SCREENSHOT_DIR=docs.
    if (const QString folder = qEnvironmentVariable("PDE_SCREENSHOT_DIR"); !folder.isEmpty()) {
        EXPECT_TRUE(window->grab().save(QDir(folder).filePath(QStringLiteral("agent-window.png"))));
    }
    QTest::mouseClick(window->printButton(), Qt::LeftButton);
    const QStringList record = recordSeenByFilter(typed);
    EXPECT_EQ(record.mid(1, 2), (QStringList{QStringLiteral("2"), QStringLiteral("hanako")}));
    EXPECT_NE(record.value(3), QString()) << "the protected password";
    EXPECT_FALSE(cupsd->logs().contains(record.value(3).toUtf8())) << "the scheduler's logs keep no password";

    QTest::mouseClick(windowFor(kept)->keepHeldButton(), Qt::LeftButton);
    QTest::mouseClick(windowFor(cancelled)->cancelJobButton(), Qt::LeftButton);
    EXPECT_EQ(fate(kept), pdehost::JobFate::Held);
    EXPECT_EQ(fate(cancelled), pdehost::JobFate::Cancelled);
    EXPECT_TRUE(QTest::qWaitFor([&] { return agent->windows().isEmpty(); }, 5000));
    EXPECT_EQ(messages(), QStringList()) << "the agent's own actions need no explanation";
    cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), kept, 0);
}

TEST_F(Agent, AJobThatStopsWaitingElsewhereClosesItsWindowSayingWhy)
{
    const int job = submitWithLp(QStringLiteral("Minutes"));
    ASSERT_NE(windowFor(job), nullptr);
    QProcess cancel;
    cancel.start(QStringLiteral("cancel"), {QStringLiteral("-h"), cupsd->server(), QString::number(job)});
    ASSERT_TRUE(cancel.waitForFinished(30000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return agent->windows().isEmpty(); }, 10000));
    EXPECT_EQ(messages(), QStringList{QStringLiteral(u"\u201cMinutes\u201d on held no longer waits: it was cancelled.")});
}

TEST_F(Agent, AJobWhosePanelCannotBeShownStaysHeldAndTheWindowSaysWhy)
{
    QFile example(kPpd);
    ASSERT_TRUE(example.open(QIODevice::ReadOnly));
    QTemporaryDir dir;
    QFile missing(dir.filePath(QStringLiteral("missing.ppd")));
    ASSERT_TRUE(missing.open(QIODevice::WriteOnly));
    missing.write(example.readAll().replace("JobTypeQTRN.plugin", "Nowhere.plugin"));
    missing.close();
    ASSERT_TRUE(cupsd->addQueue(QStringLiteral("missing"), missing.fileName(),
                                {QStringLiteral("job-hold-until-default=indefinite")}));

    const int job = submitWithLp(QStringLiteral("Plan"), QStringLiteral("missing"));
    pdehost::HeldJobWindow *window = windowFor(job);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->problem().contains(QStringLiteral("Nowhere.plugin"))) << qPrintable(window->problem());
    EXPECT_FALSE(window->printButton()->isEnabled());
    QTest::mouseClick(window->keepHeldButton(), Qt::LeftButton);
    EXPECT_EQ(fate(job), pdehost::JobFate::Held);
}

TEST_F(Agent, AfterTheSchedulerWasAwayItsWaitingJobsAreShown)
{
    cupsd->stop();
    QTest::qWait(300); // the agent notices and waits
    ASSERT_TRUE(cupsd->start()) << qPrintable(cupsd->problem());
    const int job = submitWithLp(QStringLiteral("After the restart"));
    ASSERT_GT(job, 0);
    EXPECT_NE(windowFor(job), nullptr);
}

TEST_F(HeldJobs, PdeAgentRunsOncePerSessionAndOnceExitsWhenNothingWaits)
{
    QTemporaryDir runtime;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    const QString agent = QFileInfo(kHost).dir().filePath(QStringLiteral("pde-agent"));
    QProcess first;
    first.setProcessEnvironment(environment);
    first.start(agent, {});
    ASSERT_TRUE(first.waitForStarted());
    QTest::qWait(500);

    QProcess second;
    second.setProcessEnvironment(environment);
    second.start(agent, {QStringLiteral("--once")});
    ASSERT_TRUE(second.waitForFinished(10000));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_TRUE(second.readAllStandardError().contains("already runs")) << "one agent per session";
    first.terminate();
    ASSERT_TRUE(first.waitForFinished(10000));

    QProcess once;
    once.setProcessEnvironment(environment);
    once.start(agent, {QStringLiteral("--once")});
    EXPECT_TRUE(once.waitForFinished(10000)) << "nothing waits: --once ends after the first look";
    EXPECT_EQ(once.exitCode(), 0) << once.readAllStandardError().constData();
}

} // namespace
