// SPDX-License-Identifier: MIT
// The job's print settings: string keys to values, in the order of first
// insertion, each with a lock flag; and their conversion to and from the
// CUPS job options that carry them to the printer's filter.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cups/cups.h>

#include <optional>

namespace pde {

// CUPS options owned by one object and freed with it (cupsFreeOptions).
class PDEKIT_EXPORT CupsOptions
{
public:
    CupsOptions() = default;
    CupsOptions(int count, cups_option_t *options) noexcept : m_count(count), m_options(options) {}
    CupsOptions(CupsOptions &&other) noexcept;
    CupsOptions &operator=(CupsOptions &&other) noexcept;
    CupsOptions(const CupsOptions &) = delete;
    CupsOptions &operator=(const CupsOptions &) = delete;
    ~CupsOptions();

    int count() const noexcept { return m_count; }
    cups_option_t *data() const noexcept { return m_options; }
    // The value of `name`, or nullopt when there is no such option.
    std::optional<QString> value(const QString &name) const;

private:
    int m_count = 0;
    cups_option_t *m_options = nullptr;
};

class PDEKIT_EXPORT PrintSettings
{
public:
    // The value under `key`; nullopt when the key is absent.
    std::optional<QVariant> value(const QString &key) const;
    // Sets the value under `key`, keeping the key's first position; a new key
    // goes last. An invalid QVariant removes the key.
    void setValue(const QString &key, const QVariant &value, bool locked = false);
    bool remove(const QString &key);
    bool isLocked(const QString &key) const;
    bool contains(const QString &key) const;
    // Keys in the order in which each was first set.
    QStringList keys() const;
    qsizetype size() const noexcept { return m_entries.size(); }
    bool isEmpty() const noexcept { return m_entries.isEmpty(); }

    // The settings as CUPS options: strings as UTF-8, booleans as
    // "true"/"false", numbers in decimal. CUPS keeps options sorted by name
    // and compares names without case, so keys that differ only in case
    // become one option, with the later value.
    CupsOptions toCupsOptions() const;
    // Settings from CUPS options, every value a string, none locked.
    static PrintSettings fromCupsOptions(int count, const cups_option_t *options);
    // The options as text that cupsParseOptions reads back to the same values
    // byte for byte: key='value' pairs, ' and \ escaped.
    QString toOptionString() const;
    // Settings from text in cupsParseOptions' syntax.
    static PrintSettings fromOptionString(const QString &text);

    // The text a value carries as a CUPS option.
    static QString optionText(const QVariant &value);

    friend bool operator==(const PrintSettings &, const PrintSettings &) = default;

private:
    struct Entry {
        QString key;
        QVariant value;
        bool locked = false;
        friend bool operator==(const Entry &, const Entry &) = default;
    };
    qsizetype indexOf(const QString &key) const;

    QList<Entry> m_entries;
};

// Status results of the free accessors.
inline constexpr int kPMNoError = 0;
inline constexpr int kPMInvalidParameter = -50;
inline constexpr int kPMKeyNotFound = -9589;

// Reads the value under `key` into *value (nullopt when absent). Returns
// kPMNoError, kPMKeyNotFound for an absent key, or kPMInvalidParameter for
// null settings or output.
PDEKIT_EXPORT int PMPrintSettingsGetValue(const PrintSettings *settings, const QString &key,
                                          std::optional<QVariant> *value);

// Sets the value under `key` with the lock flag; nullopt removes the key.
// Returns kPMNoError, or kPMInvalidParameter for null settings or an empty key.
PDEKIT_EXPORT int PMPrintSettingsSetValue(PrintSettings *settings, const QString &key,
                                          const std::optional<QVariant> &value, bool locked);

} // namespace pde
