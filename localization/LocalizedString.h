// SPDX-License-Identifier: MIT
// The one lookup of user-visible texts: the model-specific strings table
// that the PPD names, then the bundle's default table, then the key.
#pragma once

#include "text/CupsPpd.h"

#include <QString>

#include <optional>

namespace pde {
class Bundle;
}

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns the translation of `key` from `table`, falling back to the default
// table "Localizable" when the first answer equals the key (so a translation
// spelled like its key counts as missing), and to the key itself when no
// table has it. With `table` nullopt exactly one lookup, in "Localizable", is
// made. A non-empty `value` that differs from the key is what a missing key
// yields, and then the default table is not asked. Returns nullopt only for a
// null bundle.
std::optional<QString> nvktraLocalizedStringForKey(const pde::Bundle *bundle, const QString &key,
                                                   const std::optional<QString> &value,
                                                   const std::optional<QString> &table);

// The name of the model-specific strings table: "Localizable" followed by the
// value of the PPD's "NVLocalizableFileIndex" attribute, taken as it is
// ("Localizable5" for the value 5). Returns nullopt, meaning the default
// table, for a null PPD or one without the attribute, and (logged) when the
// name would not be a plain one inside the bundle's resources ("/", "..").
std::optional<QString> localizedTableNameForPPD(ppd_file_t *ppd);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
