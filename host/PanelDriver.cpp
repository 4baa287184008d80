// SPDX-License-Identifier: MIT
// Driving and reading bound controls.
#include "host/PanelDriver.h"

#include "host/OrderedJson.h"
#include "pdekit/Binding.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>

namespace pdehost {
namespace {

std::optional<pde::BindingInfo> userBinding(QWidget *view, const QString &key)
{
    for (const pde::BindingInfo &binding : pde::bindingsIn(view)) {
        if (binding.direction == pde::BindingDirection::TwoWay && QString::fromUtf8(binding.objectProperty) == key)
            return binding;
    }
    return std::nullopt;
}

// The label that names a control (its buddy), if the panel has one.
const QLabel *captionOf(QWidget *view, const QWidget *control)
{
    for (const QLabel *label : view->findChildren<QLabel *>()) {
        if (label->buddy() == control)
            return label;
    }
    return nullptr;
}

bool isSecret(const QLineEdit *field)
{
    return field->echoMode() != QLineEdit::Normal;
}

// Whether `control` already shows `value` as enter() would put it there.
bool holds(QWidget *control, const QString &value)
{
    if (auto *popup = qobject_cast<QComboBox *>(control)) {
        bool ok = false;
        const int index = value.toInt(&ok);
        return ok && index == popup->currentIndex();
    }
    if (auto *field = qobject_cast<QLineEdit *>(control))
        return field->text() == value;
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        const bool wanted = value == u"1" || value.compare(u"true", Qt::CaseInsensitive) == 0;
        const bool unwanted = value == u"0" || value.compare(u"false", Qt::CaseInsensitive) == 0;
        return (wanted || unwanted) && button->isChecked() == wanted;
    }
    return false;
}

} // namespace

QStringList PanelDriver::keys() const
{
    QStringList keys;
    for (const pde::BindingInfo &binding : pde::bindingsIn(m_view)) {
        const QString key = QString::fromUtf8(binding.objectProperty);
        if (binding.direction == pde::BindingDirection::TwoWay && !keys.contains(key))
            keys.append(key);
    }
    return keys;
}

bool PanelDriver::hasKey(const QString &key) const
{
    return userBinding(m_view, key).has_value();
}

std::optional<QString> PanelDriver::enter(const QString &key, const QString &value)
{
    const std::optional<pde::BindingInfo> binding = userBinding(m_view, key);
    if (!binding)
        return QStringLiteral("no control of the panel takes %1").arg(key);
    QWidget *control = binding->control;
    if (!control->isEnabled()) {
        // Entering what a control already shows changes nothing, so even a
        // disabled control takes it.
        if (holds(control, value))
            return std::nullopt;
        return QStringLiteral("its control is disabled");
    }

    if (auto *popup = qobject_cast<QComboBox *>(control)) {
        bool ok = false;
        const int index = value.toInt(&ok);
        if (!ok || index < 0 || index >= popup->count())
            return QStringLiteral("%1 is not one of its choices (0 to %2)").arg(value).arg(popup->count() - 1);
        popup->setCurrentIndex(index);
        Q_EMIT popup->activated(index); // what a user's choice sends
        return std::nullopt;
    }
    if (auto *field = qobject_cast<QLineEdit *>(control)) {
        field->setFocus();
        field->selectAll();
        field->del();
        if (!field->text().isEmpty())
            return QStringLiteral("its text cannot be cleared");
        // Neither the typed character nor the text before it is copied:
        // such copies of a secret would be freed unwiped.
        for (qsizetype i = 0; i < value.size(); ++i) {
            const qsizetype before = field->text().size();
            field->insert(QString::fromRawData(value.constData() + i, 1));
            if (field->text().size() == before) {
                return isSecret(field)
                           ? QStringLiteral("it refused the character at position %1").arg(i + 1)
                           : QStringLiteral("it refused '%1' at position %2").arg(value[i]).arg(i + 1);
            }
        }
        return std::nullopt;
    }
    if (auto *button = qobject_cast<QAbstractButton *>(control)) {
        const bool wanted = value == u"1" || value.compare(u"true", Qt::CaseInsensitive) == 0;
        if (!wanted && value != u"0" && value.compare(u"false", Qt::CaseInsensitive) != 0)
            return QStringLiteral("%1 is neither true nor false").arg(value);
        if (button->isChecked() != wanted)
            button->click();
        return std::nullopt;
    }
    return QStringLiteral("its control is of a kind this host cannot drive");
}

QByteArray PanelDriver::stateJson() const
{
    QByteArray out = "{";
    bool first = true;
    for (const QString &key : keys()) {
        const pde::BindingInfo binding = *userBinding(m_view, key);
        QWidget *control = binding.control;
        out += first ? "\n" : ",\n";
        first = false;
        out += "  " + jsonString(key) + ": {";
        if (auto *popup = qobject_cast<QComboBox *>(control)) {
            out += "\"value\": " + QByteArray::number(popup->currentIndex());
            out += ", \"text\": " + jsonString(popup->currentText());
        } else if (auto *field = qobject_cast<QLineEdit *>(control)) {
            out += "\"value\": " + jsonString(isSecret(field) ? QString(field->text().size(), u'*') : field->text());
        } else if (auto *button = qobject_cast<QAbstractButton *>(control)) {
            out += QByteArray("\"value\": ") + (button->isChecked() ? "true" : "false");
        } else {
            out += "\"value\": null";
        }
        out += QByteArray(", \"enabled\": ") + (control->isEnabled() ? "true" : "false");
        if (const QLabel *caption = captionOf(m_view, control)) {
            out += ", \"caption\": " + jsonString(caption->text());
            out += ", \"captionColor\": "
                   + jsonString(caption->palette().color(QPalette::Active, caption->foregroundRole()).name());
        }
        out += "}";
    }
    return out + (first ? "}\n" : "\n}\n");
}

} // namespace pdehost
