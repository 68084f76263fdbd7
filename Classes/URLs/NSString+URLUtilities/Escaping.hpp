// SPDX-License-Identifier: Apache-2.0
//
// Percent escapes of URLs as strings. Any thread may call these.
//
//     stringByReplacingASCIIPercentEscapesOfURL(u"a%41%20"_ns);  // "aA "
//     stringByReplacingStandardPercentEscapesOfURL(u"a%41%20"_ns);  // "a%41 "
//     stringByAddingStandardPercentEscapesToURL(u"a b"_ns);  // "a%20b"
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// Decodes the string by `convertPercentEscapesOfURL`, not standard. Always a new string, but for one of at
/// most 2 units and one for which there is no memory, which is answered itself.
NSString stringByReplacingASCIIPercentEscapesOfURL(const NSString &string);
/// Decodes as above, standard.
NSString stringByReplacingStandardPercentEscapesOfURL(const NSString &string);

/// Escapes as `stringByAddingPercentEscapesToURL`, not standard.
NSString stringByAddingASCIIPercentEscapesToURL(const NSString &string);
/// Escapes as `stringByAddingPercentEscapesToURL`, standard.
NSString stringByAddingStandardPercentEscapesToURL(const NSString &string);

}  // namespace URLUtilities
}  // namespace nimbo
