// SPDX-License-Identifier: MIT
// The user's preferred languages, most preferred first.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QStringList>

#include <optional>

namespace pde {

// Language tags ("ja_JP", "en"), best first, without duplicates:
//   1. each entry of LANGUAGE, a colon-separated list, in its order;
//   2. the locale in effect for messages, found as POSIX finds it: the first
//      of LC_ALL, LC_MESSAGES and LANG that is set and not empty, and only
//      that one, so LC_ALL=C hides LANG;
//   3. Qt's UI languages of the system locale (Qt reads them from the
//      environment once per process).
// Every value loses its ".codeset" and "@modifier" ("ja_JP.UTF-8@x" gives
// "ja_JP"); "C", "POSIX" and empty values give nothing. A host that lets the
// user choose (a --lang option) overrides the whole list.
PDEKIT_EXPORT QStringList preferredLanguages();

// Replaces the list that preferredLanguages() gives; nullopt restores the
// environment's. Bundles consult the list on their next lookup.
PDEKIT_EXPORT void setPreferredLanguages(const std::optional<QStringList> &languages);

// A number that changes whenever the override changes, so that bundles know
// when to compute their localization order again.
PDEKIT_EXPORT quint64 preferredLanguagesGeneration();

// The localization folder names (without ".lproj") under which a language
// tag may be found, best first: "ja_JP" gives "ja_JP", "ja-JP", "ja",
// "Japanese".
PDEKIT_EXPORT QStringList localizationNamesFor(const QString &language);

} // namespace pde
