// SPDX-License-Identifier: MIT
// Plays the host for tests: loads the built bundle, or a copy of it, with
// QPluginLoader through pde::Bundle, with the callback, the alert and help
// recorder and the typing of TestSupport.h.
#pragma once

#include "TestSupport.h"
#include "text/PasswordProtection.h"

#include <QComboBox>
#include <QDirIterator>
#include <QPluginLoader>
#include <QPushButton>

#include <memory>
#include <optional>
#include <vector>

namespace hosttest {

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;
using namespace Qt::StringLiterals;
using testsupport::Callback;
using testsupport::Recorder;

// A copy of the built bundle in a temporary folder under another identifier,
// as a second vendor's bundle would be.
struct BundleCopy {
    QTemporaryDir dir;
    QString path = dir.path() + u"/JobTypeQTRN.plugin"_s;

    explicit BundleCopy(const QString &identifier)
    {
        const QString source = QStringLiteral(PDE_BUNDLE_DIR);
        QDirIterator files(source, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile in(files.next());
            if (!in.open(QIODevice::ReadOnly))
                std::abort();
            QByteArray content = in.readAll();
            if (in.fileName().endsWith(u"/Contents/Info.plist"_s))
                content.replace("com.norvanta.qs.o.vellumark.pde.JobTypeQTRN</string>", identifier.toUtf8() + "</string>");
            testsupport::writeFile(path + in.fileName().mid(source.size()), content);
        }
    }
};

// The factory of the bundle at `bundlePath` (the build tree's by default),
// loaded and handed its bundle; null when it cannot be loaded.
inline pde::PDEPlugIn *loadFactory(const QString &bundlePath = QStringLiteral(PDE_BUNDLE_DIR))
{
    pde::Bundle *bundle = pde::Bundle::open(bundlePath);
    if (bundle == nullptr || !bundle->executablePath())
        return nullptr;
    // Loaders stay with their plug-ins for the rest of the process, as a host
    // keeps the bundles it loaded.
    static std::vector<std::unique_ptr<QPluginLoader>> loaders;
    QPluginLoader *loader = loaders.emplace_back(std::make_unique<QPluginLoader>(*bundle->executablePath())).get();
    auto *factory = qobject_cast<pde::PDEPlugIn *>(loader->instance());
    if (factory != nullptr)
        factory->initWithBundle(bundle);
    return factory;
}

// The one panel the factory makes for the Print dialog.
inline std::unique_ptr<pde::PDEPanel> printPanel(pde::PDEPlugIn *factory, Callback *callback)
{
    std::optional<pde::PDEPanelList> panels =
        factory != nullptr ? factory->PDEPanelsForType(pde::kPrintDialogTypeID, callback) : std::nullopt;
    return panels && panels->size() == 1 ? std::move(panels->front()) : nullptr;
}

// The record's key for a suffix ("PrintType" ...).
inline QString recordKey(const char *suffix)
{
    return u"com.norvanta.qs.o.print.printsettings."_s + QLatin1StringView(suffix);
}

// The record's entries in the order a save writes them.
inline const char *const kRecordSuffixes[] = {"SecureVersion", "PrintType", "PrintTypeUserName",
                                              "PrintTypePassword", "DocumentNameType", "DocumentName"};

inline QString protectedUtf8(const QString &password)
{
    return jt::CreateEncryptedString(password, jt::StringEncoding::UTF8).value_or(QString());
}

// The record's six values in order, joined by '|'. A password entry that is
// exactly the protected UTF-8 form of a text shows as that text in braces.
inline QString record(const pde::PrintSettings &settings)
{
    QStringList values;
    for (const char *suffix : kRecordSuffixes)
        values.append(settings.value(recordKey(suffix)).value_or(u"<absent>"_s).toString());
    const std::optional<QString> clear = jt::CreateDecryptedString(values[3], jt::StringEncoding::UTF8);
    if (clear && protectedUtf8(*clear) == values[3])
        values[3] = u'{' + *clear + u'}';
    return values.join(u'|');
}

// A new panel restored from the record's entries, given joined by '|' from
// the print type on ("{1234}" for the protected form of a password), with the
// print settings emptied afterwards so that a save writes the record anew.
inline std::unique_ptr<pde::PDEPanel> restoredPanel(Callback &callback, const QString &entries)
{
    const QStringList values = entries.split(u'|');
    for (qsizetype i = 0; i < values.size(); ++i) {
        const QString &value = values[i];
        const bool braced = i == 2 && value.startsWith(u'{') && value.endsWith(u'}');
        callback.settings.setValue(recordKey(kRecordSuffixes[i + 1]),
                                   braced ? protectedUtf8(value.mid(1).chopped(1)) : value);
    }
    std::unique_ptr<pde::PDEPanel> panel = printPanel(loadFactory(), &callback);
    if (panel != nullptr)
        panel->restoreValuesAndReturnError(nullptr);
    callback.settings = pde::PrintSettings();
    return panel;
}

// What the controls show: the job type and document name type pop-ups'
// items (in parentheses while disabled) and the text fields that are
// enabled, as "1|(1)|user,password"; a caption that is not grey exactly
// while its control is disabled is added as "!<caption>".
inline QString shownState(const QWidget *view)
{
    const auto child = [view](const char *name) { return view->findChild<QWidget *>(QLatin1StringView(name)); };
    const struct { const char *control, *caption, *field; } controls[] = {
        {"jobTypePopUp", "jobTypeLabel", nullptr},
        {"userNameTextField", "userNameLabel", "user"},
        {"passwordTextField", "passwordLabel", "password"},
        {"documentNameTypePopUp", "documentNameTypeLabel", nullptr},
        {"docNameTextField", "documentNameLabel", "name"},
    };
    QStringList popups, fields, wrongCaptions;
    for (const auto &[control, caption, field] : controls) {
        const QWidget *widget = child(control);
        if (const auto *popup = qobject_cast<const QComboBox *>(widget))
            popups.append((widget->isEnabled() ? u"%1"_s : u"(%1)"_s).arg(popup->currentIndex()));
        else if (widget->isEnabled())
            fields.append(QLatin1StringView(field));
        const QWidget *label = child(caption);
        if (label->palette().color(QPalette::Active, label->foregroundRole())
            != view->palette().color(widget->isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText))
            wrongCaptions.append(u'!' + QLatin1StringView(caption));
    }
    return (popups + QStringList{fields.join(u',')} + wrongCaptions).join(u'|');
}

// The summary's lines, "Title: value" in display order, joined by '|'; the
// summary must hold nothing else.
inline QString summaryLines(pde::PDEPanel &panel)
{
    const pde::SummaryInfo summary = panel.summaryInfo().value_or(pde::SummaryInfo());
    const QStringList order = summary.value(QString(pde::kSummaryDisplayOrderKey)).toStringList();
    QStringList lines;
    for (const QString &title : order)
        lines.append(title + u": "_s + summary.value(title).toString());
    if (summary.size() != order.size() + 1)
        lines.append(u"<no summary, or entries out of the display order>"_s);
    return lines.join(u'|');
}

// What a user enters in the panel's controls, after clicking the defaults
// button if asked; a field left nullopt is not touched.
struct Entry {
    std::optional<int> jobType = {}; // index in the job type pop-up
    std::optional<QString> userName = {};
    std::optional<QString> password = {};
    std::optional<int> documentNameType = {}; // index in the document name pop-up
    std::optional<QString> documentName = {};
    bool defaults = false;
};

// Enters the values with the keyboard, as a user would: pop-up items by
// arrow keys, texts replacing what the field held.
inline void enter(QWidget *view, const Entry &entry)
{
    view->show();
    if (entry.defaults)
        QTest::mouseClick(view->findChild<QPushButton *>(u"defaultsButton"_s), Qt::LeftButton);
    const auto choose = [view](const char *name, int index) {
        auto *popup = view->findChild<QComboBox *>(QString::fromLatin1(name));
        popup->setFocus();
        QTest::keyClick(popup, Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(popup, Qt::Key_Down);
    };
    const auto type = [view](const char *name, const QString &text) {
        testsupport::typeText(view->findChild<QLineEdit *>(QString::fromLatin1(name)), text);
    };
    if (entry.jobType)
        choose("jobTypePopUp", *entry.jobType);
    if (entry.userName)
        type("userNameTextField", *entry.userName);
    if (entry.password)
        type("passwordTextField", *entry.password);
    if (entry.documentNameType)
        choose("documentNameTypePopUp", *entry.documentNameType);
    if (entry.documentName)
        type("docNameTextField", *entry.documentName);
}

} // namespace hosttest
