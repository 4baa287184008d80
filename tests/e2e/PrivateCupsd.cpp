// SPDX-License-Identifier: MIT
// Starting and stopping the test's own CUPS scheduler.
#include "PrivateCupsd.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace e2e {

PrivateCupsd::PrivateCupsd()
{
    // The scheduler runs filters as another user when started as root.
    ::chmod(QFile::encodeName(m_dir.path()).constData(), 0755);
    QTcpServer free;
    free.listen(QHostAddress::LocalHost, 0);
    m_port = free.serverPort();
    free.close();
    if (!start())
        m_cupsd.kill();
}

void PrivateCupsd::stop()
{
    if (m_cupsd.state() != QProcess::NotRunning) {
        m_cupsd.terminate();
        if (!m_cupsd.waitForFinished(10000))
            m_cupsd.kill();
        m_cupsd.waitForFinished(5000);
    }
}

bool PrivateCupsd::write(const QString &name, const QByteArray &content)
{
    QFile file(m_dir.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

bool PrivateCupsd::start()
{
    m_problem.clear();
    const QByteArray root = QFile::encodeName(m_dir.path());
    const passwd *me = ::getpwuid(::geteuid());
    const QByteArray user = ::geteuid() == 0 ? QByteArray("lp") : QByteArray(me != nullptr ? me->pw_name : "nobody");
    // Filters write their findings in out/, whoever runs them; the
    // scheduler's programs are the system's, with the record filter.
    for (const char *folder : {"out", "tmp", "lib/filter"})
        QDir().mkpath(m_dir.filePath(QLatin1StringView(folder)));
    ::chmod(root + "/out", 0777);
    ::chmod(root + "/tmp", 0777);
    for (const char *folder : {"daemon", "backend", "notifier"}) {
        const QLatin1StringView name(folder);
        QFile::link(QStringLiteral("/usr/lib/cups/") + name, m_dir.filePath(QStringLiteral("lib/") + name));
    }
    const bool written =
        write(QStringLiteral("lib/filter/pde-record-filter"),
              "#!/bin/sh\n"
              "# Keeps the job options it is given, then passes the document on.\n"
              "printf '%s' \"$5\" > \"" + root + "/out/options-$1.tmp\"\n"
              "mv \"" + root + "/out/options-$1.tmp\" \"" + root + "/out/options-$1\"\n"
              "if [ -n \"$6\" ]; then cat \"$6\"; else cat; fi\n")
        && ::chmod(root + "/lib/filter/pde-record-filter", 0755) == 0
        && write(QStringLiteral("cupsd.conf"),
                 "LogLevel warn\n"
                 "Listen 127.0.0.1:" + QByteArray::number(m_port) + "\n"
                 "Browsing Off\nWebInterface No\nDefaultAuthType None\nDefaultShared No\n"
                 "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                 "<Location /admin>\n  Order allow,deny\n  Allow all\n</Location>\n"
                 // The stock policy's private job values; no operation
                 // needs a password, administration neither.
                 "<Policy default>\n"
                 "  JobPrivateAccess default\n"
                 "  JobPrivateValues default\n"
                 "  <Limit All>\n    Order deny,allow\n  </Limit>\n"
                 "</Policy>\n")
        && write(QStringLiteral("cups-files.conf"),
                 "FileDevice Yes\nSandboxing Relaxed\nUser " + user + "\nServerRoot " + root + "\nServerBin " + root
                     + "/lib\nRequestRoot " + root + "/spool\nTempDir " + root + "/tmp\nCacheDir " + root
                     + "/cache\nStateDir " + root + "/state\nErrorLog " + root + "/error_log\nAccessLog " + root
                     + "/access_log\nPageLog " + root + "/page_log\n");
    if (!written) {
        m_problem = QStringLiteral("the scheduler's files cannot be written in %1").arg(m_dir.path());
        return false;
    }

    m_cupsd.setProcessChannelMode(QProcess::MergedChannels);
    m_cupsd.start(QStringLiteral("/usr/sbin/cupsd"),
                  {QStringLiteral("-f"), QStringLiteral("-c"), m_dir.filePath(QStringLiteral("cupsd.conf")),
                   QStringLiteral("-s"), m_dir.filePath(QStringLiteral("cups-files.conf"))});
    if (!m_cupsd.waitForStarted(5000)) {
        m_problem = QStringLiteral("cupsd did not start (Debian package cups-daemon): %1").arg(m_cupsd.errorString());
        return false;
    }
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 15000 && m_cupsd.state() != QProcess::NotRunning) {
        QTcpSocket probe;
        probe.connectToHost(QHostAddress::LocalHost, m_port);
        if (probe.waitForConnected(200))
            return true;
        QThread::msleep(100);
    }
    m_problem = QStringLiteral("cupsd did not come up on %1: %2 %3")
                    .arg(server(), QString::fromLocal8Bit(m_cupsd.readAll()), QString::fromLocal8Bit(logs()));
    return false;
}

bool PrivateCupsd::addQueue(const QString &name, const QString &ppd, const QStringList &settings)
{
    QFile source(ppd);
    if (!source.open(QIODevice::ReadOnly)
        || !write(name + QStringLiteral(".ppd"),
                  source.readAll() + "\n*cupsFilter: \"text/plain 0 pde-record-filter\"\n")) {
        m_problem = QStringLiteral("%1 cannot be copied to %2").arg(ppd, m_dir.path());
        return false;
    }
    const QString device = QStringLiteral("file://") + m_dir.filePath(QStringLiteral("out/device-") + name);
    const QString queuePpd = m_dir.filePath(name + QStringLiteral(".ppd"));
    QStringList arguments{QStringLiteral("-h"), server(), QStringLiteral("-p"), name, QStringLiteral("-E"),
                          QStringLiteral("-v"), device, QStringLiteral("-P"), queuePpd};
    for (const QString &setting : settings)
        arguments << QStringLiteral("-o") << setting;
    QProcess lpadmin;
    lpadmin.setProcessChannelMode(QProcess::MergedChannels);
    lpadmin.start(QStringLiteral("/usr/sbin/lpadmin"), arguments);
    if (!lpadmin.waitForFinished(30000) || lpadmin.exitCode() != 0) {
        m_problem = QStringLiteral("lpadmin failed: %1").arg(QString::fromLocal8Bit(lpadmin.readAll()));
        return false;
    }
    return true;
}

QByteArray PrivateCupsd::logs() const
{
    QByteArray text;
    for (const char *name : {"error_log", "access_log"}) {
        QFile log(m_dir.filePath(QLatin1StringView(name)));
        if (log.open(QIODevice::ReadOnly))
            text += log.readAll();
    }
    return text;
}

std::optional<QByteArray> PrivateCupsd::optionsOfJob(int id, int timeoutMs) const
{
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < timeoutMs) {
        QFile file(m_dir.filePath(QStringLiteral("out/options-%1").arg(id)));
        if (file.open(QIODevice::ReadOnly))
            return file.readAll();
        QThread::msleep(100);
    }
    return std::nullopt;
}

} // namespace e2e
