// SPDX-License-Identifier: MIT
// Bounded connections to the CUPS scheduler.
#include "host/SchedulerConnection.h"

#include <cerrno>
#include <cstring>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace pdehost {
namespace {

// Why a connection to the scheduler fails. libcups reports every failed
// connect as "Host is down", so the connect is tried once more here to learn
// the system's reason (refused, no such socket, no route, no answer).
QString connectFailure(int timeoutSeconds)
{
    const QByteArray server(cupsServer());
    const auto reason = [](int code) { return QString::fromLocal8Bit(std::strerror(code)); };
    const auto timedOut = [timeoutSeconds] { return QStringLiteral("no connection within %1 s").arg(timeoutSeconds); };
    if (server.startsWith('/')) {
        sockaddr_un local{};
        local.sun_family = AF_UNIX;
        if (server.size() >= static_cast<qsizetype>(sizeof local.sun_path))
            return reason(ENAMETOOLONG);
        std::memcpy(local.sun_path, server.constData(), static_cast<size_t>(server.size()));
        const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const int result = fd < 0 ? -1 : ::connect(fd, reinterpret_cast<const sockaddr *>(&local), sizeof local);
        const int code = errno;
        if (fd >= 0)
            ::close(fd);
        return result == 0 ? timedOut() : reason(code);
    }
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (const int status = ::getaddrinfo(server.constData(), QByteArray::number(ippPort()).constData(), &hints, &found);
        status != 0)
        return QString::fromLocal8Bit(::gai_strerror(status));
    int code = ETIMEDOUT;
    const int fd = ::socket(found->ai_family, found->ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, found->ai_protocol);
    if (fd < 0) {
        code = errno;
    } else {
        if (::connect(fd, found->ai_addr, found->ai_addrlen) == 0) {
            code = 0;
        } else if (errno != EINPROGRESS) {
            code = errno;
        } else {
            pollfd wait{fd, POLLOUT, 0};
            socklen_t length = sizeof code;
            if (::poll(&wait, 1, timeoutSeconds * 1000) == 1)
                ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &code, &length);
        }
        ::close(fd);
    }
    ::freeaddrinfo(found);
    return code == 0 || code == ETIMEDOUT ? timedOut() : reason(code);
}

} // namespace

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

int SchedulerConnection::onTimeout(http_t *http, void *self)
{
    // Giving up at the first expiry: the scheduler had the whole timeout.
    // libcups goes on with further requests of the same call (a destination
    // list asks for the default too) on a new connection; those must not
    // wait the whole timeout again.
    static_cast<SchedulerConnection *>(self)->m_timedOut = true;
    httpSetTimeout(http, 0.001, &SchedulerConnection::onTimeout, self);
    return 0;
}

std::unique_ptr<SchedulerConnection> SchedulerConnection::open(QString *error)
{
    auto connection = std::unique_ptr<SchedulerConnection>(new SchedulerConnection);
    const int timeout = timeoutSeconds();
    connection->m_http.reset(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                                          timeout * 1000, nullptr));
    if (!connection->m_http) {
        *error = QStringLiteral("the scheduler at %1 cannot be reached: %2").arg(address(), connectFailure(timeout));
        return nullptr;
    }
    httpSetTimeout(connection->m_http.get(), timeout, &SchedulerConnection::onTimeout, connection.get());
    return connection;
}

bool SchedulerConnection::failed() const
{
    return m_timedOut || cupsLastError() >= IPP_STATUS_ERROR_INTERNAL;
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
