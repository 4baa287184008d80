// SPDX-License-Identifier: MIT
// JSON objects of string values that keep the order of their entries, as
// print settings do: the settings files of pde-host and its printed records.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <utility>

namespace pdehost {

using OrderedStrings = QList<std::pair<QString, QString>>;

// Parses `{"key": "value", ...}`. Returns nullopt and sets `error` (with the
// byte offset and what is wrong) for anything else: other JSON values, a
// repeated key, trailing text, malformed escapes, bytes that are not UTF-8.
// A UTF-8 byte-order mark at the start is skipped.
std::optional<OrderedStrings> parseStringObject(const QByteArray &json, QString *error);

// The entries as a JSON object, one entry per line, in their order.
QByteArray formatStringObject(const OrderedStrings &entries);

// A JSON string literal (quotes included) for `text`.
QByteArray jsonString(const QString &text);

} // namespace pdehost
