// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/TagAttributes.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "Classes/Markup/NSString+XmlExtensions.hpp"
#include "platform/Foundation/NSDictionary.hpp"
#include "platform/Foundation/NSException.hpp"
#include "platform/Foundation/id.hpp"
#include "tests/support/AllocationCount.hpp"
#include "tests/support/ExactBuffer.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

struct Case {
  const char16_t *text;
  const char *name;
  const char *expected;  // Null: there is no value.
};

std::uint32_t lengthOf(std::u16string_view text) {
  return static_cast<std::uint32_t>(text.size());
}

void expectValue(const Case &test, const NSString &value) {
  SCOPED_TRACE(NSString::stringWithCharacters(test.text).UTF8String());
  ASSERT_EQ(static_cast<bool>(value), test.expected != nullptr);
  if (test.expected) {
    EXPECT_EQ(value.UTF8String(), test.expected);
  }
}

TEST(TagAttributes, AreReadFromTags) {
  for (const Case &test : std::initializer_list<Case>{
           {u"<A Href = 'x y' >", "HREF", "x y"},
           {u"<a data-href=x>", "href", "x"},
           {u"<a xhref=x>", "href", nullptr},
           {u"<a title='href=n' href=y>", "href", "y"},
           {u"<a title='href=n href=y>", "href", nullptr},
           {u"<a href href=y>", "href", "y"},
           {u"<a href=\" y \">", "href", " y"},
           {u"<a href='y>z'>", "href", "y"},
           {u"<a href=yz", "href", "yz"},
           {u"<a href=   ", "href", nullptr},
           {u"<a href='' >", "href", nullptr},
           {u"<a href='  '>", "href", nullptr},
           {u"<a x=", "x", nullptr},
           {u"<a x=1", "x", nullptr},
           {u"<a x=1>", "x", "1"},
           {u"<a href=y>", "", nullptr},
       }) {
    const std::u16string_view text = test.text;
    const ExactBuffer tag(text);
    expectValue(test, attributeOfTagCharacters(tag.data(), lengthOf(text), test.name));
    const std::u16string amidst = u"<a x=z>" + std::u16string(text) + u"<a x=z>";
    expectValue(test, attributeOfTagCharacters(amidst.data(), NSRange{7, lengthOf(text)}, test.name));
    expectValue(test, attributeOfTagWithName(exactString(text), NSString::stringWithUTF8String(test.name)));
  }
}

TEST(TagAttributes, AreViewsThatTakeNoMemory) {
  constexpr std::u16string_view kTag =
      u"<option value=\"a\" SELECTED class = x disabled='' href='c' data-multiple>";
  const std::size_t before = allocationCount();
  const std::u16string_view value = attributeOfTag(kTag, "VALUE");
  const bool hasValue = hasAttribute(kTag, "selected") && hasAttribute(kTag, "disabled");
  const bool hasOwnValue = ownAttributeOfTag(kTag, "class") == u"x" &&
                           ownAttributeOfTag(kTag, "href") == u"c" &&
                           ownAttributeOfTag(u"<a href=' b>c '", "href") == u" b>c " &&
                           ownAttributeOfTag(u"<a =b=c href='d", "href") == u"d";
  const bool hasOther = !ownAttributeOfTag(kTag, "multiple").empty() || hasAttribute(kTag, "multiple") ||
                        hasAttribute(kTag, "option") || hasAttribute(kTag, "x") ||
                        hasAttribute(u"<script b>href=c </script>", "href") ||
                        hasAttribute(u"<a b='' 'href=c>", "href") || hasAttribute(u"<a b=c>href=c", "href");
  EXPECT_EQ(allocationCount(), before);
  EXPECT_EQ(value.data(), kTag.data() + kTag.find(u"\"a\"") + 1);
  EXPECT_EQ(value, u"a");
  EXPECT_TRUE(hasValue);
  EXPECT_TRUE(hasOwnValue);
  EXPECT_FALSE(hasOther);
}

TEST(TagAttributes, TolerantContentsMayHoldTags) {
  for (const Case &test : std::initializer_list<Case>{
           {u"<meta content='a <b>c</b> d'>", "CONTENT", "a <b>c</b> d"},
           {u"<meta content='a > b'>", "CONTENT", "a"},
           {u"<meta content='> b'>", "CONTENT", "> b"},
           {u"<meta content='a <' >", "CONTENT", "a"},
           {u"<meta content='a </' >", "CONTENT", "a"},
           {u"<meta content='<b>a <' >", "CONTENT", "<b>a"},
           {u"<meta content='a <META name=b>", "CONTENT", "a"},
           {u"<meta content='a <met", "CONTENT", "a <met"},
           {u"<meta content=a'b >", "CONTENT", "a'b"},
       }) {
    const std::u16string_view text = test.text;
    const ExactBuffer tag(text);
    expectValue(test, _attributeOfTagCharactersWithName(tag.data(), 0, lengthOf(text), test.name, true));
  }
}

