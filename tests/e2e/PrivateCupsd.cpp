// SPDX-License-Identifier: MIT
// Starting and stopping the test's own CUPS scheduler.
#include "PrivateCupsd.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <pwd.h>
#include <unistd.h>

namespace e2e {
namespace {

const QString kCupsd = QStringLiteral("/usr/sbin/cupsd");
const QString kLpadmin = QStringLiteral("/usr/sbin/lpadmin");

quint16 freePort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    return server.serverPort();
}

} // namespace

PrivateCupsd::PrivateCupsd()
{
    if (!QFileInfo(kCupsd).isExecutable() || !QFileInfo(kLpadmin).isExecutable()) {
        m_problem = QStringLiteral("cupsd or lpadmin is not installed (Debian packages cups-daemon, cups-client)");
        return;
    }
    // The scheduler runs filters as another user when started as root.
    QFile::setPermissions(m_dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                                            | QFileDevice::ReadGroup | QFileDevice::ExeGroup | QFileDevice::ReadOther
                                            | QFileDevice::ExeOther);
    m_port = freePort();
    if (!start())
        m_cupsd.kill();
}

PrivateCupsd::~PrivateCupsd()
{
    stop();
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

QString PrivateCupsd::server() const
{
    return QStringLiteral("127.0.0.1:%1").arg(m_port);
}

bool PrivateCupsd::write(const QString &relative, const QByteArray &content, bool executable)
{
    const QString path = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return false;
    file.close();
    if (executable)
        file.setPermissions(file.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther
                            | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    return true;
}

bool PrivateCupsd::start()
{
    m_problem.clear();
    const QString root = m_dir.path();
    const bool asRoot = ::geteuid() == 0;
    const passwd *me = ::getpwuid(::geteuid());
    const QByteArray user = asRoot ? QByteArray("lp") : QByteArray(me != nullptr ? me->pw_name : "nobody");

    // Filters write their findings here, whoever runs them.
    for (const char *folder : {"out", "tmp"}) {
        QDir().mkpath(root + u'/' + QLatin1StringView(folder));
        QFile::setPermissions(root + u'/' + QLatin1StringView(folder), QFileDevice::Permissions(0x7777));
    }
    // The scheduler's programs, with the record filter beside the system's.
    QDir().mkpath(root + QStringLiteral("/lib/filter"));
    QFile::link(QStringLiteral("/usr/lib/cups/daemon"), root + QStringLiteral("/lib/daemon"));
    QFile::link(QStringLiteral("/usr/lib/cups/backend"), root + QStringLiteral("/lib/backend"));
    QFile::link(QStringLiteral("/usr/lib/cups/notifier"), root + QStringLiteral("/lib/notifier"));
    const bool written =
        write(QStringLiteral("lib/filter/pde-record-filter"),
              "#!/bin/sh\n"
              "# Keeps the job options it is given, then passes the document on.\n"
              "printf '%s' \"$5\" > \"" + root.toUtf8() + "/out/options-$1.tmp\"\n"
              "mv \"" + root.toUtf8() + "/out/options-$1.tmp\" \"" + root.toUtf8() + "/out/options-$1\"\n"
              "if [ -n \"$6\" ]; then cat \"$6\"; else cat; fi\n",
              true)
        && write(QStringLiteral("cupsd.conf"),
                 "LogLevel warn\n"
                 "Listen 127.0.0.1:" + QByteArray::number(m_port) + "\n"
                 "Browsing Off\nWebInterface No\nDefaultAuthType None\nDefaultShared No\n"
                 "<Location />\n  Order allow,deny\n  Allow all\n</Location>\n"
                 "<Location /admin>\n  Order allow,deny\n  Allow all\n</Location>\n"
                 // The stock default policy, except that administration
                 // needs no password: jobs belong to their owners, and
                 // their private values are hidden from other users.
                 "<Policy default>\n"
                 "  JobPrivateAccess default\n"
                 "  JobPrivateValues default\n"
                 "  SubscriptionPrivateAccess default\n"
                 "  SubscriptionPrivateValues default\n"
                 "  <Limit Create-Job Print-Job Print-URI Validate-Job>\n    Order deny,allow\n  </Limit>\n"
                 "  <Limit Send-Document Send-URI Hold-Job Release-Job Restart-Job Purge-Jobs Set-Job-Attributes "
                 "Create-Job-Subscription Renew-Subscription Cancel-Subscription Get-Notifications Reprocess-Job "
                 "Cancel-Current-Job Suspend-Current-Job Resume-Job Cancel-My-Jobs Close-Job CUPS-Move-Job "
                 "CUPS-Get-Document Cancel-Job CUPS-Authenticate-Job>\n"
                 "    Require user @OWNER @SYSTEM\n    Order deny,allow\n  </Limit>\n"
                 "  <Limit All>\n    Order deny,allow\n  </Limit>\n"
                 "</Policy>\n")
        && write(QStringLiteral("cups-files.conf"),
                 "FileDevice Yes\nSandboxing Relaxed\n"
                 "User " + user + "\n"
                 "ServerRoot " + root.toUtf8() + "\n"
                 "ServerBin " + root.toUtf8() + "/lib\n"
                 "RequestRoot " + root.toUtf8() + "/spool\n"
                 "TempDir " + root.toUtf8() + "/tmp\n"
                 "CacheDir " + root.toUtf8() + "/cache\n"
                 "StateDir " + root.toUtf8() + "/state\n"
                 "ErrorLog " + root.toUtf8() + "/error_log\n"
                 "AccessLog " + root.toUtf8() + "/access_log\n"
                 "PageLog " + root.toUtf8() + "/page_log\n");
    if (!written) {
        m_problem = QStringLiteral("the scheduler's files cannot be written in %1").arg(root);
        return false;
    }

    m_cupsd.setProcessChannelMode(QProcess::MergedChannels);
    m_cupsd.start(kCupsd, {QStringLiteral("-f"), QStringLiteral("-c"), root + QStringLiteral("/cupsd.conf"),
                           QStringLiteral("-s"), root + QStringLiteral("/cups-files.conf")});
    if (!m_cupsd.waitForStarted(5000)) {
        m_problem = QStringLiteral("cupsd did not start: %1").arg(m_cupsd.errorString());
        return false;
    }
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 15000) {
        QTcpSocket probe;
        probe.connectToHost(QHostAddress::LocalHost, m_port);
        if (probe.waitForConnected(200))
            return true;
        if (m_cupsd.state() == QProcess::NotRunning)
            break;
        QThread::msleep(100);
    }
    QFile log(root + QStringLiteral("/error_log"));
    log.open(QIODevice::ReadOnly);
    m_problem = QStringLiteral("cupsd did not come up on %1: %2 %3")
                    .arg(server(), QString::fromLocal8Bit(m_cupsd.readAll()), QString::fromLocal8Bit(log.readAll()));
    return false;
}

bool PrivateCupsd::addQueue(const QString &name, const QString &ppd, const QStringList &settings)
{
    QFile source(ppd);
    if (!source.open(QIODevice::ReadOnly)) {
        m_problem = QStringLiteral("%1 cannot be read").arg(ppd);
        return false;
    }
    const QString queuePpd = m_dir.filePath(name + QStringLiteral(".ppd"));
    if (!write(name + QStringLiteral(".ppd"),
               source.readAll() + "\n*cupsFilter: \"text/plain 0 pde-record-filter\"\n")) {
        m_problem = QStringLiteral("%1 cannot be written").arg(queuePpd);
        return false;
    }
    QStringList arguments{QStringLiteral("-h"), server(), QStringLiteral("-p"), name, QStringLiteral("-E"),
                          QStringLiteral("-v"), QStringLiteral("file://") + m_dir.filePath(QStringLiteral("out/device-")) + name,
                          QStringLiteral("-P"), queuePpd};
    for (const QString &setting : settings)
        arguments << QStringLiteral("-o") << setting;
    QProcess lpadmin;
    lpadmin.setProcessChannelMode(QProcess::MergedChannels);
    lpadmin.start(kLpadmin, arguments);
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
    const QString path = m_dir.filePath(QStringLiteral("out/options-%1").arg(id));
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < timeoutMs) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            return file.readAll();
        QThread::msleep(100);
    }
    return std::nullopt;
}

} // namespace e2e
