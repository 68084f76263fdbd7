// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// The functions of URLQuery.hpp for the query of a URL, which begins at its first "?". Without a "?": nil, 0
/// and false.
NSDictionary queryParams(const NSString &string);
std::uint32_t numberOfQueryParams(const NSString &string);
NSString queryParamNamed(const NSString &string, const NSString &name);
bool containsQueryParamNamed(const NSString &string, const NSString &name);

/// The same for a string that is a query itself.
NSString paramNamed(const NSString &string, const NSString &name);
bool containsParamNamed(const NSString &string, const NSString &name);

}  // namespace URLUtilities
}  // namespace nimbo
