// SPDX-License-Identifier: MIT
// Small classes that test nibs declare: a model with bindable properties, a
// controller with outlets and actions, an owner and a custom root view.
#pragma once

#include <QColor>
#include <QLineEdit>
#include <QStringList>
#include <QVariant>
#include <QWidget>

namespace nibtest {

// Which objects woke from the nib, in order.
inline QStringList awakeLog;

class Model : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant name MEMBER m_name NOTIFY nameChanged)
    Q_PROPERTY(QVariant choice MEMBER m_choice NOTIFY choiceChanged)
    Q_PROPERTY(QVariant flag MEMBER m_flag NOTIFY flagChanged)
    Q_PROPERTY(QColor captionColor MEMBER m_color NOTIFY captionColorChanged)

public:
    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }

Q_SIGNALS:
    void nameChanged();
    void choiceChanged();
    void flagChanged();
    void captionColorChanged();

private:
    QVariant m_name, m_choice;
    QVariant m_flag = true;
    QColor m_color;
};

class Controller : public QObject
{
    Q_OBJECT
    Q_PROPERTY(nibtest::Model *model MEMBER model)
    Q_PROPERTY(QLineEdit *nameField MEMBER nameField)
    Q_PROPERTY(QWidget *view MEMBER view)

public:
    Model *model = nullptr;
    QLineEdit *nameField = nullptr;
    QWidget *view = nullptr;
    int applied = 0;
    QObject *lastSender = nullptr;

    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }

public Q_SLOTS:
    void apply() { ++applied; }
    void clickDefaults(QObject *sender) { lastSender = sender; }
};

class Owner : public QObject
{
    Q_OBJECT
    Q_PROPERTY(nibtest::Controller *controller MEMBER controller)

public:
    Controller *controller = nullptr;
};

class View : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }
};

} // namespace nibtest
