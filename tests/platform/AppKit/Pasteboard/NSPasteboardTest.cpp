// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

#include <gtest/gtest.h>

#include <span>
#include <vector>

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

TEST(NSPasteboard, HoldsWhatHasBeenDeclared) {
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  ASSERT_TRUE(pasteboard.declareTypes({NSStringPboardType, NSHTMLPboardType, NSStringPboardType}));
  EXPECT_EQ(pasteboard.types(), (std::vector<NSString>{NSStringPboardType, NSHTMLPboardType}));
  NSError errors[5];
  EXPECT_FALSE(pasteboard.setString(u"a"_ns, NSRTFPboardType, &errors[0]));
  EXPECT_EQ(errors[0].errorCode(), ErrorCode::unsupportedType);
  EXPECT_FALSE(pasteboard.setString(NSString(), NSHTMLPboardType, &errors[1]));
  EXPECT_EQ(errors[1].localizedFailureReason, u"there is no data to write"_ns);
  EXPECT_TRUE(pasteboard.setString(u"a"_ns, NSStringPboardType));
  EXPECT_FALSE(pasteboard.dataForType(NSHTMLPboardType, &errors[2])) << "declared alone";
  EXPECT_FALSE(pasteboard.stringForType(NSRTFPboardType, &errors[3]));
  for (const NSError *error : {&errors[2], &errors[3]})
    EXPECT_EQ(error->localizedFailureReason, u"the pasteboard holds no data of this type"_ns);
  const NSString wanted[] = {NSRTFPboardType, NSHTMLPboardType, NSStringPboardType};
  EXPECT_EQ(pasteboard.availableTypeFromArray(wanted, &errors[4]), NSHTMLPboardType);
  EXPECT_FALSE(errors[4]);
  EXPECT_FALSE(pasteboard.availableTypeFromArray(std::span(wanted).first(1), &errors[4]));
  EXPECT_EQ(errors[4].errorCode(), ErrorCode::incomplete);
  errors[4] = {};
  EXPECT_FALSE(NSPasteboard().availableTypeFromArray(wanted, &errors[4]));
  EXPECT_EQ(errors[4].localizedFailureReason, u"there is no pasteboard"_ns);
  EXPECT_FALSE(pasteboard.availableTypeFromArray({}));
  EXPECT_EQ(pasteboard.changeCount(), 1);
  ASSERT_TRUE(pasteboard.declareTypes({NSRTFPboardType, NSStringPboardType}));
  ASSERT_TRUE(pasteboard.setString(u"b"_ns, NSStringPboardType));
  ASSERT_TRUE(pasteboard.declareTypes({NSRTFPboardType}));
  EXPECT_FALSE(pasteboard.dataForType(NSStringPboardType)) << "declared before";
}

TEST(NSPasteboard, HoldsPropertyLists) {
  const NSPasteboard pasteboard = NSPasteboard::pasteboardWithUniqueName();
  ASSERT_TRUE(pasteboard.declareTypes({NSStringPboardType}));
  const id list = NSArray{u"a"_ns, 5};
  EXPECT_TRUE(pasteboard.setPropertyList(list, NSStringPboardType));
  EXPECT_EQ(pasteboard.propertyListForType(NSStringPboardType), list);
  EXPECT_TRUE(pasteboard.stringForType(NSStringPboardType).view().starts_with(u"<?xml"));
  NSError error;
  EXPECT_FALSE(pasteboard.setPropertyList(id(), NSStringPboardType, &error));
  EXPECT_TRUE(error);
  EXPECT_EQ(pasteboard.propertyListForType(NSStringPboardType), list) << "as it was";
  error = {};
  EXPECT_FALSE(pasteboard.propertyListForType(NSHTMLPboardType, &error));
  EXPECT_EQ(error.errorCode(), ErrorCode::incomplete);
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
