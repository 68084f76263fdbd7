// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "platform/Foundation/NSArray.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringExtensions {

// Searches for a string in order; the first match wins. Elements of other kinds match nothing, and neither does
// nil. "NoCase" compares as `isEqualToStringNoCase`.

bool containsString(const NSArray &array, const NSString &string);
bool containsStringNoCase(const NSArray &array, const NSString &string);
/// NSNotFound when there is none.
std::uint32_t indexOfStringEqualTo(const NSArray &array, const NSString &string);
std::uint32_t indexOfStringEqualToNoCase(const NSArray &array, const NSString &string);

bool containsString(std::span<const NSString> array, const NSString &string);
bool containsStringNoCase(std::span<const NSString> array, const NSString &string);
std::uint32_t indexOfStringEqualTo(std::span<const NSString> array, const NSString &string);
std::uint32_t indexOfStringEqualToNoCase(std::span<const NSString> array, const NSString &string);

}  // namespace NSStringExtensions
}  // namespace nimbo
