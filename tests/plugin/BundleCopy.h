// SPDX-License-Identifier: MIT
// A copy of the built bundle in a temporary folder, under another
// identifier and with extra resources, as a second vendor's bundle would be.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace hosttest {

class BundleCopy
{
public:
    // Copies the build tree's bundle, giving it `identifier`.
    explicit BundleCopy(const QString &identifier);
    // Adds Contents/Resources/<relativePath>.
    void addResource(const QString &relativePath, const QByteArray &content);
    QString path() const { return m_path; }

private:
    QTemporaryDir m_dir;
    QString m_path;
};

} // namespace hosttest
