// SPDX-License-Identifier: MIT
// The user's preferred languages, most preferred first.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QStringList>

#include <optional>

namespace pde {

// Language tags ("ja_JP", "en") from LANGUAGE (a colon-separated list),
// LC_ALL, LC_MESSAGES and LANG, in that order, then Qt's UI languages;
// encodings and modifiers dropped, "C" and "POSIX" skipped, no duplicates.
// A host that lets the user choose (a --lang option) overrides the list.
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
