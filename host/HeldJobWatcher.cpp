// SPDX-License-Identifier: MIT
// The scheduler watch of the session agent.
#include "host/HeldJobWatcher.h"

#include "host/HostLogging.h"

#include <QTimer>

#include <algorithm>

namespace pdehost {

HeldJobWatcher::HeldJobWatcher(const QString &user, const Timing &timing, QObject *parent)
    : QObject(parent), m_user(user), m_timing(timing), m_pollTimer(new QTimer(this)), m_renewTimer(new QTimer(this)),
      m_retryTimer(new QTimer(this)), m_retryMs(timing.firstRetryMs)
{
    m_pollTimer->setInterval(m_timing.pollMs);
    m_renewTimer->setInterval(m_timing.leaseSeconds * 1000 / 2);
    m_retryTimer->setSingleShot(true);
    connect(m_pollTimer, &QTimer::timeout, this, &HeldJobWatcher::poll);
    connect(m_renewTimer, &QTimer::timeout, this, &HeldJobWatcher::renew);
    connect(m_retryTimer, &QTimer::timeout, this, &HeldJobWatcher::connectToScheduler);
}

HeldJobWatcher::~HeldJobWatcher() = default;

void HeldJobWatcher::start()
{
    connectToScheduler();
}

void HeldJobWatcher::stop()
{
    m_pollTimer->stop();
    m_renewTimer->stop();
    m_retryTimer->stop();
    if (m_scheduler && m_events)
        m_events->cancel(*m_scheduler);
    m_events.reset();
    m_scheduler.reset();
}

void HeldJobWatcher::connectToScheduler()
{
    QString error;
    m_scheduler = SchedulerConnection::open(&error);
    // A subscription that outlived an outage is kept; fetching says if the
    // scheduler forgot it.
    if (m_scheduler && !m_events)
        m_events = JobEvents::subscribe(*m_scheduler, m_timing.leaseSeconds, &error);
    if (!m_scheduler || !m_events) {
        lose(error);
        return;
    }
    if (m_lost) {
        m_lost = false;
        qCInfo(lcPdeAgent).noquote() << "the scheduler is back at" << SchedulerConnection::address();
        Q_EMIT schedulerBack();
    }
    m_retryMs = m_timing.firstRetryMs;
    m_panelQueues.clear();
    scan();
    if (m_scheduler) {
        m_pollTimer->start();
        m_renewTimer->start();
    }
}

void HeldJobWatcher::lose(const QString &why)
{
    m_pollTimer->stop();
    m_renewTimer->stop();
    m_scheduler.reset();
    if (!m_lost) {
        m_lost = true;
        qCWarning(lcPdeAgent).noquote() << why;
        Q_EMIT schedulerLost(why);
    }
    m_retryTimer->start(m_retryMs);
    m_retryMs = std::min(m_retryMs * 2, m_timing.maxRetryMs);
}

void HeldJobWatcher::poll()
{
    bool gone = !m_events;
    QString error;
    std::optional<JobEvents::Batch> batch;
    if (m_events)
        batch = m_events->fetch(*m_scheduler, &gone, &error);
    if (!batch && gone) {
        m_events = JobEvents::subscribe(*m_scheduler, m_timing.leaseSeconds, &error);
        if (!m_events) {
            lose(error);
            return;
        }
        m_panelQueues.clear();
        scan();
        return;
    }
    if (!batch) {
        lose(error);
        return;
    }
    if (batch->printerEvents > 0)
        m_panelQueues.clear();
    if (batch->jobEvents > 0 || batch->printerEvents > 0)
        scan();
}

void HeldJobWatcher::renew()
{
    QString error;
    if (m_events && !m_events->renew(*m_scheduler, &error))
        m_events.reset(); // the next poll subscribes anew
}

bool HeldJobWatcher::callsForPanel(const QString &printer)
{
    if (const auto known = m_panelQueues.constFind(printer); known != m_panelQueues.constEnd())
        return *known;
    QString error;
    const std::optional<QStringList> bundles = bundlesCalledForBy(*m_scheduler, printer, &error);
    if (!bundles) {
        // Not remembered: the next scan asks again.
        qCWarning(lcPdeAgent).noquote() << error;
        return false;
    }
    m_panelQueues.insert(printer, !bundles->isEmpty());
    return !bundles->isEmpty();
}

void HeldJobWatcher::scan()
{
    QString error;
    const std::optional<QList<HeldJob>> jobs = heldJobsOf(*m_scheduler, m_user, {}, &error);
    if (!jobs) {
        lose(error);
        return;
    }
    QHash<int, HeldJob> waiting;
    for (const HeldJob &job : *jobs) {
        if (callsForPanel(job.printer))
            waiting.insert(job.id, job);
    }
    for (auto known = m_waiting.cbegin(); known != m_waiting.cend(); ++known) {
        if (waiting.contains(known.key()))
            continue;
        const std::optional<JobFate> fate = fateOf(*m_scheduler, known.key(), &error);
        Q_EMIT jobLeft(known.key(), fate.value_or(JobFate::Gone));
    }
    for (const HeldJob &job : *jobs) {
        if (waiting.contains(job.id) && !m_waiting.contains(job.id))
            Q_EMIT jobArrived(job);
    }
    m_waiting = waiting;
    Q_EMIT scanned();
}

} // namespace pdehost
