// SPDX-License-Identifier: MIT
// Address text of a host (numeric addresses and names that getaddrinfo
// answers without DNS), and the primary interface and its address from
// synthetic routing tables and interface lists, and live.
#include "platform/AddressResolution.h"
#include "platform/PrimaryInterface.h"
#include "platform/UtilityService.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

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
