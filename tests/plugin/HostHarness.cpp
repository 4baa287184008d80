// SPDX-License-Identifier: MIT
// The test host.
#include "HostHarness.h"

#include "pdekit/Bundle.h"

#include <QByteArray>
#include <QComboBox>
#include <QLineEdit>
#include <QPluginLoader>
#include <QTest>

#include <vector>

namespace hosttest {

Recorder::Recorder()
{
    m_previousAlerts = pde::setAlertHandler([this](const pde::Alert &alert) { alerts.append(alert); });
    m_previousPages = pde::HelpViewer::instance().setPageHandler(
        [this](const QString &, const QUrl &page) { helpPages.append(page); });
}

Recorder::~Recorder()
{
    pde::setAlertHandler(std::move(m_previousAlerts));
    pde::HelpViewer::instance().setPageHandler(std::move(m_previousPages));
}

pde::PDEPlugIn *loadFactory(const QString &bundlePath)
{
    pde::Bundle *bundle = pde::Bundle::open(bundlePath);
    if (bundle == nullptr || !bundle->executablePath())
        return nullptr;
    // Loaders stay with their plug-ins for the rest of the process, as a host
    // keeps the bundles it loaded.
    static std::vector<std::unique_ptr<QPluginLoader>> loaders;
    QPluginLoader *loader = loaders.emplace_back(std::make_unique<QPluginLoader>(*bundle->executablePath())).get();
    auto *factory = qobject_cast<pde::PDEPlugIn *>(loader->instance());
    if (factory == nullptr)
        return nullptr;
    factory->initWithBundle(bundle);
    return factory;
}

std::unique_ptr<pde::PDEPanel> printPanel(pde::PDEPlugIn *factory, Callback *callback)
{
    if (factory == nullptr)
        return nullptr;
    std::optional<pde::PDEPanelList> panels = factory->PDEPanelsForType(pde::kPrintDialogTypeID, callback);
    if (!panels || panels->size() != 1)
        return nullptr;
    return std::move(panels->front());
}

QString recordKey(const char *suffix)
{
    return QStringLiteral("com.norvanta.qs.o.print.printsettings.") + QLatin1StringView(suffix);
}

namespace {

void choose(QWidget *view, const char *name, int index)
{
    auto *popup = view->findChild<QComboBox *>(QString::fromLatin1(name));
    popup->setFocus();
    QTest::keyClick(popup, Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(popup, Qt::Key_Down);
}

void type(QWidget *view, const char *name, const QString &text)
{
    auto *field = view->findChild<QLineEdit *>(QString::fromLatin1(name));
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    for (const QChar c : text) {
        if (c.unicode() >= 0x20 && c.unicode() < 0x7F)
            QTest::keyClick(field, static_cast<char>(c.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

} // namespace

void enter(QWidget *view, const Entry &entry)
{
    view->show();
    if (entry.jobType)
        choose(view, "jobTypePopUp", *entry.jobType);
    if (entry.userName)
        type(view, "userNameTextField", *entry.userName);
    if (entry.password)
        type(view, "passwordTextField", *entry.password);
    if (entry.documentNameType)
        choose(view, "documentNameTypePopUp", *entry.documentNameType);
    if (entry.documentName)
        type(view, "docNameTextField", *entry.documentName);
}

QString fieldText(QWidget *view, const char *name)
{
    return view->findChild<QLineEdit *>(QString::fromLatin1(name))->text();
}

} // namespace hosttest
