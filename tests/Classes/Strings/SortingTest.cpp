// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <ranges>
#include <string_view>
#include <tuple>
#include <vector>

#include "Classes/Paths/NSString+NSStringNimboPathExtensions/NaturalOrder.hpp"
#include "Classes/Strings/NSString+Sorting.hpp"
#include "platform/Foundation/NSStringCollation.hpp"

namespace nimbo {
namespace {

int sign(std::int64_t number) {
  return number < 0 ? -1 : number > 0;
}

TEST(NaturalOrder, OrdersNumbersByTheirValue) {
  // Each stands before the next.
  constexpr std::string_view kNames =
      " 0 00 1 01 001 2 10 10a 010 : a a7 a7b a007 a007a a9 a10 a18446744073709551615 a18446744073709551616 "
      "a018446744073709551616 a99999999999999999999999 a_ b";
  std::vector<NSString> names;
  for (const auto &name : std::views::split(kNames, ' '))
    names.push_back(NSString::stringWithUTF8String(std::string_view(name.begin(), name.end())));
  for (std::size_t i = 0; i < names.size(); ++i)
    for (std::size_t j = 0; j < names.size(); ++j)
      EXPECT_EQ(sign(compareWithLastPathComponent(names[i], names[j])), (i > j) - (i < j))
          << names[i].UTF8String() << " and " << names[j].UTF8String();
  EXPECT_EQ(compareWithLastPathComponent(u"abc"_ns, u"abcdef"_ns), -3);
  EXPECT_EQ(compareWithLastPathComponent(u"a"_ns, NSString()), -1);
  EXPECT_EQ(compareWithLastPathComponent(NSString(), NSString()), -1);
}

TEST(NaturalOrder, FoldsAsAsked) {
  EXPECT_LT(compareWithLastPathComponent(u"A\u00c410"_ns, u"a\u00e49"_ns), 0);
  EXPECT_GT(caseInsensitiveCompareWithLastPathComponent(u"A\u00c410"_ns, u"a\u00e49"_ns), 0);
  EXPECT_EQ(nonUmlautedCaseInsensitiveCompareWithLastPathComponent(u"A\u00c4"_ns, u"aa"_ns), 0);
}

/// Strings that collide often: of few units, short.
std::vector<NSString> collidingStrings(std::size_t count) {
  constexpr std::u16string_view kUnits = u"0017aAb\u00e4\u00c4/";
  std::mt19937 random(5);
  std::vector<NSString> strings;
  while (strings.size() < count) {
    std::u16string units(random() % 6, u'\0');
    for (char16_t &unit : units) unit = kUnits[random() % kUnits.size()];
    strings.push_back(NSString::stringWithCharacters(units));
  }
  return strings;
}

template <class Function>
void expectWeakOrder(Function compare) {
  const std::vector<NSString> strings = collidingStrings(120);
  for (const NSString &a : strings) {
    ASSERT_EQ(compare(a, a), 0);
    for (const NSString &b : strings) {
      const int ab = sign(compare(a, b));
      ASSERT_EQ(ab, -sign(compare(b, a))) << a.UTF8String() << " " << b.UTF8String();
      if (ab > 0) continue;
      for (const NSString &c : strings) {
        const int bc = sign(compare(b, c));
        if (bc > 0) continue;
        ASSERT_EQ(sign(compare(a, c)), ab == 0 ? bc : -1)
            << a.UTF8String() << " " << b.UTF8String() << " " << c.UTF8String();
      }
    }
  }
}

TEST(Sorting, EveryComparisonIsAnOrder) {
  for (const auto compare : {compareWithLastPathComponent, caseInsensitiveCompareWithLastPathComponent,
                             nonUmlautedCaseInsensitiveCompareWithLastPathComponent})
    expectWeakOrder(compare);
  for (const auto compare : {sortAscendingByLength, sortDescendingByLength, comparePaths})
    expectWeakOrder(compare);
}

TEST(Sorting, ComparesAsTheNamesSay) {
  using Comparison = NSComparisonResult (*)(const NSString &, const NSString &);
  /// The first string stands before the second.
  const std::tuple<Comparison, NSString, NSString> ascending[] = {
      {sortAscending, u"B"_ns, u"a"_ns},
      {sortDescending, u"a"_ns, u"B"_ns},
      {sortCaseInsensitiveAscending, NSString(), u"B"_ns},
      {sortCaseInsensitiveDescending, u"B"_ns, u"a"_ns},
      {sortLocalizedCaseInsensitiveAscending, u"\u00e9"_ns, u"Z"_ns},
      {sortLocalizedCaseInsensitiveDescending, u"b"_ns, NSString()},
      {sortAscendingByLength, u"b"_ns, u"aa"_ns},
      {sortDescendingByLength, u"abc"_ns, u"ab"_ns},
      {sortDescendingByLength, u"ab"_ns, u"AC"_ns},
      {comparePaths, u"/z/z"_ns, u"/a/a/a"_ns},
      {comparePaths, u"/a/B/c"_ns, u"/A/b/D"_ns},
  };
  for (const auto &[compare, first, second] : ascending)
    EXPECT_EQ(compare(first, second), NSOrderedAscending) << first.UTF8String() << " " << second.UTF8String();
  for (const auto compare :
       {sortCaseInsensitiveAscending, sortLocalizedCaseInsensitiveAscending, sortDescendingByLength})
    EXPECT_EQ(compare(u"A\u00c4"_ns, u"a\u00e4"_ns), NSOrderedSame);
  EXPECT_EQ(sortLocalizedCaseInsensitiveAscending(u"e\u0301"_ns, u"\u00c9"_ns), NSOrderedSame);
  EXPECT_EQ(comparePaths(u"/a//b"_ns, u"/A/B"_ns), NSOrderedSame);
}

}  // namespace
}  // namespace nimbo
