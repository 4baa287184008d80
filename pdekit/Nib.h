// SPDX-License-Identifier: MIT
// Nibs: Qt Designer .ui files whose root widget also declares the nib's other
// objects, its outlets, actions and bindings, as string-list properties that
// Designer can edit:
//
//   nibObjects   "ClassName objectName"               (made through the bundle's classes)
//   nibOutlets   "source.outlet = target"             (source "File's Owner" is the owner)
//   nibActions   "sender.signal -> receiver.method"   (the method may take the sender)
//   nibBindings  "control.property <-> object.property"  (two-way)
//                "control.property <- object.property"   (to the control only)
//
// Names are object names: the root widget, any widget in it, or a declared
// object; "File's Owner" is the object that loads the nib.
#pragma once

#include "pdekit/PdeKitExport.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace pde {

class Bundle;

class PDEKIT_EXPORT Nib
{
public:
    using TopLevelObjects = std::vector<std::unique_ptr<QObject>>;

    // The name of the owner in outlet declarations.
    static constexpr const char *kFilesOwner = "File's Owner";

    // Loads the nib `name` (name.ui among the bundle's resources, a localized
    // copy first), with `owner` as File's Owner: makes the widgets and the
    // declared objects (classes the bundle registered first, Qt's own
    // otherwise), connects outlets, actions and bindings, calls awakeFromNib()
    // on each object that has it (declared objects in order, then the
    // widgets), and appends the root widget and the declared objects to
    // `topLevelObjects`, which owns them from then on. Relative file names in
    // the .ui (pixmaps) are read from the .ui file's folder. Returns false,
    // logging the nib and the fault, when `name` is not a plain name
    // (Bundle::isPlainResourceName), the nib is missing, is not a regular
    // file within kMaxResourceFileSize, is malformed or nests elements deeper
    // than the loader can take, its root widget is of a class that is
    // neither Qt's own nor registered by the bundle, or a declaration cannot
    // be made; then nothing is kept,
    // nothing the load made is left on the owner and no outlet of the owner
    // is left set.
    static bool load(const Bundle &bundle, const QString &name, QObject *owner,
                     TopLevelObjects *topLevelObjects);

    // As load, from the .ui file at `path`; `bundle` (may be null) supplies
    // the classes.
    static bool loadFile(const Bundle *bundle, const QString &path, QObject *owner,
                         TopLevelObjects *topLevelObjects);
};

} // namespace pde
