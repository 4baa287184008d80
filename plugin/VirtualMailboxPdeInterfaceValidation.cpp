// SPDX-License-Identifier: MIT
// The checks a held job must pass before it is saved, and their alerts.
#include "plugin/VirtualMailboxPdeInterface.h"

#include "panel/NumberValue.h"
#include "pdekit/Alert.h"
#include "text/PrinterLanguageEncoding.h"

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

    // A restored text that the printer's encoding cannot hold would leave
    // its entry out of the record; typing cannot put one there.
    const StringEncoding encoding = GetEncodingInfoFromPPD(ppd());
    const bool userStorable = !userPasses || CanStoreText(*user, encoding);
    const bool documentNameStorable = !numberEquals(documentNameType(), 1)
                                      || CanStoreText(documentName().value_or(QString()), encoding);

    QString message;
    if (!userPasses)
        message = QStringLiteral("User Name Message");
    else if (!userStorable)
        message = QStringLiteral("User Name Encoding Message");
    else if (!passwordPasses)
        message = QStringLiteral("Password Message");
    else if (!documentNameStorable)
        message = QStringLiteral("Document Name Encoding Message");
    else
        return true;
    pde::runModalAlert(localized(message), localized(QStringLiteral("OK")), QString());
    return false;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
