// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "Classes/NSString+NSStringNimboPathExtensions+NaturalOrder.hpp"
#include "Classes/NSString+Sorting.hpp"
#include "platform/Foundation/NSStringCollation.hpp"

namespace nimbo {
namespace {

int sign(std::int64_t number) {
  return number < 0 ? -1 : number > 0;
}

TEST(NaturalOrder, OrdersNumbersByTheirValue) {
  // Each stands before the next.
  const std::vector<NSString> names{u""_ns,
                                    u"0"_ns,
                                    u"00"_ns,
                                    u"1"_ns,
                                    u"01"_ns,
                                    u"001"_ns,
                                    u"2"_ns,
                                    u"10"_ns,
                                    u"10a"_ns,
                                    u"010"_ns,
                                    u":"_ns,
                                    u"a"_ns,
                                    u"a b"_ns,
                                    u"a7"_ns,
                                    u"a7b"_ns,
                                    u"a007"_ns,
                                    u"a007a"_ns,
                                    u"a9"_ns,
                                    u"a10"_ns,
                                    u"a18446744073709551615"_ns,
                                    u"a18446744073709551616"_ns,
                                    u"a018446744073709551616"_ns,
                                    u"a99999999999999999999999"_ns,
                                    u"a\u0661"_ns,
                                    u"b"_ns};
  for (std::size_t i = 0; i < names.size(); ++i)
    for (std::size_t j = 0; j < names.size(); ++j)
      EXPECT_EQ(sign(compareWithLastPathComponent(names[i], names[j])), (i > j) - (i < j))
          << names[i].UTF8String() << " and " << names[j].UTF8String();
  EXPECT_EQ(compareWithLastPathComponent(u"abc"_ns, u"abcdef"_ns), -3);
  EXPECT_EQ(compareWithLastPathComponent(u"a"_ns, NSString()), -1);
  EXPECT_EQ(compareWithLastPathComponent(NSString(), NSString()), -1);
}

TEST(NaturalOrder, FoldsAsAsked) {
  EXPECT_NE(compareWithLastPathComponent(u"A\u00c4"_ns, u"a\u00e4"_ns), 0);
  EXPECT_EQ(caseInsensitiveCompareWithLastPathComponent(u"A\u00c4"_ns, u"a\u00e4"_ns), 0);
  EXPECT_NE(caseInsensitiveCompareWithLastPathComponent(u"A\u00c4"_ns, u"aa"_ns), 0);
  EXPECT_EQ(nonUmlautedCaseInsensitiveCompareWithLastPathComponent(u"A\u00c4"_ns, u"aa"_ns), 0);
  EXPECT_LT(nonUmlautedCaseInsensitiveCompareWithLastPathComponent(u"\u00c49"_ns, u"a10"_ns), 0);
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
  expectWeakOrder(compareWithLastPathComponent);
  expectWeakOrder(caseInsensitiveCompareWithLastPathComponent);
  expectWeakOrder(nonUmlautedCaseInsensitiveCompareWithLastPathComponent);
  expectWeakOrder(sortAscending);
  expectWeakOrder(sortCaseInsensitiveDescending);
  expectWeakOrder(sortAscendingByLength);
  expectWeakOrder(sortDescendingByLength);
  expectWeakOrder(comparePaths);
}

TEST(Sorting, ComparesAsTheNamesSay) {
  struct Case {
    NSComparisonResult (*compare)(const NSString &, const NSString &);
    NSString a, b;
    NSComparisonResult result;
  };
  const Case cases[] = {
      {sortAscending, u"B"_ns, u"a"_ns, NSOrderedAscending},
      {sortDescending, u"B"_ns, u"a"_ns, NSOrderedDescending},
      {sortCaseInsensitiveAscending, u"B"_ns, u"a"_ns, NSOrderedDescending},
      {sortCaseInsensitiveAscending, u"\u00c4"_ns, u"\u00e4"_ns, NSOrderedSame},
      {sortCaseInsensitiveDescending, u"B"_ns, u"a"_ns, NSOrderedAscending},
      {sortLocalizedCaseInsensitiveAscending, u"\u00e4b"_ns, u"az"_ns, NSOrderedAscending},
      {sortLocalizedCaseInsensitiveAscending, u"AB"_ns, u"ab"_ns, NSOrderedSame},
      {sortLocalizedCaseInsensitiveAscending, u"e\u0301"_ns, u"\u00c9"_ns, NSOrderedSame},
      {sortLocalizedCaseInsensitiveDescending, u"a"_ns, u"b"_ns, NSOrderedDescending},
      {sortAscendingByLength, u"b"_ns, u"aa"_ns, NSOrderedAscending},
      {sortDescendingByLength, u"abc"_ns, u"ab"_ns, NSOrderedAscending},
      {sortDescendingByLength, u"AB"_ns, u"ab"_ns, NSOrderedSame},
      {sortDescendingByLength, u"ab"_ns, u"AC"_ns, NSOrderedAscending},
      {comparePaths, u"/z/z"_ns, u"/a/a/a"_ns, NSOrderedAscending},
      {comparePaths, u"/a/B/c"_ns, u"/A/b/D"_ns, NSOrderedAscending},
      {comparePaths, u"/a//b"_ns, u"/A/B"_ns, NSOrderedSame},
      {sortAscending, NSString(), u""_ns, NSOrderedSame},
      {sortLocalizedCaseInsensitiveAscending, NSString(), u"a"_ns, NSOrderedAscending},
  };
  for (const Case &each : cases)
    EXPECT_EQ(each.compare(each.a, each.b), each.result) << each.a.UTF8String() << " " << each.b.UTF8String();
}

}  // namespace
}  // namespace nimbo
