// SPDX-License-Identifier: Apache-2.0
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/NaturalOrder.hpp"

#include <algorithm>

#include "Classes/Characters/CharacterTables.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

std::u16string_view leadingDigits(std::u16string_view units) {
  return {units.begin(), std::ranges::find_if_not(units, isASCIIDigit<unichar>)};
}

std::int32_t lengthDifference(std::u16string_view a, std::u16string_view b) {
  return static_cast<std::int32_t>(a.size()) - static_cast<std::int32_t>(b.size());
}

std::u16string_view withoutLeadingZeros(std::u16string_view digits) {
  return digits.substr(std::min(digits.find_first_not_of(u'0'), digits.size()));
}

/// Compares two runs of digits by their numbers, then by their lengths.
std::int32_t compareDigits(std::u16string_view a, std::u16string_view b) {
  const std::u16string_view left = withoutLeadingZeros(a), right = withoutLeadingZeros(b);
  if (left.size() != right.size()) return left.size() < right.size() ? -1 : 1;
  const int order = left.compare(right);
  return order != 0 ? (order < 0 ? -1 : 1) : lengthDifference(a, b);
}

template <class Map>
std::int32_t naturalCompare(const NSString &name, const NSString &other, Map map) {
  if (!other) return -1;
  std::u16string_view a = name.view(), b = other.view();
  const std::int32_t whole = lengthDifference(a, b);
  while (!a.empty() && !b.empty()) {
    std::size_t walked = 1;
    if (isASCIIDigit(a.front()) && isASCIIDigit(b.front())) {
      const std::u16string_view digits = leadingDigits(a);
      const std::int32_t order = compareDigits(digits, leadingDigits(b));
      if (order != 0) return order;
      walked = digits.size();
    } else {
      const std::int32_t order = map(a.front()) - map(b.front());
      if (order != 0) return order;
    }
    a.remove_prefix(walked);
    b.remove_prefix(walked);
  }
  return whole;
}

}  // namespace

inline namespace NSStringNimboPathExtensions {

std::int32_t compareWithLastPathComponent(const NSString &name, const NSString &other) {
  return naturalCompare(name, other, [](unichar c) { return c; });
}

std::int32_t caseInsensitiveCompareWithLastPathComponent(const NSString &name, const NSString &other) {
  return naturalCompare(name, other, EntryOf{initUpperCharsTable()});
}

std::int32_t nonUmlautedCaseInsensitiveCompareWithLastPathComponent(const NSString &name,
                                                                    const NSString &other) {
  return naturalCompare(name, other, EntryOf{initUpperUmlautsCharsTable()});
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
