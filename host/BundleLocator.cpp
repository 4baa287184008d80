// SPDX-License-Identifier: MIT
// Locating extension bundles.
#include "host/BundleLocator.h"

#include <QDir>
#include <QFileInfo>

namespace pdehost {

QStringList dialogExtensionsOf(ppd_file_t *ppd)
{
    QStringList names;
    if (ppd == nullptr)
        return names;
    for (ppd_attr_t *attr = ppdFindAttr(ppd, "APDialogExtension", nullptr); attr != nullptr;
         attr = ppdFindNextAttr(ppd, "APDialogExtension", nullptr)) {
        if (attr->value == nullptr)
            continue;
        QString value = QString::fromUtf8(attr->value).trimmed();
        while (value.endsWith(u'/'))
            value.chop(1);
        const QString name = value.section(u'/', -1);
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    return names;
}

QStringList bundleSearchDirectories()
{
    QStringList folders = qEnvironmentVariable("PDE_PLUGIN_PATH").split(u':', Qt::SkipEmptyParts);
    folders.append(QStringLiteral(PDE_INSTALLED_BUNDLE_DIR));
    return folders;
}

LocatedBundles locateBundles(const QStringList &explicitBundles, const QStringList &calledFor,
                             const QStringList &folders)
{
    LocatedBundles located;
    const auto add = [&located](const QString &path) {
        const QString absolute = QFileInfo(path).absoluteFilePath();
        if (!located.paths.contains(absolute))
            located.paths.append(absolute);
    };
    for (const QString &path : explicitBundles)
        add(path);
    for (const QString &name : calledFor) {
        bool found = false;
        for (const QString &path : explicitBundles) {
            if (QFileInfo(path).fileName() == name) {
                found = true;
                break;
            }
        }
        for (const QString &folder : folders) {
            if (found)
                break;
            const QString candidate = QDir(folder).filePath(name);
            if (QFileInfo(candidate).isDir()) {
                add(candidate);
                found = true;
            }
        }
        if (!found)
            located.problems.append(QStringLiteral("%1: the printer calls for this bundle, but it is not in %2")
                                        .arg(name, folders.join(QStringLiteral(", "))));
    }
    return located;
}

} // namespace pdehost
