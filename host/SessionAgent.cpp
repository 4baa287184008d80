// SPDX-License-Identifier: MIT
// Windows for held jobs as the scheduler watch reports them.
#include "host/SessionAgent.h"

#include "host/HeldJobWindow.h"

#include <QThread>

namespace pdehost {

SessionAgent::SessionAgent(const Settings &settings, QObject *parent)
    : QObject(parent), m_settings(settings), m_thread(new QThread(this)),
      m_watcher(new HeldJobWatcher(QString::fromUtf8(cupsUser()), settings.timing))
{
    m_watcher->moveToThread(m_thread);
    connect(m_thread, &QThread::started, m_watcher, &HeldJobWatcher::start);
    connect(m_thread, &QThread::finished, m_watcher, &QObject::deleteLater);
    connect(m_watcher, &HeldJobWatcher::jobArrived, this, &SessionAgent::jobArrived);
    connect(m_watcher, &HeldJobWatcher::jobLeft, this, &SessionAgent::jobLeft);
    connect(m_watcher, &HeldJobWatcher::scanned, this, &SessionAgent::scanned);
}

SessionAgent::~SessionAgent()
{
    if (m_thread->isRunning()) {
        QMetaObject::invokeMethod(m_watcher, &HeldJobWatcher::stop, Qt::BlockingQueuedConnection);
        m_thread->quit();
        m_thread->wait();
    } else {
        delete m_watcher;
    }
    for (const QPointer<HeldJobWindow> &window : std::as_const(m_windows))
        delete window.data();
}

void SessionAgent::start()
{
    m_thread->start();
}

QList<HeldJobWindow *> SessionAgent::windows() const
{
    QList<HeldJobWindow *> open;
    for (int id : m_order) {
        if (HeldJobWindow *window = m_windows.value(id))
            open.append(window);
    }
    return open;
}

void SessionAgent::jobArrived(const HeldJob &job)
{
    if ((m_settings.once && m_firstScanDone) || m_windows.contains(job.id))
        return;
    auto *window = new HeldJobWindow(job, m_settings.explicitBundles);
    m_windows.insert(job.id, window);
    m_order.append(job.id);
    connect(window, &QDialog::finished, this, [this, id = job.id] { windowClosed(id); });
    // Each new window a little below and to the right of the one before.
    const int cascade = static_cast<int>(m_windows.size() - 1) % 8 * 32;
    window->move(window->pos() + QPoint(cascade, cascade));
    window->show();
    window->raise();
    window->activateWindow();
    Q_EMIT windowShown(window);
}

void SessionAgent::jobLeft(int id, JobFate fate)
{
    const QPointer<HeldJobWindow> window = m_windows.take(id);
    m_order.removeOne(id);
    if (window)
        window->jobLeft(fate);
    if (m_settings.once && m_firstScanDone && m_windows.isEmpty())
        Q_EMIT finished();
}

void SessionAgent::windowClosed(int id)
{
    if (m_windows.remove(id) == 0)
        return;
    m_order.removeOne(id);
    if (m_settings.once && m_firstScanDone && m_windows.isEmpty())
        Q_EMIT finished();
}

void SessionAgent::scanned()
{
    if (m_firstScanDone)
        return;
    m_firstScanDone = true;
    if (m_settings.once && m_windows.isEmpty())
        Q_EMIT finished();
}

} // namespace pdehost
