// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A host name as it is in the network: labels that are not ASCII as "xn--...", by UTS 46 (nontransitional, so
/// that "ß" stays a letter of its own). The string itself when it is ASCII. Nil for nil, for one above
/// `kMaximumHostNameUnits`, and for a name that has no such form.
NSString ASCIIHostName(const NSString &host);

constexpr std::uint32_t kMaximumHostNameUnits = 1024;

}  // namespace nimbo
