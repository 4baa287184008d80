// SPDX-License-Identifier: MIT
// Group membership tests against the system's group database.
#pragma once

#include <QString>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Returns true when the process's real user belongs to the group "admin"
// (CheckUserGroups with the user's login name, at most 1023 bytes of it).
// Returns false when the user has no password-database entry.
bool IsUserAdmin() noexcept;

// Returns true when `userName` belongs to the group `groupName`: the group is
// the user's primary group, or lists the user among its members. Walks the
// whole group database, so every group of that name counts. Returns false for
// a null argument or an unknown user.
bool CheckUserGroups(const char *userName, const char *groupName) noexcept;

// Returns true when `userName` is a member of the group `groupName`, as its
// primary or a supplementary group; what UtilityService::checkIfAdminUser
// asks for the group "admin". Both names must equal the database's names
// byte for byte: a name service that matches names without regard to case
// (SSSD, winbind) answers a lookup of "Root" with the entry of "root", and
// that is not the user asked about. Returns false for an empty name, a name
// holding a zero character, a null group name, an unknown user or group. A
// failing group lookup logs "UtilityService - CSIdentityQueryExecute failed.",
// a failing user lookup "UtilityService - CSIdentityCreateGroupMembershipQuery
// failed.", and both give false.
bool isMemberOfGroup(const QString &userName, const char *groupName);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
