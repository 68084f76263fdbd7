// SPDX-License-Identifier: Apache-2.0
//
// The platform's search. Any thread may search.
//
//     rangeOfString(u"Hauptstraße", u"STRASSE", NSCaseInsensitiveSearch);  // {5, 6}
//     rangeOfString(u"a.b.c", u".", NSBackwardsSearch);  // {3, 1}
//     isEqualCaseInsensitive(u"Straße", u"STRASSE");  // true
#pragma once

#include <string_view>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How to search; the values can be joined by |.
enum NSStringCompareOptions : std::uint32_t {
  /// Full case folding by Unicode, of no language: "ß" equals "SS". A match covers whole characters.
  NSCaseInsensitiveSearch = 1,
  /// The last match instead of the first.
  NSBackwardsSearch = 4,
  /// Only a match at the beginning of the range, or at its end when searching backwards.
  NSAnchoredSearch = 8,
};

/// Where `find` stands in the part `range` of `string` (cut to its bounds). The location is NSNotFound, with
/// length 0, when nowhere or when `find` is empty. Units are compared as they are: a composed and a decomposed
/// letter differ. Lone surrogates equal themselves.
NSRange rangeOfString(std::u16string_view string, std::u16string_view find, std::uint32_t options,
                      NSRange range = {0, NSNotFound});

/// Whether both are the same without regard to case, folded as for a search.
bool isEqualCaseInsensitive(std::u16string_view a, std::u16string_view b);

}  // namespace nimbo
