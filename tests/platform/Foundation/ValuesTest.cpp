// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/NSNumber.hpp"
#include "platform/Foundation/NSObject.hpp"
#include "platform/Foundation/System/LargeBytes.hpp"
#include "tests/support/AllocationCount.hpp"

namespace nimbo {
namespace {

TEST(NSDictionary, KeepsOrderSharesUntilChangedAndDropsNil) {
  NSDictionary first{{u"b"_ns, 1}, {u"a"_ns, u"x"_ns}, {u"none"_ns, id()}, {NSString(), 3}, {u"b"_ns, 2}};
  EXPECT_EQ(first.allKeys(), (std::vector<NSString>{u"b"_ns, u"a"_ns}));
  NSDictionary second = first;
  second.setObject(true, u"c"_ns);
  second.removeObjectForKey(u"b"_ns);
  EXPECT_EQ(first.objectForKey(u"b"_ns).integer(), 2);
  EXPECT_FALSE(second.objectForKey(u"b"_ns));
  EXPECT_FALSE(first.objectForKey(u"c"_ns));
  second.addEntriesFromDictionary(second);
  EXPECT_EQ(second, (NSDictionary{{u"c"_ns, true}, {u"a"_ns, u"x"_ns}}));
  EXPECT_FALSE(NSDictionary() == NSDictionary::dictionary());
}

NSString key(std::uint32_t number) {
  return NSString::stringWithUTF8String("key" + std::to_string(number));
}

NSDictionary dictionaryOf(std::uint32_t count) {
  NSDictionary result;
  for (std::uint32_t i = 0; i < count; ++i) result.setObject(i, key(i));
  return result;
}

TEST(NSDictionary, AgreesWithAPlainListWhateverIsSetAndRemoved) {
  using Entry = NSDictionary::Entry;
  constexpr std::uint32_t kKeys = 60;
  std::vector<Entry> expected;
  NSDictionary dictionary;
  std::minstd_rand random;
  for (std::uint32_t step = 0; step < 1000; ++step) {
    const NSString changed = key(random() % kKeys);
    const auto at = std::ranges::find(expected, changed, &Entry::first);
    const NSDictionary shared = step % 8 == 0 ? dictionary : NSDictionary();
    // It grows for a while, then shrinks.
    if (random() % 16 < (step / 250 % 2 == 0 ? 11 : 2)) {
      dictionary.setObject(step, changed);
      if (at == expected.end())
        expected.emplace_back(changed, step);
      else
        at->second = step;
    } else {
      dictionary.removeObjectForKey(changed);
      if (at != expected.end()) expected.erase(at);
    }
    ASSERT_EQ(dictionary.count(), expected.size());
    ASSERT_EQ(std::vector(dictionary.begin(), dictionary.end()), expected) << "step " << step;
    for (std::uint32_t i = 0; i < kKeys; ++i) {
      const auto found = std::ranges::find(expected, key(i), &Entry::first);
      ASSERT_EQ(dictionary.objectForKey(key(i)), found == expected.end() ? id() : found->second)
          << "step " << step;
    }
  }
}

TEST(NSDictionary, RemovesKeysThatItLends) {
  for (const std::uint32_t count : {3u, 100u}) {
    NSDictionary dictionary = dictionaryOf(count);
    for (std::uint32_t i = 0; i < count; ++i) {
      ASSERT_EQ(dictionary.begin()->first, key(i));
      dictionary.removeObjectForKey(dictionary.begin()->first);
    }
    EXPECT_EQ(dictionary, NSDictionary::dictionary());
  }
}

/// The work of taking the keys out one by one: allocations, and for each time that the last entry is found
/// elsewhere in memory all entries, which have been moved.
std::size_t workOfRemovingKeys(std::uint32_t count, bool fromTheFront) {
  NSDictionary dictionary = dictionaryOf(count);
  const NSString last = key(count);
  dictionary.setObject(true, last);
  std::vector<NSString> keys = dictionary.allKeys();
  keys.pop_back();
  if (!fromTheFront) std::ranges::reverse(keys);
  const id *place = &dictionary.objectForKey(last);
  std::size_t work = 0;
  const std::size_t allocations = allocationCount();
  for (const NSString &each : keys) {
    dictionary.removeObjectForKey(each);
    if (place != &dictionary.objectForKey(last)) work += dictionary.count();
    place = &dictionary.objectForKey(last);
  }
  return work + allocationCount() - allocations;
}

TEST(NSDictionary, TwiceAsManyRemovalsAreTwiceTheWork) {
  for (const bool fromTheFront : {true, false}) {
    const std::size_t once = workOfRemovingKeys(1000, fromTheFront);
    EXPECT_LE(once, 2000u);
    EXPECT_LE(workOfRemovingKeys(2000, fromTheFront), 2 * once + once / 10);
  }
}

/// Counts how many have ended.
class Mortal : public NSObject {
 public:
  explicit Mortal(int *ended) : ended_(*ended) {}
  ~Mortal() override { ++ended_; }

