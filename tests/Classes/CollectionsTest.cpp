// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

#include "Classes/NSDictionary+NimboDictionaryExtensions.hpp"
#include "Classes/NSMutableArray+MSMutableArrayNimboExtensions.hpp"
#include "Classes/NSMutableDictionary+NimboDictionaryExtensions.hpp"
#include "platform/Foundation/NSNumber.hpp"

namespace nimbo {
namespace {

/// Equal values of all kinds that share nothing.
std::vector<id> someValues() {
  const NSString key = NSString::stringWithUTF8String("key");
  return {1,
          1.0,
          true,
          0,
          -0.0,
          false,
          NSNull(),
          NSDate{1},
          key,
          NSData::dataWithBytes("key", 3),
          NSArray{1, key},
          NSArray{key, 1},
          NSArray{},
          NSDictionary{{key, 1}, {u"b"_ns, 2}},
          id(),
          std::nan("")};
}

TEST(ValueIdentity, AgreesWithEqualityAndHashes) {
  const std::vector<id> values = someValues(), others = someValues();
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = 0; j < values.size(); ++j) {
      EXPECT_TRUE(!(values[i] == others[j]) || values[i].hash() == others[j].hash()) << i;
      EXPECT_TRUE(!values[i].identicalTo(others[j]) || values[i].identityHash() == others[j].identityHash())
          << i;
    }
    const bool hasStorage =
        values[i].string() || values[i].data() || values[i].array() || values[i].dictionary();
    EXPECT_EQ(values[i].identicalTo(others[i]), !hasStorage && values[i] == others[i]) << i;
    EXPECT_EQ(values[i].identicalTo(id(values[i])), values[i] == values[i]) << i;
  }
  EXPECT_EQ(id(NSDictionary{{u"a"_ns, 1}, {u"b"_ns, 2}}).hash(),
            id(NSDictionary{{u"b"_ns, 2}, {u"a"_ns, 1}}).hash());
  EXPECT_EQ(id(0.0).hash(), id(-0.0).hash());
}

TEST(Arrays, AreCombinedAsSets) {
  const NSString a = u"a"_ns, b = u"b"_ns, c = u"c"_ns;
  const NSString otherB = NSString::stringWithUTF8String("b");
  using Operation = void (*)(NSArray &, const NSArray &);
  struct Case {
    Operation operation;
    NSArray array, other, result;
  };
  const Case cases[] = {
      {removeObjectsFromArray, {a, b, 1, b, c}, {1.0, otherB, c}, {a, 1}},
      {removeIdenticalObjectsFromArray, {a, b, 1, otherB, c}, {1, otherB, c}, {a, b}},
      {removeObjectsFromArray, {a}, {}, {a}},
      {removeObjectsFromArray, {a}, NSArray(), {a}},
      {unionWithObjectsFromArray, {a, a, b}, {c, otherB, true, c, 1}, {a, a, b, c, true, 1}},
      {unionWithIdenticalObjectsFromArray, {a, b}, {otherB, b, otherB, a}, {a, b, otherB}},
      {unionWithObjectsFromArray, NSArray(), {a}, {a}},
      {unionWithObjectsFromArray, NSArray(), NSArray(), NSArray()},
      {joinWithObjectsFromArray, {a, b, a, c}, {otherB, a}, {a, b, a}},
      {joinWithIdenticalObjectsFromArray, {a, b, otherB}, {otherB, a}, {a, otherB}},
      {joinWithObjectsFromArray, {a, b}, NSArray(), NSArray::array()},
  };
  for (const Case &each : cases) {
    NSArray array = each.array;
    each.operation(array, each.other);
    EXPECT_EQ(array, each.result) << &each - cases;
  }
  NSArray array{a, b};
  unionWithObjects(array, {otherB, c, id(), 5});
  EXPECT_EQ(array, (NSArray{a, b, c}));
  unionWithIdenticalObjects(array, {otherB, a});
  EXPECT_EQ(array.count(), 4u);
  // An array and itself.
  joinWithObjectsFromArray(array, array);
  unionWithObjectsFromArray(array, array);
  EXPECT_EQ(array.count(), 4u);
  removeIdenticalObjectsFromArray(array, array);
  EXPECT_EQ(array, NSArray::array());
}

TEST(Arrays, OfManyObjectsAreCombinedLikeSmallOnes) {
  // Quadratic work would take minutes here.
  constexpr int kCount = 200000;
  NSArray even, third;
  for (int i = 0; i < kCount; ++i) even.addObject(NSString::stringWithUTF8String(std::to_string(2 * i)));
  for (int i = 0; i < kCount; ++i) third.addObject(NSString::stringWithUTF8String(std::to_string(3 * i)));
  NSArray both = even, either = even, rest = even;
  joinWithObjectsFromArray(both, third);
  unionWithObjectsFromArray(either, third);
  removeObjectsFromArray(rest, third);
  EXPECT_EQ(both.count(), (kCount + 2u) / 3);
  EXPECT_EQ(rest.count(), kCount - both.count());
  EXPECT_EQ(either.count(), 2 * kCount - both.count());
  EXPECT_EQ(either[kCount], u"3"_ns);
}

