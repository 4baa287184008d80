// SPDX-License-Identifier: MIT
// Bounded connections to the CUPS scheduler.
#include "host/SchedulerConnection.h"

#include <cerrno>
#include <cstring>
#include <sys/socket.h>

namespace pdehost {

QString SchedulerConnection::address()
{
    const QString server = QString::fromUtf8(cupsServer());
    if (server.startsWith(u'/'))
        return server;
    return QStringLiteral("%1:%2").arg(server).arg(ippPort());
}

int SchedulerConnection::timeoutSeconds()
{
    bool ok = false;
    const int seconds = qEnvironmentVariableIntValue("PDE_SCHEDULER_TIMEOUT", &ok);
    return ok && seconds >= 1 && seconds <= 600 ? seconds : 10;
}

int SchedulerConnection::onTimeout(http_t *, void *self)
{
    // Giving up at the first expiry: the scheduler had the whole timeout.
    static_cast<SchedulerConnection *>(self)->m_timedOut = true;
    return 0;
}

std::unique_ptr<SchedulerConnection> SchedulerConnection::open(QString *error)
{
    auto connection = std::unique_ptr<SchedulerConnection>(new SchedulerConnection);
    const int timeout = timeoutSeconds();
    connection->m_http.reset(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                                          timeout * 1000, nullptr));
    if (!connection->m_http) {
        const int cause = errno;
        *error = QStringLiteral("the scheduler at %1 cannot be reached: %2")
                     .arg(address(), cause == ETIMEDOUT || cause == 0
                                         ? QStringLiteral("no connection within %1 s").arg(timeout)
                                         : QString::fromLocal8Bit(std::strerror(cause)));
        return nullptr;
    }
    httpSetTimeout(connection->m_http.get(), timeout, &SchedulerConnection::onTimeout, connection.get());
    return connection;
}

QString SchedulerConnection::lastError() const
{
    if (m_timedOut)
        return QStringLiteral("the scheduler at %1 did not answer within %2 s").arg(address()).arg(timeoutSeconds());
    // A request that got no answer at all leaves libcups' status at its
    // transport error, whose text may be a bare "Success".
    if (cupsLastError() == IPP_STATUS_ERROR_SERVICE_UNAVAILABLE || cupsLastError() == IPP_STATUS_ERROR_INTERNAL) {
        const int cause = httpError(m_http.get());
        return QStringLiteral("the scheduler at %1 cannot be reached: %2")
            .arg(address(), cause != 0 ? QString::fromLocal8Bit(std::strerror(cause))
                                       : QStringLiteral("the connection was closed"));
    }
    return QString::fromUtf8(cupsLastErrorString());
}

} // namespace pdehost
