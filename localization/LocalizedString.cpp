// SPDX-License-Identifier: MIT
// Model-specific strings tables over the bundle's standard lookup.
#include "localization/LocalizedString.h"

#include "localization/LocalizationLogging.h"
#include "pdekit/Bundle.h"
#include "text/PpdAttribute.h"

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

std::optional<QString> nvktraLocalizedStringForKey(const pde::Bundle *bundle, const QString &key,
                                                   const std::optional<QString> &value,
                                                   const std::optional<QString> &table)
{
    if (bundle == nullptr)
        return std::nullopt;
    QString result = bundle->localizedStringForKey(key, value, table);
    if (!table || result != key)
        return result;
    return bundle->localizedStringForKey(key, value, std::nullopt);
}

std::optional<QString> localizedTableNameForPPD(ppd_file_t *ppd)
{
    const std::optional<QString> index = CopyPPDAttribute(ppd, "NVLocalizableFileIndex");
    if (!index)
        return std::nullopt;
    const QString table = QStringLiteral("Localizable") + *index;
    // A name from the PPD must stay inside the bundle's resources.
    if (!pde::Bundle::isPlainResourceName(table)) {
        qCWarning(lcLocalization).nospace() << "NVLocalizableFileIndex " << *index
                                            << " does not make a plain table name inside the bundle's resources;"
                                               " the table Localizable is used";
        return std::nullopt;
    }
    return table;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
