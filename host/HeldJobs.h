// SPDX-License-Identifier: MIT
// The user's jobs that wait in the scheduler, held by their queue, until a
// host has shown them the printer's panels: listing them, reading a job's
// options, writing the panels' entries back into it, releasing and
// cancelling it. Every request goes through the scheduler's own
// authorization: only the job's owner may change or release it.
#pragma once

#include "host/PrinterSession.h"
#include "host/SchedulerConnection.h"

#include <QList>
#include <QString>

#include <optional>

namespace pdehost {

struct HeldJob {
    int id = 0;
    QString printer; // the queue's name
    QString title;   // job-name
    QString state;   // job-state keyword ("pending-held")
    QString owner;   // job-originating-user-name

    friend bool operator==(const HeldJob &, const HeldJob &) = default;
};

// The not yet completed jobs of `user` that are held, on `printer` or on
// every queue when it is empty. Returns nullopt and sets `error` (the
// scheduler's reason) when the scheduler cannot be asked.
std::optional<QList<HeldJob>> heldJobsOf(SchedulerConnection &scheduler, const QString &user,
                                         const QString &printer, QString *error);

// The extension bundles (file names) that the queue's PPD calls for; empty
// for a queue without a PPD. Returns nullopt and sets `error` when the
// scheduler cannot be asked or the PPD cannot be read.
std::optional<QStringList> bundlesCalledForBy(SchedulerConnection &scheduler, const QString &printer, QString *error);

// What became of a job.
enum class JobFate { Held, Released, Cancelled, Aborted, Printed, Gone };

// The job's fate now. Returns nullopt and sets `error` when the scheduler
// cannot be asked.
std::optional<JobFate> fateOf(SchedulerConnection &scheduler, int id, QString *error);

// A fate as the end of a sentence ("it was cancelled"), in the user's
// language.
QString describeFate(JobFate fate);

// A held job of `user` on `printer` with the options it carries, ready to
// restore the panels from. Returns nullopt and sets `error` when the job
// does not exist (the scheduler's reason), is on another queue, is not held
// or is not the user's.
struct HeldJobOptions {
    HeldJob job;
    Options options; // the job's own options, in the scheduler's order
};
std::optional<HeldJobOptions> readHeldJob(SchedulerConnection &scheduler, int id, const QString &printer,
                                          const QString &user, QString *error);

// The entries of `after` that are new or differ from `before`: what the
// panels wrote when they saved.
Options changedEntries(const pde::PrintSettings &before, const pde::PrintSettings &after);

// Writes `entries` into the held job (Set-Job-Attributes, nothing when
// there are none), then releases it (Release-Job). Returns false and sets
// `error` with the scheduler's reason when either is refused; a refused
// write leaves the job held.
bool releaseWithEntries(SchedulerConnection &scheduler, int id, const Options &entries, QString *error);

// Cancels the job (Cancel-Job). Returns false and sets `error` with the
// scheduler's reason when it is refused.
bool cancelHeldJob(SchedulerConnection &scheduler, int id, QString *error);

} // namespace pdehost
