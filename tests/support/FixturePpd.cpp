// SPDX-License-Identifier: MIT
// Opening fixture PPDs.
#include "FixturePpd.h"

#include <QByteArray>

namespace testsupport {

Ppd openFixturePpd(const char *name)
{
    const QByteArray path = QByteArray(PDE_TEST_DATA_DIR) + '/' + name;
    Ppd ppd(ppdOpenFile(path.constData()));
    if (ppd)
        ppdMarkDefaults(ppd.get());
    return ppd;
}

} // namespace testsupport
