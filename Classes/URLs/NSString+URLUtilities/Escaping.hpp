// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// `convertPercentEscapesOfURL` for a whole string. Always a new string, but for one of at most 2 units and one
/// for which there is no memory, which is answered itself.
NSString stringByReplacingASCIIPercentEscapesOfURL(const NSString &string);
NSString stringByReplacingStandardPercentEscapesOfURL(const NSString &string);

/// `stringByAddingPercentEscapesToURL`.
NSString stringByAddingASCIIPercentEscapesToURL(const NSString &string);
NSString stringByAddingStandardPercentEscapesToURL(const NSString &string);

}  // namespace URLUtilities
}  // namespace nimbo
