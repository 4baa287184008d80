// SPDX-License-Identifier: MIT
// System queries: the version from fixed kernel releases, group membership
// against the machine's group database, UTF-16 buffers, the sandbox flag,
// the address text of a host (numeric addresses and names that getaddrinfo
// answers without DNS), and the primary interface and its address from
// synthetic routing tables and interface lists, and live.
#include "platform/AddressResolution.h"
#include "platform/GroupMembership.h"
#include "platform/PrimaryInterface.h"
#include "platform/SystemQueryCache.h"
#include "platform/SystemVersion.h"
#include "platform/UnicodeBuffer.h"
#include "platform/UtilityService.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <cctype>
#include <dlfcn.h>
#include <grp.h>
#include <pwd.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

// While set, user and group lookups by name behave like a name service that
// matches names without regard to case (SSSD with case_sensitive = false,
// winbind): the asked name is folded to lower case and the entry comes back
// under its stored name.
bool g_caseInsensitiveNames = false;

std::string asLookedUp(const char *name)
{
    std::string text = name;
    if (g_caseInsensitiveNames)
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

} // namespace

// These take the C library's place in this executable, the code under test
// included, and hand every lookup on to it.
extern "C" int getpwnam_r(const char *name, passwd *entry, char *buffer, size_t size, passwd **result)
{
    static const auto next = reinterpret_cast<decltype(&getpwnam_r)>(dlsym(RTLD_NEXT, "getpwnam_r"));
    return next(asLookedUp(name).c_str(), entry, buffer, size, result);
}

extern "C" int getgrnam_r(const char *name, group *entry, char *buffer, size_t size, group **result)
{
    static const auto next = reinterpret_cast<decltype(&getgrnam_r)>(dlsym(RTLD_NEXT, "getgrnam_r"));
    return next(asLookedUp(name).c_str(), entry, buffer, size, result);
}

namespace {

// The reader must be a plain function pointer, so the release lives here.
std::optional<std::string> g_release;
std::optional<std::string> fixedRelease() { return g_release; }

std::uint32_t ask(std::uint32_t selector)
{
    std::uint32_t value = 0xDEADBEEF;
    EXPECT_EQ(qs::Gestalt_ALT(selector, &value), 0);
    return value;
}

TEST(SystemVersion, PacksReleaseCachesItAndReportsUnknownSelectors)
{
    const qs::KernelReleaseReader previous = qs::setKernelReleaseReader(&fixedRelease);
    const struct { std::optional<std::string> release; std::uint32_t packed, major, minor, bugFix, osMinor; } rows[] = {
        {"10.8.0", 0x1068, 10, 6, 8, 6},
        {"12.3.0", 0x1083, 10, 8, 3, 8},
        {std::nullopt, 0x1000, 10, 0, 0, qs::kNotYetKnown},
        {"12", 0x1080, 10, 8, 0, 8},
        {"10.20.0", 0x1064, 10, 6, 4, 6}, // the minor keeps its low four bits
        {"4.19.0", 0x1003, 10, 0, 3, 0},
        {"3.2", 0x1FF2, 25, 15, 2, qs::kNotYetKnown}, // a major below four wraps
        {"0.5", 0x1005, 10, 0, 5, qs::kNotYetKnown},
        {"-10.8", 0x1008, 10, 0, 8, qs::kNotYetKnown}, // a negative major keeps the minor
        {"10.0000000000009", 0x1060, 10, 6, 0, 6}, // cut to 15 bytes: the 9 is the 16th
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.release.value_or("(unreadable)"));
        qs::resetSystemQueryCache();
        g_release = row.release;
        EXPECT_EQ(ask(qs::gestaltSystemVersion), row.packed);
        EXPECT_EQ(ask(qs::gestaltSystemVersionMajor), row.major);
        EXPECT_EQ(ask(qs::gestaltSystemVersionMinor), row.minor);
        EXPECT_EQ(ask(qs::gestaltSystemVersionBugFix), row.bugFix);
        EXPECT_EQ(qs::getOSMinorVersion(), row.osMinor);
    }

