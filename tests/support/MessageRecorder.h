// SPDX-License-Identifier: MIT
// The log recorded for one test.
#pragma once

#include <QLoggingCategory>
#include <QString>
#include <QStringList>

namespace testsupport {

// Records the messages logged while it lives, as "category: text". A message
// handler is a plain function, so the list is process-wide.
class MessageRecorder
{
public:
    MessageRecorder()
    {
        messages().clear();
        m_previous = qInstallMessageHandler(&record);
    }
    ~MessageRecorder() { qInstallMessageHandler(m_previous); }
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    static QStringList &messages()
    {
        static QStringList recorded;
        return recorded;
    }

private:
    static void record(QtMsgType, const QMessageLogContext &context, const QString &text)
    {
        messages().append(QString::fromUtf8(context.category) + QStringLiteral(": ") + text);
    }

    QtMessageHandler m_previous = nullptr;
};

} // namespace testsupport
