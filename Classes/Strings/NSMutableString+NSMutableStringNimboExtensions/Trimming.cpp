// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Trimming.hpp"

#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

void trimWhiteSpaces(NSMutableString &string) {
  trimUnits(string, isWhite());
}

void trimFeeds(NSMutableString &string) {
  trimUnits(string, isLineBreak);
}

void trimCharacter(NSMutableString &string, unichar character) {
  trimUnits(string, IsUnit{character});
}

void trimPrefixCharacter(NSMutableString &string, unichar character) {
  trimUnits(string, IsUnit{character}, Ends::kLeft);
}

void trimSuffixCharacter(NSMutableString &string, unichar character) {
  trimUnits(string, IsUnit{character}, Ends::kRight);
}

void appendTrimmedString(NSMutableString &string, const NSString &appended) {
  const NSRange kept = trimmedRange(appended.view(), {0, appended.length()}, isWhite());
  string.appendCharacters(appended.characters() + kept.location, kept.length);
}

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
