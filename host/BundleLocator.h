// SPDX-License-Identifier: MIT
// Which extension bundles a printer calls for, and where they are found.
#pragma once

#include "text/CupsPpd.h"

#include <QString>
#include <QStringList>

namespace pdehost {

// The bundle file names ("JobTypeQTRN.plugin") that the PPD's
// *APDialogExtension attributes name, in PPD order, without repeats.
QStringList dialogExtensionsOf(ppd_file_t *ppd);

// The folders searched for bundles by name: those of PDE_PLUGIN_PATH (colon
// separated), then the install folder.
QStringList bundleSearchDirectories();

struct LocatedBundles {
    QStringList paths;    // bundles to load, each once
    QStringList problems; // "<name>: not found in <folders>"
};

// The bundles to load: every bundle given explicitly, then each bundle the
// PPD calls for, found by file name among the explicit ones or in `folders`.
LocatedBundles locateBundles(const QStringList &explicitBundles, const QStringList &calledFor,
                             const QStringList &folders);

} // namespace pdehost
