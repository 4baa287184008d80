// SPDX-License-Identifier: MIT
// The hosts' languages: their own strings and Qt's, through Qt's translators.
#pragma once

#include <QString>
#include <QStringList>

namespace pdehost {

struct InstalledTranslations {
    // The language whose translators are installed ("ja"); "en" when the
    // hosts' own English texts are used.
    QString language;
    // Translation files that were looked for and not found (Qt's own come
    // from the Debian package qt6-translations-l10n).
    QStringList missing;
};

// Installs, on the running application, the translators of the hosts'
// strings (built into the host library) and of Qt's own (qtbase_LANG.qm in
// QLibraryInfo::path(QLibraryInfo::TranslationsPath)) for `language` ("ja",
// "ja_JP"). A given language also becomes the panels' language
// (pde::setPreferredLanguages) and Qt's default locale. Without one, the
// first of the user's preferred languages (pde::preferredLanguages: LANGUAGE,
// LC_ALL, LC_MESSAGES, LANG) that is English or that the hosts are
// translated into is used. A second call replaces what the first installed.
// Never fails: what cannot be found is listed in `missing`, and the texts
// stay English.
InstalledTranslations installTranslations(const QString &language = {});

} // namespace pdehost
