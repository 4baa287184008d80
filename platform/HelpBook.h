// SPDX-License-Identifier: MIT
// The bundle's help book: registering it with the help viewer and opening
// pages in it, with the book name taken from the PPD or the bundle.
#pragma once

#include "text/CupsPpd.h"

#include <QString>

#include <optional>

namespace pde {
class Bundle;
}

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Registers the bundle's help book with the help viewer. Nothing for a null
// bundle.
void RegisterHelpBook(const pde::Bundle *bundle);

// Opens `pagePath` (and `anchor`) in the book that the bundle's localized
// "CFBundleHelpBookName" names. Nothing for a null bundle or when that value
// is missing or not a string.
void GotoHelpPage(const pde::Bundle *bundle, const QString &pagePath,
                  const std::optional<QString> &anchor);

// Opens `pagePath` in the book found by the first of these that yields a
// value: the information dictionary key named by the PPD attribute `keyword`
// (its value read as ASCII); the key named by the value of
// "CFBundleHelpBookName"; "CFBundleHelpBookName" itself. A value that is not
// a string opens nothing and ends the search. Nothing for a null bundle.
void GotoHelpPage2_105(ppd_file_t *ppd, const char *keyword, const pde::Bundle *bundle,
                       const QString &pagePath, const std::optional<QString> &anchor);

// Opens "<folder>/<page>" in the book of the raw "CFBundleHelpBookName",
// where the folder is the value of the PPD attribute `keyword` when the PPD
// has it, else `defaultFolder` (an absent folder reads "(null)", as a
// formatted none does). Nothing for a null bundle or an absent page.
void GotoHelpPage2_106(ppd_file_t *ppd, const char *keyword, const pde::Bundle *bundle,
                       const std::optional<QString> &defaultFolder,
                       const std::optional<QString> &pageName,
                       const std::optional<QString> &anchor);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
