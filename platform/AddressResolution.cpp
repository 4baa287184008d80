// SPDX-License-Identifier: MIT
// Host name to address text through getaddrinfo.
#include "platform/AddressResolution.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {
namespace {

struct AddrinfoFree {
    void operator()(addrinfo *list) const noexcept { freeaddrinfo(list); }
};

bool isNumericAddress(const char *host) noexcept
{
    std::array<unsigned char, sizeof(in6_addr)> scratch{};
    return inet_pton(AF_INET, host, scratch.data()) == 1
           || inet_pton(AF_INET6, host, scratch.data()) == 1;
}

bool isLinkLocal(const in6_addr &address) noexcept
{
    return address.s6_addr[0] == 0xFE && (address.s6_addr[1] & 0xC0) == 0x80;
}

// Appends "%interface" to the address text in `out` when the scope names an
// interface and both texts fit together.
void appendScope(const sockaddr_in6 &address, char *out, std::size_t outSize) noexcept
{
    std::array<char, IF_NAMESIZE> interfaceName{};
    if (if_indextoname(address.sin6_scope_id, interfaceName.data()) == nullptr)
        return;
    std::array<char, INET6_ADDRSTRLEN> text{};
    std::strncpy(text.data(), out, std::min(outSize, text.size() - 1));
    if (std::strlen(text.data()) + std::strlen(interfaceName.data()) <= outSize)
        std::snprintf(out, outSize, "%s%%%s", text.data(), interfaceName.data());
}

} // namespace

int CopyResolvedIPAddress(const char *host, char *out, std::size_t outSize) noexcept
{
    if (host == nullptr || out == nullptr)
        return 1;

    if (isNumericAddress(host)) {
        std::strncpy(out, host, outSize);
        return 0;
    }

    addrinfo *found = nullptr;
    if (getaddrinfo(host, nullptr, nullptr, &found) != 0) {
        std::fputs("CopyResolvedIPAddress - getaddrinfo failed.\n", stderr);
        return 1;
    }
    const std::unique_ptr<addrinfo, AddrinfoFree> results(found);

    const auto size = static_cast<socklen_t>(std::min<std::size_t>(outSize, INT_MAX));
    for (const addrinfo *result = found; result != nullptr; result = result->ai_next) {
        if (result->ai_family == AF_INET && result->ai_addr != nullptr) {
            const auto *address = reinterpret_cast<const sockaddr_in *>(result->ai_addr);
            if (inet_ntop(AF_INET, &address->sin_addr, out, size) != nullptr)
                break;
            std::fputs("CopyResolvedIPAddress - inet_ntop-IPv4 error.\n", stderr);
        } else if (result->ai_family == AF_INET6 && result->ai_addr != nullptr) {
            const auto *address = reinterpret_cast<const sockaddr_in6 *>(result->ai_addr);
            if (inet_ntop(AF_INET6, &address->sin6_addr, out, size) == nullptr)
                continue;
            if (isLinkLocal(address->sin6_addr))
                appendScope(*address, out, outSize);
            break;
        } else {
            std::fputs("CopyResolvedIPAddress - inet_ntop-IPv4 error.\n", stderr);
        }
    }
    return 0;
}

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
