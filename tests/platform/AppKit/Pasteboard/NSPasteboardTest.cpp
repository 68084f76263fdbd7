// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

#include <gtest/gtest.h>

#include "platform/AppKit/Pasteboard/PasteboardTypes.hpp"

namespace nimbo {
namespace {

TEST(NSPasteboard, OfANameIsOneAndTheSame) {
  const NSPasteboard leaf = NSPasteboard::pasteboardWithName(u"leaf"_ns);
  const NSPasteboard other = NSPasteboard::pasteboardWithName(u"other leaf"_ns);
  ASSERT_TRUE(leaf.declareTypes({NSStringPboardType}));
  ASSERT_TRUE(leaf.setString(u"oak"_ns, NSStringPboardType));
  const NSPasteboard again = NSPasteboard::pasteboardWithName(u"leaf"_ns);
  EXPECT_EQ(again.name(), u"leaf"_ns);
  EXPECT_EQ(again.stringForType(NSStringPboardType), u"oak"_ns);
  EXPECT_EQ(again.changeCount(), 1);
  EXPECT_TRUE(other.types().empty());
  EXPECT_EQ(other.changeCount(), 0);
  const NSPasteboard unique = NSPasteboard::pasteboardWithUniqueName();
  EXPECT_NE(unique.name(), NSPasteboard::pasteboardWithUniqueName().name());
  // Its name does not lead to it.
  ASSERT_TRUE(unique.declareTypes({NSStringPboardType}));
  EXPECT_TRUE(NSPasteboard::pasteboardWithName(unique.name()).types().empty());
  EXPECT_TRUE(unique.isAvailable());
  EXPECT_EQ(NSPasteboard::generalPasteboard().name(), u"general"_ns);
}

TEST(NSPasteboard, TakesAndGivesNothingWhenItIsNil) {
  const NSPasteboard nil;
  NSError errors[5];
  EXPECT_FALSE(nil.isAvailable(&errors[0]));
  EXPECT_TRUE(nil.types(&errors[1]).empty());
  EXPECT_FALSE(nil.declareTypes({NSStringPboardType}, &errors[2]));
  EXPECT_FALSE(nil.setString(u"a"_ns, NSStringPboardType, &errors[3]));
  EXPECT_FALSE(nil.dataForType(NSStringPboardType, &errors[4]));
  for (const NSError &error : errors) EXPECT_EQ(error.localizedFailureReason, u"there is no pasteboard"_ns);
  EXPECT_EQ(nil.changeCount(), 0);
  EXPECT_FALSE(nil.name());
}

}  // namespace
}  // namespace nimbo
