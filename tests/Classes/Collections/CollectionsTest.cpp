// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <tuple>
#include <utility>

#include "Classes/Collections/NSDictionary+NimboDictionaryExtensions.hpp"
#include "Classes/Collections/NSMutableArray+MSMutableArrayNimboExtensions.hpp"
#include "Classes/Collections/NSMutableDictionary+NimboDictionaryExtensions.hpp"
#include "platform/Foundation/NSException.hpp"

namespace nimbo {
namespace {

/// Values of all kinds; those of two calls are equal and share nothing. Those with storage stand first.
constexpr std::size_t kWithStorage = 5;
std::vector<id> someValues() {
  const NSString key = NSString::stringWithUTF8String("key");
  const NSData data = NSData::dataWithBytes("key", 3);
  const NSDictionary dictionary{{key, 1}, {u"b"_ns, 2}};
  return {key, data, NSArray({1, key}), NSArray({key, 1}), dictionary, 1, 1.0, true, NSNull(), NSDate{1}, id()};
}

TEST(ValueIdentity, AgreesWithEqualityAndHashes) {
  const std::vector<id> values = someValues(), others = someValues();
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = 0; j < values.size(); ++j) EXPECT_EQ(values[i] == others[j], i == j) << i << " " << j;
    EXPECT_EQ(values[i].hash(), others[i].hash()) << i;
    EXPECT_EQ(values[i].identicalTo(others[i]), i >= kWithStorage) << i;
    EXPECT_TRUE(values[i].identicalTo(id(values[i]))) << i;
  }
  EXPECT_EQ(id(NSDictionary{{u"b"_ns, 2}, {u"key"_ns, 1}}).hash(), values[kWithStorage - 1].hash());
  EXPECT_EQ(id(0.0).hash(), id(-0.0).hash());
}

TEST(Arrays, AreCombinedAsSets) {
  const NSString a = u"a"_ns, b = u"b"_ns, c = u"c"_ns, otherB = NSString::stringWithUTF8String("b");
  const std::tuple<void (*)(NSArray &, const NSArray &), NSArray, NSArray, NSArray> cases[] = {
      {removeObjectsFromArray, {a, b, 1, b, c}, {1.0, otherB, c}, {a, 1}},
      {removeIdenticalObjectsFromArray, {a, b, 1, otherB, c}, {1, otherB, c}, {a, b}},
      {removeObjectsFromArray, {a}, NSArray(), {a}},
      {unionWithObjectsFromArray, {a, a, b}, {c, otherB, true, c, 1}, {a, a, b, c, true, 1}},
      {unionWithIdenticalObjectsFromArray, {a, b}, {otherB, b, otherB, a}, {a, b, otherB}},
      {joinWithObjectsFromArray, {a, b, a, c}, {otherB, a}, {a, b, a}},
      {joinWithIdenticalObjectsFromArray, {a, b, otherB}, {otherB, a}, {a, otherB}},
      {joinWithObjectsFromArray, {a, b}, NSArray(), NSArray::array()},
  };
  for (const auto &[operation, given, other, result] : cases) {
    NSArray array = given;
    operation(array, other);
    EXPECT_EQ(array, result);
  }
  NSArray array{a, b};
  unionWithObjects(array, {otherB, c, id(), 5});
  unionWithIdenticalObjects(array, {otherB, a});
  joinWithObjectsFromArray(array, array);
  EXPECT_EQ(array, (NSArray{a, b, c, b}));
  unionWithIdenticalObjects(array, {NAN, NAN});
  EXPECT_EQ(array.count(), 5u);
  removeIdenticalObjectsFromArray(array, array);
  EXPECT_EQ(array, NSArray::array());
}

TEST(Arrays, OfManyObjectsAreCombinedLikeSmallOnes) {
  // Quadratic work would take minutes here.
  constexpr std::uint32_t kCount = 200000;
  NSArray even, third;
  for (std::uint32_t i = 0; i < kCount; ++i) {
    even.addObject(NSString::stringWithUTF8String(std::to_string(2 * i)));
    third.addObject(NSString::stringWithUTF8String(std::to_string(3 * i)));
  }
  NSArray both = even, either = even;
  joinWithObjectsFromArray(both, third);
  unionWithObjectsFromArray(either, third);
  EXPECT_EQ(both.count(), (kCount + 2) / 3);
  EXPECT_EQ(either.count(), 2 * kCount - both.count());
  EXPECT_EQ(either[kCount], u"3"_ns);
}

