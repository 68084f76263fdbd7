// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/WebKit/HTMLDocument.hpp"
#include "tests/platform/WebKit/HTMLTreeCheck.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

/// All text of the page in order.
std::u16string allText(const HTMLDocument &document) {
  std::u16string text;
  for (HTMLNodeIndex i = 0; i != kNoHTMLNode; i = document.nextInTree(i))
    if (document.node(i).kind == HTMLNodeKind::text) text += document.text(document.node(i));
  return text;
}

/// Pages that make slow parsers slow: a beginning, and what follows it any number of times.
constexpr struct {
  std::u16string_view start, unit;
} kShapes[] = {
    {u"", u"<div>"},
    {u"", u"<div>x</span>"},
    {u"", u"<a>x"},
    {u"", u"<a><div>"},
    {u"", u"<table><td>"},
    {u"", u"<table><b>x"},
    {u"<table>", u"x&amp;<tr><td>y&amp;"},
    {u"<table>", u"<b>x<td>y"},
    {u"", u"<p><b><i><u>x"},
    {u"", u"<p><b a=1><b a=2><i a=3>x"},
    {u"", u"<b><p></b>"},
    {u"", u"<b><i><p></b></i>x"},
    {u"<b><b a=1><b a=2><div><div><div>", u"<b></b></b><div>"},
    {u"", u"<div><b></div>x</b>"},
    {u"<div><b><span>", u"</x></p></li></b></h1></dd>"},
    {u"", u"<nobr><button>"},
    {u"", u"<ul><li><dl><dd>"},
    {u"", u"<form><div></form>"},
    {u"", u"<object><b>"},
    {u"", u"<select><option>x"},
    {u"", u"<select><table>"},
    {u"", u"<template>"},
    {u"", u"<template><td>"},
    {u"<svg>", u"<g></x>"},
    {u"", u"<svg><foreignObject>"},
    {u"", u"<math><mi>"},
    {u"<frameset>", u"<frameset>"},
    {u"", u"<"},
    {u"", u"</"},
    {u"", u"&"},
    {u"", u"&am&"},
    {u"", u"<!--x-->"},
    {u"<!--", u"- ->"},
    {u"", u"<![CDATA["},
    {u"", u"<script><!--"},
    {u"<title>", u"</titl"},
    {u"<p", u" a=1 b c='&amp;'"},
    {u"<p a='", u"&amp;\r"},
    {u"", u"<body a=1 b=2>"},
    {u"", u"<x1><x2><x3>"},
    {u"", u"<!DOCTYPE x>"},
};

class HTMLShapesTest : public testing::TestWithParam<std::size_t> {};