    // The packed version caches even a failed read; the minor version tries
    // again after one, then keeps what it found.
    qs::resetSystemQueryCache();
    g_release = std::nullopt;
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1000u);
    EXPECT_EQ(qs::getOSMinorVersion(), qs::kNotYetKnown);
    g_release = "11.4.2";
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1000u);
    EXPECT_EQ(qs::getOSMinorVersion(), 7u);
    g_release = "20.0";
    EXPECT_EQ(qs::getOSMinorVersion(), 7u);
    qs::resetSystemQueryCache();
    EXPECT_EQ(ask(qs::gestaltSystemVersion), 0x1100u);
    qs::setKernelReleaseReader(previous);
    qs::resetSystemQueryCache();

    // An unknown selector is reported whether or not the caller gave a place
    // for the answer; a known one without that place fails quietly.
    const struct { std::uint32_t selector; bool withResponse; std::string message; } refused[] = {
        {0xABCDEF00, true, "Gestalt_ALT : selector 'abcdef00' not supported.\n"},
        {0x73797361, true, "Gestalt_ALT : selector '73797361' not supported.\n"}, // near a known one
        {0x73797361, false, "Gestalt_ALT : selector '73797361' not supported.\n"},
        {qs::gestaltSystemVersion, false, ""},
    };
    for (const auto &row : refused) {
        std::uint32_t value = 0x12345678;
        testing::internal::CaptureStderr();
        EXPECT_EQ(qs::Gestalt_ALT(row.selector, row.withResponse ? &value : nullptr), -1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.message);
        EXPECT_EQ(value, 0x12345678u);
    }
}

struct GroupEntry {
    std::string name;
    gid_t id;
    std::vector<std::string> members;
};

std::vector<GroupEntry> groupDatabase()
{
    std::vector<GroupEntry> groups;
    setgrent();
    for (const group *entry = getgrent(); entry != nullptr; entry = getgrent()) {
        GroupEntry &copy = groups.emplace_back(GroupEntry{entry->gr_name, entry->gr_gid, {}});
        for (char **member = entry->gr_mem; *member != nullptr; ++member)
            copy.members.emplace_back(*member);
    }
    endgrent();
    return groups;
}

