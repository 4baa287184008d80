// SPDX-License-Identifier: MIT
// The primary network interface (the one the IPv4 default route leaves by)
// and its address, from the kernel's routing table and getifaddrs.
#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// One address of one interface, as getifaddrs lists them.
struct InterfaceAddress {
    QString name;
    bool active = false;          // up and running
    std::optional<QString> ipv4;  // dotted-quad text when this is an IPv4 address
};

// Returns the interface of the IPv4 default route in the text of
// /proc/net/route (the usable default route with the lowest metric; the
// first of equals). Returns nullopt when there is none or the text is not a
// routing table.
std::optional<QString> defaultRouteInterface(QByteArrayView routeTable);

// Returns every address of every interface, in getifaddrs order; empty when
// getifaddrs fails.
std::vector<InterfaceAddress> localInterfaceAddresses();

// Returns the first IPv4 address of `interfaceName` among `addresses`, when
// that interface is active. Returns nullopt for no interface, an inactive
// one, or one without an IPv4 address.
std::optional<QString> primaryIPv4Address(const std::optional<QString> &interfaceName,
                                          std::span<const InterfaceAddress> addresses);

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
