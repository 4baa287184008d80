// SPDX-License-Identifier: MIT
// The panel's value, to which the nib binds its text field.
#pragma once

#include <QObject>
#include <QString>

namespace com_example_hello {

class HelloModel : public QObject
{
    Q_OBJECT
    // Bound two-way to the text field: a change here shows there, and what
    // the user types is written here.
    Q_PROPERTY(QString greeting READ greeting WRITE setGreeting NOTIFY greetingChanged)

public:
    explicit HelloModel(QObject *parent = nullptr);

    QString greeting() const { return m_greeting; }
    void setGreeting(const QString &greeting);

public Q_SLOTS:
    // The nib's action of the Clear button.
    void clear();

Q_SIGNALS:
    void greetingChanged();

private:
    QString m_greeting;
};

} // namespace com_example_hello
