// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {
namespace {

TEST(NSDictionary, KeepsOrderSharesUntilChangedAndDropsNil) {
  NSDictionary first{{u"b"_ns, 1}, {u"a"_ns, u"x"_ns}, {u"none"_ns, id()}, {u"b"_ns, 2}};
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

TEST(NSDictionary, FindsAmongManyAfterRemovals) {
  NSDictionary many;
  const auto key = [](int i) { return NSString::stringWithUTF8String("key" + std::to_string(i)); };
  for (int i = 0; i < 1000; ++i) many.setObject(i, key(i));
  for (int i = 0; i < 1000; i += 2) many.removeObjectForKey(key(i));
  many.setObject(-1, key(1000));
  EXPECT_EQ(many.count(), 501u);
  EXPECT_FALSE(many.objectForKey(key(10)));
  EXPECT_EQ(many.objectForKey(key(999)).integer(), 999);
  EXPECT_EQ(many.objectForKey(key(1000)).integer(), -1);
}

TEST(id, KeepsKindsApart) {
  EXPECT_FALSE(id(NSString()));
  EXPECT_TRUE(id(false));
  EXPECT_FALSE(id(1) == id(true));
  EXPECT_FALSE(id(1) == id(1.0));
  EXPECT_EQ(id(1).real(), 1.0);
  EXPECT_EQ(id(u"s"_ns).integer(), std::nullopt);
}

TEST(NSDate, ConvertsToAndFromCalendarDates) {
  EXPECT_EQ(NSDate::dateWithUTC(2001, 1, 1, 0, 0, 0), NSDate{0});
  EXPECT_EQ(NSDate::dateWithUTC(2004, 2, 29, 12, 30, 15.5).ISO8601String(), "2004-02-29T12:30:15.5Z");
  EXPECT_EQ(NSDate::dateWithUTC(2003, 14, 31, 25, 0, 0), NSDate::dateWithUTC(2004, 3, 3, 1, 0, 0));
  EXPECT_EQ(NSDate::dateWithTimeIntervalSince1970(-1).ISO8601String(), "1969-12-31T23:59:59Z");
  EXPECT_EQ(NSDate{1e300}.ISO8601String(), std::nullopt);
  EXPECT_EQ(NSDate{std::nan("")}.ISO8601String(), std::nullopt);
}

TEST(NSGeometry, WritesSizesAsText) {
  EXPECT_EQ(NSStringFromSize({595.276, 841.89}), u"{595.276, 841.89}"_ns);
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
