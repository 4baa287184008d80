// SPDX-License-Identifier: MIT
// Small classes that test nibs declare: a model with bindable properties, a
// controller with outlets and actions, an owner and a custom root view.
#pragma once

#include <QColor>
#include <QLineEdit>
#include <QPointer>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <vector>

namespace nibtest {

// Which objects woke from the nib, in order.
inline QStringList awakeLog;
// The declared objects and root views made, so a test can see that a failed
// load destroyed them.
inline std::vector<QPointer<QObject>> made;

class Model : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant name MEMBER m_name NOTIFY nameChanged)
    Q_PROPERTY(QVariant choice MEMBER m_choice NOTIFY choiceChanged)
    Q_PROPERTY(QVariant flag MEMBER m_flag NOTIFY flagChanged)
    Q_PROPERTY(QColor captionColor MEMBER m_color NOTIFY captionColorChanged)

public:
    Model() { made.emplace_back(this); }
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

    Controller() { made.emplace_back(this); }
    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }

public Q_SLOTS:
    void apply() { ++applied; }
    void clickDefaults(QObject *sender) { lastSender = sender; }
};

// A widget, so that a nib can bind the owner's own properties too.
class Owner : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(nibtest::Controller *controller MEMBER controller)

public:
    Controller *controller = nullptr;

Q_SIGNALS:
    void poked();
};

class View : public QWidget
{
    Q_OBJECT

public:
    explicit View(QWidget *parent = nullptr) : QWidget(parent) { made.emplace_back(this); }
    Q_INVOKABLE void awakeFromNib() { awakeLog.append(objectName()); }
};

} // namespace nibtest
