// SPDX-License-Identifier: MIT
// Opening the printer's PPD and options through libcups.
#include "host/PrinterSession.h"

#include "host/SchedulerConnection.h"

#include <QByteArray>
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
        *error = QStringLiteral("%1: not a PPD file: %2 (line %3)")
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
        *error = connection->failed() ? QStringLiteral("%1: %2").arg(name, connection->lastError())
                                      : QStringLiteral("%1: no such printer (%2)").arg(name, connection->lastError());
        cupsFreeDests(count, dests);
        return nullptr;
    }
    std::unique_ptr<PrinterSession> session(new PrinterSession);
    cupsCopyDest(found, 0, &session->m_destination);
    cupsFreeDests(count, dests);

    const char *ppdPath = cupsGetPPD2(connection->http(), printer.constData());
    if (ppdPath == nullptr) {
        *error = QStringLiteral("%1: the printer's PPD cannot be had: %2").arg(name, connection->lastError());
        return nullptr;
    }
    const QString local = QFile::decodeName(ppdPath);
    const bool opened = session->openPpd(local, error);
    ::unlink(ppdPath);
    if (!opened)
        return nullptr;
    session->applyOptions(session->m_destination->num_options, session->m_destination->options);
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

bool PrinterSession::saveAsDestinationDefaults(QString *error)
{
    if (m_destination == nullptr) {
        *error = QStringLiteral("no printer to save defaults for (a PPD file was given)");
        return false;
    }
    cups_dest_t *dests = nullptr;
    const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
    cups_dest_t *dest = cupsGetDest(m_destination->name, m_destination->instance, count, dests);
    if (dest == nullptr) {
        *error = QStringLiteral("%1: no such printer any more").arg(destinationName());
        cupsFreeDests(count, dests);
        return false;
    }
    const pde::CupsOptions options = m_settings.toCupsOptions();
    for (int i = 0; i < options.count(); ++i)
        dest->num_options = cupsAddOption(options.data()[i].name, options.data()[i].value, dest->num_options, &dest->options);
    const int saved = cupsSetDests2(CUPS_HTTP_DEFAULT, count, dests);
    cupsFreeDests(count, dests);
    if (saved != 0) {
        *error = QStringLiteral("%1: the defaults cannot be saved: %2").arg(destinationName(), QString::fromUtf8(cupsLastErrorString()));
        return false;
    }
    return true;
}

} // namespace pdehost
