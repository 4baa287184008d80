// SPDX-License-Identifier: MIT
// Neutral answers of the base panel, and its title.
#include "plugin/BasicPdeInterface.h"

#include "localization/LocalizedString.h"
#include "pdekit/Bundle.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

BasicPdeInterface::BasicPdeInterface(pde::PDEPluginCallback *callback, pde::Bundle *bundle)
    : m_pluginBundle(bundle), m_callback(callback)
{
    m_ppd = m_callback != nullptr ? m_callback->ppdFile() : nullptr;
    if (m_ppd != nullptr)
        m_localizedFileName = localizedTableNameForPPD(m_ppd);
}

BasicPdeInterface::~BasicPdeInterface() = default;

QWidget *BasicPdeInterface::panelView()
{
    return nullptr;
}

QString BasicPdeInterface::panelName()
{
    if (!m_thePDEName) {
        m_thePDEName = nvktraLocalizedStringForKey(m_pluginBundle, QStringLiteral("Custom PDE Title"),
                                                   std::nullopt, m_localizedFileName)
                           .value_or(QString());
    }
    return *m_thePDEName;
}

QString BasicPdeInterface::panelKind()
{
    return m_pluginBundle != nullptr ? m_pluginBundle->identifier() : QString();
}

std::optional<QStringList> BasicPdeInterface::supportedPPDOptionKeys()
{
    return std::nullopt;
}

void BasicPdeInterface::willShow() {}

bool BasicPdeInterface::shouldHide()
{
    return true;
}

bool BasicPdeInterface::shouldPrint()
{
    return true;
}

bool BasicPdeInterface::shouldShowHelp()
{
    return true;
}

void BasicPdeInterface::PPDOptionKeyValueDidChange(const QString &, const QString &) {}

bool BasicPdeInterface::restoreValuesAndReturnError(pde::PDEError *)
{
    return true;
}

bool BasicPdeInterface::saveValuesAndReturnError(pde::PDEError *)
{
    return true;
}

std::optional<pde::SummaryInfo> BasicPdeInterface::summaryInfo()
{
    return std::nullopt;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
