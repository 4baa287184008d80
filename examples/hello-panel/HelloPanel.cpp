// SPDX-License-Identifier: MIT
// The Hello panel's life: its view from the nib, the greeting to and from
// the job's print settings, its summary line.
#include "HelloPanel.h"

#include <pdekit/Bundle.h>
#include <pdekit/PrintSettings.h>

#include <QAbstractButton>
#include <QLabel>
#include <QWidget>

namespace com_example_hello {

HelloPanel::HelloPanel(pde::PDEPluginCallback *host, pde::Bundle *bundle) : m_host(host), m_bundle(bundle) {}

HelloPanel::~HelloPanel()
{
    if (m_view != nullptr && m_view->parentWidget() != nullptr)
        m_view->setParent(nullptr);
}

QString HelloPanel::localized(const QString &key) const
{
    return m_bundle != nullptr ? m_bundle->localizedStringForKey(key, std::nullopt, std::nullopt) : key;
}

QWidget *HelloPanel::panelView()
{
    if (m_view != nullptr)
        return m_view;
    pde::Nib::TopLevelObjects objects;
    if (m_bundle == nullptr || !pde::Nib::load(*m_bundle, QStringLiteral("Hello"), this, &objects) || !m_model)
        return nullptr;
    m_nibObjects = std::move(objects);
    // The nib's first top-level object is its root view. Its texts are keys
    // of the strings table.
    m_view = qobject_cast<QWidget *>(m_nibObjects.front().get());
    for (QLabel *label : m_view->findChildren<QLabel *>())
        label->setText(localized(label->text()));
    for (QAbstractButton *button : m_view->findChildren<QAbstractButton *>())
        button->setText(localized(button->text()));
    m_model->setGreeting(m_greeting);
    return m_view;
}

QString HelloPanel::panelName()
{
    return localized(QStringLiteral("Panel Title"));
}

QString HelloPanel::panelKind()
{
    return m_bundle != nullptr ? m_bundle->identifier() : QString();
}

std::optional<QStringList> HelloPanel::supportedPPDOptionKeys()
{
    return std::nullopt;
}

void HelloPanel::willShow() {}

bool HelloPanel::shouldHide()
{
    return true;
}

bool HelloPanel::shouldPrint()
{
    return true;
}

bool HelloPanel::shouldShowHelp()
{
    return true;
}

void HelloPanel::PPDOptionKeyValueDidChange(const QString &, const QString &) {}

QString HelloPanel::greeting() const
{
    return m_model ? m_model->greeting() : m_greeting;
}

bool HelloPanel::restoreValuesAndReturnError(pde::PDEError *)
{
    pde::PrintSettings *settings = m_host != nullptr ? m_host->printSettings() : nullptr;
    const std::optional<QVariant> value = settings != nullptr ? settings->value(kGreetingKey) : std::nullopt;
    m_greeting = value ? value->toString() : QString();
    if (m_model)
        m_model->setGreeting(m_greeting);
    return true;
}

bool HelloPanel::saveValuesAndReturnError(pde::PDEError *)
{
    pde::PrintSettings *settings = m_host != nullptr ? m_host->printSettings() : nullptr;
    if (settings == nullptr)
        return false;
    m_greeting = greeting();
    if (m_greeting.isEmpty())
        settings->remove(kGreetingKey);
    else
        settings->setValue(kGreetingKey, m_greeting);
    return true;
}

std::optional<pde::SummaryInfo> HelloPanel::summaryInfo()
{
    if (greeting().isEmpty())
        return std::nullopt;
    const QString title = localized(QStringLiteral("Greeting Title"));
    return pde::SummaryInfo{{title, greeting()}, {QString(pde::kSummaryDisplayOrderKey), QStringList{title}}};
}

} // namespace com_example_hello
