// SPDX-License-Identifier: MIT
// Job submission through the CUPS destination API.
#include "host/CupsJob.h"

#include "host/JobAttributes.h"
#include "host/SchedulerConnection.h"

#include <QFile>
#include <QFileInfo>

#include <memory>

namespace pdehost {
namespace {

struct DestInfoFree {
    void operator()(cups_dinfo_t *info) const { cupsFreeDestInfo(info); }
};

} // namespace

std::variant<int, QString> submitJob(cups_dest_t *destination, const QStringList &files, const QString &title,
                                     const pde::PrintSettings &settings, const StandardOptions &standard)
{
    if (destination == nullptr)
        return QStringLiteral("no printer to print to");
    if (files.isEmpty())
        return QStringLiteral("no file to print");
    for (const QString &file : files) {
        if (!QFileInfo(file).isReadable())
            return QStringLiteral("%1: cannot be read").arg(file);
    }

    pde::PrintSettings options = settings;
    if (standard.copies > 1)
        options.setValue(QStringLiteral("copies"), QString::number(standard.copies));
    if (!standard.pageRanges.isEmpty())
        options.setValue(QStringLiteral("page-ranges"), standard.pageRanges);
    if (!standard.sides.isEmpty())
        options.setValue(QStringLiteral("sides"), standard.sides);
    for (const auto &[name, value] : standard.dialog)
        options.setValue(name, value);
    if (!options.contains(QStringLiteral("job-hold-until")))
        options.setValue(QStringLiteral("job-hold-until"), QStringLiteral("no-hold"));
    // Extensions' entries are written into the job before its first
    // document, as single strings: the destination API would read a value
    // that starts with "{" as a collection.
    Options entries;
    for (const QString &key : options.keys()) {
        if (isExtensionKey(key)) {
            entries.append({key, pde::PrintSettings::optionText(*options.value(key))});
            options.remove(key);
        }
    }
    const pde::CupsOptions cups = options.toCupsOptions();

    QString error;
    const std::unique_ptr<SchedulerConnection> connection = SchedulerConnection::open(&error);
    if (!connection)
        return error;
    http_t *http = connection->http();
    const QString printer = QString::fromUtf8(destination->name);
    const std::unique_ptr<cups_dinfo_t, DestInfoFree> info(cupsCopyDestInfo(http, destination));
    if (!info)
        return QStringLiteral("%1: %2").arg(printer, connection->lastError());
    int job = 0;
    if (cupsCreateDestJob(http, destination, info.get(), &job, title.toUtf8().constData(), cups.count(), cups.data())
        != IPP_STATUS_OK)
        return QStringLiteral("%1: the job cannot be created: %2").arg(printer, connection->lastError());

    // From here on a failure cancels the job: an open job would otherwise
    // print its first documents once the scheduler gives up waiting for the
    // rest.
    const auto cancelled = [&](const QString &problem) {
        if (cupsCancelDestJob(http, destination, job) == IPP_STATUS_OK)
            return QStringLiteral("%1; job %2 was cancelled").arg(problem).arg(job);
        return QStringLiteral("%1; job %2 could not be cancelled: %3").arg(problem).arg(job).arg(connection->lastError());
    };
    if (!setJobOptions(*connection, job, entries, &error))
        return cancelled(QStringLiteral("%1: the job's settings cannot be written: %2").arg(printer, error));
    for (qsizetype i = 0; i < files.size(); ++i) {
        QFile file(files[i]);
        if (!file.open(QIODevice::ReadOnly))
            return cancelled(QStringLiteral("%1: %2").arg(files[i], file.errorString()));
        const QByteArray name = QFileInfo(files[i]).fileName().toUtf8();
        if (cupsStartDestDocument(http, destination, info.get(), job, name.constData(), CUPS_FORMAT_AUTO, 0, nullptr,
                                  i + 1 == files.size() ? 1 : 0)
            != HTTP_STATUS_CONTINUE)
            return cancelled(QStringLiteral("%1: cannot be sent: %2").arg(files[i], connection->lastError()));
        bool sent = true;
        while (sent && !file.atEnd()) {
            const QByteArray chunk = file.read(64 * 1024);
            sent = !chunk.isEmpty() || file.atEnd();
            sent = sent && cupsWriteRequestData(http, chunk.constData(), static_cast<size_t>(chunk.size())) == HTTP_STATUS_CONTINUE;
        }
        const bool finished = cupsFinishDestDocument(http, destination, info.get()) == IPP_STATUS_OK;
        if (!sent || !finished)
            return cancelled(QStringLiteral("%1: the printer refused it: %2").arg(files[i], connection->lastError()));
    }
    return job;
}

} // namespace pdehost
