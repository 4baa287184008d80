// SPDX-License-Identifier: MIT
// Private record values at the scheduler: what bundles declare, whether the
// scheduler hides it, and the administrator's command that makes it do so.
#include "host/RecordPrivacy.h"

#include "host/BundleLocator.h"
#include "host/SchedulerConnection.h"
#include "host/SchedulerPolicy.h"
#include "pdekit/Bundle.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cups/cups.h>

#include <cstring>
#include <memory>
#include <vector>

namespace pdehost {
namespace {

struct IppDelete {
    void operator()(ipp_t *ipp) const { ippDelete(ipp); }
};
using Ipp = std::unique_ptr<ipp_t, IppDelete>;

constexpr qint64 kConfigurationLimit = 4 * 1024 * 1024;
const char *const kConfigurationResource = "/admin/conf/cupsd.conf";

// A request of `operation` for `user`, as that user would send it.
Ipp newRequest(ipp_op_t operation, const QByteArray &user)
{
    Ipp request(ippNewRequest(operation));
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, user.constData());
    return request;
}

bool refusedAsForbidden(ipp_status_t status)
{
    return status == IPP_STATUS_ERROR_FORBIDDEN || status == IPP_STATUS_ERROR_NOT_AUTHORIZED
           || status == IPP_STATUS_ERROR_NOT_AUTHENTICATED;
}

// Of `keys`, those job `jobId` has as `user` sees it; nullopt (and `error`)
// when the scheduler does not answer; empty when it refuses this user.
std::optional<QStringList> keysSeenBy(const QByteArray &user, int jobId, const QStringList &keys, QString *error)
{
    const std::unique_ptr<SchedulerConnection> connection = SchedulerConnection::open(error);
    if (!connection)
        return std::nullopt;
    Ipp request = newRequest(IPP_OP_GET_JOB_ATTRIBUTES, user);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr,
                 QStringLiteral("ipp://localhost/jobs/%1").arg(jobId).toUtf8().constData());
    const Ipp response(cupsDoRequest(connection->http(), request.release(), "/jobs/"));
    const ipp_status_t status = cupsLastError();
    if (refusedAsForbidden(status))
        return QStringList{};
    if (!response || status > IPP_STATUS_OK_EVENTS_COMPLETE) {
        *error = QStringLiteral("job %1: %2").arg(jobId).arg(connection->lastError());
        return std::nullopt;
    }
    QStringList seen;
    for (const QString &key : keys) {
        if (ippFindAttribute(response.get(), key.toUtf8().constData(), IPP_TAG_ZERO) != nullptr)
            seen.append(key);
    }
    return seen;
}

// The newest of `user`'s jobs that carries any of `keys`; 0 when none does.
std::optional<int> newestJobWithKeys(const QByteArray &user, const QStringList &keys, QString *error)
{
    const std::unique_ptr<SchedulerConnection> connection = SchedulerConnection::open(error);
    if (!connection)
        return std::nullopt;
    Ipp request = newRequest(IPP_OP_GET_JOBS, user);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, "ipp://localhost/");
    ippAddBoolean(request.get(), IPP_TAG_OPERATION, "my-jobs", 1);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "which-jobs", nullptr, "all");
    QList<QByteArray> names{QByteArrayLiteral("job-id")};
    for (const QString &key : keys)
        names.append(key.toUtf8());
    std::vector<const char *> requested;
    for (const QByteArray &name : names)
        requested.push_back(name.constData());
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(requested.size()), nullptr, requested.data());
    const Ipp response(cupsDoRequest(connection->http(), request.release(), "/"));
    if (!response || cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE) {
        if (cupsLastError() == IPP_STATUS_ERROR_NOT_FOUND)
            return 0;
        *error = connection->lastError();
        return std::nullopt;
    }
    int newest = 0;
    int id = 0;
    bool carries = false;
    const auto close = [&] {
        if (carries && id > newest)
            newest = id;
        id = 0;
        carries = false;
    };
    for (ipp_attribute_t *attr = ippFirstAttribute(response.get()); attr != nullptr; attr = ippNextAttribute(response.get())) {
        const char *name = ippGetName(attr);
        if (name == nullptr) {
            close(); // the separator between jobs
            continue;
        }
        if (std::strcmp(name, "job-id") == 0)
            id = ippGetInteger(attr, 0);
        else if (keys.contains(QString::fromUtf8(name)))
            carries = true;
    }
    close();
    return newest;
}

} // namespace

QStringList privateSettingsKeys(const pde::Bundle &bundle)
{
    QStringList keys;
    for (const QVariant &entry : bundle.infoDictionary().value(QString::fromLatin1(kPrivateSettingsKeysKey)).toList()) {
        if (entry.typeId() == QMetaType::QString && !keys.contains(entry.toString()))
            keys.append(entry.toString());
    }
    return keys;
}

