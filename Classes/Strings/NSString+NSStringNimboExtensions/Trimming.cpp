// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"

#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

NSString stringByTrimmingWhiteSpaces(const NSString &string) {
  return stringByTrimmingUnits(string, isWhite());
}

NSString stringByTrimmingFeeds(const NSString &string) {
  return stringByTrimmingUnits(string, isLineBreak);
}

NSString stringByTrimmingDigits(const NSString &string) {
  return stringByTrimmingUnits(string, isDigit());
}

NSString stringByTrimmingCharacter(const NSString &string, unichar character) {
  return stringByTrimmingUnits(string, IsUnit{character});
}

NSString stringByTrimmingPrefixCharacter(const NSString &string, unichar character) {
  return stringByTrimmingUnits(string, IsUnit{character}, Ends::kLeft);
}

NSString stringByTrimmingSuffixCharacter(const NSString &string, unichar character) {
  return stringByTrimmingUnits(string, IsUnit{character}, Ends::kRight);
}

NSString stringByTrimmingEnclosingCharacter(const NSString &string, unichar character) {
  const std::u16string_view units = string.view();
  if (units.size() < 2 || units.front() != character || units.back() != character) return string;
  return substringOr(string, string, {1, string.length() - 2});
}

NSString stringByTrimmingEllipsis(const NSString &string) {
  return stringByTrimmingUnits(string, IsUnitOf{u".\u2026"}, Ends::kRight);
}

NSString stringByTrimmingSpacesAndFeeds(const NSString &string, Flag andFeeds) {
  return stringByTrimmingUnits(string, isSpace(andFeeds));
}

NSString stringByTrimmingSpacesOfLeftSideAndFeeds(const NSString &string, Flag andFeeds) {
  return stringByTrimmingUnits(string, isSpace(andFeeds), Ends::kLeft);
}

NSString stringByTrimmingSpacesOfRightSideAndFeeds(const NSString &string, Flag andFeeds) {
  return stringByTrimmingUnits(string, isSpace(andFeeds), Ends::kRight);
}

NSString stringByTrimmingSpacesInRange(const NSString &string, NSRange range, Flag andFeeds) {
  if (string.length() == 0) return string;
  return substringOr(string, string, trimSpacesInRange(string, range, andFeeds));
}

NSRange trimSpacesInRange(const NSString &string, NSRange range, Flag andFeeds) {
  if (!string || range.location > string.length()) return {NSNotFound, 0};
  range.length = std::min(range.length, string.length() - range.location);
  return trimmedRange(string.view(), range, isSpace(andFeeds));
}

NSRange trimWhiteSpacesInRange(const NSString &string, NSRange range) {
  return trimSpacesInRange(string, range, true);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
