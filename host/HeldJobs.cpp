// SPDX-License-Identifier: MIT
// Held jobs through IPP requests to the scheduler.
#include "host/HeldJobs.h"

#include "host/BundleLocator.h"
#include "host/IppRequest.h"
#include "host/JobAttributes.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QStringList>

#include <array>
#include <memory>

#include <unistd.h>

namespace pdehost {
namespace {

// The queue a job is on, from its job-printer-uri (".../printers/NAME").
QString queueOf(const QString &printerUri)
{
    return printerUri.section(u'/', -1);
}

QString stateKeyword(int state)
{
    const char *keyword = ippEnumString("job-state", state);
    return keyword != nullptr ? QString::fromUtf8(keyword) : QString::number(state);
}

// The text a job attribute carries as a job option: its values, comma
// separated, strings exactly as they are.
QString optionText(ipp_attribute_t *attribute)
{
    QStringList values;
    const ipp_tag_t tag = ippGetValueTag(attribute);
    for (int i = 0; i < ippGetCount(attribute); ++i) {
        if (tag == IPP_TAG_INTEGER || tag == IPP_TAG_ENUM) {
            values.append(QString::number(ippGetInteger(attribute, i)));
        } else if (tag == IPP_TAG_BOOLEAN) {
            values.append(ippGetBoolean(attribute, i) ? QStringLiteral("true") : QStringLiteral("false"));
        } else if (const char *text = ippGetString(attribute, i, nullptr)) {
            values.append(QString::fromUtf8(text));
        } else {
            std::array<char, 2048> buffer{};
            ippAttributeString(attribute, buffer.data(), buffer.size());
            return QString::fromUtf8(buffer.data());
        }
    }
    return values.join(u',');
}

// Attributes that describe the job's life in the scheduler rather than how
// it is to be printed.
bool isStatusAttribute(const QByteArray &name)
{
    static const char *const kPrefixes[] = {"job-", "time-at-", "date-time-at-", "number-of-", "document-",
                                            "printer-", "output-device-", "attributes-", "compression"};
    for (const char *prefix : kPrefixes) {
        if (name.startsWith(prefix))
            return true;
    }
    return false;
}

const char *const kJobListAttributes[] = {"job-id", "job-printer-uri", "job-name", "job-state",
                                          "job-originating-user-name"};

} // namespace

std::optional<QList<HeldJob>> heldJobsOf(SchedulerConnection &scheduler, const QString &user, const QString &printer,
                                         QString *error)
{
    Ipp request = newIppRequest(IPP_OP_GET_JOBS, printer);
    ippAddBoolean(request.get(), IPP_TAG_OPERATION, "my-jobs", 1);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "which-jobs", nullptr, "not-completed");
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(std::size(kJobListAttributes)), nullptr, kJobListAttributes);
    const Ipp response = sendIppRequest(scheduler, std::move(request), "/", error);
    if (!response)
        return std::nullopt;

    QList<HeldJob> held;
    HeldJob job;
    int state = 0;
    const auto finish = [&] {
        if (job.id > 0 && state == IPP_JSTATE_HELD && job.owner == user)
            held.append(job);
        job = HeldJob{};
        state = 0;
    };
    for (ipp_attribute_t *attribute = ippFirstAttribute(response.get()); attribute != nullptr;
         attribute = ippNextAttribute(response.get())) {
        const char *name = ippGetName(attribute);
        if (name == nullptr) { // the separator between two jobs
            finish();
            continue;
        }
        if (ippGetGroupTag(attribute) != IPP_TAG_JOB)
            continue;
        const QByteArray key(name);
        if (key == "job-id")
            job.id = ippGetInteger(attribute, 0);
        else if (key == "job-state")
            state = ippGetInteger(attribute, 0);
        else if (key == "job-printer-uri")
            job.printer = queueOf(QString::fromUtf8(ippGetString(attribute, 0, nullptr)));
        else if (key == "job-name")
            job.title = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
        else if (key == "job-originating-user-name")
            job.owner = QString::fromUtf8(ippGetString(attribute, 0, nullptr));
    }
    finish();
    for (HeldJob &found : held)
        found.state = stateKeyword(IPP_JSTATE_HELD);
    return held;
}

std::optional<QStringList> bundlesCalledForBy(SchedulerConnection &scheduler, const QString &printer, QString *error)
{
    time_t modified = 0;
    std::array<char, 1024> path{};
    const http_status_t status = cupsGetPPD3(scheduler.http(), printer.toUtf8().constData(), &modified, path.data(),
                                             path.size());
    if (status == HTTP_STATUS_NOT_FOUND)
        return QStringList();
    if (status != HTTP_STATUS_OK) {
        *error = QStringLiteral("%1: the printer's PPD cannot be had: %2").arg(printer, scheduler.lastError());
        return std::nullopt;
    }
    const PpdFile ppd(ppdOpenFile(path.data()));
    ::unlink(path.data());
    if (!ppd) {
        *error = QStringLiteral("%1: the printer's PPD cannot be read").arg(printer);
        return std::nullopt;
    }
    return dialogExtensionsOf(ppd.get());
}

