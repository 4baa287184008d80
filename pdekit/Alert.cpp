// SPDX-License-Identifier: MIT
// The alert handler and its default.
#include "pdekit/Alert.h"

#include "pdekit/GuiAvailability.h"

#include <QMessageBox>
#include <QPushButton>

#include <cstdio>

namespace pde {
namespace {

AlertHandler &installedHandler()
{
    static AlertHandler handler;
    return handler;
}

void showAlert(const Alert &alert)
{
    if (!hasInteractiveDisplay()) {
        QString line = QStringLiteral("alert: ") + alert.messageText;
        if (alert.informativeText && !alert.informativeText->isEmpty())
            line += QStringLiteral(": ") + *alert.informativeText;
        std::fprintf(stderr, "%s\n", qUtf8Printable(line));
        return;
    }
    QMessageBox box;
    box.setIcon(QMessageBox::Warning);
    box.setText(alert.messageText);
    if (alert.informativeText)
        box.setInformativeText(*alert.informativeText);
    QPushButton *button = box.addButton(alert.defaultButtonTitle, QMessageBox::AcceptRole);
    box.setDefaultButton(button);
    box.exec();
}

} // namespace

AlertHandler setAlertHandler(AlertHandler handler)
{
    AlertHandler previous = std::move(installedHandler());
    installedHandler() = std::move(handler);
    return previous;
}

void runModalAlert(const QString &messageText, const QString &defaultButtonTitle,
                   const std::optional<QString> &informativeText)
{
    const Alert alert{messageText, defaultButtonTitle, informativeText};
    if (const AlertHandler &handler = installedHandler())
        handler(alert);
    else
        showAlert(alert);
}

} // namespace pde
