// SPDX-License-Identifier: MIT
// Group membership tests against the system's group database.
#pragma once

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

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
