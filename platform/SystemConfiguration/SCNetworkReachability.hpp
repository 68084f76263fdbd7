// SPDX-License-Identifier: Apache-2.0
//
// Where a host is: this machine, a network that it is attached to, or beyond. Any thread may ask.
//
//     SCNetworkConnectionFlags flags = 0;
//     const bool isKnown = SCNetworkCheckReachabilityByName("localhost", &flags, Deadline::after(5));
//     const bool isNear = isKnown && (flags & (kSCNetworkFlagsIsLocalAddress | kSCNetworkFlagsIsDirect)) != 0;
#pragma once

#include <cstdint>

#include "platform/Foundation/System/Deadline.hpp"

struct sockaddr;

namespace NIMBO_PUBLIC nimbo {

/// What is known of the way to a host; the values are the platform's.
using SCNetworkConnectionFlags = std::uint32_t;

/// The bits of `SCNetworkConnectionFlags`.
enum : SCNetworkConnectionFlags {
  kSCNetworkFlagsReachable = 1 << 1,        ///< The name has an address.
  kSCNetworkFlagsIsLocalAddress = 1 << 16,  ///< An address is this machine's own, or a loopback address.
  kSCNetworkFlagsIsDirect = 1 << 17,        ///< An address is on a network that is attached to this machine.
};

/// Resolves a host, a name or an address in UTF-8 without brackets, and answers where it is in `*flags`.
/// Nothing is sent to the host. When the name has addresses of which one is neither local nor direct, none of
/// these two bits is set, because any of them may be the one that is used. False when the name has no address,
/// when that is not known at the deadline, or when too many names wait for their answers. Throws
/// std::bad_alloc.
bool SCNetworkCheckReachabilityByName(const char *nodename, SCNetworkConnectionFlags *flags,
                                      const Deadline &deadline = Deadline::never());

/// The same of one IPv4 or IPv6 address; 0 for another kind.
SCNetworkConnectionFlags SCNetworkFlagsOfAddress(const sockaddr &address);

/// How many names may wait for an answer at a time in this process, given up ones too: more than who gives each
/// a quarter of a second asks for in the minute that silent name servers take, so that the names of one page
/// leave places for those of the next.
constexpr int kMaximumWaitingHostNames = 256;

}  // namespace nimbo
