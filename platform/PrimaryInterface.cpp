// SPDX-License-Identifier: MIT
// Reading the default route and the interface addresses.
#include "platform/PrimaryInterface.h"

#include <QByteArray>
#include <QList>

#include <arpa/inet.h>
#include <array>
#include <ifaddrs.h>
#include <limits>
#include <memory>
#include <net/if.h>
#include <net/route.h>
#include <netinet/in.h>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

struct IfaddrsFree {
    void operator()(ifaddrs *list) const noexcept { freeifaddrs(list); }
};

// Columns of /proc/net/route: Iface Destination Gateway Flags RefCnt Use
// Metric Mask MTU Window IRTT, numbers in hexadecimal except the counters.
constexpr int kIface = 0;
constexpr int kDestination = 1;
constexpr int kFlags = 3;
constexpr int kMetric = 6;
constexpr int kMask = 7;
constexpr int kColumns = 8;

} // namespace

std::optional<QString> defaultRouteInterface(QByteArrayView routeTable)
{
    std::optional<QString> best;
    unsigned long bestMetric = std::numeric_limits<unsigned long>::max();
    // The title line fails the number checks below like any malformed line.
    for (const QByteArray &line : QByteArray(routeTable.data(), routeTable.size()).split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < kColumns)
            continue;
        bool destinationOk = false;
        bool flagsOk = false;
        bool metricOk = false;
        bool maskOk = false;
        const unsigned long destination = fields[kDestination].toULong(&destinationOk, 16);
        const unsigned long flags = fields[kFlags].toULong(&flagsOk, 16);
        const unsigned long metric = fields[kMetric].toULong(&metricOk, 10);
        const unsigned long mask = fields[kMask].toULong(&maskOk, 16);
        if (!destinationOk || !flagsOk || !metricOk || !maskOk)
            continue;
        if (destination != 0 || mask != 0 || (flags & RTF_UP) == 0)
            continue;
        if (!best || metric < bestMetric) {
            best = QString::fromUtf8(fields[kIface]);
            bestMetric = metric;
        }
    }
    return best;
}

std::vector<InterfaceAddress> localInterfaceAddresses()
{
    ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0)
        return {};
    const std::unique_ptr<ifaddrs, IfaddrsFree> owned(list);

    std::vector<InterfaceAddress> addresses;
    for (const ifaddrs *entry = list; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_name == nullptr)
            continue;
        InterfaceAddress address;
        address.name = QString::fromUtf8(entry->ifa_name);
        address.active = (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_RUNNING) != 0;
        if (entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET) {
            std::array<char, INET_ADDRSTRLEN> text{};
            const auto *in = reinterpret_cast<const sockaddr_in *>(entry->ifa_addr);
            if (inet_ntop(AF_INET, &in->sin_addr, text.data(), text.size()) != nullptr)
                address.ipv4 = QString::fromLatin1(text.data());
        }
        addresses.push_back(std::move(address));
    }
    return addresses;
}

std::optional<QString> primaryIPv4Address(const std::optional<QString> &interfaceName,
                                          std::span<const InterfaceAddress> addresses)
{
    if (!interfaceName)
        return std::nullopt;
    bool active = false;
    std::optional<QString> first;
    for (const InterfaceAddress &address : addresses) {
        if (address.name != *interfaceName)
            continue;
        active = active || address.active;
        if (!first && address.ipv4)
            first = address.ipv4;
    }
    return active ? first : std::nullopt;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
