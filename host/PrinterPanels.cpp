// SPDX-License-Identifier: MIT
// Opening a printer with its panels, saving them and reading their summary.
#include "host/PrinterPanels.h"

#include "host/BundleLocator.h"
#include "pdekit/Alert.h"

namespace pdehost {

std::unique_ptr<PrinterPanels> PrinterPanels::open(const Source &source, const Options &options,
                                                   const QStringList &explicitBundles, QString *error)
{
    std::unique_ptr<PrinterPanels> opened(new PrinterPanels);
    opened->m_session = source.ppdFile.isEmpty() ? PrinterSession::fromDestination(source.printer, options, error)
                                                 : PrinterSession::fromPpdFile(source.ppdFile, options, error);
    if (!opened->m_session)
        return nullptr;
    const LocatedBundles located = locateBundles(explicitBundles, dialogExtensionsOf(opened->m_session->ppdFile()),
                                                 bundleSearchDirectories());
    opened->m_host.load(located.paths, opened->m_session.get());
    opened->m_problems = located.problems + opened->m_host.problems();
    return opened;
}

std::optional<std::size_t> PrinterPanels::saveAll()
{
    for (std::size_t i = 0; i < panels().size(); ++i) {
        if (!panels()[i].panel->saveValuesAndReturnError(nullptr))
            return i;
    }
    return std::nullopt;
}

QStringList PrinterPanels::summaryLines()
{
    QStringList lines;
    PrinterSession::Scratch scratch(*m_session);
    const pde::AlertHandler previous = pde::setAlertHandler([](const pde::Alert &) {});
    for (HostedPanel &hosted : panels()) {
        hosted.panel->saveValuesAndReturnError(nullptr);
        const std::optional<pde::SummaryInfo> summary = hosted.panel->summaryInfo();
        if (!summary)
            continue;
        for (const QString &title : summary->value(QString(pde::kSummaryDisplayOrderKey)).toStringList())
            lines.append(title + QStringLiteral(": ") + summary->value(title).toString());
    }
    pde::setAlertHandler(previous);
    return lines;
}

QStringList PrinterPanels::recordKeys()
{
    QStringList keys;
    {
        PrinterSession::Scratch scratch(*m_session, pde::PrintSettings());
        const pde::AlertHandler previous = pde::setAlertHandler([](const pde::Alert &) {});
        for (HostedPanel &hosted : panels()) {
            hosted.panel->restoreValuesAndReturnError(nullptr);
            hosted.panel->saveValuesAndReturnError(nullptr);
        }
        pde::setAlertHandler(previous);
        keys = scratch.settings().keys();
    }
    for (HostedPanel &hosted : panels())
        hosted.panel->restoreValuesAndReturnError(nullptr);
    return keys;
}

bool PrinterPanels::saveDefaults(QString *error)
{
    return m_session->saveAsDestinationDefaults(recordKeys(), error);
}

bool PrinterPanels::clearDefaults(QString *error)
{
    if (!m_session->clearDestinationDefaults(recordKeys(), error))
        return false;
    for (HostedPanel &hosted : panels())
        hosted.panel->restoreValuesAndReturnError(nullptr);
    return true;
}

} // namespace pdehost
