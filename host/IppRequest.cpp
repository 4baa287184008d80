// SPDX-License-Identifier: MIT
// Building and sending IPP requests.
#include "host/IppRequest.h"

#include <QByteArray>

namespace pdehost {
namespace {

QByteArray localUri(const char *format, const QByteArray &argument)
{
    char uri[HTTP_MAX_URI];
    httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof uri, "ipp", nullptr, "localhost", ippPort(), format,
                     argument.constData());
    return QByteArray(uri);
}

} // namespace

Ipp newIppRequest(ipp_op_t operation, const QString &printer, int job)
{
    Ipp request(ippNewRequest(operation));
    if (job > 0)
        ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr,
                     localUri("/jobs/%s", QByteArray::number(job)).constData());
    else
        ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr,
                     printer.isEmpty() ? localUri("/%s", {}).constData()
                                       : localUri("/printers/%s", printer.toUtf8()).constData());
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
    return request;
}

Ipp sendIppRequest(SchedulerConnection &scheduler, Ipp request, const char *resource, QString *error)
{
    Ipp response(cupsDoRequest(scheduler.http(), request.release(), resource));
    if (!response || cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE) {
        *error = scheduler.lastError();
        return nullptr;
    }
    return response;
}

QString ippText(ipp_t *ipp, const char *name)
{
    ipp_attribute_t *attribute = ippFindAttribute(ipp, name, IPP_TAG_ZERO);
    const char *text = attribute != nullptr ? ippGetString(attribute, 0, nullptr) : nullptr;
    return text != nullptr ? QString::fromUtf8(text) : QString();
}

} // namespace pdehost
