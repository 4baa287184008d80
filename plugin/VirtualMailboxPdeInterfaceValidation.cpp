// SPDX-License-Identifier: MIT
// The checks a held job must pass before it is saved, and their alerts.
#include "plugin/VirtualMailboxPdeInterface.h"

#include "panel/NumberValue.h"
#include "pdekit/Alert.h"

#include <algorithm>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

bool VirtualMailboxPdeInterface::validateInputValues()
{
    if (numberEquals(printType(), 0))
        return true;

    // The length is that of the protected form the panel holds; with a
    // minimum of 0 or 1 that is the same as asking for a non-empty password.
    bool passwordPasses = true;
    if (numberEquals(printType(), 4) || numberEquals(printType(), 1)) {
        const auto length = static_cast<std::size_t>(password() ? password()->size() : 0);
        passwordPasses = length >= m_minPasswordLength;
    }

    // Only spaces and tabs count as blank.
    const std::optional<QString> user = userName();
    const bool userPasses = user && std::any_of(user->cbegin(), user->cend(), [](QChar c) {
                                return c != u' ' && c != u'\t';
                            });
    if (userPasses && passwordPasses)
        return true;

    const QString message = !userPasses ? QStringLiteral("User Name Message") : QStringLiteral("Password Message");
    pde::runModalAlert(localized(message), localized(QStringLiteral("OK")), QString());
    return false;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