QStringList installedPrivateSettingsKeys(const QStringList &explicitBundles, QStringList *problems)
{
    QStringList paths = explicitBundles;
    for (const QString &folder : bundleSearchDirectories()) {
        for (const QFileInfo &entry : QDir(folder).entryInfoList({QStringLiteral("*.plugin")}, QDir::Dirs, QDir::Name))
            paths.append(entry.absoluteFilePath());
    }
    QStringList keys;
    for (const QString &path : paths) {
        const pde::Bundle *bundle = pde::Bundle::open(path);
        if (bundle == nullptr) {
            problems->append(QStringLiteral("%1: not a bundle (no readable Contents/Info.plist)").arg(path));
            continue;
        }
        for (const QString &key : privateSettingsKeys(*bundle)) {
            if (!keys.contains(key))
                keys.append(key);
        }
    }
    return keys;
}

std::optional<QStringList> recordKeysShownToOthers(int jobId, const QStringList &keys, QString *error)
{
    const QByteArray owner(cupsUser());
    QByteArray stranger("pde-privacy-probe");
    if (stranger == owner)
        stranger += "-2";
    if (jobId == 0) {
        const std::optional<int> newest = newestJobWithKeys(owner, keys, error);
        if (!newest)
            return std::nullopt;
        jobId = *newest;
        if (jobId == 0) {
            *error = QStringLiteral("none of your jobs carries the record's private values");
            return std::nullopt;
        }
    }
    const std::optional<QStringList> carried = keysSeenBy(owner, jobId, keys, error);
    if (!carried)
        return std::nullopt;
    if (carried->isEmpty()) {
        *error = QStringLiteral("job %1 carries none of the record's private values").arg(jobId);
        return std::nullopt;
    }
    return keysSeenBy(stranger, jobId, *carried, error);
}

QString recordPrivacyWarning(const QStringList &shownKeys)
{
    return QStringLiteral("warning: the scheduler shows the private values of your print jobs (%1) to every "
                          "local user; an administrator can hide them with \"pde-host protect-record\"")
        .arg(shownKeys.join(QStringLiteral(", ")));
}

std::optional<QStringList> protectRecord(const QStringList &keys, bool dryRun, QString *error)
{
    if (keys.isEmpty()) {
        *error = QStringLiteral("no installed bundle declares private record keys (%1 in its Info.plist)")
                     .arg(QString::fromLatin1(kPrivateSettingsKeysKey));
        return std::nullopt;
    }
    const std::unique_ptr<SchedulerConnection> connection = SchedulerConnection::open(error);
    if (!connection)
        return std::nullopt;
    const auto refusal = [&connection](const char *what, http_status_t status) {
        QString text = QStringLiteral("the scheduler's configuration cannot be %1: %2")
                           .arg(QLatin1StringView(what), status == HTTP_STATUS_ERROR ? connection->lastError()
                                                                                     : QString::fromUtf8(httpStatus(status)));
        if (status == HTTP_STATUS_UNAUTHORIZED || status == HTTP_STATUS_FORBIDDEN)
            text += QStringLiteral(" (this is an administrator's command: run it as root or as a member of the "
                                   "scheduler's SystemGroup)");
        return text;
    };

    QTemporaryFile current;
    if (!current.open()) {
        *error = QStringLiteral("no temporary file for the scheduler's configuration: %1").arg(current.errorString());
        return std::nullopt;
    }
    const http_status_t got = cupsGetFd(connection->http(), kConfigurationResource, current.handle());
    if (got != HTTP_STATUS_OK) {
        *error = refusal("read", got);
        return std::nullopt;
    }
    current.seek(0);
    const QByteArray conf = current.read(kConfigurationLimit + 1);
    if (conf.size() > kConfigurationLimit) {
        *error = QStringLiteral("the scheduler's configuration is larger than %1 MiB").arg(kConfigurationLimit / (1024 * 1024));
        return std::nullopt;
    }

    QString problem;
    const std::optional<PolicyEdit> edit = addJobPrivateValues(conf, keys, &problem);
    if (!edit) {
        *error = QStringLiteral("the scheduler's configuration (cupsd.conf) is left as it is: %1").arg(problem);
        return std::nullopt;
    }
    if (edit->policies.isEmpty()) {
        // The scheduler hides only its default values when no policy exists.
        *error = QStringLiteral("the scheduler's configuration has no <Policy>; add the stock \"default\" policy first");
        return std::nullopt;
    }
    QStringList report;
    if (edit->changes.isEmpty()) {
        report.append(QStringLiteral("Every policy of the scheduler (%1) already hides %2 from other users; nothing to change.")
                          .arg(edit->policies.join(QStringLiteral(", ")), keys.join(QStringLiteral(", "))));
        return report;
    }
    report = describeChanges(edit->changes).split(u'\n', Qt::SkipEmptyParts);
    if (dryRun) {
        report.append(QStringLiteral("Dry run: the scheduler's configuration was not changed."));
        return report;
    }

    QTemporaryFile changed;
    if (!changed.open() || changed.write(edit->text) != edit->text.size() || !changed.flush()) {
        *error = QStringLiteral("no temporary file for the scheduler's configuration: %1").arg(changed.errorString());
        return std::nullopt;
    }
    changed.seek(0);
    const http_status_t put = cupsPutFd(connection->http(), kConfigurationResource, changed.handle());
    if (put != HTTP_STATUS_CREATED && put != HTTP_STATUS_OK) {
        *error = refusal("written", put);
        return std::nullopt;
    }
    report.append(QStringLiteral("The scheduler's configuration was changed; the scheduler restarts with it."));
    return report;
}

} // namespace pdehost
