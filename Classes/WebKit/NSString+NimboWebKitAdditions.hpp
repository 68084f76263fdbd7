// SPDX-License-Identifier: Apache-2.0
//
// Names of hosts between the network's form and people's. Any thread may call these.
//
//     encodeHostName(u"bücher.example"_ns);  // "xn--bcher-kva.example"
//     decodeHostName(u"xn--bcher-kva.example"_ns);  // "bücher.example"
//     encodeHostName(u"example.org"_ns);  // the string itself
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NimboWebKitAdditions {

/// The host name in ASCII, with labels of other characters as "xn--...", by UTS 46. The string itself when it
/// is ASCII or has no such form.
NSString encodeHostName(const NSString &string);

/// The host name with labels "xn--..." as the characters that they stand for. The string itself when it has
/// none or they stand for nothing.
NSString decodeHostName(const NSString &string);

}  // namespace NimboWebKitAdditions
}  // namespace nimbo
