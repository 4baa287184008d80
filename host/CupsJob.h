// SPDX-License-Identifier: MIT
// Submitting documents to a CUPS destination with the job's print settings
// as job options.
#pragma once

#include "pdekit/PrintSettings.h"

#include <cups/cups.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>
#include <variant>

namespace pdehost {

// The options every print dialog offers besides the extensions' own.
struct StandardOptions {
    int copies = 1;
    QString pageRanges; // "1-3,5"; empty for all pages
    QString sides;      // "one-sided", "two-sided-long-edge", ...; empty for the printer's default
    // Every other option a dialog shows (name, value), applied in order after
    // the three above (see DialogJobOptions.h).
    QList<std::pair<QString, QString>> dialog;
};

// Creates one job on `destination` holding every file, with the settings'
// entries and the standard options as job options, through a connection
// that gives up within the scheduler timeout. The job has been through the
// panels, so it is sent with job-hold-until=no-hold unless the settings or
// the options name a hold: a queue that holds other applications' jobs for
// the panel does not hold it again. Returns the job id, or the reason it
// failed (which file, and CUPS's own message); a job that was created before
// the failure is cancelled.
std::variant<int, QString> submitJob(cups_dest_t *destination, const QStringList &files, const QString &title,
                                     const pde::PrintSettings &settings, const StandardOptions &standard);

} // namespace pdehost
