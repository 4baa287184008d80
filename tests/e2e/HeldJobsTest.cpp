// SPDX-License-Identifier: MIT
// The session agent and its windows for jobs held by their queue: typed into
// with real key events, each button does what it says, and the windows
// follow the scheduler; pde-agent runs once per session.
#include "EndToEndFixture.h"

#include "host/HeldJobWindow.h"
#include "host/SessionAgent.h"
#include "pdekit/Alert.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

namespace {

using namespace e2e;

// The session agent in this process, its windows offscreen.
class Agent : public EndToEnd
{
protected:
    void SetUp() override
    {
        EndToEnd::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        alerts = pde::setAlertHandler([this](const pde::Alert &alert) { shownAlerts.append(alert.messageText); });
        // Bundles are found by name, as in a session.
        qputenv("PDE_PLUGIN_PATH", QFileInfo(kBundle).path().toUtf8());
        pdehost::SessionAgent::Settings settings;
        settings.timing = {50, 100, 400};
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
        return QTest::qWaitFor([&] {
            for (pdehost::HeldJobWindow *window : agent->windows()) {
                if (window->job().id == job)
                    found = window;
            }
            return found != nullptr;
        }, 10000) ? found : nullptr;
    }

    std::unique_ptr<pdehost::SessionAgent> agent;
    pde::AlertHandler alerts;
    QStringList shownAlerts;
};

TEST_F(Agent, PrintKeepHeldAndCancelJobDoWhatTheySayAndAJobCancelledElsewhereSaysWhy)
{
    const int typed = submitWithLp(u"Quarterly report"_s);
    const int kept = submitWithLp(u"Draft"_s);
    const int cancelled = submitWithLp(u"Old draft"_s);
    const int elsewhere = submitWithLp(u"Minutes"_s);
    pdehost::HeldJobWindow *window = windowFor(typed);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), u"Print \u201cQuarterly report\u201d on held"_s);
    ASSERT_EQ(window->problem(), QString());

    // The user types into the panel: a secure print, a password refused
    // first, then given.
    QWidget *panel = window->tabs()->widget(0);
    auto *jobType = panel->findChild<QComboBox *>(u"jobTypePopUp"_s);
    auto *userName = panel->findChild<QLineEdit *>(u"userNameTextField"_s);
    auto *password = panel->findChild<QLineEdit *>(u"passwordTextField"_s);
    ASSERT_TRUE(jobType && userName && password);
    jobType->setFocus();
    QTest::keyClick(jobType, Qt::Key_Down);
    ASSERT_EQ(jobType->currentIndex(), 1);
    userName->selectAll();
    QTest::keyClicks(userName, u"hanako"_s);
    QTest::mouseClick(window->printButton(), Qt::LeftButton);
    EXPECT_EQ(shownAlerts.size(), 1) << "no password: the panel refuses";
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(jobAttribute(typed, u"job-state"_s), u"pending-held"_s);
    QTest::keyClicks(password, u"2468"_s);
    // The README's picture of the agent: PDE_SCREENSHOT_DIR=docs.
    if (const QString folder = qEnvironmentVariable("PDE_SCREENSHOT_DIR"); !folder.isEmpty()) {
        EXPECT_TRUE(window->grab().save(QDir(folder).filePath(u"agent-window.png"_s)));
    }
    QTest::mouseClick(window->printButton(), Qt::LeftButton);
    const QStringList record = recordSeenByFilter(typed);
    EXPECT_EQ(record.mid(1, 2), (QStringList{u"2"_s, u"hanako"_s}));
    EXPECT_FALSE(cupsd->logs().contains(record.value(3).toUtf8())) << "the scheduler's logs keep no password";

    QTest::mouseClick(windowFor(kept)->keepHeldButton(), Qt::LeftButton);
    QTest::mouseClick(windowFor(cancelled)->cancelJobButton(), Qt::LeftButton);
    EXPECT_EQ(jobAttribute(kept, u"job-state"_s), u"pending-held"_s);
    EXPECT_EQ(jobAttribute(cancelled, u"job-state"_s), u"canceled"_s);

    // A job that stops waiting elsewhere closes its window saying why; the
    // agent's own actions need no explanation.
    ASSERT_NE(windowFor(elsewhere), nullptr);
    ASSERT_EQ(QProcess::execute(u"cancel"_s, {u"-h"_s, cupsd->server(), QString::number(elsewhere)}), 0);
    ASSERT_TRUE(QTest::qWaitFor([&] { return agent->windows().isEmpty(); }, 10000));
    QStringList messages;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *box = qobject_cast<QMessageBox *>(widget); box != nullptr && box->isVisible())
            messages.append(box->text());
    }
    EXPECT_EQ(messages, QStringList{u"\u201cMinutes\u201d on held no longer waits: it was cancelled."_s});
    cupsCancelJob2(CUPS_HTTP_DEFAULT, kHeld.toUtf8().constData(), kept, 0);
}

TEST_F(Agent, AJobWhosePanelCannotBeShownStaysHeldAndTheWindowSaysWhy)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(u"missing.ppd"_s);
    ASSERT_TRUE(writeFile(missing, readFile(kPpd).replace("JobTypeQTRN.plugin", "Nowhere.plugin")));
    ASSERT_TRUE(cupsd->addQueue(u"missing"_s, missing, {u"job-hold-until-default=indefinite"_s}));

    const int job = submitWithLp(u"Plan"_s, u"missing"_s);
    pdehost::HeldJobWindow *window = windowFor(job);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->problem().contains(u"Nowhere.plugin"_s)) << qPrintable(window->problem());
    EXPECT_FALSE(window->printButton()->isEnabled());
    QTest::mouseClick(window->keepHeldButton(), Qt::LeftButton);
    EXPECT_EQ(jobAttribute(job, u"job-state"_s), u"pending-held"_s);
}

TEST_F(Agent, AfterTheSchedulerWasAwayItsWaitingJobsAreShown)
{
    cupsd->stop();
    QTest::qWait(300); // the agent notices and waits
    ASSERT_TRUE(cupsd->start()) << qPrintable(cupsd->problem());
    const int job = submitWithLp(u"After the restart"_s);
    ASSERT_GT(job, 0);
    EXPECT_NE(windowFor(job), nullptr);
}

TEST_F(EndToEnd, PdeAgentRunsOncePerSessionAndOnceExitsWhenNothingWaits)
{
    QTemporaryDir runtime;
    const QString agent = QFileInfo(kHost).dir().filePath(u"pde-agent"_s);
    const QStringList session{u"XDG_RUNTIME_DIR="_s + runtime.path(), u"QT_QPA_PLATFORM=offscreen"_s};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"XDG_RUNTIME_DIR"_s, runtime.path());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    QProcess first;
    first.setProcessEnvironment(environment);
    first.start(agent);
    ASSERT_TRUE(first.waitForStarted());
    QTest::qWait(500);

    const HostRun second = runHost({u"--once"_s}, {}, session, {}, agent);
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_TRUE(second.err.contains(u"already runs"_s)) << "one agent per session";
    first.terminate();
    ASSERT_TRUE(first.waitForFinished(10000));

    const HostRun once = runHost({u"--once"_s}, {}, session, {}, agent);
    EXPECT_EQ(once.exitCode, 0) << "nothing waits: --once ends after the first look: " << qPrintable(once.err);
}

} // namespace
