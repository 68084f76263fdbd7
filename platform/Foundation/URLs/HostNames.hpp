// SPDX-License-Identifier: Apache-2.0
//
// Names of hosts. Any thread may convert them.
//
//     ASCIIHostName(u"bücher.example"_ns);  // "xn--bcher-kva.example"
//     ASCIIHostName(u"example.org"_ns);  // "example.org"
//     hostWithoutEscapes(u"b%C3%BCcher.example"_ns);  // "bücher.example"
//     UnicodeHostName(u"xn--bcher-kva.example"_ns);  // "bücher.example"
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A host name as it is in the network: labels that are not ASCII as "xn--...", by UTS 46 (nontransitional, so
/// that "ß" stays a letter of its own). The string itself when it is ASCII. Nil for nil, for one above
/// `kMaximumHostNameUnits`, and for a name that has no such form.
NSString ASCIIHostName(const NSString &host);

/// The host of a URL with the characters that its escapes stand for. The string itself when it has none, when
/// they are no UTF-8, and when one of them may not be in a host.
NSString hostWithoutEscapes(const NSString &host);

/// A host name as people read it: labels "xn--..." as the characters that they stand for. The string itself
/// when it has no such label. Nil for nil, for one above `kMaximumHostNameUnits`, and for a name whose labels
/// stand for nothing.
NSString UnicodeHostName(const NSString &host);

/// How many units a host name may have to be converted.
constexpr std::uint32_t kMaximumHostNameUnits = 1024;

}  // namespace nimbo