TEST(TagAttributes, PropertiesAreReadFromStyles) {
  for (const Case &test : std::initializer_list<Case>{
           {u"color: red; top:0", "COLOR", "red"},
           {u"background-color: red", "color", "red"},
           {u"font: 'a b'; top:1px", "top", "1px"},
           {u"font: 'a;b'", "font", "a"},
           {u"top:1", "top", "1"},
           {u"top:", "top", nullptr},
       }) {
    expectValue(test,
                attributeOfStyleWithName(exactString(test.text), NSString::stringWithUTF8String(test.name)));
  }
}

TEST(TagAttributes, FieldsAreReadFromHeaders) {
  for (const Case &test : std::initializer_list<Case>{
           {u"text/html; charset=utf-8", "CHARSET", "utf-8"},
           {u"text/html; Charset = 'a b'; x", "CHARSET", "a b"},
           {u"charset=''; charset=b", "CHARSET", "b"},
           {u"charset=a b;c", "CHARSET", "a"},
           {u"charset=;x", "CHARSET", ";x"},
           {u"charset=", "CHARSET", nullptr},
           {u"charset=  ''; charset charset = b", "CHARSET", "b"},
           {u"charsets=a", "CHARSET", nullptr},
       }) {
    expectValue(test, headerCharset(exactString(test.text)));
  }
  const NSString header = u"a; name=b c ; x"_ns;
  EXPECT_EQ(headerFieldNamed(header, u"NAME"_ns), u"b c "_ns);
  EXPECT_FALSE(headerFieldNamed(header, u"name"_ns));
  EXPECT_EQ(headerFieldNamed(u"name=|b;c|"_ns, u"NAME"_ns, u'|'), u"b;c"_ns);
  EXPECT_EQ(headerFieldNamed(u"name= b"_ns, u"NAME"_ns), u" b"_ns);
  // Places of a blank name that share a separator, and then the next one.
  EXPECT_EQ(headerFieldNamed(u"  =''  = b"_ns, u" "_ns), u" b"_ns);
  EXPECT_EQ(headerRefresh(u"5; URL=page.html"_ns), u"page.html"_ns);
}

TEST(StoredTags, AreRangesOfTagsAndTexts) {
  // Enough tags for the arrays to grow.
  constexpr std::uint32_t kTags = 3000;
  std::u16string text;
  for (std::uint32_t i = 0; i < kTags; ++i) text += u"a<b>";
  text += u'c';
  NSRange *tags = nullptr, *texts = nullptr;
  ASSERT_EQ(getXml(NSString::stringWithCharacters(text), &tags, &texts), kTags + 1);
  for (std::uint32_t i = 0; i < kTags; ++i) {
    ASSERT_EQ(tags[i], (NSRange{4 * i + 1, 3}));
    ASSERT_EQ(texts[i], (NSRange{4 * i, 1}));
  }
  EXPECT_EQ(tags[kTags], (NSRange{4 * kTags + 1, 0}));
  EXPECT_EQ(texts[kTags], (NSRange{4 * kTags, 1}));
  std::free(tags);
  std::free(texts);
  EXPECT_EQ(getXmlTags(u"x"_ns, &tags), 1u);
  std::free(tags);
  EXPECT_EQ(getXmlContents(NSString(), &texts), 0u);
  EXPECT_EQ(texts, nullptr);
}

TEST(StoredTags, AreStringsAndDictionaries) {
  const auto entry = [](const NSString &content, const NSString &tag) {
    return id(NSDictionary{{u"Content"_ns, content}, {u"Tag"_ns, tag}});
  };
  EXPECT_EQ(getXml(u"a<b>c"_ns), (NSArray{entry(u"a"_ns, u"<b>"_ns), entry(u"c"_ns, u""_ns)}));
  EXPECT_EQ(getXml(u"<b>"_ns), (NSArray{entry({}, u"<b>"_ns), entry({}, u""_ns)}));
  EXPECT_EQ(getXmlTags(u"a<b>c<script></script x"_ns), (NSArray{u"<b>"_ns, u"<script></script x"_ns}));
  EXPECT_EQ(getXmlContents(u"a<b><i>c"_ns), (NSArray{u"a"_ns, u"c"_ns}));
  EXPECT_EQ(getXml(NSString()), NSArray::array());
}

TEST(ParseXml, CatchesAndLogsTheHandlersException) {
  const TagHandler raise = [](const NSString &, const unichar *, std::uint32_t, std::uint32_t, std::uint32_t,
                              std::uint32_t, std::uint32_t, int,
                              void *) -> bool { throw NSException(u"Broken"_ns, u"by a test"_ns); };
  testing::internal::CaptureStderr();
  EXPECT_FALSE(parseXmlWithHandler(u"<p>"_ns, raise, nullptr, true));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "parseXmlWithHandler:context:mutable: (NSString):\nBroken\nby a test\n");
}

}  // namespace
}  // namespace nimbo
