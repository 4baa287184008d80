// SPDX-License-Identifier: MIT
// Modal alerts that a panel shows when it refuses the user's input.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QString>

#include <functional>
#include <optional>

namespace pde {

struct Alert {
    QString messageText;
    QString defaultButtonTitle;
    std::optional<QString> informativeText;
};

// Shows one alert; returns once the user has dismissed it.
using AlertHandler = std::function<void(const Alert &)>;

// Installs the handler that runModalAlert uses (a command-line host prints
// the alert, a test records it); an empty handler restores the default.
// Returns the previous handler.
PDEKIT_EXPORT AlertHandler setAlertHandler(AlertHandler handler);

// Shows a modal alert with one button and returns after it was dismissed.
// Without an installed handler: a QMessageBox when the application has a
// display, otherwise one line "alert: <message>" (and the informative text,
// if any, after a colon) on standard error, without waiting.
PDEKIT_EXPORT void runModalAlert(const QString &messageText, const QString &defaultButtonTitle,
                                 const std::optional<QString> &informativeText);

} // namespace pde
