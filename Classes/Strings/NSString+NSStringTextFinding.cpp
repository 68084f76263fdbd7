// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringTextFinding.hpp"

#include <algorithm>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/FastSearches.hpp"
#include "platform/Foundation/NSStringSearch.hpp"

namespace nimbo {
inline namespace NSStringTextFinding {

namespace {

constexpr NSRange kNowhere{NSNotFound, 0};

constexpr std::uint32_t searchOptions(bool caseSensitive) {
  return caseSensitive ? 0u : NSCaseInsensitiveSearch;
}

}  // namespace

bool containsSubstring(const NSString &string, const NSString &substring, Flag caseSensitive) {
  if (!substring || string.length() == 0 || string.length() < substring.length()) return false;
  if (string.length() == substring.length())
    return caseSensitive ? string == substring : isEqualCaseInsensitive(string.view(), substring.view());
  return answerOr(false, [&] {
    return rangeOfString(string.view(), substring.view(), searchOptions(caseSensitive)).location != NSNotFound;
  });
}

bool containsSubstrings(const NSString &string, const std::vector<NSString> &substrings, Flag caseSensitive) {
  return std::any_of(substrings.begin(), substrings.end(), [&](const NSString &substring) {
    return containsSubstring(string, substring, caseSensitive);
  });
}

bool containsSubCStrings(const NSString &string, std::span<const char *const> substrings, Flag caseSensitive) {
  return fastContainsSubCStrings(string, string.length(), substrings,
                                 caseSensitive ? nullptr : initLowerCharsTable());
}

std::uint32_t countSubstring(const NSString &string, const NSString &substring, Flag caseSensitive) {
  return answerOr(0u, [&] {
    std::uint32_t count = 0;
    NSRange rest{0, string.length()};
    for (;;) {
      const NSRange found = rangeOfString(string.view(), substring.view(), searchOptions(caseSensitive), rest);
      if (found.location == NSNotFound) return count;
      ++count;
      rest.location = found.location + found.length;
    }
  });
}

NSRange findString(const NSString &string, const NSString &find, NSRange inRange, Flag caseSensitive,
                   FindDirection direction, Flag wrap) {
  const std::uint32_t options =
      searchOptions(caseSensitive) | (direction == FindDirection::kBackward ? NSBackwardsSearch : 0u);
  return answerOr(kNowhere, [&] {
    const NSRange found = rangeOfString(string.view(), find.view(), options, inRange);
    if (found.location != NSNotFound || !wrap) return found;
    return rangeOfString(string.view(), find.view(), options);
  });
}

}  // namespace NSStringTextFinding
}  // namespace nimbo
