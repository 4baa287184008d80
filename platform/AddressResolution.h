// SPDX-License-Identifier: MIT
// Resolving a host name to the text of one of its addresses.
#pragma once

#include <cstddef>

namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN {

// Writes the text of an address of `host` into out[0, outSize). A numeric
// IPv4 or IPv6 address is copied as it is, with strncpy's rules (no lookup,
// no terminator when it fills the buffer). Otherwise the first IPv4 result,
// or an earlier IPv6 result, of getaddrinfo is written; a link-local IPv6
// address gets its interface appended ("fe80::1%eth0") when the lengths of
// the address text and the interface name together do not exceed outSize.
// The "%" and the terminator are not counted there, so the rewrite, bounded
// by outSize, may cut the interface name short.
// Returns 0, also when nothing could be written. Returns 1 when resolution
// fails, writing "CopyResolvedIPAddress - getaddrinfo failed." to standard
// error, and 1, silently, for a null host or output. A result of another
// family, or an IPv4 result that does not fit, writes
// "CopyResolvedIPAddress - inet_ntop-IPv4 error." and the next result is tried.
int CopyResolvedIPAddress(const char *host, char *out, std::size_t outSize) noexcept;

} // namespace com_norvanta_qs_o_vellumark_pde_JobTypeQTRN
