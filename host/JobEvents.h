// SPDX-License-Identifier: MIT
// The scheduler's job and printer events for the current user, through a
// subscription that this host pulls from (the "ippget" method): the
// scheduler keeps the events, the host asks for those it has not seen.
#pragma once

#include "host/SchedulerConnection.h"

#include <QString>

#include <optional>

namespace pdehost {

class JobEvents
{
public:
    // Subscribes to every queue's job events (created, state changed) and
    // printer events (added, deleted, modified) for `leaseSeconds`.
    // Returns nullopt and sets `error` when the scheduler refuses or cannot
    // be reached.
    static std::optional<JobEvents> subscribe(SchedulerConnection &scheduler, int leaseSeconds, QString *error);

    struct Batch {
        int jobEvents = 0;
        int printerEvents = 0;
    };
    // The events since the last fetch. Returns nullopt and sets `error` when
    // the scheduler cannot be asked; `gone` is set when it no longer knows
    // the subscription (expired, or lost in a restart), which needs a new one.
    std::optional<Batch> fetch(SchedulerConnection &scheduler, bool *gone, QString *error);

    // Extends the lease by its length. False, with `error`, when refused.
    bool renew(SchedulerConnection &scheduler, QString *error);

    // Ends the subscription; a failure is of no consequence (the lease runs
    // out).
    void cancel(SchedulerConnection &scheduler);

private:
    JobEvents(int id, int leaseSeconds) : m_id(id), m_leaseSeconds(leaseSeconds) {}

    int m_id;
    int m_leaseSeconds;
    int m_nextSequence = 1;
};

} // namespace pdehost
