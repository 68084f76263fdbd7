// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/TagShape.hpp"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

#include "Classes/Markup/ScanTags.hpp"
#include "Classes/Markup/TagHandlers.hpp"
#include "tests/support/StringSamples.hpp"

namespace nimbo {
namespace {

/// One word for what kind of tag it is.
std::string shapeOf(const TagShape &tag) {
  std::string words;
  if (tag.isStartTag()) words += "start";
  if (tag.isEndTag()) words += "end";
  if (tag.isEmptyElementTag()) words += "empty";
  return words + (tag.depthChange() > 0 ? "+" : tag.depthChange() < 0 ? "-" : "");
}

TEST(TagShape, TellsStartTagsFromEndTags) {
  struct Case {
    std::u16string_view markup;
    const char *shape;
  };
  for (const Case &test : std::initializer_list<Case>{
           {u"<p>", "start+"},
           {u"<p/>", "empty"},
           {u"</p>", "end-"},
           {u"</p/>", "endempty"},
           {u"</>", "end"},
           {u"<>", ""},
           {u"</", ""},
           {u"<!DOCTYPE x>", "start+"},
           {u"<!-- /-->", ""},
           {u"<![CDATA[/]]>", ""},
           {u"<script></script", "start+"},
       }) {
    std::string first;
    scanTags(exactString(test.markup), [&](const TagShape &tag) {
      first = shapeOf(tag);
      return true;
    });
    EXPECT_EQ(first, test.shape) << NSString::stringWithCharacters(test.markup).UTF8String();
  }
}

/// The end tag of the style has no ">": what the scanner tells of it and of the end is not within the markup.
TEST(TagShape, CutsItsViewsToTheMarkup) {
  const NSString markup = exactString(u"a<b c=d>e<STYLE></style");
  std::vector<std::u16string> views;
  scanTags(markup, [&](const TagShape &tag) {
    for (const std::u16string_view view :
         {tag.name(), tag.tag(), tag.text(), tag.textAndTag(), tag.allBefore(), tag.attribute("C")})
      views.emplace_back(view);
  });
  EXPECT_EQ(views, (std::vector<std::u16string>{u"b", u"<b c=d>", u"a", u"a<b c=d>", u"a", u"d",  //
                                                u"STYLE", u"<STYLE></style", u"e", u"e<STYLE></style",
                                                u"a<b c=d>e", u"",  //
                                                u"", u"", u"", u"", std::u16string(markup.view()), u""}));
}

TEST(TagShape, IsNamedWithoutRegardToCase) {
  scanTags(u"<Font size=1>", [](const TagShape &tag) {
    EXPECT_EQ(tag.isNamed("FONT") && tag.isNamed(u"font"), tag.isOrdinary());
    EXPECT_FALSE(tag.isNamed("fon") || tag.isNamed("fonts") || tag.isNamed(u"fond"));
    EXPECT_EQ(tag.beginsWith(u"<FONT SIZE"), tag.isOrdinary());
    EXPECT_FALSE(tag.beginsWith(u"<fond") || tag.beginsWith(u"<font size=1>>"));
  });
}

/// Each name is found in upper, lower and mixed case, and not with a letter more or less.
TEST(TagNames, AreFoundInAnyCase) {
  constexpr std::u16string_view kNames[] = {
#define NIMBO_TAG_NAME(name) u"" #name,
      NIMBO_TAG_NAMES(NIMBO_TAG_NAME)
#undef NIMBO_TAG_NAME
  };
  ASSERT_EQ(std::size(kNames) + 1, kTagNames);
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    const std::u16string mixed(kNames[i]);
    std::u16string upper, lower;
    for (const unichar c : mixed) {
      upper += c >= u'a' ? static_cast<unichar>(c - 32) : c;
      lower += c >= u'A' && c <= u'Z' ? static_cast<unichar>(c + 32) : c;
    }
    for (const std::u16string &name : {mixed, upper, lower})
      EXPECT_EQ(tagNamed(name), static_cast<TagName>(i + 1))
          << NSString::stringWithCharacters(name).UTF8String();
    EXPECT_NE(tagNamed(upper + u'Q'), static_cast<TagName>(i + 1));
    EXPECT_NE(tagNamed(lower.substr(1)), static_cast<TagName>(i + 1));
  }
  for (const std::u16string_view name : {u"", u"\u017fub", u"l\u0131", u"im-g", u"blockquotes", u"\0b"})
    EXPECT_EQ(tagNamed(name), TagName::kUnknown);
  scanTags(u"<!-- <p> --><![CDATA[p]]>",
           [](const TagShape &tag) { EXPECT_EQ(tag.tagName(), TagName::kUnknown); });
}

bool countUntilBody(const TagShape &tag, int &count) {
  ++count;
  return tag.tagName() == TagName::kBody;
}

void count(const TagShape &, int &calls) {
  ++calls;
}

TEST(TagHandlers, StopTheScanOrDoNot) {
  const NSString page = u"<p><b><body><i>"_ns;
  int stopped = 0, whole = 0, alsoWhole = 0;
  EXPECT_TRUE(GetTagsOfString(page, tagHandler<countUntilBody>, &stopped, false));
  EXPECT_TRUE(GetTagsOfString(page, tagHandler<count>, &whole, true));
  scanTags(page, [&](const TagShape &) { ++alsoWhole; });
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(whole, 5);
  EXPECT_EQ(alsoWhole, 5);
  scanTags(NSString(), [](const TagShape &) { FAIL(); });
}

}  // namespace
}  // namespace nimbo
