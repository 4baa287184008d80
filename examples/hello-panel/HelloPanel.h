// SPDX-License-Identifier: MIT
// The Hello panel: one greeting, entered in a text field, that travels with
// the job as the print setting com.example.hello.Greeting.
#pragma once

#include "HelloModel.h"

#include <pdekit/Nib.h>
#include <pdekit/PDEPluginInterface.h>

#include <QObject>
#include <QPointer>
#include <QString>

namespace com_example_hello {

// The print-settings key of the greeting (prefixed with the bundle
// identifier, so that it meets no other vendor's key).
inline constexpr QLatin1StringView kGreetingKey{"com.example.hello.Greeting"};

class HelloPanel : public QObject, public pde::PDEPanel
{
    Q_OBJECT
    // The nib's outlet to its model ("File's Owner.model = model").
    Q_PROPERTY(com_example_hello::HelloModel *model READ model WRITE setModel)

public:
    HelloPanel(pde::PDEPluginCallback *host, pde::Bundle *bundle);
    // Takes the view back from a host that still holds it, then lets the
    // nib's objects go.
    ~HelloPanel() override;

    HelloModel *model() const { return m_model; }
    void setModel(HelloModel *model) { m_model = model; }

    // Loads the nib "Hello" once and translates its texts; null (and a
    // logged reason) when it does not load or connects no model.
    QWidget *panelView() override;
    QString panelName() override; // "Panel Title" of Localizable.strings
    QString panelKind() override; // the bundle identifier
    std::optional<QStringList> supportedPPDOptionKeys() override; // none
    void willShow() override;
    bool shouldHide() override;     // true
    bool shouldPrint() override;    // true
    bool shouldShowHelp() override; // true: the panel has no help book
    void PPDOptionKeyValueDidChange(const QString &option, const QString &ppdChoice) override;
    // Takes the greeting from the job's print settings; always true.
    bool restoreValuesAndReturnError(pde::PDEError *error) override;
    // Writes the greeting (an empty one removes the key); false when the
    // host has no print settings.
    bool saveValuesAndReturnError(pde::PDEError *error) override;
    // One line, "Greeting", when there is a greeting; nullopt otherwise.
    std::optional<pde::SummaryInfo> summaryInfo() override;

private:
    QString localized(const QString &key) const;
    QString greeting() const;

    pde::PDEPluginCallback *m_host;
    pde::Bundle *m_bundle;
    pde::Nib::TopLevelObjects m_nibObjects;
    QPointer<HelloModel> m_model;
    QWidget *m_view = nullptr;
    // The greeting while there is no view (restored before the first show).
    QString m_greeting;
};

} // namespace com_example_hello
