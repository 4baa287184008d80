// SPDX-License-Identifier: MIT
// Opening the printer's PPD and options through libcups.
#include "host/PrinterSession.h"

#include "host/LpOptions.h"
#include "host/SchedulerConnection.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

namespace pdehost {
namespace {

// Destination options that describe the printer rather than a job.
bool isPrinterAttribute(const char *name)
{
    const QByteArray option(name);
    return option.startsWith("printer-") || option.startsWith("marker-") || option == "device-uri"
           || option == "auth-info-required";
}

} // namespace

PrinterSession::~PrinterSession()
{
    if (m_destination != nullptr)
        cupsFreeDests(1, m_destination);
}

bool PrinterSession::openPpd(const QString &path, QString *error)
{
    m_ppd.reset(ppdOpenFile(QFile::encodeName(path).constData()));
    if (!m_ppd) {
        int line = 0;
        const ppd_status_t status = ppdLastError(&line);
        *error = QCoreApplication::translate("pdehost::PrinterSession", "%1: not a PPD file: %2 (line %3)")
                     .arg(path, QString::fromUtf8(ppdErrorString(status)))
                     .arg(line);
        return false;
    }
    ppdMarkDefaults(m_ppd.get());
    return true;
}

void PrinterSession::applyOptions(const Options &options)
{
    pde::PrintSettings given;
    for (const auto &[key, value] : options)
        given.setValue(key, value);
    const pde::CupsOptions cups = given.toCupsOptions();
    applyOptions(cups.count(), cups.data());
}

void PrinterSession::applyOptions(int count, cups_option_t *options)
{
    cupsMarkOptions(m_ppd.get(), count, options);
    for (int i = 0; i < count; ++i) {
        if (!isPrinterAttribute(options[i].name))
            m_settings.setValue(QString::fromUtf8(options[i].name), QString::fromUtf8(options[i].value));
    }
}

std::unique_ptr<PrinterSession> PrinterSession::fromPpdFile(const QString &path, const Options &options, QString *error)
{
    std::unique_ptr<PrinterSession> session(new PrinterSession);
    if (!session->openPpd(path, error))
        return nullptr;
    session->applyOptions(options);
    return session;
}

std::unique_ptr<PrinterSession> PrinterSession::fromDestination(const QString &name, const Options &options,
                                                                 QString *error)
{
    const QByteArray printer = name.section(u'/', 0, 0).toUtf8();
    const QByteArray instance = name.section(u'/', 1).toUtf8();
    const std::unique_ptr<SchedulerConnection> connection = SchedulerConnection::open(error);
    if (!connection)
        return nullptr;
    cups_dest_t *dests = nullptr;
    const int count = cupsGetDests2(connection->http(), &dests);
    cups_dest_t *found = cupsGetDest(printer.constData(), instance.isEmpty() ? nullptr : instance.constData(), count, dests);
    if (found == nullptr) {
        *error = connection->failed()
                     ? QStringLiteral("%1: %2").arg(name, connection->lastError())
                     : QCoreApplication::translate("pdehost::PrinterSession", "%1: no such printer").arg(name);
        cupsFreeDests(count, dests);
        return nullptr;
    }
    std::unique_ptr<PrinterSession> session(new PrinterSession);
    cupsCopyDest(found, 0, &session->m_destination);
    cupsFreeDests(count, dests);

    const char *ppdPath = cupsGetPPD2(connection->http(), printer.constData());
    if (ppdPath == nullptr) {
        *error = QCoreApplication::translate("pdehost::PrinterSession", "%1: the printer's PPD cannot be had: %2")
                     .arg(name, connection->lastError());
        return nullptr;
    }
    const QString local = QFile::decodeName(ppdPath);
    const bool opened = session->openPpd(local, error);
    ::unlink(ppdPath);
    if (!opened)
        return nullptr;
    // The user's saved options as the file has them now: libcups reads the
    // file of the home folder it saw first in the thread.
    cups_dest_t *dest = session->m_destination;
    const pde::PrintSettings saved = lpOptionsFor(userLpOptionsPath(), name);
    for (const QString &key : saved.keys()) {
        dest->num_options = cupsAddOption(key.toUtf8().constData(),
                                          pde::PrintSettings::optionText(*saved.value(key)).toUtf8().constData(),
                                          dest->num_options, &dest->options);
    }
    // The queue's default hold is what makes a session agent show the panel
    // for other applications' jobs; a job from these hosts has been through
    // the panel already, so only a hold the user saved is kept.
    const QString holdKey = QStringLiteral("job-hold-until");
    if (!saved.contains(holdKey) && !lpOptionsFor(systemLpOptionsPath(), name).contains(holdKey))
        dest->num_options = cupsRemoveOption(holdKey.toUtf8().constData(), dest->num_options, &dest->options);
    session->applyOptions(dest->num_options, dest->options);
    session->applyOptions(options);
    return session;
}

QString PrinterSession::destinationName() const
{
    if (m_destination == nullptr)
        return {};
    QString name = QString::fromUtf8(m_destination->name);
    if (m_destination->instance != nullptr)
        name += u'/' + QString::fromUtf8(m_destination->instance);
    return name;
}

bool PrinterSession::saveAsDestinationDefaults(const QStringList &keys, QString *error)
{
    if (m_destination == nullptr) {
        *error = QCoreApplication::translate("pdehost::PrinterSession",
                                             "no printer to save defaults for (a PPD file was given)");
        return false;
    }
    pde::PrintSettings saved;
    QStringList removed;
    for (const QString &key : keys) {
        if (const std::optional<QVariant> value = m_settings.value(key))
            saved.setValue(key, *value);
        else
            removed.append(key);
    }
    return updateLpOptions(userLpOptionsPath(), destinationName(), saved, removed, error);
}

bool PrinterSession::clearDestinationDefaults(const QStringList &keys, QString *error)
{
    if (m_destination == nullptr) {
        *error = QCoreApplication::translate("pdehost::PrinterSession",
                                             "no printer to clear defaults for (a PPD file was given)");
        return false;
    }
    if (!updateLpOptions(userLpOptionsPath(), destinationName(), {}, keys, error))
        return false;
    for (const QString &key : keys)
        m_settings.remove(key);
    return true;
}

} // namespace pdehost
