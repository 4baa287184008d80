// SPDX-License-Identifier: MIT
// The greeting, announcing each change to its binding.
#include "HelloModel.h"

namespace com_example_hello {

HelloModel::HelloModel(QObject *parent) : QObject(parent) {}

void HelloModel::setGreeting(const QString &greeting)
{
    if (greeting == m_greeting)
        return;
    m_greeting = greeting;
    Q_EMIT greetingChanged();
}

void HelloModel::clear()
{
    setGreeting(QString());
}

} // namespace com_example_hello