TEST(Arrays, MoveInsertAndCopy) {
  const NSArray abc{u"a"_ns, u"b"_ns, u"c"_ns};
  const struct {
    std::uint32_t from, to;
    bool moved;
    NSArray result;
  } moves[] = {
      {0, 2, true, {u"b"_ns, u"a"_ns, u"c"_ns}},
      {2, 0, true, {u"c"_ns, u"a"_ns, u"b"_ns}},
      {0, 1, true, abc},
      {7, 7, true, abc},
      {0, 3, false, abc},
      {3, 0, false, abc},
  };
  for (const auto &each : moves) {
    NSArray array = abc;
    EXPECT_EQ(moveObjectAtIndex(array, each.from, each.to), each.moved);
    EXPECT_EQ(array, each.result) << each.from << " to " << each.to;
  }
  NSArray array{1, 2};
  insertObjectsFromArray(array, array, 1);
  insertObjectsFromArray(array, abc, 5);
  EXPECT_EQ(array, (NSArray{1, 1, 2, 2}));
  setCount(array, 9);
  EXPECT_EQ(array.count(), 4u);
  setCount(array, 2);
  addObjects(array, {3, id(), 4});
  EXPECT_EQ(array, (NSArray{1, 1, 3}));
  EXPECT_EQ(arrayByRemovingObject(array, 1), NSArray{3});
  EXPECT_TRUE(arrayByRemovingObject(array, 1.0).identicalTo(array));
  EXPECT_EQ(arrayByRemovingObjectIdenticalTO(abc, NSString::stringWithUTF8String("a")).count(), 3u);
  EXPECT_EQ(arrayByRemovingObjectIdenticalTO(abc, abc[0]).count(), 2u);
  EXPECT_EQ(subarrayWithoutObjectAtIndex(array, 1), (NSArray{1, 3}));
  EXPECT_TRUE(subarrayWithoutObjectAtIndex(array, 3).identicalTo(array));
  EXPECT_FALSE(firstObject(NSArray()));
  EXPECT_EQ(firstObject(abc), u"a"_ns);
}

/// By the tens; the context counts the calls.
std::int32_t compareTens(const id &a, const id &b, void *calls) {
  if (calls) ++*static_cast<int *>(calls);
  return static_cast<std::int32_t>(*a.integer() / 10 - *b.integer() / 10);
}

TEST(Arrays, AreSortedStablyAndSearched) {
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
  EXPECT_EQ(before.count(), 3000u);
  EXPECT_NE(before, array);
  for (const NSRange outside : {NSRange{2999, 2}, NSRange{3001, 0}, NSRange{1, 0xffffffff}}) {
    NSArray same = before;
    quickSortUsingFunction(same, compareTens, outside, nullptr);
    EXPECT_TRUE(same.identicalTo(before));
    EXPECT_EQ(indexOfObject(before, 1, outside, compareTens, nullptr), NSNotFound);
  }
  // No order at all does no harm.
  quickSortUsingFunction(array, [](const id &, const id &, void *) { return -1; });
  EXPECT_EQ(array.count(), 3000u);

  const NSArray sorted{5, 11, 12, 13, 30, 31};
  const std::pair<int, std::uint32_t> places[] = {{0, 0}, {19, 1}, {20, 4}, {35, 4}, {40, 6}};
  for (const auto &[number, place] : places)
    EXPECT_EQ(indexOfObject(sorted, number, compareTens, nullptr), place) << number;
  EXPECT_EQ(indexOfObject(sorted, 10, {2, 2}, compareTens, nullptr), 2u);
  EXPECT_EQ(indexOfObject(sorted, 30, {0, 2}, compareTens, nullptr), 2u);
}

TEST(Arrays, ApplyFunctionsInOrder) {
  NSArray array{1, 2, 3};
  struct Context {
    NSArray *array;
    std::string seen;
  } context{&array, {}};
  const auto note = [](const id &object, void *pointer) {
    auto &noted = *static_cast<Context *>(pointer);
    noted.seen += std::to_string(*object.integer());
    noted.array->addObject(0);
  };
  applyFunction(array, note, &context);
  applyFunction(array, note, &context, {1, 2});
  applyFunction(array, note, &context, {5, 9});
  EXPECT_EQ(context.seen, "12323");
}

