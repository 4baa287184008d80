// SPDX-License-Identifier: MIT
// IPP requests to the scheduler in the current user's name, and their
// answers, owned.
#pragma once

#include "host/SchedulerConnection.h"

#include <QString>

#include <memory>

namespace pdehost {

struct IppDelete {
    void operator()(ipp_t *ipp) const { ippDelete(ipp); }
};
using Ipp = std::unique_ptr<ipp_t, IppDelete>;

// A request about the queue `printer` (every queue when empty) or, with a
// job id, about that job, made in the current user's name (cupsUser()).
Ipp newIppRequest(ipp_op_t operation, const QString &printer, int job = 0);

// Sends the request on the connection. Returns the scheduler's answer when
// it granted the request; null, with the scheduler's reason in `error` (or
// that it cannot be reached), otherwise. cupsLastError() tells the status.
Ipp sendIppRequest(SchedulerConnection &scheduler, Ipp request, const char *resource, QString *error);

// The first value of the named attribute as text; empty when it is absent.
QString ippText(ipp_t *ipp, const char *name);

} // namespace pdehost
