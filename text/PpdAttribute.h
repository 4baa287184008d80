// SPDX-License-Identifier: MIT
// The one lookup through which the plug-in reads private PPD attributes.
#pragma once

#include "text/CupsPpd.h"

#include <QString>

#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns the first attribute in file order whose name begins with `name`
// (case-sensitive, whatever its spec). Unlike libcups' ppdFindAttr it does not
// use the sorted index and matches by prefix, so "NVHardDisk" also finds
// "NVHardDiskSize" when that comes first. Returns null for a null PPD, a null
// or empty name, or a PPD without attributes. Never modifies the PPD.
ppd_attr_t *ppdFindAttr_ALT(ppd_file_t *ppd, const char *name) noexcept;

// Returns the value of ppdFindAttr_ALT(ppd, name) read as UTF-8. Returns
// nullopt for a null PPD, when no attribute matches, and when the matching
// attribute has no value or a value that is not valid UTF-8.
std::optional<QString> CopyPPDAttribute(ppd_file_t *ppd, const char *name);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
