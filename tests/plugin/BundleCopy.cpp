// SPDX-License-Identifier: MIT
// Copying the built bundle.
#include "BundleCopy.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdlib>

namespace hosttest {
namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        std::abort();
}

} // namespace

BundleCopy::BundleCopy(const QString &identifier) : m_path(m_dir.path() + QStringLiteral("/JobTypeQTRN.plugin"))
{
    const QString source = QStringLiteral(PDE_BUNDLE_DIR);
    QDirIterator files(source, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        QFile in(file);
        if (!in.open(QIODevice::ReadOnly))
            std::abort();
        QByteArray content = in.readAll();
        if (file.endsWith(QStringLiteral("/Contents/Info.plist")))
            content.replace("com.norvanta.qs.o.vellumark.pde.JobTypeQTRN</string>", identifier.toUtf8() + "</string>");
        writeFile(m_path + file.mid(source.size()), content);
    }
}

void BundleCopy::addResource(const QString &relativePath, const QByteArray &content)
{
    writeFile(m_path + QStringLiteral("/Contents/Resources/") + relativePath, content);
}

} // namespace hosttest
