// SPDX-License-Identifier: MIT
// Bundle folders made in a temporary folder, the preferred languages set for
// one test, and readable Qt values in GoogleTest's failure messages.
#pragma once

#include "MessageRecorder.h"
#include "pdekit/Bundle.h"
#include "pdekit/PreferredLanguages.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QVariant &value, std::ostream *out)
{
    QString text;
    QDebug(&text) << value;
    *out << text.toStdString();
}

namespace testsupport {

// The preferred languages are process-wide: each test sets its own and gives
// the environment's back.
struct LanguagesGuard {
    explicit LanguagesGuard(const QStringList &languages) { pde::setPreferredLanguages(languages); }
    ~LanguagesGuard() { pde::setPreferredLanguages(std::nullopt); }
};

// Bundles are registered by path for the life of the process, so each
// TestBundle is a new bundle whose class registry no earlier test has filled.
class TestBundle
{
public:
    // A bundle folder `name` in a new temporary folder.
    explicit TestBundle(const QString &name = QStringLiteral("Sample.plugin")) : m_path(m_dir.path() + u'/' + name)
    {
        QDir().mkpath(m_path + QStringLiteral("/Contents/Resources"));
    }

    // Writes Contents/<path>, making folders as needed.
    TestBundle &file(const QString &path, const QByteArray &content)
    {
        QFile file(m_path + QStringLiteral("/Contents/") + path);
        if (!QDir().mkpath(QFileInfo(file).absolutePath()) || !file.open(QIODevice::WriteOnly)
            || file.write(content) != content.size())
            std::abort(); // a test that cannot write its fixture cannot mean anything
        return *this;
    }
    // Writes an XML Info.plist of string values.
    TestBundle &info(const QVariantMap &info)
    {
        QString xml = QStringLiteral("<plist version=\"1.0\"><dict>");
        for (auto it = info.cbegin(); it != info.cend(); ++it)
            xml += QStringLiteral("<key>%1</key><string>%2</string>")
                       .arg(it.key().toHtmlEscaped(), it.value().toString().toHtmlEscaped());
        return file(QStringLiteral("Info.plist"), (xml + QStringLiteral("</dict></plist>")).toUtf8());
    }
    TestBundle &resource(const QString &path, const QByteArray &content)
    {
        return file(QStringLiteral("Resources/") + path, content);
    }
    // Writes Resources/<localization>.lproj/<table>.strings.
    TestBundle &strings(const QString &localization, const QString &table, const QString &text)
    {
        return resource(localization + QStringLiteral(".lproj/") + table + QStringLiteral(".strings"), text.toUtf8());
    }

    QString path() const { return m_path; }
    // Opens (and registers) the bundle.
    pde::Bundle *open() const { return pde::Bundle::open(m_path); }

private:
    QTemporaryDir m_dir;
    QString m_path;
};

} // namespace testsupport
