// SPDX-License-Identifier: MIT
// Watches the scheduler for the current user's jobs that a queue whose PPD
// calls for a panel holds, and says when each starts and stops waiting.
#pragma once

#include "host/HeldJobs.h"
#include "host/JobEvents.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <optional>

class QTimer;

namespace pdehost {

// It lives in a thread of its own, because its requests may wait for a
// scheduler that does not answer. It pulls the scheduler's events and scans
// the user's jobs when there are any; on every (re)connection it scans, so
// that no job that waited before it started, or while the scheduler was
// away, is missed. When the scheduler goes away it tries again after pauses
// that double up to a limit: it never spins.
class HeldJobWatcher : public QObject
{
    Q_OBJECT

public:
    struct Timing {
        int pollMs = 250;        // how often the events are asked for
        int firstRetryMs = 1000; // the first pause after the scheduler went away
        int maxRetryMs = 30000;  // the longest pause
        int leaseSeconds = 600;  // the subscription's lease, renewed at half of it
    };

    HeldJobWatcher(const QString &user, const Timing &timing, QObject *parent = nullptr);
    ~HeldJobWatcher() override;

public Q_SLOTS:
    // Both run in the watcher's thread: start after the thread started,
    // stop (which ends the subscription) before it quits.
    void start();
    void stop();

Q_SIGNALS:
    void jobArrived(const pdehost::HeldJob &job);
    void jobLeft(int id, pdehost::JobFate fate);
    // After every scan of the user's jobs.
    void scanned();
    // Once when the scheduler goes away, and once when it is back.
    void schedulerLost(const QString &why);
    void schedulerBack();

private:
    void connectToScheduler();
    void lose(const QString &why);
    void poll();
    void renew();
    void scan();
    // Whether the queue's PPD calls for a panel; asked once per queue until
    // the scheduler reports a change of its printers.
    bool callsForPanel(const QString &printer);

    QString m_user;
    Timing m_timing;
    QTimer *m_pollTimer;
    QTimer *m_renewTimer;
    QTimer *m_retryTimer;
    int m_retryMs;
    bool m_lost = false;
    std::unique_ptr<SchedulerConnection> m_scheduler;
    std::optional<JobEvents> m_events;
    QHash<QString, bool> m_panelQueues;
    QHash<int, HeldJob> m_waiting;
};

} // namespace pdehost
