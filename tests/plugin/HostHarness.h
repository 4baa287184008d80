// SPDX-License-Identifier: MIT
// Plays the host for tests: loads the built bundle with QPluginLoader through
// pde::Bundle, supplies a callback with a real PPD and print settings, and
// records alerts and help pages instead of showing them.
#pragma once

#include "FixturePpd.h"
#include "pdekit/Alert.h"
#include "pdekit/HelpViewer.h"
#include "pdekit/PDEPluginInterface.h"
#include "pdekit/PrintSettings.h"
#include "text/CupsPpd.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

class QPluginLoader;

namespace hosttest {

using testsupport::openFixturePpd;
using testsupport::Ppd;

class Callback : public pde::PDEPluginCallback
{
public:
    ppd_file_t *ppdFile() override { return ppd; }
    pde::PrintSettings *printSettings() override { return hasSettings ? &settings : nullptr; }

    ppd_file_t *ppd = nullptr;
    pde::PrintSettings settings;
    bool hasSettings = true;
};

// Alerts and help pages, recorded while an instance lives.
class Recorder
{
public:
    Recorder();
    ~Recorder();
    QList<pde::Alert> alerts;
    QList<QUrl> helpPages;

private:
    pde::AlertHandler m_previousAlerts;
    pde::HelpViewer::PageHandler m_previousPages;
};

// The factory of the bundle at `bundlePath` (the build tree's by default),
// loaded and handed its bundle; null when it cannot be loaded.
pde::PDEPlugIn *loadFactory(const QString &bundlePath = QStringLiteral(PDE_BUNDLE_DIR));

// The one panel the factory makes for the Print dialog.
std::unique_ptr<pde::PDEPanel> printPanel(pde::PDEPlugIn *factory, Callback *callback);

// The record's key for a suffix ("PrintType" ...).
QString recordKey(const char *suffix);

// What a user enters in the panel's controls; a field left nullopt is not
// touched.
struct Entry {
    std::optional<int> jobType;          // index in the job type pop-up
    std::optional<QString> userName;
    std::optional<QString> password;
    std::optional<int> documentNameType; // index in the document name pop-up
    std::optional<QString> documentName;
};

// Enters the values with the keyboard, as a user would: pop-up items by
// arrow keys, texts replacing what the field held.
void enter(QWidget *view, const Entry &entry);

// The text a field of the panel shows.
QString fieldText(QWidget *view, const char *name);

} // namespace hosttest
