// SPDX-License-Identifier: MIT
// Job options as job attributes of an IPP request.
#pragma once

#include "host/PrinterSession.h"
#include "host/SchedulerConnection.h"

#include <cups/cups.h>

namespace pdehost {

// Adds the options to the request's job attributes. IPP attributes and PPD
// options are encoded as libcups encodes them for `lp -o` (their types, a
// comma-separated list of values); a print-settings key of an extension
// (a reverse-DNS name, with a dot) becomes one string value exactly as it
// is, because libcups would read a leading "{" as a collection and split
// the text at commas.
void addJobOptions(ipp_t *request, int count, cups_option_t *options);

// Whether an option is an extension's print-settings key (a reverse-DNS
// name) rather than an IPP attribute or PPD option.
bool isExtensionKey(const QString &name);

// Writes `entries` into job `id` (Set-Job-Attributes, encoded as above).
// Returns false and sets `error` with the scheduler's reason when it is
// refused; true at once when there are none.
bool setJobOptions(SchedulerConnection &scheduler, int id, const Options &entries, QString *error);

} // namespace pdehost
