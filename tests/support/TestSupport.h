// SPDX-License-Identifier: MIT
// What the tests of pdekit, the panel and the plug-in share: bundle folders
// made in a temporary folder, the preferred languages set for one test, the
// host's side of a panel (a fixture PPD and print settings), alerts and help
// pages recorded instead of shown, typing into a field, and readable Qt
// values in GoogleTest's failure messages.
#pragma once

#include "FixturePpd.h"
#include "MessageRecorder.h"
#include "pdekit/Alert.h"
#include "pdekit/Bundle.h"
#include "pdekit/HelpViewer.h"
#include "pdekit/PDEPluginInterface.h"
#include "pdekit/PreferredLanguages.h"
#include "pdekit/PrintSettings.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

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

// Writes a file, making folders as needed; a test that cannot write its
// fixture cannot mean anything, so a failure ends the run.
inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(file).absolutePath()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        std::abort();
}

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

    // Writes Contents/<path>.
    TestBundle &file(const QString &path, const QByteArray &content)
    {
        writeFile(m_path + QStringLiteral("/Contents/") + path, content);
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

// The host's side of a panel: a fixture PPD (or none) and print settings.
struct Callback : pde::PDEPluginCallback {
    explicit Callback(const char *ppdFixture = nullptr) : ppd(ppdFixture ? openFixturePpd(ppdFixture) : Ppd()) {}
    ppd_file_t *ppdFile() override { return ppd.get(); }
    pde::PrintSettings *printSettings() override { return hasSettings ? &settings : nullptr; }

    Ppd ppd;
    pde::PrintSettings settings;
    bool hasSettings = true;
};

// Alerts ("message|button|informative text") and help pages ("book page"),
// recorded while an instance lives.
struct Recorder {
    QStringList alerts;
    QStringList helpPages;
    pde::AlertHandler previousAlerts = pde::setAlertHandler([this](const pde::Alert &alert) {
        alerts.append(alert.messageText + u'|' + alert.defaultButtonTitle + u'|'
                      + alert.informativeText.value_or(QStringLiteral("<none>")));
    });
    pde::HelpViewer::PageHandler previousPages = pde::HelpViewer::instance().setPageHandler(
        [this](const QString &book, const QUrl &page) { helpPages.append(book + u' ' + page.toString()); });

    Recorder() = default;
    Q_DISABLE_COPY_MOVE(Recorder)
    ~Recorder()
    {
        pde::setAlertHandler(std::move(previousAlerts));
        pde::HelpViewer::instance().setPageHandler(std::move(previousPages));
    }
};

// Replaces what the field holds by `text` typed as a user types it: keys of
// the keyboard for printable ASCII, key events that carry only their text
// for the other characters, as an input method delivers them. Returns the
// field.
inline QLineEdit *typeText(QLineEdit *field, const QString &text)
{
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    for (const QChar c : text) {
        if (c.unicode() >= 0x20 && c.unicode() < 0x7F)
            QTest::keyClick(field, static_cast<char>(c.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
    return field;
}

} // namespace testsupport
