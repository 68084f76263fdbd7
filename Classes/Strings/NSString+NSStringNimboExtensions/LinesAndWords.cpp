// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/LinesAndWords.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Strings/LineIteration.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

constexpr NSRange kNowhere{NSNotFound, 0};

/// So many separators are looked through for each unit of what is most often a word. For more, a set is made.
constexpr std::uint32_t kFewSeparators = 32;

NSRange rangeFromTo(std::uint32_t start, std::uint32_t end) {
  return end > start ? NSRange{start, end - start} : kNowhere;
}

NSString substring(const NSString &string, NSRange range) {
  return string ? substringOr(NSString::string(), string, range) : string;
}

/// The line break that comes first, empty and at the end when there is none.
NSRange rangeOfFirstFeed(const NSString &string) {
  const std::u16string_view units = string.view();
  const auto at =
      static_cast<std::uint32_t>(std::find_if(units.begin(), units.end(), isLineBreak) - units.begin());
  return {at, lengthOfLineBreak(units, at)};
}

/// The run around the index of units for which `isOutside(unichar)` does not hold.
template <class Predicate>
NSRange rangeAround(const NSString &string, std::uint32_t index, Predicate isOutside) {
  const std::u16string_view units = string.view();
  if (index >= units.size() || isOutside(units[index])) return kNowhere;
  std::uint32_t start = index, end = index + 1;
  while (end < units.size() && !isOutside(units[end])) ++end;
  while (start > 0 && !isOutside(units[start - 1])) --start;
  return rangeFromTo(start, end);
}

/// The quotation marks " ' and U+201C to U+201F.
constexpr bool isQuotationMark(unichar c) {
  return c == u'"' || c == u'\'' || (c >= 0x201c && c <= 0x201f);
}

/// What a link never ends with.
bool isPunctuationBehindLink(unichar c, bool isMail) {
  return isQuotationMark(c) || IsUnitOf{u".?!,;:"}(c) || (isMail && IsUnitOf{u")]*|"}(c));
}

/// Whether a link begins behind the unit at index `at`.
bool isBeforeLink(std::u16string_view units, std::uint32_t at, bool isMail) {
  const unichar c = units[at];
  if (isWhite()(c) || c == u'<') return true;
  if (!isMail) return false;
  if (c == u'.') return at == 0 || units[at - 1] == u'.';
  return isQuotationMark(c) || IsUnitOf{u"([@|"}(c);
}

}  // namespace

std::vector<NSString> lines(const NSString &string) {
  return answerOr(std::vector<NSString>(), [&] {
    std::vector<NSString> result;
    visitLines(string.view(), [&](std::u16string_view line) {
      result.push_back(line.size() == string.length() ? string : NSString::stringWithCharacters(line));
    });
    return result;
  });
}

std::uint32_t numberOfLines(const NSString &string) {
  std::uint32_t count = 0;
  visitLines(string.view(), [&](std::u16string_view) { ++count; });
  return count;
}

NSString firstLine(const NSString &string) {
  return string ? substringOr(string, string, {0, rangeOfFirstFeed(string).location}) : string;
}

bool hasFeedOfLine(const NSString &string) {
  return rangeOfFirstFeed(string).length > 0;
}

NSString feedOfLine(const NSString &string) {
  return substring(string, rangeOfFirstFeed(string));
}

std::uint32_t numberOfWordsUsingDefaultSeparation(const NSString &string) {
  const CharacterSetRep &alphaNum = *alphaNumCharacterSetRep();
  std::uint32_t count = 0;
  bool isInWord = false;
  for (const unichar c : string.view()) {
    const bool wasInWord = std::exchange(isInWord, alphaNum.contains(c));
    count += isInWord && !wasInWord;
  }
  return count;
}

NSRange getWordRangeAtIndex(const NSString &string, std::uint32_t index) {
  const CharacterSetRep *const alphaNum = alphaNumCharacterSetRep();
  return rangeAround(string, index, [=](unichar c) { return !alphaNum->contains(c); });
}

NSString getWordAtIndex(const NSString &string, std::uint32_t index) {
  return substring(string, getWordRangeAtIndex(string, index));
}

NSString firstWord(const NSString &string) {
  return getWordAtIndex(string, 0);
}

NSString lastWord(const NSString &string) {
  return getWordAtIndex(string, NSNotFound);
}

NSRange getSubstringRangeAtIndex(const NSString &string, std::uint32_t index, const NSString &separators) {
  if (!separators) return kNowhere;
  const auto around = [&](auto isSeparator) { return rangeAround(string, index, isSeparator); };
  if (separators.length() <= kFewSeparators) return around(IsUnitOf{separators.view()});
  return withUnitsOf(separators.view(), string.length(), around);
}

NSString getSubstringAtIndex(const NSString &string, std::uint32_t index, const NSString &separators) {
  return substring(string, getSubstringRangeAtIndex(string, index, separators));
}

NSRange getLinkRangeAtIndex(const NSString &string, std::uint32_t index) {
  const std::u16string_view units = string.view();
  if (index >= units.size()) return kNowhere;
  const bool isMail = units[index] == u'@';
  if (isMail && index == 0) return kNowhere;
  const IsPartOfSet isWhiteUnit = isWhite();
  const auto isBehindLink = [=](unichar c) { return isWhiteUnit(c) || c == u'>' || (isMail && c == u'@'); };
  std::uint32_t end = index + 1;
  while (end < units.size() && !isBehindLink(units[end])) ++end;
  // One past the unit under test.
  std::uint32_t start = isMail ? index : index + 1;
  while (start > 0 && !isBeforeLink(units, start - 1, isMail)) --start;
  while (end > start && isPunctuationBehindLink(units[end - 1], isMail)) --end;
  return rangeFromTo(start, end);
}

NSString getLinkAtIndex(const NSString &string, std::uint32_t index) {
  return substring(string, getLinkRangeAtIndex(string, index));
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