 private:
  int &ended_;
};

TEST(SharedPointer, EndsItsObjectOnceWithTheLast) {
  for (const bool hasThreads : {false, true}) {
    if (hasThreads) std::thread([] {}).join();
    int ended = 0;
    SharedPointer<Mortal> first = makeShared<Mortal>(&ended);
    EXPECT_TRUE(first.isUnique());
    SharedPointer<NSObject> second = first;
    EXPECT_FALSE(first.isUnique());
    second = *&second;
    EXPECT_EQ(second, SharedPointer<NSObject>(first));
    SharedPointer<NSObject> third = std::move(second);
    EXPECT_FALSE(second);  // NOLINT(bugprone-use-after-move): null is promised.
    first = SharedPointer<Mortal>();
    EXPECT_TRUE(third.isUnique());
    EXPECT_EQ(ended, 0);
    third = makeShared<NSObject>();
    EXPECT_EQ(ended, 1);
  }
}

TEST(id, KeepsKindsApart) {
  EXPECT_FALSE(id(NSString()));
  EXPECT_FALSE(id(SharedPointer<NSObject>()));
  EXPECT_EQ(id(1).real(), 1.0);
  EXPECT_EQ(id(INT64_MIN).integer(), INT64_MIN);
  EXPECT_EQ(id(u"s"_ns).integer(), std::nullopt);
  // The same of every kind: nothing.
  const id kinds[] = {id(),
                      NSNull(),
                      false,
                      0,
                      0.0,
                      NSDate{0},
                      u""_ns,
                      NSData::data(),
                      NSArray::array(),
                      NSDictionary::dictionary(),
                      makeShared<NSObject>()};
  for (std::size_t i = 0; i < std::size(kinds); ++i) {
    for (std::size_t k = 0; k < std::size(kinds); ++k) {
      id value = kinds[k];
      value = kinds[i];
      EXPECT_TRUE(value.identicalTo(kinds[i]));
      EXPECT_EQ(value == kinds[k], i == k) << i << " and " << k;
      EXPECT_EQ(value.identicalTo(kinds[k]), i == k) << i << " and " << k;
      EXPECT_EQ(id(std::move(value)).hash(), kinds[i].hash());
      EXPECT_FALSE(value);  // NOLINT(bugprone-use-after-move): nil is promised.
    }
  }
}

TEST(id, HoldsAnObjectByIdentity) {
  int ended = 0;
  {
    const SharedPointer<Mortal> object = makeShared<Mortal>(&ended);
    const id value = object, same = SharedPointer<NSObject>(object), other = makeShared<Mortal>(&ended);
    EXPECT_EQ(value.object().get(), object.get());
    EXPECT_EQ(value, same);
    EXPECT_TRUE(value.identicalTo(same));
    EXPECT_EQ(value.hash(), same.hash());
    EXPECT_EQ(value.identityHash(), same.identityHash());
    EXPECT_FALSE(value == other || value.identicalTo(other));
    EXPECT_EQ((NSArray{value, 1}), (NSArray{same, 1}));
    EXPECT_TRUE(value.visit([]<class T>(const T &) { return std::is_same_v<T, SharedPointer<NSObject>>; }));
    EXPECT_FALSE(stringValue(value) || doubleValue(value) || id(1).object());
    EXPECT_EQ(ended, 0);
  }
  EXPECT_EQ(ended, 2);
}

TEST(NSDate, ConvertsToAndFromCalendarDates) {
  EXPECT_EQ(NSDate::dateWithUTC(2001, 1, 1, 0, 0, 0), NSDate{0});
  EXPECT_EQ(NSDate::dateWithUTC(2004, 2, 29, 12, 30, 15.5).ISO8601String(), "2004-02-29T12:30:15.5Z");
  EXPECT_EQ(NSDate::dateWithUTC(2003, 14, 31, 25, 0, 0), NSDate::dateWithUTC(2004, 3, 3, 1, 0, 0));
  EXPECT_EQ(NSDate::dateWithTimeIntervalSince1970(-1).ISO8601String(), "1969-12-31T23:59:59Z");
  EXPECT_EQ(NSDate::dateWithUTC(9999, 12, 31, 23, 59, 59.5).ISO8601String(), "9999-12-31T23:59:59.5Z");
  EXPECT_EQ(NSDate::dateWithUTC(9999, 12, 31, 23, 59, 59.9999999).ISO8601String(), std::nullopt);
  EXPECT_EQ(NSDate::dateWithUTC(10000, 1, 1, 0, 0, 0).ISO8601String(), std::nullopt);
  const double last = std::nextafter(NSDate::dateWithUTC(10000, 1, 1, 0, 0, 0).timeIntervalSince1970(), 0);
  EXPECT_TRUE(
      NSDate::dateWithTimeIntervalSince1970(last).ISO8601String()->starts_with("9999-12-31T23:59:59.999"));
  EXPECT_EQ(NSDate::dateWithUTC(0, 1, 1, 0, 0, 0).ISO8601String(), "0000-01-01T00:00:00Z");
  EXPECT_EQ(NSDate::dateWithUTC(-1, 12, 31, 23, 59, 59).ISO8601String(), std::nullopt);
  EXPECT_EQ(NSDate{1e300}.ISO8601String(), std::nullopt);
  EXPECT_EQ(NSDate{std::nan("")}.ISO8601String(), std::nullopt);
}

TEST(NSGeometry, WritesSizesAsText) {
  EXPECT_EQ(NSStringFromSize({595.276, 841.89}), u"{595.276, 841.89}"_ns);
}

TEST(LargeBytes, StandOnLargePages) {
  std::size_t pageBytes = 1;  // Of a system that has none.
  std::ifstream("/sys/kernel/mm/transparent_hugepage/hpage_pmd_size") >> pageBytes;
  void *const bytes = allocateBytes(kLargeBytes);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % pageBytes, 0u);
  std::free(bytes);
}

TEST(NSData, PartsOutliveTheWhole) {
  NSData part = NSData::dataWithBytes("content", 7).subdataWithRange({3, 99});
  EXPECT_EQ(part.view(), "tent");
  EXPECT_EQ(part.subdataWithRange({1, 2}).view(), "en");
  EXPECT_EQ(part.subdataWithRange({9, 2}), NSData::data());
  EXPECT_TRUE(part.subdataWithRange({0, 4}).identicalTo(part));
}

}  // namespace
}  // namespace nimbo
