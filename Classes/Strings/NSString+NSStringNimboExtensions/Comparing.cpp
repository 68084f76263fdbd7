// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Comparing.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "platform/Foundation/NSStringSearch.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

template <class Map>
bool isRangeEqual(const NSString &string, NSRange range, const NSString &other, Map map) {
  if (!string || !other || range.location > string.length() ||
      range.length > string.length() - range.location || range.length != other.length())
    return false;
  const std::u16string_view part = string.view().substr(range.location, range.length), expected = other.view();
  return std::equal(part.begin(), part.end(), expected.begin(),
                    [&](unichar a, unichar b) { return map(a) == map(b); });
}

bool isAnchored(const NSString &string, const NSString &part, std::uint32_t direction) {
  return rangeOfString(string.view(), part.view(), NSCaseInsensitiveSearch | NSAnchoredSearch | direction)
             .location != NSNotFound;
}

}  // namespace

bool isStringEmpty(const NSString &string) {
  return string.length() == 0;
}

bool isStringNotEmpty(const NSString &string) {
  return string.length() > 0;
}

unichar firstCharacter(const NSString &string) {
  return string.length() > 0 ? string.view().front() : 0;
}

unichar lastCharacter(const NSString &string) {
  return string.length() > 0 ? string.view().back() : 0;
}

bool hasPrefixNoCase(const NSString &string, const NSString &prefix) {
  return isAnchored(string, prefix, 0);
}

bool hasSuffixNoCase(const NSString &string, const NSString &suffix) {
  return isAnchored(string, suffix, NSBackwardsSearch);
}

bool isEqualToStringNoCase(const NSString &string, const NSString &other) {
  return string && other && (string.identicalTo(other) || isEqualCaseInsensitive(string.view(), other.view()));
}

bool rangeIsEqualTo(const NSString &string, NSRange range, const NSString &other) {
  return isRangeEqual(string, range, other, [](unichar c) { return c; });
}

bool rangeIsEqualToNoCase(const NSString &string, NSRange range, const NSString &other) {
  return isRangeEqual(string, range, other, EntryOf{initUpperCharsTable()});
}

bool rangeIsAsciiEqualToNoCase(const NSString &string, NSRange range, const NSString &other) {
  return isRangeEqual(string, range, other, toUpperAscii);
}

bool rangeIsNonUmlautedEqualToNoCase(const NSString &string, NSRange range, const NSString &other) {
  return isRangeEqual(string, range, other, EntryOf{initUpperUmlautsCharsTable()});
}

bool isAsciiEqualToStringNoCase(const NSString &string, const NSString &other) {
  return rangeIsAsciiEqualToNoCase(string, {0, string.length()}, other);
}

bool isNonUmlautedEqualToStringNoCase(const NSString &string, const NSString &other) {
  return rangeIsNonUmlautedEqualToNoCase(string, {0, string.length()}, other);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
