// SPDX-License-Identifier: MIT
// Queries of the local system that belong to the plug-in's common utility
// kit: administrator membership, the host's primary address, sandboxing and
// UTF-16 buffers. A class of class-level operations only.
#pragma once

#include <QString>

#include <optional>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

class UtilityService
{
public:
    UtilityService() = delete;

    // Returns true when `userName` is a member of the group "admin" (as
    // primary or supplementary group), the name equal to the user's name in
    // the database byte for byte: isMemberOfGroup(name, "admin"). Returns
    // false for an absent or empty name, an unknown user or no such group. A
    // failing group lookup logs "UtilityService - CSIdentityQueryExecute
    // failed.", a failing user lookup "UtilityService -
    // CSIdentityCreateGroupMembershipQuery failed.", and both give false.
    static bool checkIfAdminUser(const std::optional<QString> &userName);

    // Returns the first IPv4 address of the interface that the default route
    // leaves by, when that interface is up and running; nullopt otherwise.
    static std::optional<QString> copyHostIPv4Address();

    // Returns true when the process runs sandboxed: its home directory path
    // contains "Containers", or it runs inside a Flatpak or Snap sandbox.
    // Cached on first use.
    static bool isSandboxed();

    // Returns the text before the first zero unit of a buffer of UTF-16
    // little-endian units, `size` counting bytes. Returns nullopt for a null
    // buffer, a size below 1, an empty text or a buffer without a zero unit.
    static std::optional<QString> stringFromUnicodeBuf(const char16_t *buffer, int size);

    // Removes the bundle identifier's entry from the help viewer's
    // registration file, "Library/Preferences/com.apple.help.plist" under the
    // user's home directory ($HOME), when that entry was registered from a
    // localization folder (its "url" contains ".lproj"): the key goes from
    // "RegisteredBooks" and its first occurrence from "RegistrationOrder", and
    // the file is rewritten as an XML property list, atomically. An edited
    // list that XML cannot hold is logged as "Illegal Property List." and
    // written all the same. Any missing piece (no identifier, no file, a file
    // that is not a property list, no entry, no ".lproj") ends quietly and
    // leaves the file as it was.
    static void removeHelpCacheForBundleID(const std::optional<QString> &bundleIdentifier);
};

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
