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

// Limits of what is parsed. libplist builds, frees and writes trees
// recursively, and so does propertyListValue: nesting is bounded before a
// tree is built, so that no hostile file can exhaust the stack.
inline constexpr int kMaxPropertyListDepth = 256;           // arrays and dictionaries in one another
inline constexpr int kMaxPropertyListContainers = 10000;    // arrays and dictionaries in an XML list
inline constexpr qint64 kMaxPropertyListValues = 1 << 20;  // values a binary list expands to

// Parses XML or binary property-list data. Returns null when it is neither,
// when it nests arrays and dictionaries deeper than kMaxPropertyListDepth,
// when an XML list holds more than kMaxPropertyListContainers of them, or
// when a binary list refers to itself, expands to more than
// kMaxPropertyListValues values or has a dictionary key that is not a string
// free of zero characters; `error` (when given) then says which.
PDEKIT_EXPORT PropertyListNode parsePropertyList(QByteArrayView data, QString *error = nullptr);

// True when the data is in the binary property-list format.
PDEKIT_EXPORT bool isBinaryPropertyList(QByteArrayView data);

// The node as Qt values: dictionaries as QVariantMap, arrays as QVariantList,
// strings as QString, integers as qulonglong, reals as double, booleans as
// bool, data as QByteArray, dates as QDateTime (UTC). A null node, and one
// nesting deeper than kMaxPropertyListDepth, give an invalid QVariant.
PDEKIT_EXPORT QVariant propertyListValue(void *node);

// The node serialised as an XML property list; empty for a null node.
PDEKIT_EXPORT QByteArray xmlPropertyList(void *node);

// Reads a property-list file as Qt values. Returns nullopt when it is not a
// regular file of at most kMaxResourceFileSize bytes, cannot be read or is
// refused by parsePropertyList; `error` (when given) then says why, without
// the path.
PDEKIT_EXPORT std::optional<QVariant> readPropertyListFile(const QString &path, QString *error = nullptr);

} // namespace pde