TEST_P(HTMLShapesTest, takesTimeAndNodesByTheLengthOfThePage) {
  const auto &shape = kShapes[GetParam()];
  SCOPED_TRACE(std::string(shape.unit.begin(), shape.unit.end()));
  std::size_t nodes[2] = {};
  for (const std::size_t times : {1, 2}) {
    const std::u16string text = std::u16string(shape.start) + repeated(shape.unit, 20'000 * times);
    const HTMLDocument document = HTMLDocument::documentWithText(text);
    ASSERT_TRUE(isSoundTree(document, HTMLLimits().depth));
    nodes[times - 1] = document.nodeCount();
    EXPECT_LT(document.nodeCount(), text.size() + 30'000);
  }
  EXPECT_LT(nodes[1], 3 * nodes[0] + 30'000);
  expectLinearTime(5'000, [&](std::size_t count) {
    const std::u16string text = std::u16string(shape.start) + repeated(shape.unit, count);
    HTMLDocument::documentWithText(text);
  });
}

INSTANTIATE_TEST_SUITE_P(Shapes, HTMLShapesTest, testing::Range(std::size_t{0}, std::size(kShapes)));

TEST(HTMLLimitsTest, makesDeepElementsSiblings) {
  const std::u16string deep =
      u"<body>" + repeated(u"<div>a<i>b</i>c", 1000) + repeated(u"d</div>", 1000) + u"<table><td><template>e";
  for (const std::uint32_t depth : {3U, 4U, 9U, 512U}) {
    const HTMLDocument document = HTMLDocument::documentWithText(deep, {.depth = depth});
    EXPECT_TRUE(isSoundTree(document, depth));
    EXPECT_EQ(allText(document), repeated(u"abc", 1000) + repeated(u"d", 1000));
  }
  const HTMLDocument shallow = HTMLDocument::documentWithText(u"<div><p><b>a</b>c", {.depth = 5});
  const HTMLDocument cut = HTMLDocument::documentWithText(u"<div><p><b>a</b>c", {.depth = 4});
  EXPECT_EQ(shallow.node(shallow.node(shallow.node(shallow.body()).firstChild).firstChild).nextSibling,
            kNoHTMLNode);
  const HTMLNode &paragraph = cut.node(cut.node(cut.node(cut.body()).firstChild).firstChild);
  EXPECT_EQ(paragraph.firstChild, kNoHTMLNode);
  EXPECT_EQ(cut.node(paragraph.nextSibling).name, "b"_atom);
  EXPECT_EQ(cut.text(cut.node(cut.node(paragraph.nextSibling).nextSibling)), u"c");
}

TEST(HTMLLimitsTest, endsPagesAndTags) {
  const std::u16string page = repeated(u"<p>x", 1000);
  const HTMLDocument few = HTMLDocument::documentWithText(page, {.nodes = 500});
  EXPECT_TRUE(few.isCut());
  EXPECT_NEAR(few.nodeCount(), 500, 3);
  const HTMLDocument start = HTMLDocument::documentWithText(page, {.units = 400});
  EXPECT_TRUE(start.isCut());
  EXPECT_EQ(allText(start), repeated(u"x", 100));
  EXPECT_FALSE(HTMLDocument::documentWithText(page, {.units = 4000}).isCut());

  std::u16string tag = u"<body";
  for (int i = 0; i < 2000; ++i) {
    tag += u" a";
    for (const char c : std::to_string(i)) tag += static_cast<unichar>(c);
  }
  const HTMLDocument one = HTMLDocument::documentWithText(tag + u"><body b=1>");
  EXPECT_EQ(one.node(one.body()).count, HTMLLimits().attributes);
  const HTMLDocument two = HTMLDocument::documentWithText(u"<body a=1 b=2 c=3><body d=4>", {.attributes = 2});
  EXPECT_EQ(two.node(two.body()).count, 2U);
  EXPECT_EQ(two.attribute(two.node(two.body()), "b"_atom), u"2");
}

TEST(HTMLLimitsTest, endsFormattingThatIsNeverClosed) {
  std::u16string start = u"<p>";
  for (int i = 0; i < 100; ++i) {
    start += u"<b a";
    for (const char c : std::to_string(i)) start += static_cast<unichar>(c);
    start += u">";
  }
  const std::u16string one = start + u"<p>x";
  const std::u16string paragraphs = start + repeated(u"<p>x", 5000);
  // The last 64 begin again, the first 36 do not.
  const HTMLDocument page = HTMLDocument::documentWithText(one);
  std::size_t depth = 0;
  HTMLNodeIndex i = page.node(page.node(page.body()).lastChild).firstChild;
  for (; page.node(i).isHTML("b"_atom); i = page.node(i).firstChild) ++depth;
  EXPECT_EQ(depth, 64U);
  // Text goes on without them when there were too many, and is all there.
  const HTMLDocument many = HTMLDocument::documentWithText(paragraphs);
  EXPECT_EQ(allText(many), repeated(u"x", 5000));
  EXPECT_TRUE(page.node(page.node(page.node(page.body()).lastChild).firstChild).isElement());
  EXPECT_FALSE(many.node(many.node(many.node(many.body()).lastChild).firstChild).isElement());
}

}  // namespace
}  // namespace nimbo
