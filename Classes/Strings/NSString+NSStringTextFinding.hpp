// SPDX-License-Identifier: Apache-2.0
//
// Searches for text in strings. Without regard to case, the platform's search folds whole characters. Any
// thread may search.
//
//     containsSubstring(u"Hauptstraße"_ns, u"STRASSE"_ns, false);  // true
//     countSubstring(u"banana"_ns, u"an"_ns);  // 2
//     findString(u"a b a"_ns, u"a"_ns, {1, 4}, true, FindDirection::kForward, false);  // {4, 1}
#pragma once

#include <span>
#include <vector>

#include "platform/Foundation/Flag.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {
inline namespace NSStringTextFinding {

/// Whether the substring stands in the string. False when either is nil or empty; a string that is not longer
/// than the substring contains it only when both have the same length.
bool containsSubstring(const NSString &string, const NSString &substring, Flag caseSensitive = true);
/// Whether one of the substrings stands in the string, each asked for as `containsSubstring` does.
bool containsSubstrings(const NSString &string, const std::vector<NSString> &substrings,
                        Flag caseSensitive = true);

/// Whether one of the patterns stands in the string. They are ASCII and end with a zero byte; a null pointer
/// ends the list early. Without regard to case, the patterns must be in lower case.
bool containsSubCStrings(const NSString &string, std::span<const char *const> substrings,
                         Flag caseSensitive = true);

/// How often the substring stands in the string, without overlaps; 0 when either is nil or empty.
std::uint32_t countSubstring(const NSString &string, const NSString &substring, Flag caseSensitive = true);

/// Where a search goes from the beginning of its range, or from the end.
enum class FindDirection { kForward, kBackward };

/// The first or, backward, the last occurrence in the range, which is cut to the string's bounds. When there is
/// none and `wrap` is set, the whole string is searched in the same direction. {NSNotFound, 0} when there is
/// none, also when either string is nil or empty.
NSRange findString(const NSString &string, const NSString &find, NSRange inRange, Flag caseSensitive,
                   FindDirection direction, Flag wrap);

}  // namespace NSStringTextFinding
}  // namespace nimbo
