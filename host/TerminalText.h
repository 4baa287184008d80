// SPDX-License-Identifier: MIT
// Text from outside (PPD values, file names, arguments, CUPS messages,
// alerts) made safe to write to a terminal: a hostile PPD or argument must
// not be able to send escape sequences through a host's messages.
#pragma once

#include <QString>
#include <QStringView>

namespace pdehost {

// `text` with every control character (C0, DEL, C1) written as a visible
// escape: \n, \r, \t, \e and \\ by name, the others as \xHH or \u00HH. A
// backslash is doubled so that an escape in the text stays distinguishable.
// Never fails.
QString terminalText(QStringView text);

} // namespace pdehost
