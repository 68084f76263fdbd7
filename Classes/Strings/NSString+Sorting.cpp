// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+Sorting.hpp"

#include <vector>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringCollation.hpp"

namespace nimbo {
inline namespace Sorting {

NSComparisonResult sortAscending(const NSString &string, const NSString &other) {
  return comparisonResult(
      fastCompareUnichars(string.characters(), string.length(), other.characters(), other.length()));
}

NSComparisonResult sortDescending(const NSString &string, const NSString &other) {
  return sortAscending(other, string);
}

NSComparisonResult sortCaseInsensitiveAscending(const NSString &string, const NSString &other) {
  return comparisonResult(fastCaseInsensitiveCompareUnichars(string.characters(), string.length(),
                                                             other.characters(), other.length()));
}

NSComparisonResult sortCaseInsensitiveDescending(const NSString &string, const NSString &other) {
  return sortCaseInsensitiveAscending(other, string);
}

NSComparisonResult sortLocalizedCaseInsensitiveAscending(const NSString &string, const NSString &other) {
  return answerOr(NSOrderedSame, [&] { return localizedCaseInsensitiveCompare(string, other); });
}

NSComparisonResult sortLocalizedCaseInsensitiveDescending(const NSString &string, const NSString &other) {
  return sortLocalizedCaseInsensitiveAscending(other, string);
}

NSComparisonResult sortAscendingByLength(const NSString &string, const NSString &other) {
  if (string.length() == other.length()) return sortCaseInsensitiveAscending(string, other);
  return string.length() < other.length() ? NSOrderedAscending : NSOrderedDescending;
}

NSComparisonResult sortDescendingByLength(const NSString &string, const NSString &other) {
  if (string.length() == other.length()) return sortCaseInsensitiveAscending(string, other);
  return string.length() > other.length() ? NSOrderedAscending : NSOrderedDescending;
}

NSComparisonResult comparePaths(const NSString &path, const NSString &other) {
  return answerOr(NSOrderedSame, [&] {
    const std::vector<NSString> names = pathComponents(path), others = pathComponents(other);
    if (names.size() != others.size())
      return names.size() < others.size() ? NSOrderedAscending : NSOrderedDescending;
    for (std::size_t i = 0; i < names.size(); ++i)
      if (const auto order = sortCaseInsensitiveAscending(names[i], others[i]); order != NSOrderedSame)
        return order;
    return NSOrderedSame;
  });
}

}  // namespace Sorting
}  // namespace nimbo
