// SPDX-License-Identifier: MIT
// Display detection for the default alert and help window.
#include "pdekit/GuiAvailability.h"

#include <QApplication>
#include <QGuiApplication>

namespace pde {

bool hasInteractiveDisplay()
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance()) == nullptr)
        return false;
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1StringView("offscreen") && platform != QLatin1StringView("minimal");
}

} // namespace pde
