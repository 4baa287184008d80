// SPDX-License-Identifier: MIT
// Group membership against the machine's real group database.
#include "platform/GroupMembership.h"
#include "platform/UtilityService.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

TEST(CheckUserGroups, AnswersFromGroupDatabase)
{
    // Every Linux system has user and group "root", the group being the
    // user's primary group, usually with no members listed.
    const struct {
        const char *name, *user, *group;
        bool member;
    } rows[] = {
        {"primary group without members", "root", "root", true},
        {"unknown user", "pde-no-such-user", "root", false},
        {"unknown group", "root", "pde-no-such-group", false},
        {"group name prefix", "root", "roo", false},
        {"null user", nullptr, "root", false},
        {"null group", "root", nullptr, false},
    };
    for (const auto &row : rows)
        EXPECT_EQ(qs::CheckUserGroups(row.user, row.group), row.member) << row.name;
}

TEST(CheckUserGroups, FindsSupplementaryMemberListedInGroup)
{
    std::string userName, groupName;
    setgrent();
    while (const group *entry = getgrent()) {
        for (char **member = entry->gr_mem; member && *member && userName.empty(); ++member) {
            const passwd *user = getpwnam(*member);
            if (user != nullptr && user->pw_gid != entry->gr_gid) {
                userName = *member;
                groupName = entry->gr_name;
            }
        }
    }
    endgrent();
    if (userName.empty())
        GTEST_SKIP() << "no group lists an existing user as a supplementary member";
    EXPECT_TRUE(qs::CheckUserGroups(userName.c_str(), groupName.c_str())) << userName << " in " << groupName;
}

TEST(AdminMembership, AllQueriesAgree)
{
    const passwd *user = getpwuid(getuid());
    ASSERT_NE(user, nullptr);
    const std::string name = user->pw_name; // the lookups below reuse getpwuid's storage
    const bool member = qs::CheckUserGroups(name.c_str(), "admin");
    EXPECT_EQ(qs::IsUserAdmin(), member);
    EXPECT_EQ(qs::UtilityService::checkIfAdminUser(QString::fromStdString(name)), member);
    if (getgrnam("admin") == nullptr) {
        EXPECT_FALSE(member);
        EXPECT_FALSE(qs::UtilityService::checkIfAdminUser(QStringLiteral("root")));
    }
    EXPECT_FALSE(qs::UtilityService::checkIfAdminUser(std::nullopt));
    EXPECT_FALSE(qs::UtilityService::checkIfAdminUser(QString()));
    EXPECT_FALSE(qs::UtilityService::checkIfAdminUser(QStringLiteral("pde-no-such-user")));
}

} // namespace
