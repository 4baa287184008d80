// SPDX-License-Identifier: MIT
// Walking the group database for a user's membership.
#include "platform/GroupMembership.h"

#include "platform/PlatformLogging.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

constexpr std::size_t kNameBufferSize = 1024;

constexpr std::size_t kInitialLookupBuffer = 1024;
constexpr std::size_t kLargestLookupBuffer = 1 << 20;

// Error numbers with which NSS modules report "no such entry".
bool meansNotFound(int error) noexcept
{
    return error == 0 || error == ENOENT || error == ESRCH || error == EBADF || error == EPERM;
}

enum class Lookup { Found, NotFound, Failed };

// Calls a reentrant database lookup (getgrnam_r, getpwnam_r) with a buffer
// that grows while the entry does not fit.
template <typename Entry, typename Call>
Lookup lookUp(Entry &entry, std::vector<char> &buffer, Call call)
{
    buffer.resize(kInitialLookupBuffer);
    for (;;) {
        Entry *result = nullptr;
        const int error = call(&entry, buffer.data(), buffer.size(), &result);
        if (error == ERANGE && buffer.size() < kLargestLookupBuffer) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (result != nullptr)
            return Lookup::Found;
        return meansNotFound(error) ? Lookup::NotFound : Lookup::Failed;
    }
}

// True when the database answered with the entry of exactly this name, not
// with one that a name service took to match it without regard to case.
bool sameName(const char *stored, const char *asked) noexcept
{
    return stored != nullptr && std::strcmp(stored, asked) == 0;
}

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

bool isMemberOfGroup(const QString &userName, const char *groupName)
{
    if (groupName == nullptr || userName.isEmpty() || userName.contains(QChar(0)))
        return false;
    const QByteArray name = userName.toUtf8();

    group namedGroup{};
    std::vector<char> groupBuffer;
    switch (lookUp(namedGroup, groupBuffer, [groupName](group *g, char *b, std::size_t n, group **r) {
        return getgrnam_r(groupName, g, b, n, r);
    })) {
    case Lookup::Found:
        break;
    case Lookup::NotFound:
        return false;
    case Lookup::Failed:
        qCWarning(lcUtilityService, "UtilityService - CSIdentityQueryExecute failed.");
        return false;
    }
    if (!sameName(namedGroup.gr_name, groupName))
        return false;
    const gid_t groupId = namedGroup.gr_gid;

    passwd user{};
    std::vector<char> userBuffer;
    switch (lookUp(user, userBuffer, [&name](passwd *p, char *b, std::size_t n, passwd **r) {
        return getpwnam_r(name.constData(), p, b, n, r);
    })) {
    case Lookup::Found:
        break;
    case Lookup::NotFound:
        return false;
    case Lookup::Failed:
        qCWarning(lcUtilityService, "UtilityService - CSIdentityCreateGroupMembershipQuery failed.");
        return false;
    }
    if (!sameName(user.pw_name, name.constData()))
        return false;

    int count = 32;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    while (getgrouplist(name.constData(), user.pw_gid, groups.data(), &count) == -1) {
        groups.resize(static_cast<std::size_t>(std::max(count, static_cast<int>(groups.size()) * 2)));
        count = static_cast<int>(groups.size());
    }
    groups.resize(static_cast<std::size_t>(count));
    return std::find(groups.begin(), groups.end(), groupId) != groups.end();
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
