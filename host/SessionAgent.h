// SPDX-License-Identifier: MIT
// The session agent: one window for each of the user's jobs that a panel
// printer's queue holds, opened when the job starts to wait and closed,
// saying why, when it stops waiting elsewhere.
#pragma once

#include "host/HeldJobWatcher.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QStringList>

class QThread;

namespace pdehost {

class HeldJobWindow;

class SessionAgent : public QObject
{
    Q_OBJECT

public:
    struct Settings {
        // Handle only the jobs waiting at the first scan, then finish when
        // their windows are closed.
        bool once = false;
        QStringList explicitBundles;
        HeldJobWatcher::Timing timing;
    };

    explicit SessionAgent(const Settings &settings, QObject *parent = nullptr);
    // Stops the watch and ends its subscription; open windows close.
    ~SessionAgent() override;

    // Starts watching the scheduler in a thread of its own.
    void start();

    // The windows open now, oldest first.
    QList<HeldJobWindow *> windows() const;

Q_SIGNALS:
    void windowShown(pdehost::HeldJobWindow *window);
    // With `once`: every window of the first scan was closed.
    void finished();

private:
    void jobArrived(const HeldJob &job);
    void jobLeft(int id, JobFate fate);
    void scanned();
    void windowClosed(int id);

    Settings m_settings;
    QThread *m_thread;
    HeldJobWatcher *m_watcher;
    QHash<int, QPointer<HeldJobWindow>> m_windows;
    QList<int> m_order;
    bool m_firstScanDone = false;
};

} // namespace pdehost
