// SPDX-License-Identifier: MIT
// The preferred languages read from the locale environment.
#include "TestSupport.h"

#include "pdekit/PreferredLanguages.h"

#include <array>

namespace {

using namespace Qt::StringLiterals;

// Qt's UI languages come last and depend on the environment the process
// started in, so each row names what must come first and what must not
// appear at all.
TEST(PreferredLanguages, LanguageListThenTheFirstSetLocaleVariable)
{
    const std::array<const char *, 4> variables{"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"};
    // Sets a locale variable (null: unsets it).
    const auto setVariable = [](const char *variable, const char *value) {
        return value != nullptr ? qputenv(variable, value) : qunsetenv(variable);
    };
    const struct {
        const char *name;
        std::array<const char *, 4> values; // of the variables in that order
        QStringList first;
        QStringList absent;
    } rows[] = {
        {"LANGUAGE in order, then the locale", {"fr_CA:de::fr_CA", nullptr, nullptr, "ja_JP.UTF-8"},
         {u"fr_CA"_s, u"de"_s, u"ja_JP"_s}, {}},
        {"LC_ALL over LC_MESSAGES and LANG", {nullptr, "de_DE.UTF-8@euro", "fr_FR", "ja_JP"}, {u"de_DE"_s},
         {u"fr_FR"_s, u"ja_JP"_s}},
        {"LC_MESSAGES over LANG", {nullptr, nullptr, "fr_FR.ISO-8859-1", "ja_JP"}, {u"fr_FR"_s}, {u"ja_JP"_s}},
        {"empty counts as unset", {"", "", "", "ja_JP.eucJP"}, {u"ja_JP"_s}, {}},
        {"C in LC_ALL hides LANG", {nullptr, "C.UTF-8", nullptr, "ja_JP"}, {}, {u"ja_JP"_s}},
        {"POSIX skipped, modifier dropped", {"POSIX:en_GB@oxford", nullptr, nullptr, "sr_RS@latin"},
         {u"en_GB"_s, u"sr_RS"_s}, {}},
    };
    pde::setPreferredLanguages(std::nullopt);
    std::array<std::optional<QByteArray>, 4> saved; // the process's own, given back at the end
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (qEnvironmentVariableIsSet(variables[i]))
            saved[i] = qgetenv(variables[i]);
    }
    for (const auto &row : rows) {
        for (std::size_t i = 0; i < variables.size(); ++i)
            setVariable(variables[i], row.values[i]);
        const QStringList languages = pde::preferredLanguages();
        EXPECT_EQ(languages.mid(0, row.first.size()), row.first) << row.name;
        for (const QString &tag : row.absent)
            EXPECT_FALSE(languages.contains(tag)) << row.name << ": " << tag.toStdString();
        for (const QString &tag : languages) {
            EXPECT_FALSE(tag.contains(u'.') || tag.contains(u'@') || tag == u"C"_s || tag == u"POSIX"_s || tag.isEmpty())
                << row.name << ": " << tag.toStdString();
        }
    }
    for (std::size_t i = 0; i < variables.size(); ++i)
        setVariable(variables[i], saved[i] ? saved[i]->constData() : nullptr);
}

} // namespace
