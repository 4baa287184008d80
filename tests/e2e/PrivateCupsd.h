// SPDX-License-Identifier: MIT
// A CUPS scheduler of the test's own: its configuration, spool and logs in a
// temporary folder, listening on a free loopback port, with queues whose
// filter writes the job options it receives to a file. No system CUPS
// setting is read or touched; the scheduler is stopped by its process id.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace e2e {

class PrivateCupsd
{
public:
    PrivateCupsd();
    ~PrivateCupsd() { stop(); }

    // Why the scheduler is not running (not installed, did not start).
    const QString &problem() const { return m_problem; }
    bool running() const { return m_problem.isEmpty(); }

    // "127.0.0.1:<port>", for CUPS_SERVER.
    QString server() const { return QStringLiteral("127.0.0.1:%1").arg(m_port); }
    // The folder that stands for the system's CUPS folder (cupsd.conf).
    QString serverRoot() const { return m_dir.path(); }

    // Adds a queue from `ppd` (the record filter added to it), with lpadmin's
    // `-o` settings (such as "job-hold-until-default=indefinite"). False,
    // with the reason in problem(), when it fails.
    bool addQueue(const QString &name, const QString &ppd, const QStringList &settings = {});

    // What the scheduler wrote to its error and access logs.
    QByteArray logs() const;

    // The job options the filter saw for job `id`, as the filter's fifth
    // argument, once it ran; nullopt after the timeout.
    std::optional<QByteArray> optionsOfJob(int id, int timeoutMs = 30000) const;

    // Stops the scheduler, and starts it again on the same port with the
    // same queues and jobs. False, with the reason in problem(), when it
    // does not come up.
    void stop();
    bool start();

private:
    bool write(const QString &name, const QByteArray &content);

    QTemporaryDir m_dir;
    quint16 m_port = 0;
    QProcess m_cupsd;
    QString m_problem;
};

} // namespace e2e
