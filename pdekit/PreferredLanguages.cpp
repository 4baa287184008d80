// SPDX-License-Identifier: MIT
// Preferred languages from the locale environment, with a host override.
#include "pdekit/PreferredLanguages.h"

#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <utility>

namespace pde {
namespace {

std::optional<QStringList> g_override;
quint64 g_generation = 0;

// Older bundles name their folders after the language in English.
constexpr std::array<std::pair<const char16_t *, const char16_t *>, 12> kLegacyNames{{
    {u"en", u"English"}, {u"ja", u"Japanese"}, {u"fr", u"French"}, {u"de", u"German"},
    {u"es", u"Spanish"}, {u"it", u"Italian"}, {u"nl", u"Dutch"}, {u"sv", u"Swedish"},
    {u"da", u"Danish"}, {u"fi", u"Finnish"}, {u"no", u"Norwegian"}, {u"pt", u"Portuguese"},
}};

// "ja_JP.UTF-8@euro" -> "ja_JP"; empty for "C", "POSIX" and empty values.
QString languageTag(QString value)
{
    value = value.trimmed();
    const qsizetype cut = value.indexOf(QRegularExpression(QStringLiteral("[.@]")));
    if (cut >= 0)
        value.truncate(cut);
    if (value.isEmpty() || value == u"C" || value == u"POSIX")
        return {};
    return value;
}

void appendTag(QStringList &list, const QString &value)
{
    const QString tag = languageTag(value);
    if (!tag.isEmpty() && !list.contains(tag))
        list.append(tag);
}

} // namespace

QStringList preferredLanguages()
{
    if (g_override)
        return *g_override;

    QStringList languages;
    for (const QString &entry : qEnvironmentVariable("LANGUAGE").split(u':', Qt::SkipEmptyParts))
        appendTag(languages, entry);
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString value = qEnvironmentVariable(variable);
        if (!value.isEmpty()) {
            appendTag(languages, value);
            break; // the first one set is the locale in effect
        }
    }
    for (const QString &language : QLocale::system().uiLanguages())
        appendTag(languages, language);
    return languages;
}

void setPreferredLanguages(const std::optional<QStringList> &languages)
{
    g_override = languages;
    ++g_generation;
}

quint64 preferredLanguagesGeneration()
{
    return g_generation;
}

QStringList localizationNamesFor(const QString &language)
{
    QStringList names;
    const auto add = [&names](const QString &name) {
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    };
    add(language);
    QString dashed = language;
    dashed.replace(u'_', u'-');
    add(dashed);
    QString underscored = language;
    underscored.replace(u'-', u'_');
    add(underscored);
    const QString base = language.section(QRegularExpression(QStringLiteral("[-_]")), 0, 0);
    add(base);
    for (const auto &[code, legacy] : kLegacyNames) {
        if (base == QStringView(code))
            add(QString::fromUtf16(legacy));
    }
    return names;
}

} // namespace pde