TEST(Arrays, MoveInsertAndCopy) {
  const NSArray abc{u"a"_ns, u"b"_ns, u"c"_ns}, bac{u"b"_ns, u"a"_ns, u"c"_ns}, cab{u"c"_ns, u"a"_ns, u"b"_ns};
  const auto moved = [&](std::uint32_t from, std::uint32_t to) {
    NSArray array = abc;
    return moveObjectAtIndex(array, from, to) ? array : NSArray();
  };
  EXPECT_EQ(moved(0, 2), bac);
  EXPECT_EQ(moved(2, 0), cab);
  EXPECT_EQ(moved(0, 1), abc);
  EXPECT_EQ(moved(7, 7), abc);
  EXPECT_FALSE(moved(0, 3) || moved(3, 0));
  NSArray array{1, 2, 3};
  array.reserve(8);  // Room to move its own objects in.
  insertObjectsFromArray(array, array, 1);
  insertObjectsFromArray(array, abc, 7);
  EXPECT_EQ(array, (NSArray{1, 1, 2, 3, 2, 3}));
  setCount(array, 9);
  setCount(array, 3);
  addObjects(array, {3, id(), 4});
  EXPECT_EQ(array, (NSArray{1, 1, 2, 3}));
  EXPECT_EQ(firstObject(bac), u"b"_ns);
  EXPECT_FALSE(firstObject(NSArray::array()));
  EXPECT_TRUE(containsObjectIdenticalTo(abc, abc[2]));
  EXPECT_FALSE(containsObjectIdenticalTo(abc, NSString::stringWithUTF8String("c")));
  EXPECT_EQ(arrayByRemovingObject(array, 1), (NSArray{2, 3}));
  EXPECT_TRUE(arrayByRemovingObject(array, 1.0).identicalTo(array));
  EXPECT_TRUE(arrayByRemovingObjectIdenticalTO(abc, NSString::stringWithUTF8String("a")).identicalTo(abc));
  EXPECT_EQ(arrayByRemovingObjectIdenticalTO(abc, abc[0]).count(), 2u);
  EXPECT_EQ(subarrayWithoutObjectAtIndex(array, 1), (NSArray{1, 2, 3}));
  EXPECT_TRUE(subarrayWithoutObjectAtIndex(array, 4).identicalTo(array));
  appendObjects(array, {4, id(), 5});
  EXPECT_EQ(array, (NSArray{1, 1, 2, 3, 4}));
}

/// By the tens; the context counts the calls.
std::int32_t compareTens(const id &a, const id &b, void *calls) {
  if (calls) ++*static_cast<int *>(calls);
  return static_cast<std::int32_t>(*a.integer() / 10 - *b.integer() / 10);
}

TEST(Arrays, AreSortedStably) {
  std::mt19937 random(3);
  std::vector<id> numbers(3000);
  for (id &number : numbers) number = random() % 1000;
  NSArray array{std::vector<id>(numbers)};
  const NSArray before = array;
  int calls = 0;
  quickSortUsingFunction(array, compareTens, {10, 2990}, &calls);
  EXPECT_GT(calls, 0);
  std::stable_sort(numbers.begin() + 10, numbers.end(),
                   [](const id &a, const id &b) { return compareTens(a, b, nullptr) < 0; });
  EXPECT_EQ(array, NSArray(numbers));
  NSArray ends{13, 30, 5, 12};
  quickSortUsingFunction(ends, compareTens, nullptr);
  EXPECT_EQ(ends, (NSArray{5, 13, 12, 30}));
  for (const NSRange outside : {NSRange{2999, 2}, NSRange{3001, 0}, NSRange{1, 0xffffffff}}) {
    NSArray same = before;
    quickSortUsingFunction(same, compareTens, outside, nullptr);
    EXPECT_TRUE(same.identicalTo(before));
    EXPECT_EQ(indexOfObject(before, 1, outside, compareTens, nullptr), NSNotFound);
  }
}

TEST(Arrays, SurviveFunctionsThatGiveNoOrder) {
  std::vector<id> numbers(100);
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = i;
  std::mt19937 random(4);
  const auto draw = [](const id &, const id &, void *generator) {
    const auto number = (*static_cast<std::mt19937 *>(generator))();
    if (number % 500 == 0) throw NSException(u"Tired"_ns, u""_ns);
    return number % 2 == 0 ? 1 : -1;
  };
  int raised = 0;
  for (std::uint32_t count = 2; count < 100; ++count) {
    NSArray array(numbers);
    try {
      quickSortUsingFunction(array, draw, {0, count}, &random);
      std::sort(array.mutableObjects().begin(), array.mutableObjects().end(),
                [](const id &a, const id &b) { return a.integer() < b.integer(); });
    } catch (const NSException &) {
      ++raised;
    }
    ASSERT_EQ(array, NSArray(numbers));
  }
  EXPECT_GT(raised, 0);
}