bool lowerCase(const std::string &name)
{
    return std::none_of(name.begin(), name.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

// Every Linux system has user and group "root", the group being the user's
// primary group, usually with no members listed. Machines (CI among them)
// rarely have a group "admin", so both membership tests run against groups
// every machine has, the table under a name service that matches names
// without regard to case: the answer must hold for the exact names only.
TEST(GroupMembership, AnswersFromTheGroupDatabaseForTheExactNames)
{
    const std::vector<GroupEntry> groups = groupDatabase();
    // Every member a group lists belongs to it, when such a user exists.
    for (const GroupEntry &listing : groups) {
        for (const std::string &user : listing.members) {
            SCOPED_TRACE(user + " in " + listing.name);
            const bool exists = getpwnam(user.c_str()) != nullptr;
            EXPECT_EQ(qs::CheckUserGroups(user.c_str(), listing.name.c_str()), exists);
            EXPECT_EQ(qs::isMemberOfGroup(QString::fromStdString(user), listing.name.c_str()), exists);
        }
    }
    const passwd *root = getpwnam("root");
    ASSERT_NE(root, nullptr);
    const gid_t rootGroup = root->pw_gid;
    const auto other = std::find_if(groups.begin(), groups.end(), [&](const GroupEntry &g) {
        return g.id != rootGroup && lowerCase(g.name)
               && std::find(g.members.begin(), g.members.end(), "root") == g.members.end();
    });
    ASSERT_NE(other, groups.end()) << "every group holds root";

    g_caseInsensitiveNames = true;
    passwd entry{};
    char buffer[4096];
    passwd *found = nullptr;
    ASSERT_EQ(getpwnam_r("ROOT", &entry, buffer, sizeof buffer, &found), 0);
    ASSERT_NE(found, nullptr) << "the case-insensitive lookup is not in place";
    const struct { const char *name; std::string user, group; bool member; } rows[] = {
        {"primary group", "root", "root", true},
        {"not a member", "root", other->name, false},
        {"empty name", "", "root", false},
        {"user name in other case", "Root", "root", false},
        {"group name in other case", "root", "ROOT", false},
        {"group name's prefix", "root", "roo", false},
        {"unknown user", "pde-no-such-user", "root", false},
        {"unknown group", "root", "pde-no-such-group", false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(qs::CheckUserGroups(row.user.c_str(), row.group.c_str()), row.member);
        EXPECT_EQ(qs::isMemberOfGroup(QString::fromStdString(row.user), row.group.c_str()), row.member);
    }
    g_caseInsensitiveNames = false;
    EXPECT_FALSE(qs::CheckUserGroups(nullptr, "root"));
    EXPECT_FALSE(qs::CheckUserGroups("root", nullptr));

    // The administrator queries agree.
    const passwd *user = getpwuid(getuid());
    ASSERT_NE(user, nullptr);
    const std::string name = user->pw_name; // the lookups below reuse getpwuid's storage
    const bool member = qs::CheckUserGroups(name.c_str(), "admin");
    EXPECT_EQ(qs::IsUserAdmin(), member);
    EXPECT_EQ(qs::UtilityService::checkIfAdminUser(QString::fromStdString(name)), member);
    EXPECT_FALSE(qs::UtilityService::checkIfAdminUser(std::nullopt));
    EXPECT_FALSE(qs::UtilityService::checkIfAdminUser(QStringLiteral("pde-no-such-user")));
}

TEST(UnicodeBuffer, MeasuresAndConverts)
{
    // `units` is exactly the buffer, so reading past it trips ASan.
    const struct { std::vector<char16_t> units; int size, length; std::optional<QString> text; } rows[] = {
        {{u'A', 0}, 4, 1, QStringLiteral("A")},
        {{u'A', u'B'}, 4, -1, std::nullopt},
        {{u'A', u'B', 0}, 4, -1, std::nullopt}, // the zero lies beyond the size
        {{0, u'A'}, 4, 0, std::nullopt},
        {{u'A', 0}, 3, -1, std::nullopt}, // an odd size drops the half unit
        {{0}, -2, -1, std::nullopt},
        // Units are taken as they are: no byte order mark handling, no checks.
        {{0xFEFF, 0xD800, 0}, 6, 2, QStringView(u"\uFEFF\xD800").toString()},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "row " << &row - rows);
        EXPECT_EQ(qs::unicharLength(row.units.data(), row.size), row.length);
        EXPECT_EQ(qs::UtilityService::stringFromUnicodeBuf(row.units.data(), row.size), row.text);
    }
    EXPECT_EQ(qs::unicharLength(nullptr, 16), -1);
    EXPECT_EQ(qs::UtilityService::stringFromUnicodeBuf(nullptr, 16), std::nullopt);
}

TEST(Sandbox, DetectsContainerHomeFlatpakAndSnapAndKeepsTheAnswer)
{
    if (QFileInfo::exists(QStringLiteral("/.flatpak-info")))
        GTEST_SKIP() << "running inside Flatpak";
    const QByteArray home = qgetenv("HOME");
    // Answers anew for that home and at most one variable set.
    const auto sandboxed = [](const char *home, const char *variable = nullptr) {
        qunsetenv("FLATPAK_ID");
        qunsetenv("SNAP_NAME");
        if (variable != nullptr)
            qputenv(variable, "org.example.Viewer");
        qputenv("HOME", home);
        qs::resetSystemQueryCache();
        return qs::UtilityService::isSandboxed();
    };
    EXPECT_TRUE(sandboxed("/Users/u/Library/Containers/x/Data"));
    EXPECT_FALSE(sandboxed("/home/containers/x"));
    EXPECT_TRUE(sandboxed("/home/u", "FLATPAK_ID"));
    EXPECT_TRUE(sandboxed("/home/u", "SNAP_NAME"));
    EXPECT_FALSE(sandboxed("/home/u"));
    qputenv("HOME", "/Users/u/Library/Containers/x/Data");
    EXPECT_FALSE(qs::UtilityService::isSandboxed()) << "kept until reset";
    qputenv("HOME", home);
    qs::resetSystemQueryCache();
}

TEST(CopyResolvedIPAddress, WritesAddressTextOrReports)
{
    const std::string ntopError = "CopyResolvedIPAddress - inet_ntop-IPv4 error.\n";
    // getaddrinfo parses "127.1" and a link-local address with a scope itself,
    // so these take the lookup path without DNS; glibc refuses "bad name!"
    // before any query. `bytes` is how the output buffer ('x' where untouched) begins.
    const struct { const char *host; std::size_t outSize; std::string bytes; int result = 0; std::string errors = {}; } rows[] = {
        // A numeric address is copied with strncpy's rules: zero padding up
        // to the size, no terminator when it fills the buffer.
        {"192.0.2.17", 16, std::string("192.0.2.17\0\0\0\0\0\0x", 17)},
        {"2001:db8::1", 4, "2001x"},
        {"127.1", 32, std::string("127.0.0.1\0x", 11)},
        {"127.1", 3, "x", 0, ntopError + ntopError + ntopError}, // one result per socket type
        {"fe80::1%lo", 32, std::string("fe80::1%lo\0", 11)},
        {"febf::1%lo", 32, std::string("febf::1%lo\0", 11)},
        // The interface is added when the address text and its name together
        // (7 + 2 here) do not exceed the size; "%" and the terminator are not
        // counted, so at 9 the write, bounded by the size, cuts the name.
        {"fe80::1%lo", 9, std::string("fe80::1%\0x", 10)},
        {"fe80::1%lo", 8, std::string("fe80::1\0x", 9)},  // the interface does not fit
        {"fe80::1%lo", 7, "x"},                           // the address does not fit
        {"fe80::1%999", 32, std::string("fe80::1\0", 8)}, // an unknown interface
        {"bad name!", 64, "x", 1, "CopyResolvedIPAddress - getaddrinfo failed.\n"},
        {nullptr, 64, "x", 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << (row.host ? row.host : "(null)") << " in " << row.outSize);
        std::string bytes(64, 'x');
        testing::internal::CaptureStderr();
        EXPECT_EQ(qs::CopyResolvedIPAddress(row.host, bytes.data(), row.outSize), row.result);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), row.errors);
        EXPECT_EQ(bytes.substr(0, row.bytes.size()), row.bytes);
    }
    testing::internal::CaptureStderr();
    EXPECT_EQ(qs::CopyResolvedIPAddress("localhost", nullptr, 16), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// A line of /proc/net/route.
std::string route(const char *iface, const char *metric, const char *flags = "0003",
                  const char *destination = "00000000", const char *mask = "00000000")
{
    return std::string(iface) + '\t' + destination + "\t010200C0\t" + flags + "\t0\t0\t" + metric + '\t'
           + mask + "\t0\t0\t0               \n";
}

TEST(PrimaryInterface, DefaultRouteIsUsableWithLowestMetric)
{
    const std::string header = "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT   \n";
    const std::string subnet = route("eth0", "0", "0001", "000200C0", "00FFFFFF");
    const std::pair<std::string, const char *> rows[] = {
        {route("eth0", "0") + subnet, "eth0"},
        {route("wlan0", "1000") + route("eth0", "200"), "eth0"},           // compared as numbers
        {route("wlan0", "100") + route("eth0", "100"), "wlan0"},           // the first of equals
        {route("eth0", "0", "0002") + route("wlan0", "600"), "wlan0"},     // not up
        // A VPN's 0.0.0.0/1 route has the default's destination but not its mask.
        {route("tun0", "0", "0003", "00000000", "00000080") + route("eth0", "100"), "eth0"},
        {route("tun0", "0", "0003", "zz000000") + route("eth0", "100"), "eth0"}, // not a number
        {subnet, nullptr},
        {"eth0\t00000000\t010200C0\t0003\t0\n", nullptr}, // a truncated line
    };
    for (const auto &[routes, interface] : rows) {
        const std::string table = header + routes;
        EXPECT_EQ(qs::defaultRouteInterface(QByteArrayView(table.data(), qsizetype(table.size()))),
                  interface ? std::optional(QString::fromLatin1(interface)) : std::nullopt)
            << table;
    }
}

TEST(PrimaryInterface, FirstIPv4OfActiveInterface)
{
    // In getifaddrs order: an interface's link entry comes before its addresses.
    const qs::InterfaceAddress addresses[] = {
        {QStringLiteral("lo"), true, QStringLiteral("127.0.0.1")},
        {QStringLiteral("eth0"), true, std::nullopt},
        {QStringLiteral("eth0"), true, QStringLiteral("192.0.2.10")},
        {QStringLiteral("eth0"), true, QStringLiteral("192.0.2.11")},
        {QStringLiteral("wlan0"), false, QStringLiteral("198.51.100.7")},
        {QStringLiteral("tun0"), true, std::nullopt},
    };
    EXPECT_EQ(qs::primaryIPv4Address(QStringLiteral("eth0"), addresses), QStringLiteral("192.0.2.10"));
    for (const QString &other : {QStringLiteral("wlan0"), QStringLiteral("tun0"), QStringLiteral("eth")})
        EXPECT_EQ(qs::primaryIPv4Address(other, addresses), std::nullopt) << other.toStdString();
    EXPECT_EQ(qs::primaryIPv4Address(std::nullopt, addresses), std::nullopt);

    // The live answer is an IPv4 address of this host.
    const std::optional<QString> address = qs::UtilityService::copyHostIPv4Address();
    if (!address)
        GTEST_SKIP() << "no default route through an active interface with IPv4";
    // Only an address of this host can be bound to.
    sockaddr_in local{};
    local.sin_family = AF_INET;
    ASSERT_EQ(inet_pton(AF_INET, address->toLatin1().constData(), &local.sin_addr), 1) << address->toStdString();
    const int socket = ::socket(AF_INET, SOCK_DGRAM, 0);
    EXPECT_EQ(bind(socket, reinterpret_cast<const sockaddr *>(&local), sizeof local), 0) << address->toStdString();
    close(socket);
}

} // namespace
