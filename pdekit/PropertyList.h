// SPDX-License-Identifier: MIT
// Property lists (XML or binary) read with libplist, and their Qt values.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

namespace pde {

// A libplist node (plist_t), freed with plist_free.
struct PDEKIT_EXPORT PropertyListFree {
    void operator()(void *node) const noexcept;
};
using PropertyListNode = std::unique_ptr<void, PropertyListFree>;

// Parses XML or binary property-list data; null when it is neither.
PDEKIT_EXPORT PropertyListNode parsePropertyList(QByteArrayView data);

// True when the data is in the binary property-list format.
PDEKIT_EXPORT bool isBinaryPropertyList(QByteArrayView data);

// The node as Qt values: dictionaries as QVariantMap, arrays as QVariantList,
// strings as QString, integers as qulonglong, reals as double, booleans as
// bool, data as QByteArray, dates as QDateTime (UTC). A null node gives an
// invalid QVariant.
PDEKIT_EXPORT QVariant propertyListValue(void *node);

// The node serialised as an XML property list; empty for a null node.
PDEKIT_EXPORT QByteArray xmlPropertyList(void *node);

// Reads a property-list file as Qt values; nullopt when it cannot be read or
// parsed.
PDEKIT_EXPORT std::optional<QVariant> readPropertyListFile(const QString &path);

} // namespace pde
