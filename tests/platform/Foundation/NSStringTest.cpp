// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <ranges>
#include <string>
#include <vector>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "tests/support/AllocationCount.hpp"

namespace nimbo {
namespace {

TEST(NSString, TellsNilEmptyAndSameStorageApart) {
  const NSString nil;
  const NSString empty = NSString::string();
  EXPECT_FALSE(nil);
  EXPECT_TRUE(empty);
  EXPECT_FALSE(nil == empty);
  EXPECT_TRUE(NSString::stringWithUTF8String("").identicalTo(empty));
  const NSString a = u"text"_ns;
  const NSString b = NSString::stringWithUTF8String("text");
  EXPECT_EQ(a, b);
  EXPECT_EQ(a.hash(), b.hash());
  EXPECT_FALSE(a.identicalTo(b));
  EXPECT_TRUE(a.identicalTo(a.substringWithRange({0, 99})));
}

TEST(NSString, OneAllocationMakesOne) {
  const std::u16string units(100, u'x');
  for (const std::uint32_t length : {1u, 2u, 7u, 8u, 100u}) {
    const std::size_t before = allocationCount();
    const NSString string = NSString::stringWithCharacters(units.data(), length);
    EXPECT_EQ(allocationCount() - before, 1u) << length;
    EXPECT_EQ(string.view(), std::u16string_view(units).substr(0, length));
  }
}

TEST(NSString, ConvertsUTF8AtTheEdges) {
  // Long strings are made in place, short ones on the stack.
  for (const std::size_t length : {0, 253, 300, 10000}) {
    SCOPED_TRACE(length);
    const std::string front(length, 'x');
    const std::u16string wideFront(length, u'x');
    const NSString valid = NSString::stringWithUTF8String(front + "\xc3\xa4" + '\0');
    EXPECT_EQ(valid.view(), wideFront + u"\u00e4" + u'\0');
    EXPECT_EQ(valid.UTF8String(), front + "\xc3\xa4" + '\0');
    EXPECT_FALSE(NSString::stringWithUTF8String(front + "\xff"));
    const NSString lossy = NSString::stringWithLossyUTF8String(front + "\xff-");
    EXPECT_EQ(lossy.view(), wideFront + u"\ufffd-");
    EXPECT_EQ(NSString::stringWithCharacters(wideFront + u"\xd83d-").UTF8String(), front + "\xef\xbf\xbd-");
  }
  EXPECT_EQ(NSString().UTF8String(), "");
}

TEST(NSString, EveryFileNameSurvives) {
  for (const std::string_view name :
       {"plain", "caf\xc3\xa9 \xf0\x9f\x98\x80", "bad\xff\xfe.pdf", "\xed\xb2\x80", "cut\xe2\x82"}) {
    const auto back = NSString::stringWithFileSystemRepresentation(name).fileSystemRepresentation();
    ASSERT_TRUE(back) << testing::PrintToString(name);
    EXPECT_EQ(*back, name);
  }
  EXPECT_FALSE(NSString().fileSystemRepresentation());
  EXPECT_FALSE(u""_ns.fileSystemRepresentation());
  EXPECT_FALSE(NSString::stringWithCharacters({u"a\0b", 3}).fileSystemRepresentation());
  EXPECT_FALSE(NSString::stringWithCharacters(u"\xd83d").fileSystemRepresentation());
}

TEST(NSMutableString, EditsInPlaceAndHandsItsStorageOver) {
  NSMutableString text(u"hello"_ns);
  text.appendCharacter(u'!');
  text.appendCharacters(text.characters(), 5);  // from itself, across a reallocation
  EXPECT_EQ(text.view(), u"hello!hello");
  text.replaceCharactersInRange({5, 1}, u", ");
  EXPECT_EQ(text.view(), u"hello, hello");
  text.deleteCharactersInRange({0, 7});
  EXPECT_EQ(text.view(), u"hello");
  text.replaceCharactersInRange({99, 99}, u"?");
  EXPECT_EQ(text.view(), u"hello?");
  text.appendString(NSString::stringWithCharacters(std::u16string(20, u'x')));
  const unichar *storage = text.characters();
  const NSString moved = std::move(text).string();
  EXPECT_EQ(moved.characters(), storage);
  EXPECT_EQ(text.length(), 0u);
  EXPECT_TRUE(std::move(text).string().identicalTo(NSString::string()));
}

TEST(NSMutableString, TakesOverStorageThatNobodyShares) {
  NSString sole = NSString::stringWithCharacters(u"some text");
  const unichar *const storage = sole.characters();
  NSMutableString taken(std::move(sole));
  EXPECT_EQ(taken.characters(), storage);
  EXPECT_FALSE(sole);
  taken.append(u", longer");
  EXPECT_EQ(taken.view(), u"some text, longer");

  NSString shared = std::move(taken).string();
  const NSString other = shared;
  NSMutableString copied(std::move(shared));
  copied.mutableCharacters()[0] = u'S';
  EXPECT_EQ(other, u"some text, longer"_ns);
  NSMutableString literal(u"literal"_ns);
  literal.mutableCharacters()[0] = u'L';
  EXPECT_EQ(u"literal"_ns.view(), u"literal");
  EXPECT_EQ(NSMutableString(NSString()).length(), 0u);
}

TEST(NSMutableString, AppendsUnitsAndText) {
  NSMutableString text;
  text.append(u"\xd83d");
  text.append(text.view());
  text.append(std::u16string_view());
  text.append("key");
  text.append(std::string_view());
  text.append("\xc3\xa4\xff");
  EXPECT_EQ(text.view(), u"\xd83d\xd83dkey\u00e4\ufffd");
}

TEST(NSString, IsJoinedOfPieces) {
  const NSString name = u"name"_ns;
  const NSMutableString folder(u"/folder"_ns);
  EXPECT_EQ(stringByConcatenating(folder, u'/', name, NSString(), u".txt", std::u16string(2, u'x')),
            u"/folder/name.txtxx"_ns);
  EXPECT_TRUE(stringByConcatenating(NSString()).identicalTo(NSString::string()));

  EXPECT_EQ(stringByJoining(std::vector{name, NSString(), name}, u", "), u"name, , name"_ns);
  EXPECT_EQ(stringByJoining(std::vector{name}, u", "), name);
  EXPECT_EQ(stringByJoining(std::vector<std::u16string_view>(), u", "), u""_ns);
  EXPECT_EQ(stringByJoining(std::vector<std::u16string_view>(3), u""), u""_ns);
  const std::vector<std::u16string_view> views = {u"a", u"b"};
  EXPECT_EQ(stringByJoining(std::views::reverse(views), u"/"), u"b/a"_ns);
  const std::u16string_view huge(name.characters(), NSNotFound);
  EXPECT_THROW(stringByConcatenating(huge, name), std::length_error);
}

TEST(NSMutableString, RefusesMoreThanAStringMayHold) {
  NSMutableString text(u"x"_ns);
  EXPECT_THROW(text.setLength(NSNotFound + 1), std::length_error);
  EXPECT_THROW(text.reserve(0xffffffff), std::length_error);
  EXPECT_EQ(text.view(), u"x");
}

}  // namespace
}  // namespace nimbo
