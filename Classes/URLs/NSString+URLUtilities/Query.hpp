// SPDX-License-Identifier: Apache-2.0
//
// The query of a URL as a string, which begins at its first "?", read as URLQuery.hpp says. Any thread may ask.
//
//     queryParamNamed(u"/a?id=1&x="_ns, u"id"_ns);  // "1"
//     containsQueryParamNamed(u"/a?id=1&x="_ns, u"x"_ns);  // true
//     paramNamed(u"id=1&x="_ns, u"id"_ns);  // "1"
#pragma once

#include <cstdint>

#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace URLUtilities {

/// The parameters that have a value; nil without a "?".
NSDictionary queryParams(const NSString &string);
/// How many parameters there are; 0 without a "?".
std::uint32_t numberOfQueryParams(const NSString &string);
/// The value of the first parameter of this name that has one; nil when there is none.
NSString queryParamNamed(const NSString &string, const NSString &name);
/// Whether there is a parameter of this name, with a value or without.
bool containsQueryParamNamed(const NSString &string, const NSString &name);

/// As `queryParamNamed` for a string that is a query itself.
NSString paramNamed(const NSString &string, const NSString &name);
/// As `containsQueryParamNamed` for a string that is a query itself.
bool containsParamNamed(const NSString &string, const NSString &name);

}  // namespace URLUtilities
}  // namespace nimbo
