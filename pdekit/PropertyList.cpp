// SPDX-License-Identifier: MIT
// libplist behind Qt types.
#include "pdekit/PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>
#include <QVariantList>
#include <QVariantMap>

#include <cstdlib>
#include <limits>
#include <plist/plist.h>

namespace pde {
namespace {

// Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr qint64 kPropertyListEpoch = 978307200;

struct CharFree {
    void operator()(char *text) const noexcept { std::free(text); }
};

} // namespace

void PropertyListFree::operator()(void *node) const noexcept
{
    plist_free(static_cast<plist_t>(node));
}

PropertyListNode parsePropertyList(QByteArrayView data)
{
    if (data.isEmpty() || data.size() > std::numeric_limits<uint32_t>::max())
        return {};
    plist_t root = nullptr;
    plist_from_memory(data.data(), static_cast<uint32_t>(data.size()), &root);
    return PropertyListNode(root);
}

bool isBinaryPropertyList(QByteArrayView data)
{
    if (data.size() > std::numeric_limits<uint32_t>::max())
        return false;
    return plist_is_binary(data.data(), static_cast<uint32_t>(data.size())) != 0;
}

QVariant propertyListValue(void *node)
{
    if (node == nullptr)
        return {};
    const plist_t plist = static_cast<plist_t>(node);
    switch (plist_get_node_type(plist)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(plist, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        uint64_t value = 0;
        plist_get_uint_val(plist, &value);
        return QVariant::fromValue<qulonglong>(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(plist, &value);
        return value;
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(plist, &length);
        return QString::fromUtf8(text, static_cast<qsizetype>(length));
    }
    case PLIST_ARRAY: {
        QVariantList list;
        const uint32_t size = plist_array_get_size(plist);
        list.reserve(size);
        for (uint32_t i = 0; i < size; ++i)
            list.append(propertyListValue(plist_array_get_item(plist, i)));
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter iter = nullptr;
        plist_dict_new_iter(plist, &iter);
        for (;;) {
            char *key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(plist, iter, &key, &value);
            const std::unique_ptr<char, CharFree> ownedKey(key);
            if (key == nullptr || value == nullptr)
                break;
            map.insert(QString::fromUtf8(key), propertyListValue(value));
        }
        std::free(iter);
        return map;
    }
    case PLIST_DATE: {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(plist, &seconds, &microseconds);
        // libplist truncates the seconds toward zero and gives the fraction
        // without its sign, so before the epoch the fraction counts back.
        const qint64 fraction = (seconds < 0 ? -1 : 1) * static_cast<qint64>(microseconds) / 1000;
        return QDateTime::fromMSecsSinceEpoch((kPropertyListEpoch + seconds) * 1000 + fraction, QTimeZone::utc());
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *data = plist_get_data_ptr(plist, &length);
        return QByteArray(data, static_cast<qsizetype>(length));
    }
    case PLIST_UID: {
        uint64_t value = 0;
        plist_get_uid_val(plist, &value);
        return QVariant::fromValue<qulonglong>(value);
    }
    case PLIST_NONE:
        break;
    }
    return {};
}

QByteArray xmlPropertyList(void *node)
{
    if (node == nullptr)
        return {};
    char *xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(static_cast<plist_t>(node), &xml, &length);
    const std::unique_ptr<char, CharFree> owned(xml);
    return xml != nullptr ? QByteArray(xml, static_cast<qsizetype>(length)) : QByteArray();
}

std::optional<QVariant> readPropertyListFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const PropertyListNode root = parsePropertyList(file.readAll());
    if (!root)
        return std::nullopt;
    return propertyListValue(root.get());
}

} // namespace pde
