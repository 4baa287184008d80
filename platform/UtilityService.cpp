// SPDX-License-Identifier: MIT
// UtilityService on Linux: the group database for administrator membership,
// the routing table and getifaddrs for the primary address, the home
// directory and the Flatpak and Snap markers for the sandbox.
#include "platform/UtilityService.h"

#include "platform/GroupMembership.h"
#include "platform/PlatformLogging.h"
#include "platform/PrimaryInterface.h"
#include "platform/SystemQueryCache.h"
#include "platform/UnicodeBuffer.h"

#include "pdekit/PropertyList.h"
#include "pdekit/PropertyListItems.h"
#include "pdekit/ResourceFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <bit>
#include <plist/plist.h>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

const QString kHelpRegistrationFile = QStringLiteral("/Library/Preferences/com.apple.help.plist");

// The string value of a node, or nullopt when it is not a string.
std::optional<QString> stringOf(plist_t node)
{
    if (node == nullptr || plist_get_node_type(node) != PLIST_STRING)
        return std::nullopt;
    uint64_t length = 0;
    const char *text = plist_get_string_ptr(node, &length);
    return QString::fromUtf8(text, static_cast<qsizetype>(length));
}

plist_t dictionaryItem(plist_t dictionary, const char *key)
{
    if (dictionary == nullptr || plist_get_node_type(dictionary) != PLIST_DICT)
        return nullptr;
    return plist_dict_get_item(dictionary, key);
}

// XML property lists hold dictionaries, arrays, strings, numbers, booleans,
// dates and data; keyed-archive references (UIDs) have no XML form.
bool fitsXmlPropertyList(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_DICT: {
        bool fits = true;
        pde::forEachDictionaryItem(node, [&fits](const char *, plist_t value) {
            fits = fits && fitsXmlPropertyList(value);
        });
        return fits;
    }
    case PLIST_ARRAY:
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i) {
            if (!fitsXmlPropertyList(plist_array_get_item(node, i)))
                return false;
        }
        return true;
    case PLIST_BOOLEAN:
    case PLIST_UINT:
    case PLIST_REAL:
    case PLIST_STRING:
    case PLIST_DATE:
    case PLIST_DATA:
    case PLIST_KEY:
        return true;
    case PLIST_UID:
    case PLIST_NONE:
        return false;
    }
    return false;
}

bool inFlatpakOrSnap()
{
    return QFileInfo::exists(QStringLiteral("/.flatpak-info"))
           || !qEnvironmentVariableIsEmpty("FLATPAK_ID")
           || !qEnvironmentVariableIsEmpty("SNAP_NAME");
}

} // namespace

bool UtilityService::checkIfAdminUser(const std::optional<QString> &userName)
{
    return userName && isMemberOfGroup(*userName, "admin");
}

std::optional<QString> UtilityService::copyHostIPv4Address()
{
    QFile routes(QStringLiteral("/proc/net/route"));
    if (!routes.open(QIODevice::ReadOnly))
        return std::nullopt;
    const std::optional<QString> interfaceName = defaultRouteInterface(routes.readAll());
    if (!interfaceName)
        return std::nullopt;
    return primaryIPv4Address(interfaceName, localInterfaceAddresses());
}

bool UtilityService::isSandboxed()
{
    std::uint32_t &cached = systemQueryCache().sandboxed;
    if (cached == kNotYetKnown) {
        const bool sandboxed =
            QDir::homePath().contains(QStringLiteral("Containers")) || inFlatpakOrSnap();
        cached = sandboxed ? 1 : 0;
    }
    return cached != 0;
}

std::optional<QString> UtilityService::stringFromUnicodeBuf(const char16_t *buffer, int size)
{
    if (buffer == nullptr || size < 1)
        return std::nullopt;
    const int length = unicharLength(buffer, size);
    if (length < 1)
        return std::nullopt;

    QString text(length, Qt::Uninitialized);
    for (int i = 0; i < length; ++i) {
        char16_t unit = buffer[i];
        if constexpr (std::endian::native == std::endian::big)
            unit = static_cast<char16_t>((unit >> 8) | (unit << 8));
        text[i] = QChar(unit);
    }
    return text;
}

void UtilityService::removeHelpCacheForBundleID(const std::optional<QString> &bundleIdentifier)
{
    if (!bundleIdentifier || bundleIdentifier->contains(QChar(0)))
        return;
    const QString path = QDir::homePath() + kHelpRegistrationFile;
    // A regular file within the size limit only: the registration file is
    // the user's, but what else wrote it is not known.
    const pde::ResourceFile file = pde::readResourceFile(path);
    if (!file.contents)
        return;
    const pde::PropertyListNode root = pde::parsePropertyList(*file.contents);
    if (!root)
        return;

    const QByteArray identifier = bundleIdentifier->toUtf8();
    plist_t books = dictionaryItem(root.get(), "RegisteredBooks");
    plist_t entry = dictionaryItem(books, identifier.constData());
    if (entry == nullptr || plist_get_node_type(entry) != PLIST_ARRAY || plist_array_get_size(entry) < 1)
        return;
    const std::optional<QString> url = stringOf(dictionaryItem(plist_array_get_item(entry, 0), "url"));
    if (!url || !url->contains(QStringLiteral(".lproj")))
        return;

    plist_dict_remove_item(books, identifier.constData());
    plist_t order = dictionaryItem(root.get(), "RegistrationOrder");
    if (order != nullptr && plist_get_node_type(order) == PLIST_ARRAY) {
        for (uint32_t i = 0; i < plist_array_get_size(order); ++i) {
            if (stringOf(plist_array_get_item(order, i)) == *bundleIdentifier) {
                plist_array_remove_item(order, i);
                break;
            }
        }
    }

    if (!fitsXmlPropertyList(root.get()))
        qCWarning(lcUtilityService, "Illegal Property List.");
    QSaveFile out(path);
    if (out.open(QIODevice::WriteOnly)) {
        out.write(pde::xmlPropertyList(root.get()));
        out.commit();
    }
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
