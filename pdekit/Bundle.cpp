// SPDX-License-Identifier: MIT
// Directory bundles, their localized resources and strings tables, and the
// process-wide registry of opened bundles.
#include "pdekit/Bundle.h"

#include "pdekit/PdeKitLogging.h"
#include "pdekit/PreferredLanguages.h"
#include "pdekit/PropertyList.h"
#include "pdekit/StringsTable.h"

#include <QDir>
#include <QFileInfo>

#include <map>
#include <unordered_map>
#include <vector>

namespace pde {
namespace {

const QString kDefaultTable = QStringLiteral("Localizable");
const QString kInfoPlistTable = QStringLiteral("InfoPlist");

struct Registry {
    std::vector<std::unique_ptr<Bundle>> bundles;
    QHash<QString, Bundle *> byPath;
};

Registry &registry()
{
    static Registry instance;
    return instance;
}

} // namespace

// Strings tables are read from the bundle itself, so a fixed-seed hash is
// safe; QHash's per-process seeded string hash alone would cost more than the
// whole lookup is allowed to.
struct UnseededHash {
    std::size_t operator()(const QString &text) const noexcept { return qHash(QStringView(text), 0); }
};
using StringTable = std::unordered_map<QString, QString, UnseededHash>;

struct Bundle::Private {
    QString path;
    QVariantMap info;
    QStringList localizations;
    ClassRegistry classes;

    // Derived from the preferred languages of one generation.
    quint64 generation = ~quint64(0);
    QStringList order;
    // Table name -> the tables to search for it, best first.
    std::unordered_map<QString, std::vector<const StringTable *>, UnseededHash> chains;
    // "<localization>/<table>" -> the parsed table, or nullopt when absent.
    std::map<QString, std::optional<StringTable>> tables;

    void refresh()
    {
        if (generation == preferredLanguagesGeneration() && !order.isEmpty())
            return;
        generation = preferredLanguagesGeneration();
        chains.clear();
        order.clear();
        const auto add = [this](const QString &language) {
            for (const QString &name : localizationNamesFor(language)) {
                if (localizations.contains(name) && !order.contains(name))
                    order.append(name);
            }
        };
        for (const QString &language : preferredLanguages())
            add(language);
        const QString region = info.value(QStringLiteral("CFBundleDevelopmentRegion")).toString();
        add(region.isEmpty() ? QStringLiteral("en") : region);
        add(QStringLiteral("Base"));
        // The search order is never empty once computed, so a bundle without
        // localizations is not recomputed on every lookup.
        order.append(QString());
    }

    // The table `name` of one localization ("" for Resources/ itself), read
    // on first use; null when the bundle has none, and for a name that is
    // not a plain one (which is never read).
    const StringTable *table(const QString &localization, const QString &name)
    {
        if (!isPlainResourceName(name))
            return nullptr;
        const QString id = localization + u'/' + name;
        auto found = tables.find(id);
        if (found == tables.end()) {
            const QString resources = path + QStringLiteral("/Contents/Resources");
            const QString folder = localization.isEmpty()
                                       ? resources
                                       : resources + u'/' + localization + QStringLiteral(".lproj");
            std::optional<StringTable> parsed;
            if (const auto entries = loadStringsTable(folder + u'/' + name + QStringLiteral(".strings"))) {
                parsed.emplace();
                for (auto entry = entries->cbegin(); entry != entries->cend(); ++entry)
                    parsed->emplace(entry.key(), entry.value());
            }
            found = tables.emplace(id, std::move(parsed)).first;
        }
        return found->second ? &*found->second : nullptr;
    }
};

Bundle::Bundle(QString path, QVariantMap info) : d(std::make_unique<Private>())
{
    d->path = std::move(path);
    d->info = std::move(info);
    const QDir resources(resourcePath());
    for (const QString &entry : resources.entryList({QStringLiteral("*.lproj")}, QDir::Dirs | QDir::NoDotAndDotDot))
        d->localizations.append(entry.chopped(6));
}

Bundle::~Bundle() = default;

Bundle *Bundle::open(const QString &path, QString *error)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (canonical.isEmpty()) {
        const QString message = QStringLiteral("%1: no such bundle directory").arg(path);
        qCWarning(lcPdeBundle, "%s", qUtf8Printable(message));
        if (error != nullptr)
            *error = message;
        return nullptr;
    }
    Registry &known = registry();
    if (Bundle *bundle = known.byPath.value(canonical))
        return bundle;

    const QString infoPath = canonical + QStringLiteral("/Contents/Info.plist");
    QString why;
    const std::optional<QVariant> info = readPropertyListFile(infoPath, &why);
    if (info && info->typeId() != QMetaType::QVariantMap)
        why = QStringLiteral("does not hold a dictionary");
    if (!info || info->typeId() != QMetaType::QVariantMap) {
        const QString message = QStringLiteral("%1: not a bundle: %2 %3").arg(path, infoPath, why);
        qCWarning(lcPdeBundle, "%s", qUtf8Printable(message));
        if (error != nullptr)
            *error = message;
        return nullptr;
    }
    known.bundles.push_back(std::unique_ptr<Bundle>(new Bundle(canonical, info->toMap())));
    Bundle *bundle = known.bundles.back().get();
    known.byPath.insert(canonical, bundle);
    return bundle;
}

