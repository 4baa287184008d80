// SPDX-License-Identifier: MIT
// Fuzzes the help registration clean-up on arbitrary file contents: it must
// never crash, and never write a file that it could not parse; and the
// reading of property lists into Qt values on the same contents.
#include "pdekit/PropertyList.h"
#include "platform/UtilityService.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <cstdint>
#include <cstdlib>

namespace jt = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

QString &registrationFile()
{
    static QString path;
    return path;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    char home[] = "/tmp/fuzz-help-cache-XXXXXX";
    if (mkdtemp(home) == nullptr)
        std::abort();
    setenv("HOME", home, 1);
    const QString preferences = QString::fromLocal8Bit(home) + QStringLiteral("/Library/Preferences");
    QDir().mkpath(preferences);
    registrationFile() = preferences + QStringLiteral("/com.apple.help.plist");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray before(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    {
        QFile file(registrationFile());
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(before) != before.size())
            std::abort();
    }
    jt::UtilityService::removeHelpCacheForBundleID(QStringLiteral("com.example.help"));

    QFile file(registrationFile());
    if (!file.open(QIODevice::ReadOnly))
        std::abort();
    const QByteArray after = file.readAll();
    const pde::PropertyListNode parsed = pde::parsePropertyList(before);
    if (after != before && (!parsed || !pde::parsePropertyList(after)))
        std::abort();
    pde::propertyListValue(parsed.get()); // whatever parsed converts, however nested
    return 0;
}
