// SPDX-License-Identifier: MIT
// Installing the hosts' and Qt's translators.
#include "host/HostTranslations.h"

#include "pdekit/PreferredLanguages.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QTranslator>

#include <utility>

namespace pdehost {
namespace {

const QString kHostTranslations = QStringLiteral(":/pde-host/translations");

// Owned by the application (gone with it); taken back by the next call.
QList<QPointer<QTranslator>> &installedTranslators()
{
    static QList<QPointer<QTranslator>> translators;
    return translators;
}

// Loads `name`_LANG.qm from `folder` for `locale` and installs it. False when
// there is no such file.
bool install(const QLocale &locale, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (!translator->load(locale, name, QStringLiteral("_"), folder)) {
        delete translator;
        return false;
    }
    QCoreApplication::installTranslator(translator);
    installedTranslators().append(translator);
    return true;
}

bool isEnglish(const QString &language)
{
    return QLocale(language).language() == QLocale::English;
}

bool hostsSpeak(const QString &language)
{
    QTranslator probe;
    return probe.load(QLocale(language), QStringLiteral("pde-host"), QStringLiteral("_"), kHostTranslations);
}

} // namespace

InstalledTranslations installTranslations(const QString &language)
{
    for (const QPointer<QTranslator> &translator : std::exchange(installedTranslators(), {})) {
        if (translator) {
            QCoreApplication::removeTranslator(translator);
            delete translator.data();
        }
    }

    QString chosen;
    if (!language.isEmpty()) {
        pde::setPreferredLanguages(QStringList{language});
        QLocale::setDefault(QLocale(language));
        chosen = language;
    } else {
        for (const QString &preferred : pde::preferredLanguages()) {
            if (isEnglish(preferred) || hostsSpeak(preferred)) {
                chosen = preferred;
                break;
            }
        }
    }
    if (chosen.isEmpty() || isEnglish(chosen))
        return {QStringLiteral("en"), {}};

    const QLocale locale(chosen);
    InstalledTranslations result{locale.name().section(u'_', 0, 0), {}};
    if (!install(locale, QStringLiteral("pde-host"), kHostTranslations))
        result.missing.append(kHostTranslations + QStringLiteral("/pde-host_") + result.language + QStringLiteral(".qm"));
    const QString qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!install(locale, QStringLiteral("qtbase"), qtFolder))
        result.missing.append(qtFolder + QStringLiteral("/qtbase_") + result.language + QStringLiteral(".qm"));
    if (result.missing.size() == 2)
        result.language = QStringLiteral("en");
    return result;
}

} // namespace pdehost
