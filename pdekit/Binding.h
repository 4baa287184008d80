// SPDX-License-Identifier: MIT
// Bindings between a control's property and an object's property, kept in
// step the way a nib declares them.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QByteArray>
#include <QMetaProperty>
#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QString>
#include <QVariant>

class QWidget;

namespace pde {

enum class BindingDirection {
    ToControl, // the object's property drives the control
    TwoWay,    // and the user's edits of the control write the object's property
};

// Binds `controlProperty` of `control` to `objectProperty` of `object`. The
// control properties with a meaning of their own:
//   text          a QLineEdit's (two-way: typed text), or any text property;
//   currentIndex  a QComboBox's selection (two-way: the user's choice); a
//                 value that is not an index of an item leaves no selection;
//   checked       a button's state (two-way: the user's click on it, or on
//                 a button exclusive with it that unchecked it, as the
//                 exclusive group or auto-exclusive siblings are when bound);
//   enabled       whether the control takes input;
//   captionColor  the control's text colour (a QColor; invalid restores the
//                 palette's own).
// Any other control property is set as it is, one way. A change of the
// object's property reaches the control at once (through its NOTIFY signal);
// only a user's edit writes the object's property, so a value the control
// cannot show is never written back. The binding lives as long as the control.
// Returns false, with `error` saying why, when either property does not exist,
// the object's property has no NOTIFY signal, or the control cannot be edited
// for a two-way binding.
PDEKIT_EXPORT bool bindProperty(QWidget *control, const QByteArray &controlProperty, QObject *object,
                                const QByteArray &objectProperty, BindingDirection direction,
                                QString *error = nullptr);

// One binding as a nib made it, for hosts that drive or report a panel's
// controls by the object properties they show.
struct BindingInfo {
    QWidget *control = nullptr;
    QByteArray controlProperty;
    QObject *object = nullptr;
    QByteArray objectProperty;
    BindingDirection direction = BindingDirection::ToControl;
};

// The bindings of every control in `root`'s tree (root included), in the
// order of the widget tree and, per control, of binding.
PDEKIT_EXPORT QList<BindingInfo> bindingsIn(QWidget *root);

class PropertyBinding : public QObject
{
    Q_OBJECT
public:
    PropertyBinding(QWidget *control, QByteArray controlProperty, QObject *object,
                    QMetaProperty objectProperty, BindingDirection direction);

    BindingInfo info() const;

public Q_SLOTS:
    void objectChanged();
    void controlEdited();
    // A click on a button exclusive with the control: writes the control's
    // checked state when that click changed it.
    void siblingClicked();

private:
    void show(const QVariant &value);
    QVariant controlValue() const;

    QWidget *m_control;
    QByteArray m_controlProperty;
    QPointer<QObject> m_object;
    QMetaProperty m_objectProperty;
    QPalette m_originalPalette;
    BindingDirection m_direction;
    bool m_showing = false;
};

} // namespace pde
