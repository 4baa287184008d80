// SPDX-License-Identifier: MIT
// Address text from numeric addresses, /etc/hosts names and names that
// getaddrinfo refuses without asking DNS.
#include "platform/AddressResolution.h"

#include <gtest/gtest.h>

#include <cstring>
#include <net/if.h>
#include <sstream>
#include <string>

namespace qs = com_norvanta_qs_o_vellumark_pde_JobTypeQTRN;

namespace {

struct Resolved {
    int result = 0;
    std::string bytes = std::string(64, 'x'); // the output buffer, 'x' where untouched
    std::string errors;
    std::string text() const { return bytes.substr(0, strnlen(bytes.data(), bytes.size())); }
    bool untouched() const { return bytes == std::string(64, 'x'); }
};

Resolved resolve(const char *host, std::size_t outSize)
{
    Resolved r;
    testing::internal::CaptureStderr();
    r.result = qs::CopyResolvedIPAddress(host, r.bytes.data(), outSize);
    r.errors = testing::internal::GetCapturedStderr();
    return r;
}

TEST(CopyResolvedIPAddress, WritesAddressText)
{
    if (if_nametoindex("lo") == 0)
        GTEST_SKIP() << "no loopback interface";
    // getaddrinfo parses a link-local address with a scope itself, so these
    // take the lookup path without DNS. A null text: output untouched.
    const struct {
        const char *name, *host;
        std::size_t outSize;
        const char *text;
    } rows[] = {
        {"numeric IPv4", "192.0.2.17", 32, "192.0.2.17"},
        {"numeric IPv6", "2001:db8::1", 32, "2001:db8::1"},
        {"short IPv4 form is looked up", "127.1", 32, "127.0.0.1"},
        {"link-local with interface", "fe80::1%lo", 32, "fe80::1%lo"},
        {"link-local upper end", "febf::1%lo", 32, "febf::1%lo"},
        {"interface does not fit", "fe80::1%lo", 8, "fe80::1"},
        {"address does not fit", "fe80::1%lo", 7, nullptr},
        {"unknown interface", "fe80::1%999", 32, "fe80::1"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const Resolved r = resolve(row.host, row.outSize);
        EXPECT_EQ(r.result, 0);
        EXPECT_EQ(r.errors, "");
        if (row.text == nullptr)
            EXPECT_TRUE(r.untouched()) << r.bytes;
        else
            EXPECT_EQ(r.text(), row.text);
    }
}

TEST(CopyResolvedIPAddress, NumericCopyFollowsStrncpy)
{
    // Zero padding up to the size, nothing beyond it.
    EXPECT_EQ(resolve("192.0.2.17", 16).bytes.substr(0, 17), std::string("192.0.2.17\0\0\0\0\0\0x", 17));
    // A text that fills the buffer gets no terminator.
    EXPECT_EQ(resolve("192.0.2.17", 4).bytes.substr(0, 5), "192.x");
    EXPECT_TRUE(resolve("192.0.2.17", 0).untouched());
}

TEST(CopyResolvedIPAddress, ResolvesLocalhost)
{
    const Resolved r = resolve("localhost", 64);
    EXPECT_EQ(r.result, 0);
    EXPECT_TRUE(r.text() == "127.0.0.1" || r.text() == "::1") << r.text();
    EXPECT_EQ(r.errors, "");

    // No result fits three bytes: IPv4 ones are reported, none is written.
    const Resolved tiny = resolve("localhost", 3);
    EXPECT_EQ(tiny.result, 0);
    EXPECT_TRUE(tiny.untouched()) << tiny.bytes;
    std::istringstream lines(tiny.errors);
    for (std::string line; std::getline(lines, line);)
        EXPECT_EQ(line, "CopyResolvedIPAddress - inet_ntop-IPv4 error.");
}

TEST(CopyResolvedIPAddress, FailedLookupIsReported)
{
    // glibc refuses these names before any DNS query.
    for (const char *host : {"", "bad name!"}) {
        const Resolved r = resolve(host, 64);
        EXPECT_EQ(r.result, 1) << host;
        EXPECT_EQ(r.errors, "CopyResolvedIPAddress - getaddrinfo failed.\n") << host;
        EXPECT_TRUE(r.untouched()) << host;
    }
    const Resolved noHost = resolve(nullptr, 64);
    EXPECT_EQ(noHost.result, 1);
    EXPECT_EQ(noHost.errors, "");
    testing::internal::CaptureStderr();
    EXPECT_EQ(qs::CopyResolvedIPAddress("localhost", nullptr, 16), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
