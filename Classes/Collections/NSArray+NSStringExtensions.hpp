// SPDX-License-Identifier: Apache-2.0
//
// Searches for a string in a list, in order; the first match wins. Elements of other kinds match nothing, and
// neither does nil. "NoCase" compares as `isEqualToStringNoCase`. Any thread may search a list that no thread
// changes.
//
//     containsStringNoCase(NSArray{u"Subject"_ns, u"From"_ns}, u"FROM"_ns);  // true
//     const std::vector<NSString> names = {u"Subject"_ns, u"From"_ns};
//     indexOfStringEqualTo(names, u"From"_ns);  // 1
#pragma once

#include <span>

#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringExtensions {

/// Whether the string is in the array.
bool containsString(const NSArray &array, const NSString &string);
/// Whether the string is in the array, without regard to case.
bool containsStringNoCase(const NSArray &array, const NSString &string);
/// The index of the string; NSNotFound when it is not there.
std::uint32_t indexOfStringEqualTo(const NSArray &array, const NSString &string);
/// The index of the string, without regard to case; NSNotFound when it is not there.
std::uint32_t indexOfStringEqualToNoCase(const NSArray &array, const NSString &string);

/// Whether the string is in the list.
bool containsString(std::span<const NSString> array, const NSString &string);
/// Whether the string is in the list, without regard to case.
bool containsStringNoCase(std::span<const NSString> array, const NSString &string);
/// The index of the string; NSNotFound when it is not in the list.
std::uint32_t indexOfStringEqualTo(std::span<const NSString> array, const NSString &string);
/// The index of the string, without regard to case; NSNotFound when it is not in the list.
std::uint32_t indexOfStringEqualToNoCase(std::span<const NSString> array, const NSString &string);

}  // namespace NSStringExtensions
}  // namespace nimbo
