// SPDX-License-Identifier: MIT
// Ordered print settings and their CUPS option form.
#include "pdekit/PrintSettings.h"

#include <QByteArray>

#include <utility>

namespace pde {

CupsOptions::CupsOptions(CupsOptions &&other) noexcept
    : m_count(std::exchange(other.m_count, 0)), m_options(std::exchange(other.m_options, nullptr))
{
}

CupsOptions &CupsOptions::operator=(CupsOptions &&other) noexcept
{
    if (this != &other) {
        cupsFreeOptions(m_count, m_options);
        m_count = std::exchange(other.m_count, 0);
        m_options = std::exchange(other.m_options, nullptr);
    }
    return *this;
}

CupsOptions::~CupsOptions()
{
    cupsFreeOptions(m_count, m_options);
}

std::optional<QString> CupsOptions::value(const QString &name) const
{
    const char *found = cupsGetOption(name.toUtf8().constData(), m_count, m_options);
    if (found == nullptr)
        return std::nullopt;
    return QString::fromUtf8(found);
}

qsizetype PrintSettings::indexOf(const QString &key) const
{
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].key == key)
            return i;
    }
    return -1;
}

std::optional<QVariant> PrintSettings::value(const QString &key) const
{
    const qsizetype i = indexOf(key);
    if (i < 0)
        return std::nullopt;
    return m_entries[i].value;
}

void PrintSettings::setValue(const QString &key, const QVariant &value, bool locked)
{
    if (!value.isValid()) {
        remove(key);
        return;
    }
    const qsizetype i = indexOf(key);
    if (i < 0) {
        m_entries.append(Entry{key, value, locked});
        return;
    }
    m_entries[i].value = value;
    m_entries[i].locked = locked;
}

bool PrintSettings::remove(const QString &key)
{
    const qsizetype i = indexOf(key);
    if (i < 0)
        return false;
    m_entries.removeAt(i);
    return true;
}

bool PrintSettings::isLocked(const QString &key) const
{
    const qsizetype i = indexOf(key);
    return i >= 0 && m_entries[i].locked;
}

bool PrintSettings::contains(const QString &key) const
{
    return indexOf(key) >= 0;
}

QStringList PrintSettings::keys() const
{
    QStringList keys;
    keys.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        keys.append(entry.key);
    return keys;
}

QString PrintSettings::optionText(const QVariant &value)
{
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    return value.toString();
}

CupsOptions PrintSettings::toCupsOptions() const
{
    int count = 0;
    cups_option_t *options = nullptr;
    for (const Entry &entry : m_entries) {
        count = cupsAddOption(entry.key.toUtf8().constData(),
                              optionText(entry.value).toUtf8().constData(), count, &options);
    }
    return CupsOptions(count, options);
}

PrintSettings PrintSettings::fromCupsOptions(int count, const cups_option_t *options)
{
    PrintSettings settings;
    for (int i = 0; options != nullptr && i < count; ++i) {
        if (options[i].name == nullptr)
            continue;
        settings.setValue(QString::fromUtf8(options[i].name),
                          QString::fromUtf8(options[i].value != nullptr ? options[i].value : ""));
    }
    return settings;
}

QString PrintSettings::toOptionString() const
{
    QString text;
    for (const Entry &entry : m_entries) {
        if (!text.isEmpty())
            text += u' ';
        text += entry.key;
        text += u"='";
        for (const QChar c : optionText(entry.value)) {
            if (c == u'\\' || c == u'\'')
                text += u'\\';
            text += c;
        }
        text += u'\'';
    }
    return text;
}

PrintSettings PrintSettings::fromOptionString(const QString &text)
{
    cups_option_t *options = nullptr;
    const int count = cupsParseOptions(text.toUtf8().constData(), 0, &options);
    const CupsOptions owned(count, options);
    return fromCupsOptions(owned.count(), owned.data());
}

int PMPrintSettingsGetValue(const PrintSettings *settings, const QString &key,
                            std::optional<QVariant> *value)
{
    if (settings == nullptr || value == nullptr)
        return kPMInvalidParameter;
    *value = settings->value(key);
    return value->has_value() ? kPMNoError : kPMKeyNotFound;
}

int PMPrintSettingsSetValue(PrintSettings *settings, const QString &key,
                            const std::optional<QVariant> &value, bool locked)
{
    if (settings == nullptr || key.isEmpty())
        return kPMInvalidParameter;
    if (!value || !value->isValid())
        settings->remove(key);
    else
        settings->setValue(key, *value, locked);
    return kPMNoError;
}

} // namespace pde
