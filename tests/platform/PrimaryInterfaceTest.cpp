// SPDX-License-Identifier: MIT
// The primary interface and its address: synthetic routing tables and
// interface lists, and the live answer.
#include "platform/PrimaryInterface.h"
#include "platform/UtilityService.h"

#include "QStringPrinter.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <string>
#include <vector>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

// The layout of /proc/net/route, trailing blanks included.
const std::string kHeader = "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\t"
                            "Window\tIRTT                                                       \n";

std::string route(const char *iface, const char *metric, const char *flags = "0003",
                  const char *destination = "00000000", const char *mask = "00000000")
{
    return std::string(iface) + '\t' + destination + "\t010200C0\t" + flags + "\t0\t0\t" + metric + '\t'
           + mask + "\t0\t0\t0               \n";
}

TEST(DefaultRouteInterface, FindsUsableDefaultWithLowestMetric)
{
    const std::string subnet = route("eth0", "0", "0001", "000200C0", "00FFFFFF");
    const struct {
        const char *name;
        std::string table;
        std::optional<QString> interface;
    } rows[] = {
        {"one default route", kHeader + route("eth0", "0") + subnet, QStringLiteral("eth0")},
        {"lower metric wins", kHeader + route("wlan0", "600") + route("eth0", "100"), QStringLiteral("eth0")},
        {"metric is a number", kHeader + route("wlan0", "1000") + route("eth0", "200"),
         QStringLiteral("eth0")},
        {"first of equals", kHeader + route("wlan0", "100") + route("eth0", "100"), QStringLiteral("wlan0")},
        {"down route skipped", kHeader + route("eth0", "0", "0002") + route("wlan0", "600"),
         QStringLiteral("wlan0")},
        // A VPN's 0.0.0.0/1 route has the default's destination but not its mask.
        {"half route is no default",
         kHeader + route("tun0", "0", "0003", "00000000", "00000080") + route("eth0", "100"),
         QStringLiteral("eth0")},
        {"no default route", kHeader + subnet, std::nullopt},
        {"header only", kHeader, std::nullopt},
        {"empty", "", std::nullopt},
        {"truncated line", kHeader + "eth0\t00000000\t010200C0\t0003\t0\n", std::nullopt},
        {"garbage", "not a routing table\n\x01\xff 00000000 x y z w v u\n", std::nullopt},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(qs::defaultRouteInterface(QByteArrayView(row.table.data(), qsizetype(row.table.size()))),
                  row.interface)
            << row.name;
    }
}

TEST(PrimaryIPv4Address, TakesFirstIPv4OfActiveInterface)
{
    // In getifaddrs order: an interface's link entry comes before its addresses.
    const std::vector<qs::InterfaceAddress> addresses = {
        {QStringLiteral("lo"), true, QStringLiteral("127.0.0.1")},
        {QStringLiteral("eth0"), true, std::nullopt},
        {QStringLiteral("eth0"), true, QStringLiteral("192.0.2.10")},
        {QStringLiteral("eth0"), true, QStringLiteral("192.0.2.11")},
        {QStringLiteral("wlan0"), false, QStringLiteral("198.51.100.7")},
        {QStringLiteral("tun0"), true, std::nullopt},
    };
    const struct {
        const char *name;
        std::optional<QString> interface, address;
    } rows[] = {
        {"first of several", QStringLiteral("eth0"), QStringLiteral("192.0.2.10")},
        {"inactive interface", QStringLiteral("wlan0"), std::nullopt},
        {"no IPv4 address", QStringLiteral("tun0"), std::nullopt},
        {"name must match exactly", QStringLiteral("eth"), std::nullopt},
        {"no interface", std::nullopt, std::nullopt},
    };
    for (const auto &row : rows)
        EXPECT_EQ(qs::primaryIPv4Address(row.interface, addresses), row.address) << row.name;
}

TEST(CopyHostIPv4Address, IsAnAddressOfThisHost)
{
    const std::optional<QString> address = qs::UtilityService::copyHostIPv4Address();
    if (!address)
        GTEST_SKIP() << "no default route through an active interface with IPv4";
    in_addr parsed{};
    ASSERT_EQ(inet_pton(AF_INET, address->toLatin1().constData(), &parsed), 1) << address->toStdString();

    ifaddrs *list = nullptr;
    ASSERT_EQ(getifaddrs(&list), 0);
    bool listed = false;
    for (const ifaddrs *entry = list; entry != nullptr && !listed; entry = entry->ifa_next) {
        listed = entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET
                 && reinterpret_cast<const sockaddr_in *>(entry->ifa_addr)->sin_addr.s_addr == parsed.s_addr;
    }
    freeifaddrs(list);
    EXPECT_TRUE(listed) << address->toStdString();
}

} // namespace