TEST(Arrays, AreSearchedAndWalked) {
  NSArray array{5, 11, 12, 13, 30, 31};
  const std::pair<int, std::uint32_t> places[] = {{0, 0}, {19, 1}, {20, 4}, {35, 4}, {40, 6}};
  for (const auto &[number, place] : places)
    EXPECT_EQ(indexOfObject(array, number, compareTens, nullptr), place) << number;
  EXPECT_EQ(indexOfObject(array, 10, {2, 2}, compareTens, nullptr), 2u);
  // The function changes the array that is walked.
  applyFunction(array, [](const id &each, void *pointer) { static_cast<NSArray *>(pointer)->addObject(each); },
                &array, {1, 2});
  EXPECT_EQ(array, (NSArray{5, 11, 12, 13, 30, 31, 11, 12}));
  NSArray walked;
  applyFunction(
      NSArray{1, 2, 3}, [](const id &each, void *pointer) { static_cast<NSArray *>(pointer)->addObject(each); },
      &walked);
  EXPECT_EQ(walked, (NSArray{1, 2, 3}));
}

TEST(Dictionaries, ConvertTheirValues) {
  constexpr std::int64_t kMaximum = std::numeric_limits<std::int64_t>::max();
  const std::tuple<id, std::int64_t, double, bool, NSString> cases[] = {
      {-7, -7, -7, true, u"-7"_ns},
      {0, 0, 0, false, u"0"_ns},
      {1, 1, 1, true, u"1"_ns},
      {2.9, 2, 2.9, true, u"2.9"_ns},
      {1e300, kMaximum, 1e300, true, u"1e+300"_ns},
      {u" +12.5e1x"_ns, 12, 125, true, u" +12.5e1x"_ns},
      {u"-.5"_ns, 0, -0.5, false, u"-.5"_ns},
      {u"99999999999999999999"_ns, kMaximum, 1e20, true, u"99999999999999999999"_ns},
      {u"2e999"_ns, 2, std::numeric_limits<double>::max(), true, u"2e999"_ns},
      {u"inf"_ns, 0, 0, false, u"inf"_ns},
      {u"yes"_ns, 0, 0, true, u"yes"_ns},
      {NSArray{1}, 8, 8, true, u"8"_ns},
      {id(), 8, 8, true, u"8"_ns},
  };
  const NSString key = u"key"_ns;
  for (const auto &[value, integer, real, boolean, string] : cases) {
    const NSDictionary dictionary{{key, value}};
    EXPECT_EQ(longLongForKey(dictionary, key, 8), integer) << real;
    EXPECT_EQ(doubleForKey(dictionary, key, 8), real) << real;
    EXPECT_EQ(boolForKey(dictionary, key, true), boolean) << real;
    EXPECT_EQ(stringForKey(dictionary, key, u"8"_ns), string) << real;
  }
  EXPECT_EQ(integerForKey({{key, 1e10}}, key), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(unsignedIntForKey({{key, -1}}, key), 0u);
  constexpr std::uint64_t kUnsignedMaximum = std::numeric_limits<std::uint64_t>::max();
  const std::pair<id, std::uint64_t> unsignedCases[] = {{u"9223372036854775808"_ns, 1ULL << 63},
                                                        {u"+18446744073709551615 B"_ns, kUnsignedMaximum},
                                                        {u"18446744073709551616"_ns, kUnsignedMaximum},
                                                        {u"-1"_ns, kUnsignedMaximum},
                                                        {0x1p63, 1ULL << 63},
                                                        {0x1.fffffffffffffp63, 0xfffffffffffff800},
                                                        {0x1p64, kUnsignedMaximum},
                                                        {1e300, kUnsignedMaximum},
                                                        {std::nan(""), 0},
                                                        {true, 1},
                                                        {id(), 8}};
  for (const auto &[value, number] : unsignedCases)
    EXPECT_EQ(unsignedLongForKey({{key, value}}, key, 8), number)
        << stringForKey({{key, value}}, key).UTF8String();
  EXPECT_EQ(floatForKey({{key, 1e300}}, key), std::numeric_limits<float>::max());
  EXPECT_EQ(longLongForKey({{key, std::nan("")}}, key, 8), 0);
}

TEST(Dictionaries, StoreWhatTheyGiveBack) {
  NSDictionary dictionary;
  setUnsignedLong(dictionary, 0xfedcba9876543210, u"l"_ns);
  EXPECT_EQ(unsignedLongForKey(dictionary, u"l"_ns), 0xfedcba9876543210);
  setInteger(dictionary, std::numeric_limits<std::int32_t>::min(), u"i"_ns);
  setUnsignedInt(dictionary, std::numeric_limits<std::uint32_t>::max(), u"u"_ns);
  setLongLong(dictionary, std::numeric_limits<std::int64_t>::min() + 1, u"ll"_ns);
  setDouble(dictionary, 1e300, u"d"_ns);
  setString(dictionary, u"leaf"_ns, u"s"_ns);
  EXPECT_EQ(dictionary.objectForKey(u"i"_ns), id(-2147483648LL));
  EXPECT_EQ(dictionary.objectForKey(u"u"_ns), id(4294967295LL));
  EXPECT_EQ(dictionary.objectForKey(u"ll"_ns), id(-9223372036854775807LL));
  EXPECT_EQ(dictionary.objectForKey(u"d"_ns), id(1e300));
  EXPECT_EQ(dictionary.objectForKey(u"s"_ns), u"leaf"_ns);
  for (const NSString &key : {u"i"_ns, u"u"_ns, u"ll"_ns, u"d"_ns, u"s"_ns}) dictionary.removeObjectForKey(key);
  for (const float number : {0.1F, -1.0e-45F, 3.4028235e38F, 8388607.5F, 2147483648.0F}) {
    setFloat(dictionary, number, u"f"_ns);
    EXPECT_EQ(floatForKey(dictionary, u"f"_ns), number);
  }
  EXPECT_EQ(doubleForKey(dictionary, u"f"_ns), 2147483648.0);
  setFloat(dictionary, 0.1F, u"f"_ns);
  EXPECT_EQ(stringForKey(dictionary, u"f"_ns), u"0.1"_ns);
  dictionary.removeObjectForKey(u"f"_ns);
  setBool(dictionary, false, u"b"_ns);
  EXPECT_TRUE(dictionary.objectForKey(u"b"_ns).isBoolean());
  setOrRemoveString(dictionary, u""_ns, u"b"_ns);
  setOrRemoveObject(dictionary, id(), u"l"_ns);
  setOrRemoveString(dictionary, u"five"_ns, keyForCode(-5));
  EXPECT_EQ(dictionary.count(), 1u);
  EXPECT_EQ(objectForCode(dictionary, -5), u"five"_ns);
}

TEST(Dictionaries, SpeakTheUsersLanguage) {
  ::setenv("LC_ALL", "de_AT.UTF-8", 1);
  ::setenv("LANGUAGE", "pt_BR:de_AT", 1);
  const NSString none = u"?"_ns;
  const auto localized = [&](const id &value) {
    return localizedStringForKey({{u"k"_ns, value}}, u"k"_ns, none);
  };
  const std::pair<const char *, NSString> tags[] = {
      {"pt_BR", u"pt-BR"_ns},         {"zh_CN", u"zh-Hans"_ns},      {"zh_HK", u"zh-Hant"_ns},
      {"sr_RS@latin", u"sr-Latn"_ns}, {"zh-Hant-TW", u"zh_Hant"_ns}, {"de-CH", u"de"_ns}};
  for (const auto &[language, key] : tags) {
    ::setenv("LANGUAGE", language, 1);
    EXPECT_EQ(localized(NSDictionary{{key, u"this"_ns}, {u"en"_ns, u"house"_ns}, {u"zh"_ns, u"other"_ns}}),
              u"this"_ns)
        << language;
  }
  ::setenv("LANGUAGE", "pt_BR:de_AT", 1);
  const NSDictionary house{
      {u"fr"_ns, u"maison"_ns}, {u"en"_ns, u"house"_ns}, {u"de"_ns, u"Haus"_ns}, {u"pt_BR"_ns, 1}};
  EXPECT_EQ(localized(house), u"Haus"_ns);
  EXPECT_EQ(localized(u"plain"_ns), u"plain"_ns);
  for (const id &value : {id(NSDictionary{{u"fr"_ns, u"maison"_ns}, {u"C"_ns, u"house"_ns}}), id(1), id()})
    EXPECT_EQ(localized(value), none);
  ::unsetenv("LANGUAGE");
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(localized(house), u"house"_ns);
  ::unsetenv("LC_ALL");
}

}  // namespace
}  // namespace nimbo
