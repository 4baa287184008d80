// SPDX-License-Identifier: MIT
// Event subscriptions with pull delivery.
#include "host/JobEvents.h"

#include "host/IppRequest.h"

#include <QByteArray>

#include <iterator>

namespace pdehost {

std::optional<JobEvents> JobEvents::subscribe(SchedulerConnection &scheduler, int leaseSeconds, QString *error)
{
    static const char *const kEvents[] = {"job-created", "job-state-changed", "printer-added", "printer-deleted",
                                          "printer-modified"};
    Ipp request = newIppRequest(IPP_OP_CREATE_PRINTER_SUBSCRIPTIONS, {});
    ippAddStrings(request.get(), IPP_TAG_SUBSCRIPTION, IPP_TAG_KEYWORD, "notify-events",
                  static_cast<int>(std::size(kEvents)), nullptr, kEvents);
    ippAddString(request.get(), IPP_TAG_SUBSCRIPTION, IPP_TAG_KEYWORD, "notify-pull-method", nullptr, "ippget");
    ippAddInteger(request.get(), IPP_TAG_SUBSCRIPTION, IPP_TAG_INTEGER, "notify-lease-duration", leaseSeconds);
    const Ipp response = sendIppRequest(scheduler, std::move(request), "/", error);
    if (!response)
        return std::nullopt;
    ipp_attribute_t *id = ippFindAttribute(response.get(), "notify-subscription-id", IPP_TAG_INTEGER);
    if (id == nullptr) {
        *error = QStringLiteral("the scheduler at %1 gave no subscription").arg(SchedulerConnection::address());
        return std::nullopt;
    }
    return JobEvents(ippGetInteger(id, 0), leaseSeconds);
}

std::optional<JobEvents::Batch> JobEvents::fetch(SchedulerConnection &scheduler, bool *gone, QString *error)
{
    *gone = false;
    Ipp request = newIppRequest(IPP_OP_GET_NOTIFICATIONS, {});
    ippAddInteger(request.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-ids", m_id);
    ippAddInteger(request.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-sequence-numbers", m_nextSequence);
    ippAddBoolean(request.get(), IPP_TAG_OPERATION, "notify-wait", 0);
    const Ipp response = sendIppRequest(scheduler, std::move(request), "/", error);
    if (!response) {
        *gone = cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND;
        return std::nullopt;
    }
    Batch batch;
    for (ipp_attribute_t *attribute = ippFirstAttribute(response.get()); attribute != nullptr;
         attribute = ippNextAttribute(response.get())) {
        const char *name = ippGetName(attribute);
        if (name == nullptr || ippGetGroupTag(attribute) != IPP_TAG_EVENT_NOTIFICATION)
            continue;
        const QByteArray key(name);
        if (key == "notify-sequence-number") {
            m_nextSequence = std::max(m_nextSequence, ippGetInteger(attribute, 0) + 1);
        } else if (key == "notify-subscribed-event") {
            const QByteArray event(ippGetString(attribute, 0, nullptr));
            (event.startsWith("printer-") ? batch.printerEvents : batch.jobEvents) += 1;
        }
    }
    return batch;
}

bool JobEvents::renew(SchedulerConnection &scheduler, QString *error)
{
    Ipp request = newIppRequest(IPP_OP_RENEW_SUBSCRIPTION, {});
    ippAddInteger(request.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-id", m_id);
    ippAddInteger(request.get(), IPP_TAG_SUBSCRIPTION, IPP_TAG_INTEGER, "notify-lease-duration", m_leaseSeconds);
    return sendIppRequest(scheduler, std::move(request), "/", error) != nullptr;
}

void JobEvents::cancel(SchedulerConnection &scheduler)
{
    Ipp request = newIppRequest(IPP_OP_CANCEL_SUBSCRIPTION, {});
    ippAddInteger(request.get(), IPP_TAG_OPERATION, IPP_TAG_INTEGER, "notify-subscription-id", m_id);
    QString ignored;
    sendIppRequest(scheduler, std::move(request), "/", &ignored);
}

} // namespace pdehost
