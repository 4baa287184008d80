// SPDX-License-Identifier: MIT
// A connection to the CUPS scheduler that gives up within a bounded time,
// so that a scheduler that is down, or that accepts and never answers, is
// reported as such instead of hanging a host.
#pragma once

#include <cups/cups.h>

#include <QString>

#include <memory>

namespace pdehost {

class SchedulerConnection
{
public:
    // Connects to the scheduler libcups is configured for (CUPS_SERVER,
    // client.conf, the local socket). Returns null and sets `error` ("the
    // scheduler at ADDRESS cannot be reached: REASON") when it cannot.
    static std::unique_ptr<SchedulerConnection> open(QString *error);

    // The connection, for libcups calls that take one.
    http_t *http() const { return m_http.get(); }

    // Why the last request on this connection failed: the scheduler did not
    // answer in time, or CUPS's own last error text.
    QString lastError() const;

    // Whether the last request failed for the scheduler's sake (no answer in
    // time, the connection lost, a server error) rather than being refused.
    bool failed() const;

    // The scheduler's address as libcups names it ("localhost:631",
    // "/run/cups/cups.sock").
    static QString address();

    // How long a connection or an answer may take: PDE_SCHEDULER_TIMEOUT
    // (seconds, 1 to 600), else 10.
    static int timeoutSeconds();

private:
    struct HttpClose {
        void operator()(http_t *http) const { httpClose(http); }
    };
    static int onTimeout(http_t *http, void *self);

    std::unique_ptr<http_t, HttpClose> m_http;
    bool m_timedOut = false;
};

} // namespace pdehost