std::optional<JobFate> fateOf(SchedulerConnection &scheduler, int id, QString *error)
{
    Ipp request = newIppRequest(IPP_OP_GET_JOB_ATTRIBUTES, {}, id);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, "job-state");
    const Ipp response = sendIppRequest(scheduler, std::move(request), "/jobs/", error);
    if (!response)
        return cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND ? std::optional(JobFate::Gone) : std::nullopt;
    switch (static_cast<ipp_jstate_t>(ippGetInteger(ippFindAttribute(response.get(), "job-state", IPP_TAG_ENUM), 0))) {
    case IPP_JSTATE_HELD:
        return JobFate::Held;
    case IPP_JSTATE_PENDING:
    case IPP_JSTATE_PROCESSING:
    case IPP_JSTATE_STOPPED:
        return JobFate::Released;
    case IPP_JSTATE_CANCELED:
        return JobFate::Cancelled;
    case IPP_JSTATE_ABORTED:
        return JobFate::Aborted;
    case IPP_JSTATE_COMPLETED:
        return JobFate::Printed;
    }
    return JobFate::Gone;
}

QString describeFate(JobFate fate)
{
    switch (fate) {
    case JobFate::Held:
        return QCoreApplication::translate("pdehost::JobFate", "it is held");
    case JobFate::Released:
        return QCoreApplication::translate("pdehost::JobFate", "it was released");
    case JobFate::Cancelled:
        return QCoreApplication::translate("pdehost::JobFate", "it was cancelled");
    case JobFate::Aborted:
        return QCoreApplication::translate("pdehost::JobFate", "the scheduler aborted it");
    case JobFate::Printed:
        return QCoreApplication::translate("pdehost::JobFate", "it was printed");
    case JobFate::Gone:
        return QCoreApplication::translate("pdehost::JobFate", "it no longer exists");
    }
    return {};
}

std::optional<HeldJobOptions> readHeldJob(SchedulerConnection &scheduler, int id, const QString &printer,
                                          const QString &user, QString *error)
{
    Ipp request = newIppRequest(IPP_OP_GET_JOB_ATTRIBUTES, {}, id);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr, "all");
    QString reason;
    const Ipp response = sendIppRequest(scheduler, std::move(request), "/jobs/", &reason);
    if (!response) {
        *error = QStringLiteral("job %1: %2").arg(id).arg(reason);
        return std::nullopt;
    }

    HeldJobOptions read;
    read.job.id = id;
    read.job.printer = queueOf(ippText(response.get(), "job-printer-uri"));
    read.job.title = ippText(response.get(), "job-name");
    read.job.owner = ippText(response.get(), "job-originating-user-name");
    const int state = ippGetInteger(ippFindAttribute(response.get(), "job-state", IPP_TAG_ENUM), 0);
    read.job.state = stateKeyword(state);
    const QString queue = printer.section(u'/', 0, 0);
    if (read.job.printer != queue) {
        *error = QStringLiteral("job %1 is on the queue %2, not on %3").arg(id).arg(read.job.printer, queue);
        return std::nullopt;
    }
    if (read.job.owner != user) {
        *error = QStringLiteral("job %1 is not yours (%2)").arg(id).arg(user);
        return std::nullopt;
    }
    if (state != IPP_JSTATE_HELD) {
        *error = QStringLiteral("job %1 is not held (it is %2)").arg(id).arg(read.job.state);
        return std::nullopt;
    }
    for (ipp_attribute_t *attribute = ippFirstAttribute(response.get()); attribute != nullptr;
         attribute = ippNextAttribute(response.get())) {
        const char *name = ippGetName(attribute);
        if (name == nullptr || ippGetGroupTag(attribute) != IPP_TAG_JOB || isStatusAttribute(QByteArray(name)))
            continue;
        read.options.append({QString::fromUtf8(name), optionText(attribute)});
    }
    return read;
}

Options changedEntries(const pde::PrintSettings &before, const pde::PrintSettings &after)
{
    Options changed;
    for (const QString &key : after.keys()) {
        const QString value = pde::PrintSettings::optionText(*after.value(key));
        const std::optional<QVariant> earlier = before.value(key);
        if (!earlier || pde::PrintSettings::optionText(*earlier) != value)
            changed.append({key, value});
    }
    return changed;
}

bool releaseWithEntries(SchedulerConnection &scheduler, int id, const Options &entries, QString *error)
{
    QString reason;
    if (!setJobOptions(scheduler, id, entries, &reason)) {
        *error = QStringLiteral("job %1: the panels' settings cannot be written: %2").arg(id).arg(reason);
        return false;
    }
    if (!sendIppRequest(scheduler, newIppRequest(IPP_OP_RELEASE_JOB, {}, id), "/jobs/", &reason)) {
        *error = QStringLiteral("job %1 cannot be released: %2").arg(id).arg(reason);
        return false;
    }
    return true;
}

bool cancelHeldJob(SchedulerConnection &scheduler, int id, QString *error)
{
    QString reason;
    if (!sendIppRequest(scheduler, newIppRequest(IPP_OP_CANCEL_JOB, {}, id), "/jobs/", &reason)) {
        *error = QStringLiteral("job %1 cannot be cancelled: %2").arg(id).arg(reason);
        return false;
    }
    return true;
}

} // namespace pdehost
