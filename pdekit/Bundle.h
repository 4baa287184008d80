// SPDX-License-Identifier: MIT
// A bundle directory (X.plugin/Contents/...): its information dictionary,
// its resources in localization folders, its strings tables, and the
// process-wide registry through which bundles are found by identifier.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <QUrl>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

class QObject;
class QWidget;

namespace pde {

class ClassRegistry;

class PDEKIT_EXPORT Bundle
{
public:
    // Where pathForResource looks first.
    enum class Search {
        PlainFirst,     // Resources/ first, then the localization folders
        LocalizedFirst, // the localization folders first, then Resources/
    };

    // Opens the bundle directory at `path` (the X.plugin folder) and registers
    // it; opening the same directory again gives the same bundle. Returns null
    // when it has no Contents/Info.plist that is a readable regular file
    // within the size limit holding a dictionary nested no deeper than
    // property lists may be; the message naming the path, the file and the
    // reason is logged and, when `error` is given, stored there. Bundles live
    // until the process ends, so the pointer stays valid.
    static Bundle *open(const QString &path, QString *error = nullptr);

    // True for a name that stays inside the resources when a file name is
    // made of it (a nib or table name from a PPD): not empty, no "/", no
    // "..", no zero character.
    static bool isPlainResourceName(QStringView name);

    // The first opened bundle with this CFBundleIdentifier; null when none
    // has it, and for an empty identifier.
    static Bundle *withIdentifier(const QString &identifier);

    Bundle(const Bundle &) = delete;
    Bundle &operator=(const Bundle &) = delete;
    ~Bundle();

    QString identifier() const;        // CFBundleIdentifier; empty when missing
    QString bundlePath() const;        // absolute path of the X.plugin folder
    QUrl bundleURL() const;            // file URL of that folder
    QString resourcePath() const;      // Contents/Resources
    QString developmentRegion() const; // CFBundleDevelopmentRegion; "en" when missing
    // Contents/Linux/<CFBundleExecutable>; nullopt without that key.
    std::optional<QString> executablePath() const;

    // The information dictionary as Info.plist has it.
    const QVariantMap &infoDictionary() const;
    // The information dictionary with the strings of InfoPlist.strings (in the
    // user's languages) over the raw values.
    QVariantMap localizedInfoDictionary() const;
    // One key of the localized dictionary; an invalid QVariant when absent.
    QVariant objectForInfoDictionaryKey(const QString &key) const;

    // Localization folder names present in Resources/ (without ".lproj").
    QStringList localizations() const;
    // The folders to search, best first: the user's preferred languages, the
    // development region, then "Base".
    QStringList preferredLocalizations() const;

    // The path of `name`.`type` (type may be empty) in `subdirectory` of the
    // resources: the first search place that has a regular file (or a link
    // to one) there; nullopt when none has.
    std::optional<QString> pathForResource(const QString &name, const QString &type,
                                           const QString &subdirectory = {},
                                           Search search = Search::PlainFirst) const;

    // The translation of `key` in `table` (Localizable when nullopt), searched
    // in preferredLocalizations() order; when no table has it, `value`, or
    // `key` when `value` is nullopt or empty. Each table is read once. A
    // table name that is not plain (isPlainResourceName) names no table; it
    // is logged once.
    QString localizedStringForKey(const QString &key, const std::optional<QString> &value,
                                  const std::optional<QString> &table) const;

    // The classes that this bundle's nibs may name (filled by the bundle's code).
    ClassRegistry &classes() const;

private:
    explicit Bundle(QString path, QVariantMap info);

    struct Private;
    std::unique_ptr<Private> d;
};

// Factories for the classes a nib names, by class name. Each bundle has its
// own, so two vendors' classes of the same name never meet.
class PDEKIT_EXPORT ClassRegistry
{
public:
    // Makes an object of the class; `parent` is the widget it goes into when
    // the nib places it in a widget tree, null for a top-level object.
    using Factory = std::function<QObject *(QWidget *parent)>;

    void registerClass(const QString &className, Factory factory);
    bool contains(const QString &className) const;
    // A new object, or null for an unknown class.
    QObject *create(const QString &className, QWidget *parent) const;

    template <typename T>
    void registerClass(const QString &className)
    {
        registerClass(className, [](QWidget *parent) -> QObject * {
            if constexpr (std::is_constructible_v<T, QWidget *>)
                return new T(parent);
            else
                return new T();
        });
    }

private:
    QHash<QString, Factory> m_factories;
};

} // namespace pde
