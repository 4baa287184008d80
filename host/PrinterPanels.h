// SPDX-License-Identifier: MIT
// A printer opened together with the extension panels its PPD calls for:
// what every host (pde-host, pde-print, pde-agent) starts from.
#pragma once

#include "host/PanelHost.h"
#include "host/PrinterSession.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace pdehost {

class PrinterPanels
{
public:
    struct Source {
        QString ppdFile; // a PPD file, or
        QString printer; // a CUPS destination (NAME or NAME/INSTANCE)
    };

    // Opens the printer, then finds and loads the bundles its PPD calls for
    // (and those given explicitly). Returns null and sets `error` when the
    // printer cannot be opened; bundles that cannot be found or loaded are
    // listed in problems(), and the other panels are still there.
    static std::unique_ptr<PrinterPanels> open(const Source &source, const Options &options,
                                               const QStringList &explicitBundles, QString *error);

    PrinterSession &session() { return *m_session; }
    std::vector<HostedPanel> &panels() { return m_host.panels(); }
    const QStringList &problems() const { return m_problems; }

    // Saves every panel in display order and stops at the first that refuses
    // (it has shown its alert). Returns that panel's index, or nullopt when
    // every panel saved.
    std::optional<std::size_t> saveAll();

    // The summary lines of every panel as the controls stand, "Title: value",
    // in display order. The panels save into a scratch copy of the settings
    // with alerts silenced, so the job's settings stay as they are.
    QStringList summaryLines();

    // The keys the panels write: each restores from empty settings and saves
    // into them, alerts silenced, then restores from the job's settings
    // again. Empty when no panel writes anything.
    QStringList recordKeys();
    // Keeps the panels' entries of the job's settings as the printer's saved
    // options (PrinterSession::saveAsDestinationDefaults). False, with the
    // reason in `error`, when they cannot be saved.
    bool saveDefaults(QString *error);
    // Takes the panels' entries out of the printer's saved options and the
    // job's settings, and shows the panels as they are without them. False,
    // with the reason in `error`, when the saved options cannot be written.
    bool clearDefaults(QString *error);

private:
    PrinterPanels() = default;

    // The panels hold the session as their callback: it is declared first so
    // that it goes last.
    std::unique_ptr<PrinterSession> m_session;
    PanelHost m_host;
    QStringList m_problems;
};

} // namespace pdehost
