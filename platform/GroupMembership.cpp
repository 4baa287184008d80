// SPDX-License-Identifier: MIT
// Walking the group database for a user's membership.
#include "platform/GroupMembership.h"

#include <array>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

constexpr std::size_t kNameBufferSize = 1024;

bool listsMember(char **members, const char *userName) noexcept
{
    if (members == nullptr)
        return false;
    for (char **member = members; *member != nullptr; ++member) {
        if (std::strcmp(*member, userName) == 0)
            return true;
    }
    return false;
}

} // namespace

bool IsUserAdmin() noexcept
{
    const passwd *user = getpwuid(getuid());
    if (user == nullptr || user->pw_name == nullptr)
        return false;
    std::array<char, kNameBufferSize> name{};
    std::strncpy(name.data(), user->pw_name, name.size() - 1);
    return CheckUserGroups(name.data(), "admin");
}

bool CheckUserGroups(const char *userName, const char *groupName) noexcept
{
    if (userName == nullptr || groupName == nullptr)
        return false;
    const passwd *user = getpwnam(userName);
    if (user == nullptr)
        return false;
    const gid_t primaryGroup = user->pw_gid;

    bool member = false;
    setgrent();
    while (const group *entry = getgrent()) {
        if (entry->gr_name == nullptr || std::strcmp(entry->gr_name, groupName) != 0)
            continue;
        if (entry->gr_gid == primaryGroup) {
            member = true;
            break;
        }
        if (listsMember(entry->gr_mem, userName))
            member = true;
    }
    endgrent();
    return member;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