TEST(Dictionaries, ConvertTheirValues) {
  struct Case {
    id value;
    std::int32_t integer;
    std::uint32_t unsignedInt;
    std::int64_t longLong;
    double real;
    bool boolean;
    NSString string;
  };
  constexpr std::int64_t kMaximum = std::numeric_limits<std::int64_t>::max();
  constexpr double kHuge = std::numeric_limits<double>::max();
  const Case cases[] = {
      {-7, -7, 0, -7, -7, true, u"-7"_ns},
      {2.9, 2, 2, 2, 2.9, true, u"2.9"_ns},
      {true, 1, 1, 1, 1, true, u"1"_ns},
      {0.5, 0, 0, 0, 0.5, true, u"0.5"_ns},
      {std::int64_t{1} << 40, 0x7fffffff, 0xffffffff, std::int64_t{1} << 40, 0x1p40, true, u"1099511627776"_ns},
      {1e300, 0x7fffffff, 0xffffffff, kMaximum, 1e300, true, u"1e+300"_ns},
      {u" +12.5e1x"_ns, 12, 12, 12, 125, true, u" +12.5e1x"_ns},
      {u"-.5"_ns, 0, 0, 0, -0.5, false, u"-.5"_ns},
      {u"99999999999999999999"_ns, 0x7fffffff, 0xffffffff, kMaximum, 1e20, true, u"99999999999999999999"_ns},
      {u"2e999"_ns, 2, 2, 2, kHuge, true, u"2e999"_ns},
      {u"inf"_ns, 0, 0, 0, 0, false, u"inf"_ns},
      {u"yes"_ns, 0, 0, 0, 0, true, u"yes"_ns},
      {NSArray{1}, 8, 8, 8, 8, true, u"8"_ns},
      {id(), 8, 8, 8, 8, true, u"8"_ns},
  };
  for (const Case &each : cases) {
    const NSString key = u"key"_ns;
    const NSDictionary dictionary{{key, each.value}};
    EXPECT_EQ(integerForKey(dictionary, key, 8), each.integer) << &each - cases;
    EXPECT_EQ(unsignedIntForKey(dictionary, key, 8), each.unsignedInt) << &each - cases;
    EXPECT_EQ(longLongForKey(dictionary, key, 8), each.longLong) << &each - cases;
    EXPECT_EQ(doubleForKey(dictionary, key, 8), each.real) << &each - cases;
    EXPECT_EQ(boolForKey(dictionary, key, true), each.boolean) << &each - cases;
    EXPECT_EQ(stringForKey(dictionary, key, u"8"_ns), each.string) << &each - cases;
  }
  EXPECT_EQ(floatForKey({{u"k"_ns, 1e300}}, u"k"_ns), std::numeric_limits<float>::max());
  EXPECT_EQ(longLongValue(std::nan("")), 0);
}

TEST(Dictionaries, StoreWhatTheyGiveBack) {
  NSDictionary dictionary;
  setUnsignedLong(dictionary, 0xfedcba9876543210, u"l"_ns);
  EXPECT_EQ(unsignedLongForKey(dictionary, u"l"_ns), 0xfedcba9876543210);
  setBool(dictionary, false, u"b"_ns);
  EXPECT_TRUE(dictionary.objectForKey(u"b"_ns).isBoolean());
  setUnsignedInt(dictionary, 0xffffffff, u"u"_ns);
  EXPECT_EQ(unsignedIntForKey(dictionary, u"u"_ns), 0xffffffff);
  setOrRemoveString(dictionary, u"x"_ns, u"s"_ns);
  EXPECT_EQ(stringForKey(dictionary, u"s"_ns), u"x"_ns);
  setOrRemoveString(dictionary, u""_ns, u"s"_ns);
  setOrRemoveObject(dictionary, id(), u"b"_ns);
  EXPECT_EQ(dictionary.allKeys(), (std::vector<NSString>{u"l"_ns, u"u"_ns}));
  dictionary.setObject(u"five"_ns, keyForCode(-5));
  EXPECT_EQ(objectForCode(dictionary, -5), u"five"_ns);
  EXPECT_EQ(objectForCode(dictionary, 5, 1), 1);
}

TEST(Dictionaries, SpeakTheUsersLanguage) {
  ::setenv("LC_ALL", "de_AT.UTF-8", 1);
  ::setenv("LANGUAGE", "pt_BR:de_AT", 1);
  const NSDictionary dictionary{
      {u"plain"_ns, u"text"_ns},
      {u"both"_ns, NSDictionary{{u"en"_ns, u"house"_ns}, {u"de"_ns, u"Haus"_ns}, {u"pt_BR"_ns, 1}}},
      {u"other"_ns, NSDictionary{{u"fr"_ns, u"maison"_ns}, {u"en"_ns, u"house"_ns}}},
      {u"none"_ns, NSDictionary{{u"fr"_ns, u"maison"_ns}}},
      {u"number"_ns, 1},
  };
  const std::pair<NSString, NSString> cases[] = {
      {u"plain"_ns, u"text"_ns}, {u"both"_ns, u"Haus"_ns}, {u"other"_ns, u"house"_ns},
      {u"none"_ns, u"?"_ns},     {u"number"_ns, u"?"_ns},  {u"missing"_ns, u"?"_ns},
  };
  for (const auto &[key, text] : cases)
    EXPECT_EQ(localizedStringForKey(dictionary, key, u"?"_ns), text) << key.UTF8String();
  ::unsetenv("LANGUAGE");
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(localizedStringForKey(dictionary, u"both"_ns), u"house"_ns);
  ::unsetenv("LC_ALL");
}

}  // namespace
}  // namespace nimbo
