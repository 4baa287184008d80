// SPDX-License-Identifier: MIT
// Job submission through the CUPS destination API.
#include "host/CupsJob.h"

#include <QFile>
#include <QFileInfo>

#include <memory>

namespace pdehost {
namespace {

struct DestInfoFree {
    void operator()(cups_dinfo_t *info) const { cupsFreeDestInfo(info); }
};

QString cupsMessage()
{
    return QString::fromUtf8(cupsLastErrorString());
}

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
    const pde::CupsOptions cups = options.toCupsOptions();

    const std::unique_ptr<cups_dinfo_t, DestInfoFree> info(cupsCopyDestInfo(CUPS_HTTP_DEFAULT, destination));
    if (!info)
        return QStringLiteral("%1: %2").arg(QString::fromUtf8(destination->name), cupsMessage());
    int job = 0;
    if (cupsCreateDestJob(CUPS_HTTP_DEFAULT, destination, info.get(), &job, title.toUtf8().constData(), cups.count(),
                          cups.data())
        != IPP_STATUS_OK)
        return QStringLiteral("%1: the job cannot be created: %2").arg(QString::fromUtf8(destination->name), cupsMessage());

    for (qsizetype i = 0; i < files.size(); ++i) {
        QFile file(files[i]);
        if (!file.open(QIODevice::ReadOnly)) {
            cupsCancelDestJob(CUPS_HTTP_DEFAULT, destination, job);
            return QStringLiteral("%1: %2").arg(files[i], file.errorString());
        }
        const QByteArray name = QFileInfo(files[i]).fileName().toUtf8();
        if (cupsStartDestDocument(CUPS_HTTP_DEFAULT, destination, info.get(), job, name.constData(), CUPS_FORMAT_AUTO, 0,
                                  nullptr, i + 1 == files.size() ? 1 : 0)
            != HTTP_STATUS_CONTINUE) {
            cupsCancelDestJob(CUPS_HTTP_DEFAULT, destination, job);
            return QStringLiteral("%1: cannot be sent: %2").arg(files[i], cupsMessage());
        }
        while (!file.atEnd()) {
            const QByteArray chunk = file.read(64 * 1024);
            if (cupsWriteRequestData(CUPS_HTTP_DEFAULT, chunk.constData(), static_cast<size_t>(chunk.size()))
                != HTTP_STATUS_CONTINUE)
                break;
        }
        if (cupsFinishDestDocument(CUPS_HTTP_DEFAULT, destination, info.get()) != IPP_STATUS_OK)
            return QStringLiteral("%1: the printer refused it: %2").arg(files[i], cupsMessage());
    }
    return job;
}

} // namespace pdehost