Bundle *Bundle::withIdentifier(const QString &identifier)
{
    if (identifier.isEmpty())
        return nullptr; // bundles without an identifier cannot be asked for
    for (const std::unique_ptr<Bundle> &bundle : registry().bundles) {
        if (bundle->identifier() == identifier)
            return bundle.get();
    }
    return nullptr;
}

QString Bundle::identifier() const
{
    return d->info.value(QStringLiteral("CFBundleIdentifier")).toString();
}

QString Bundle::bundlePath() const
{
    return d->path;
}

QUrl Bundle::bundleURL() const
{
    return QUrl::fromLocalFile(d->path);
}

QString Bundle::resourcePath() const
{
    return d->path + QStringLiteral("/Contents/Resources");
}

QString Bundle::developmentRegion() const
{
    const QString region = d->info.value(QStringLiteral("CFBundleDevelopmentRegion")).toString();
    return region.isEmpty() ? QStringLiteral("en") : region;
}

std::optional<QString> Bundle::executablePath() const
{
    const QString name = d->info.value(QStringLiteral("CFBundleExecutable")).toString();
    if (name.isEmpty())
        return std::nullopt;
    return d->path + QStringLiteral("/Contents/Linux/") + name;
}

const QVariantMap &Bundle::infoDictionary() const
{
    return d->info;
}

QVariantMap Bundle::localizedInfoDictionary() const
{
    QVariantMap localized = d->info;
    d->refresh();
    const QStringList &order = d->order;
    // Worst first, so that the best localization's strings end up on top.
    for (auto it = order.crbegin(); it != order.crend(); ++it) {
        if (const StringTable *strings = d->table(*it, kInfoPlistTable)) {
            for (const auto &[key, value] : *strings)
                localized.insert(key, value);
        }
    }
    return localized;
}

QVariant Bundle::objectForInfoDictionaryKey(const QString &key) const
{
    d->refresh();
    for (const QString &localization : d->order) {
        if (const StringTable *strings = d->table(localization, kInfoPlistTable)) {
            const auto found = strings->find(key);
            if (found != strings->cend())
                return found->second;
        }
    }
    return d->info.value(key);
}

QStringList Bundle::localizations() const
{
    return d->localizations;
}

QStringList Bundle::preferredLocalizations() const
{
    d->refresh();
    QStringList order = d->order;
    order.removeAll(QString());
    return order;
}

std::optional<QString> Bundle::pathForResource(const QString &name, const QString &type,
                                               const QString &subdirectory, Search search) const
{
    const QString file = type.isEmpty() ? name : name + u'.' + type;
    const QString inner = subdirectory.isEmpty() ? file : subdirectory + u'/' + file;
    const QString resources = resourcePath();

    d->refresh();
    QStringList places;
    for (const QString &localization : d->order) {
        if (!localization.isEmpty())
            places.append(resources + u'/' + localization + QStringLiteral(".lproj/") + inner);
    }
    const QString plain = resources + u'/' + inner;
    if (search == Search::PlainFirst)
        places.prepend(plain);
    else
        places.append(plain);

    for (const QString &place : places) {
        if (QFileInfo(place).isFile())
            return place;
    }
    return std::nullopt;
}

QString Bundle::localizedStringForKey(const QString &key, const std::optional<QString> &value,
                                      const std::optional<QString> &table) const
{
    const QString &name = table && !table->isEmpty() ? *table : kDefaultTable;
    d->refresh();
    auto chain = d->chains.find(name);
    if (chain == d->chains.end()) {
        if (!isPlainResourceName(name)) {
            qCWarning(lcPdeBundle).nospace() << bundlePath() << ": the table name " << name
                                             << " is not a plain name inside the bundle's resources; it is not read";
        }
        std::vector<const StringTable *> tables;
        for (const QString &localization : d->order) {
            if (const StringTable *strings = d->table(localization, name))
                tables.push_back(strings);
        }
        chain = d->chains.emplace(name, std::move(tables)).first;
    }
    for (const StringTable *strings : chain->second) {
        const auto found = strings->find(key);
        if (found != strings->cend())
            return found->second;
    }
    return value && !value->isEmpty() ? *value : key;
}

bool Bundle::isPlainResourceName(QStringView name)
{
    return !name.isEmpty() && !name.contains(u'/') && !name.contains(u"..") && !name.contains(QChar(0));
}

ClassRegistry &Bundle::classes() const
{
    return d->classes;
}

void ClassRegistry::registerClass(const QString &className, Factory factory)
{
    m_factories.insert(className, std::move(factory));
}

bool ClassRegistry::contains(const QString &className) const
{
    return m_factories.contains(className);
}

QObject *ClassRegistry::create(const QString &className, QWidget *parent) const
{
    const auto found = m_factories.constFind(className);
    return found != m_factories.cend() ? (*found)(parent) : nullptr;
}

} // namespace pde
