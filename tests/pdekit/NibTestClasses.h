// SPDX-License-Identifier: MIT
// Small classes that test nibs declare: a model with bindable properties, a
// controller with outlets and actions, an owner and a custom root view.
#pragma once

#include <QColor>
#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>
#include <QWidget>

namespace nibtest {

// Which objects woke from the nib, in order.
inline QStringList &awakeLog()
{
    static QStringList log;
    return log;
}

class Model : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QVariant name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QVariant choice READ choice WRITE setChoice NOTIFY choiceChanged)
    Q_PROPERTY(QVariant flag READ flag WRITE setFlag NOTIFY flagChanged)
    Q_PROPERTY(bool editable READ editable WRITE setEditable NOTIFY editableChanged)
    Q_PROPERTY(QColor captionColor READ captionColor WRITE setCaptionColor NOTIFY captionColorChanged)
    Q_PROPERTY(QString plain READ plain WRITE setPlain) // no NOTIFY: cannot be bound

public:
    QVariant name() const { return m_name; }
    void setName(const QVariant &value) { ++nameWrites; m_name = value; Q_EMIT nameChanged(); }
    QVariant choice() const { return m_choice; }
    void setChoice(const QVariant &value) { ++choiceWrites; m_choice = value; Q_EMIT choiceChanged(); }
    QVariant flag() const { return m_flag; }
    void setFlag(const QVariant &value) { m_flag = value; Q_EMIT flagChanged(); }
    bool editable() const { return m_editable; }
    void setEditable(bool value) { m_editable = value; Q_EMIT editableChanged(); }
    QColor captionColor() const { return m_color; }
    void setCaptionColor(const QColor &value) { m_color = value; Q_EMIT captionColorChanged(); }
    QString plain() const { return {}; }
    void setPlain(const QString &) {}

    Q_INVOKABLE void awakeFromNib() { awakeLog().append(objectName()); }

    int nameWrites = 0;
    int choiceWrites = 0;

Q_SIGNALS:
    void nameChanged();
    void choiceChanged();
    void flagChanged();
    void editableChanged();
    void captionColorChanged();

private:
    QVariant m_name;
    QVariant m_choice;
    QVariant m_flag;
    bool m_editable = true;
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

    Q_INVOKABLE void awakeFromNib() { awakeLog().append(objectName()); }

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
    explicit View(QWidget *parent = nullptr) : QWidget(parent) {}
    Q_INVOKABLE void awakeFromNib() { awakeLog().append(objectName()); }
};

} // namespace nibtest
