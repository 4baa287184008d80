// SPDX-License-Identifier: MIT
// Control <-> object property bindings.
#include "pdekit/Binding.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QColor>
#include <QComboBox>
#include <QLineEdit>
#include <QValidator>

namespace pde {
namespace {

const QByteArray kText = QByteArrayLiteral("text");
const QByteArray kCurrentIndex = QByteArrayLiteral("currentIndex");
const QByteArray kChecked = QByteArrayLiteral("checked");
const QByteArray kEnabled = QByteArrayLiteral("enabled");
const QByteArray kCaptionColor = QByteArrayLiteral("captionColor");

// The other buttons whose check takes the check away from `button`: those of
// its exclusive button group, or, outside any group, the other auto-exclusive
// buttons of its parent.
QList<QAbstractButton *> exclusiveSiblings(QAbstractButton *button)
{
    QList<QAbstractButton *> siblings;
    if (!button->isCheckable())
        return siblings;
    if (const QButtonGroup *group = button->group()) {
        if (group->exclusive())
            siblings = group->buttons();
    } else if (button->autoExclusive() && button->parentWidget() != nullptr) {
        for (QAbstractButton *candidate :
             button->parentWidget()->findChildren<QAbstractButton *>(Qt::FindDirectChildrenOnly)) {
            if (candidate->autoExclusive() && candidate->group() == nullptr)
                siblings.append(candidate);
        }
    }
    siblings.removeAll(button);
    return siblings;
}

} // namespace

bool bindProperty(QWidget *control, const QByteArray &controlProperty, QObject *object,
                  const QByteArray &objectProperty, BindingDirection direction, QString *error)
{
    const auto fail = [error](const QString &why) {
        if (error != nullptr)
            *error = why;
        return false;
    };
    if (control == nullptr || object == nullptr)
        return fail(QStringLiteral("a control and an object are needed"));

    const QMetaObject *meta = object->metaObject();
    const int index = meta->indexOfProperty(objectProperty.constData());
    if (index < 0)
        return fail(QStringLiteral("%1 has no property \"%2\"")
                        .arg(object->objectName(), QString::fromUtf8(objectProperty)));
    const QMetaProperty property = meta->property(index);
    if (!property.hasNotifySignal())
        return fail(QStringLiteral("property \"%1\" of %2 has no NOTIFY signal")
                        .arg(QString::fromUtf8(objectProperty), object->objectName()));

    const bool special = controlProperty == kCaptionColor || controlProperty == kEnabled;
    if (!special && control->metaObject()->indexOfProperty(controlProperty.constData()) < 0)
        return fail(QStringLiteral("%1 has no property \"%2\"")
                        .arg(control->objectName(), QString::fromUtf8(controlProperty)));

    auto *binding = new PropertyBinding(control, controlProperty, object, property, direction);
    if (direction == BindingDirection::TwoWay) {
        if (controlProperty == kText && qobject_cast<QLineEdit *>(control) != nullptr) {
            QObject::connect(static_cast<QLineEdit *>(control), &QLineEdit::textEdited, binding,
                             &PropertyBinding::controlEdited);
        } else if (controlProperty == kCurrentIndex && qobject_cast<QComboBox *>(control) != nullptr) {
            QObject::connect(static_cast<QComboBox *>(control), &QComboBox::activated, binding,
                             &PropertyBinding::controlEdited);
        } else if (controlProperty == kChecked && qobject_cast<QAbstractButton *>(control) != nullptr) {
            auto *button = static_cast<QAbstractButton *>(control);
            QObject::connect(button, &QAbstractButton::clicked, binding, &PropertyBinding::controlEdited);
            // A click on a button exclusive with this one unchecks it without
            // a click of its own; the binding hears that click too.
            for (QAbstractButton *sibling : exclusiveSiblings(button))
                QObject::connect(sibling, &QAbstractButton::clicked, binding, &PropertyBinding::siblingClicked);
        } else {
            delete binding;
            return fail(QStringLiteral("\"%1\" of %2 cannot be edited by the user; bind it one way (<-)")
                            .arg(QString::fromUtf8(controlProperty), control->objectName()));
        }
    }
    static const QMetaMethod changed =
        PropertyBinding::staticMetaObject.method(PropertyBinding::staticMetaObject.indexOfSlot("objectChanged()"));
    QObject::connect(object, property.notifySignal(), binding, changed);
    binding->objectChanged();
    return true;
}

PropertyBinding::PropertyBinding(QWidget *control, QByteArray controlProperty, QObject *object,
                                 QMetaProperty objectProperty, BindingDirection direction)
    : QObject(control),
      m_control(control),
      m_controlProperty(std::move(controlProperty)),
      m_object(object),
      m_objectProperty(objectProperty),
      m_originalPalette(control->palette()),
      m_direction(direction)
{
}

BindingInfo PropertyBinding::info() const
{
    return {m_control, m_controlProperty, m_object.data(), QByteArray(m_objectProperty.name()), m_direction};
}

QList<BindingInfo> bindingsIn(QWidget *root)
{
    QList<BindingInfo> bindings;
    if (root == nullptr)
        return bindings;
    QList<QWidget *> widgets{root};
    widgets.append(root->findChildren<QWidget *>());
    for (QWidget *widget : widgets) {
        for (const PropertyBinding *binding : widget->findChildren<PropertyBinding *>(Qt::FindDirectChildrenOnly))
            bindings.append(binding->info());
    }
    return bindings;
}

void PropertyBinding::objectChanged()
{
    if (m_object)
        show(m_objectProperty.read(m_object));
}

void PropertyBinding::show(const QVariant &value)
{
    m_showing = true;
    if (m_controlProperty == kText) {
        const QString text = value.isValid() && !value.isNull() ? value.toString() : QString();
        if (auto *edit = qobject_cast<QLineEdit *>(m_control)) {
            // Setting an equal text would move the cursor under the user's hands.
            if (edit->text() != text) {
                // The object's value is shown even when the field's validator
                // would refuse it. Set without the validator, the field counts
                // its text as valid, so it then refuses every edit that the
                // validator refuses, until one brings the text within the
                // rules; set with it, a field would accept any further edit.
                const QPointer<const QValidator> validator = edit->validator();
                edit->setValidator(nullptr);
                edit->setText(text);
                edit->setValidator(validator);
            }
        } else {
            m_control->setProperty(kText.constData(), text);
        }
    } else if (m_controlProperty == kCurrentIndex) {
        bool ok = false;
        int index = value.isValid() ? value.toInt(&ok) : -1;
        if (auto *combo = qobject_cast<QComboBox *>(m_control)) {
            if (!ok || index < 0 || index >= combo->count())
                index = -1;
            if (combo->currentIndex() != index)
                combo->setCurrentIndex(index);
        } else {
            m_control->setProperty(kCurrentIndex.constData(), ok ? index : -1);
        }
    } else if (m_controlProperty == kChecked) {
        m_control->setProperty(kChecked.constData(), value.toBool());
    } else if (m_controlProperty == kEnabled) {
        m_control->setEnabled(value.toBool());
    } else if (m_controlProperty == kCaptionColor) {
        const QColor color = value.value<QColor>();
        const QPalette::ColorRole role = m_control->foregroundRole();
        if (!color.isValid()) {
            m_control->setPalette(m_originalPalette);
        } else if (m_control->palette().color(QPalette::Active, role) != color
                   || m_control->palette().color(QPalette::Disabled, role) != color) {
            // The control's own palette with only this role changed: roles
            // the .ui set stay, the others stay inherited.
            QPalette palette = m_originalPalette;
            palette.setColor(role, color);
            m_control->setPalette(palette);
        }
    } else {
        m_control->setProperty(m_controlProperty.constData(), value);
    }
    m_showing = false;
}

QVariant PropertyBinding::controlValue() const
{
    if (m_controlProperty == kText)
        return m_control->property(kText.constData()).toString();
    if (m_controlProperty == kCurrentIndex)
        return m_control->property(kCurrentIndex.constData()).toInt();
    return m_control->property(m_controlProperty.constData());
}

void PropertyBinding::controlEdited()
{
    if (m_showing || !m_object)
        return;
    m_objectProperty.write(m_object, controlValue());
}

void PropertyBinding::siblingClicked()
{
    if (m_showing || !m_object)
        return;
    // Only a change is written: the sibling's click may have left this
    // button as it was.
    const bool checked = m_control->property(kChecked.constData()).toBool();
    if (m_objectProperty.read(m_object).toBool() != checked)
        m_objectProperty.write(m_object, checked);
}

} // namespace pde
