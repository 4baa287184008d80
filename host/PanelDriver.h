// SPDX-License-Identifier: MIT
// Entering values into a panel's controls as a user would, and reporting the
// controls as the user sees them. Controls are found through the panel's
// bindings: a key is the name of the property a control is bound to.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace pdehost {

class PanelDriver
{
public:
    explicit PanelDriver(QWidget *view) : m_view(view) {}

    // The keys the user can enter: properties bound two-way to a control.
    QStringList keys() const;
    bool hasKey(const QString &key) const;

    // Enters `value` into the control bound to `key`: a pop-up takes the item
    // index, a text field is cleared and typed one character at a time, a
    // check box takes true or false. Returns nullopt when the control took
    // it, else what it refused (a disabled control, unless it already holds
    // that value; a choice it does not have; the first character its
    // formatter refused). A secret field's characters are never repeated in
    // the reason, nor copied on the way into the field.
    std::optional<QString> enter(const QString &key, const QString &value);

    // The controls as the user sees them, as a JSON object in the panel's
    // order: per key the value (a secret field as asterisks), the item text of
    // a pop-up, whether it is enabled, and its caption with the caption's
    // colour.
    QByteArray stateJson() const;

private:
    QWidget *m_view;
};

} // namespace pdehost
