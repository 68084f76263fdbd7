// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

/// A copy cleaned as `fixAndNormalizeString` does; the receiver itself when it is nil or empty.
NSString fixedAndNormalizedString(const NSString &string);

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
