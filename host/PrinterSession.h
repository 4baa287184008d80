// SPDX-License-Identifier: MIT
// The printer a dialog prints to: its PPD (opened, defaults marked, then the
// destination's and the user's options marked), the job's print settings,
// and the CUPS destination when there is one. It is the panels' callback and
// outlives every panel.
#pragma once

#include "pdekit/PDEPluginInterface.h"
#include "pdekit/PrintSettings.h"
#include "text/CupsPpd.h"

#include <cups/cups.h>

#include <QList>
#include <QString>

#include <memory>
#include <utility>

namespace pdehost {

using Options = QList<std::pair<QString, QString>>;

class PrinterSession : public pde::PDEPluginCallback
{
public:
    // A PPD file without a destination. Returns null and sets `error` when
    // the file cannot be opened as a PPD (with libcups' reason and line).
    static std::unique_ptr<PrinterSession> fromPpdFile(const QString &path, const Options &options, QString *error);
    // A CUPS destination (name or name/instance), its PPD fetched from the
    // scheduler and the user's saved options applied. Returns null and sets
    // `error` when the scheduler cannot be reached or does not answer within
    // its timeout, the destination is unknown, or its PPD cannot be had.
    static std::unique_ptr<PrinterSession> fromDestination(const QString &name, const Options &options, QString *error);

    ~PrinterSession() override;

    ppd_file_t *ppdFile() override { return m_ppd.get(); }
    pde::PrintSettings *printSettings() override { return m_active; }

    // While one lives, panels read and write a copy of the settings, so that
    // a dialog can ask for their current values without touching the job's.
    // Started from `start` instead, they see only what they write themselves.
    class Scratch
    {
    public:
        explicit Scratch(PrinterSession &session) : Scratch(session, session.m_settings) {}
        Scratch(PrinterSession &session, pde::PrintSettings start) : m_session(session), m_copy(std::move(start))
        {
            m_session.m_active = &m_copy;
        }
        ~Scratch() { m_session.m_active = &m_session.m_settings; }
        Scratch(const Scratch &) = delete;
        Scratch &operator=(const Scratch &) = delete;
        const pde::PrintSettings &settings() const { return m_copy; }

    private:
        PrinterSession &m_session;
        pde::PrintSettings m_copy;
    };

    // The CUPS destination; null for a PPD file.
    cups_dest_t *destination() const { return m_destination; }
    QString destinationName() const;

    // Writes the settings' entries under `keys` into the destination's line
    // of the user's saved options (~/.cups/lpoptions, see LpOptions.h), so
    // that later jobs to it through lp, lpr and these hosts start from them;
    // a key the settings lack leaves the line. False, with the reason in
    // `error`, when there is no destination or the file cannot be written.
    bool saveAsDestinationDefaults(const QStringList &keys, QString *error);
    // Takes `keys` out of the destination's saved options and out of the
    // settings. False, with the reason in `error`, as above.
    bool clearDestinationDefaults(const QStringList &keys, QString *error);

private:
    PrinterSession() = default;
    bool openPpd(const QString &path, QString *error);
    // Marks the options in the PPD and adds the job options among them to
    // the settings.
    void applyOptions(int count, cups_option_t *options);
    void applyOptions(const Options &options);

    PpdFile m_ppd;
    cups_dest_t *m_destination = nullptr;
    pde::PrintSettings m_settings;
    pde::PrintSettings *m_active = &m_settings;
};

} // namespace pdehost
