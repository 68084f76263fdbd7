// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleResolver.hpp"

#include <gtest/gtest.h>

#include "tests/platform/WebKit/Style/StyledPage.hpp"

namespace nimbo::detail {
namespace {

TEST(StyleResolver, TakesFromTheParentWhatIsSaidToBeInherited) {
  expect({
      {u"<div style='border:3px solid red;background:lime;margin:1px 2px;display:inline;float:left'>"
       u"<p style='border:inherit' id=x>",
       "border", "3 3 3 3"},
      {u"<div style='border:0 solid'><p style='border-style:inherit;border-width:3px' id=x>", "border",
       "0 0 0 0"},
      {u"<div style='background:lime'><p style='background:inherit' id=x>", "background", "0 255 0"},
      {u"<div style='border:3px solid red'><p style='border:9px solid;border-color:inherit' id=x>",
       "border-color", "255 0 0"},
      {u"<div style='margin:1px 2px'><p style='margin:inherit' id=x>", "margin", "1 2 1 2"},
      {u"<div style='float:left'><p style='float:inherit' id=x>", "float", "left"},
  });
}

TEST(StyleResolver, MakesBlocksOfWhatFloats) {
  expect({
      {u"<p style='display:inline-flex;float:left' id=x>", "display", "flex"},
      {u"<p style='display:inline-grid;position:absolute' id=x>", "display", "grid"},
      {u"<p style='display:inline-table;float:left' id=x>", "display", "table"},
      {u"<p style='float:inline-start' id=x>", "float", "left"},
      {u"<p style='float:inline-end' id=x>", "float", "right"},
      {u"<p dir=rtl style='float:inline-start' id=x>", "float", "right"},
      {u"<p dir=rtl style='float:inline-end' id=x>", "float", "left"},
  });
}

TEST(StyleResolver, FollowsTheOrderOfTheCascade) {
  expect({
      {u"<style>#x{color:red}p.k{color:lime}</style><p class=k id=x>", "color", "255 0 0"},
      {u"<style>p{color:red!important}</style><p style='color:lime' id=x>", "color", "255 0 0"},
      {u"<style>p{color:red!important}</style><p style='color:lime!important' id=x>", "color", "0 255 0"},
      {u"<style>@layer a,b;@layer b{p{color:lime}}@layer a{#x{color:red}}</style><p id=x>", "color", "0 255 0"},
      {u"<style>p{color:lime}@layer a{#x{color:red}}</style><p id=x>", "color", "0 255 0"},
      {u"<style>@layer a{p{color:lime!important}}p{color:red!important}</style><p id=x>", "color", "0 255 0"},
      {u"<style>@layer a{p{color:lime}}@layer b{p{color:red;color:revert-layer}}</style><p id=x>", "color",
       "0 255 0"},
      {u"<style>p{color:lime}</style><p style='color:revert-layer' id=x>", "color", "0 255 0"},
      {u"<style>b{font-weight:300}b{font-weight:revert}</style><b id=x>", "weight", "700"},
      {u"<style>b{all:unset}</style><p style='color:red'><b id=x>", "weight", "400"},
      {u"<style>b{all:unset}</style><p style='color:red'><b id=x>", "color", "255 0 0"},
      {u"<style>b{all:initial}</style><p style='color:red'><b id=x>", "color", "0 0 0"},
      {u"<style media=print>p{color:red}</style><p id=x>", "color", "0 0 0"},
      {u"<style>p{margin-left:1px;margin-inline-start:2px}</style><p id=x>", "margin", "16 0 16 2"},
      {u"<style>p{margin-inline-start:2px;margin-left:1px}</style><p id=x>", "margin", "16 0 16 1"},
      {u"<style>p{margin-inline-start:2px}</style><p dir=rtl id=x>", "margin", "16 2 16 0"},
      {u"<p style='margin:5px'><b style='margin:inherit' id=x>", "margin", "5 5 5 5"},
      {u"<style>:root{--m:3px}@layer a{p{margin:var(--m)}}@layer b{p{margin:revert-layer}}</style><p id=x>",
       "margin", "3 3 3 3"},
      {u"<style>:root{--m:3px}@layer a{p{margin-inline:var(--m)}}@layer b{p{margin-left:revert-layer}}</style>"
       u"<p id=x>",
       "margin", "16 3 16 3"},
      {u"<div style='letter-spacing:2px'><b style='letter-spacing:normal' id=x>", "spacing", "0"},
      {u"<style>p{display:unset}</style><p id=x>", "display", "inline"},
      {u"<style>p{margin:unset}</style><p id=x>", "margin", "0 0 0 0"},
      {u"<style>p{float:left;float:unset}</style><p id=x>", "float", "none"},
      {u"<pre><b style='white-space:unset' id=x>", "white-space", "pre"},
      {u"<div style='text-align:right'><b style='text-align:unset' id=x>", "align", "right"},
      {u"<div style='visibility:hidden'><b style='visibility:unset' id=x>", "visibility", "hidden"},
      {u"<div style='visibility:hidden'><b style='visibility:initial' id=x>", "visibility", "visible"},
      {u"<div style='text-indent:2px'><b style='text-indent:initial' id=x>", "indent", "0"},
      {u"<ol><li style='list-style-type:initial' id=x>", "list", "disc"},
      {u"<div dir=rtl><p style='direction:unset' id=x>", "direction", "rtl"},
      {u"<div dir=rtl><p style='direction:initial' id=x>", "direction", "ltr"},
      {u"<div dir=rtl><p style='all:initial' id=x>", "direction", "rtl"},
  });
}

TEST(StyleResolver, ReplacesVariables) {
  expect({
      {u"<style>:root{--a:lime}p{color:var(--a)}</style><p id=x>", "color", "0 255 0"},
      {u"<style>:root{--a:red}p{color:var(--a)}</style><p style='--a:lime' id=x>", "color", "0 255 0"},
      {u"<style>p{color:red;color:var(--none)}</style><div style='color:lime'><p id=x>", "color", "0 255 0"},
      {u"<style>p{margin:1px;margin:var(--m,3px 4px)}</style><p id=x>", "margin", "3 4 3 4"},
      {u"<style>p{font:var(--f)}</style><p style='--f:italic 700 10px/2 x' id=x>", "line-height", "20"},
      {u"<style>:root{--a:var(--b);--b:var(--a)}p{color:var(--a,lime)}</style><p id=x>", "color", "0 255 0"},
      {u"<style>p{color:var(--k)}</style><div style='color:lime'><p style='--k:inherit' id=x>", "color",
       "0 255 0"},
      {u"<style>p{margin-inline:var(--m)}</style><p dir=rtl style='--m:1px 2px' id=x>", "margin", "16 1 16 2"},
  });
}

TEST(StyleResolver, WorksOutSizes) {
  expect({
      {u"<p style='font-size:20px'><b style='font-size:1.5em' id=x>", "size", "30"},
      {u"<html style='font-size:10px'><p style='font-size:2rem' id=x>", "size", "20"},
      {u"<p style='font-size:calc(50% + 2px)' id=x>", "size", "10"},
      {u"<p style='font-size:2em'><b style='font-size:larger' id=x>", "size", "38.4"},
      {u"<code id=x>", "size", "13"},
      {u"<code style='font-family:monospace,monospace' id=x>", "size", "16"},
      {u"<p style='font-size:1.2em'><code id=x>", "size", "15.6"},
      {u"<p style='font-size:1.2rem'><code id=x>", "size", "19.2"},
      {u"<p style='font-size:14px'><code id=x>", "size", "14"},
      {u"<p style='font-size:100%'><code id=x>", "size", "13"},
      {u"<p style='font-size:2ex'><code id=x>", "size", "13"},
      {u"<p style='font-size:2ch'><code id=x>", "size", "13"},
      {u"<p style='font-size:1ic'><code id=x>", "size", "13"},
      {u"<p style='font-size:1cap'><code id=x>", "size", "9.1"},
      {u"<p style='font-size:1lh'><code id=x>", "size", "19.2"},
      {u"<p style='font-size:larger'><code id=x>", "size", "15.6"},
      {u"<p style='font-size:smaller'><code id=x>", "size", "10.833"},
      {u"<div style='line-height:20px'><p style='line-height:normal' id=x>", "line-height", "normal"},
      {u"<div style='line-height:2'><p style='line-height:initial' id=x>", "line-height", "normal"},
      {u"<div style='line-height:2'><p style='line-height:-1px' id=x>", "line-height", "32"},
      {u"<pre style='font-size:large'><b style='font-family:serif' id=x>", "size", "18"},
      {u"<html><pre style='font-size:small' id=x>", "size", "10"},
      {u"<p style='font-size:.1em'><b style='font-size:20em' id=x>", "size", "32"},
      {u"<p style='font-size:.1em' id=x>", "size", "6"},
      {u"<p style='font-size:0em' id=x>", "size", "0"},
      {u"<p style='font-size:2px' id=x>", "size", "2"},
      {u"<p style='font-size:1e9px' id=x>", "size", "10000"},
      {u"<p style='line-height:2;font-size:10px'><b style='font-size:30px' id=x>", "line-height", "60"},
      {u"<p style='line-height:200%;font-size:10px'><b style='font-size:30px' id=x>", "line-height", "20"},
      {u"<p style='text-indent:2em;font-size:8px' id=x>", "indent", "16"},
      {u"<p style='width:calc(10% + 20%)' id=x>", "width", "30%"},
      {u"<p style='width:calc(10% + 1px)' id=x>", "width", "auto"},
      {u"<p style='width:10vw' id=x>", "width", "128"},
      {u"<p style='width:10vh' id=x>", "width", "72"},
      {u"<p style='font-size:10px;vertical-align:50%;line-height:30px' id=x>", "vertical", "15"},
      {u"<p style='font-weight:350'><b style='font-weight:lighter' id=x>", "weight", "100"},
      {u"<p style='border:solid;border-left:none' id=x>", "border", "3 3 3 0"},
      {u"<p style='border:1px solid;color:lime' id=x>", "border-color", "0 255 0"},
  });
}

TEST(StyleResolver, KnowsTheSizesOfKeywords) {
  const struct {
    std::u16string keyword;
    std::string usual, monospace, ofOldPages;
  } cases[] = {{u"xx-small", "9", "9", "9"},    {u"x-small", "10", "10", "9"},   {u"small", "13", "12", "10"},
               {u"medium", "16", "13", "13"},   {u"large", "18", "16", "16"},    {u"x-large", "24", "20", "20"},
               {u"xx-large", "32", "26", "26"}, {u"xxx-large", "48", "39", "40"}};
  for (const auto &[keyword, usual, monospace, ofOldPages] : cases)
    expect({{u"<p style='font-size:" + keyword + u"' id=x>", "size", usual},
            {u"<html><p style='font-size:" + keyword + u"' id=x>", "size", usual},
            {u"<pre style='font-size:" + keyword + u"' id=x>", "size", monospace},
            {u"<html><pre style='font-size:" + keyword + u"' id=x>", "size", ofOldPages}});
}

TEST(StyleResolver, WeighsByTheWeightAround) {
  const struct {
    std::u16string around;
    std::string bolder, lighter;
  } cases[] = {{u"1", "400", "1"},     {u"99", "400", "99"},   {u"100", "400", "100"},
               {u"349", "400", "100"}, {u"350", "700", "100"}, {u"549", "700", "100"},
               {u"550", "900", "400"}, {u"749", "900", "400"}, {u"750", "900", "700"},
               {u"899", "900", "700"}, {u"900", "900", "700"}, {u"1000", "1000", "700"}};
  for (const auto &[around, bolder, lighter] : cases)
    expect(
        {{u"<p style='font-weight:" + around + u"'><i style='font-weight:bolder' id=x>", "weight", bolder},
         {u"<p style='font-weight:" + around + u"'><i style='font-weight:lighter' id=x>", "weight", lighter}});
}

TEST(StyleResolver, CarriesDecorationsIntoWhatFlows) {
  expect({
      {u"<u style='color:red'><div style='color:lime'><b id=x>", "lines", "under 255 0 0"},
      {u"<u><b style='text-decoration:none' id=x>", "lines", "under 0 0 0"},
      {u"<u><b style='display:inline-block' id=x>", "lines", ""},
      {u"<u><b style='display:inline-table' id=x>", "lines", ""},
      {u"<u><b style='float:left' id=x>", "lines", ""},
      {u"<u><b style='position:fixed' id=x>", "lines", ""},
      {u"<u><b style='position:relative' id=x>", "lines", "under 0 0 0"},
      {u"<u style='text-decoration:overline line-through blue'><s id=x>", "lines", "over 0 0 255through 0 0 0"},
      {u"<b style='float:left' id=x>", "display", "block"},
      {u"<p style='display:inline-flex'><b id=x>", "display", "block"},
      {u"<p style='display:flex'><b style='float:left' id=x>", "float", "none"},
      {u"<p style='display:grid'><b style='display:inline-table' id=x>", "display", "table"},
      {u"<b style='position:absolute;display:table-cell' id=x>", "display", "block"},
  });
}

TEST(StyleResolver, HasTheWaysOfOldBrowsersForOldPages) {
  expect({
      {u"<html><body style='color:red;font:italic bold 20px x'><table id=x>", "color", "255 0 0"},
      {u"<html><body style='color:red'><div style='color:blue'><table><tr><td id=x>", "color", "255 0 0"},
      {u"<html><body style='font:italic bold 20px x'><table><tr><td id=x>", "size", "16"},
      {u"<body style='font:italic bold 20px x'><table><tr><td id=x>", "size", "20"},
      {u"<html><style>.K{color:lime}</style><p class=k id=x>", "color", "0 255 0"},
      {u"<style>.K{color:lime}</style><p class=k id=x>", "color", "0 0 0"},
      {u"<html><p style='color:00ff00;margin:5' id=x>", "margin", "5 5 5 5"},
  });
}

TEST(StyleResolver, MakesPseudoElementsOfRules) {
  StyledPage page(
      u"<!DOCTYPE html><style>p::before{content:'a';color:lime}p::after{color:red}li::marker{color:red;"
      u"content:none}i::before{content:'b';display:none}</style><p>a<q>b</q><ul><li>c</ul><i>d</i>");
  const auto pseudo = [&](HTMLAtom name, CSSPseudoElement which) {
    HTMLNodeIndex i = 0;
    while (!page.document().node(i).isHTML(name)) i = page.document().nextInTree(i);
    return page.resolver().pseudoStyleOf(i, which, page.styleOf(i));
  };
  const auto before = pseudo("p"_atom, CSSPseudoElement::kBefore);
  ASSERT_TRUE(before);
  EXPECT_EQ(described(*before, "color"), "0 255 0");
  EXPECT_EQ(before->content.values()[0].text(), u"a");
  EXPECT_FALSE(pseudo("p"_atom, CSSPseudoElement::kAfter));
  EXPECT_FALSE(pseudo("p"_atom, CSSPseudoElement::kMarker));
  EXPECT_FALSE(pseudo("i"_atom, CSSPseudoElement::kBefore));
  ASSERT_TRUE(pseudo("q"_atom, CSSPseudoElement::kAfter));
  const auto marker = pseudo("li"_atom, CSSPseudoElement::kMarker);
  ASSERT_TRUE(marker);
  EXPECT_EQ(described(*marker, "display"), "none");
}

AuthorSheet sheet(NSString text, std::vector<AuthorSheet> imports = {}, std::u16string_view media = {}) {
  return {std::move(text), media, std::move(imports)};
}

std::string colorWith(std::vector<AuthorSheet> sheets) {
  StyledPage page(u"<!DOCTYPE html><p id=x>", std::move(sheets));
  return described(page.styleOf(page.elementWithId(u"x")), "color");
}

TEST(StyleResolver, PutsImportedSheetsInFrontAndIntoLayers) {
  EXPECT_EQ(colorWith({sheet(u"@import 'a';@import 'b' print;@import 'c'"_ns,
                             {sheet(u"p{color:red}"_ns), sheet(u"p{color:lime}"_ns)})}),
            "0 255 0");
  EXPECT_EQ(colorWith({sheet(u"@import 'a';p{color:lime}"_ns, {sheet(u"p{color:red}"_ns)})}), "0 255 0");
  EXPECT_EQ(colorWith({sheet(u"@layer b,a;@import 'a' layer(a);@layer b{p{color:red}}"_ns,
                             {sheet(u"#x{color:lime}"_ns)})}),
            "0 255 0");
  EXPECT_EQ(colorWith({sheet(u"@import 'a';p{color:lime}"_ns, {sheet(NSString())})}), "0 255 0");
  EXPECT_EQ(colorWith({sheet(u"p{color:red}"_ns, {}, u"print and (width:1px)")}), "0 0 0");
}

TEST(StyleResolver, StopsAtTheDepthOfImports) {
  const auto chain = [](std::uint32_t depth) {
    AuthorSheet inner = sheet(u"p{color:lime}"_ns);
    for (std::uint32_t i = 0; i < depth; ++i) inner = sheet(u"@import 'a';"_ns, {inner});
    return inner;
  };
  EXPECT_EQ(colorWith({chain(AuthorSheet::kMaximumImportDepth)}), "0 255 0");
  EXPECT_EQ(colorWith({chain(AuthorSheet::kMaximumImportDepth + 1)}), "0 0 0");
}

TEST(StyleResolver, EndsOnHostilePages) {
  std::u16string deep = u"<!DOCTYPE html>", style = u"<!DOCTYPE html><p style='", rules;
  for (int i = 0; i < 100'000; ++i) deep += u"<div style='font-size:2em'>";
  for (int i = 0; i < 300'000; ++i) style += u"color:red;--a:var(--b)var(--b);";
  for (int i = 0; i < 200'000; ++i) rules += u"div div *{color:red}";
  for (const std::u16string &text : {deep, style + u"' id=x>"}) {
    StyledPage page(text, {sheet(NSString::stringWithCharacters(rules).substringWithRange({0, 20'000}))});
    HTMLDocument &document = page.document();
    ComputedStyle parent = page.resolver().rootStyle();
    for (HTMLNodeIndex i = document.body(); i != kNoHTMLNode; i = document.node(i).firstChild)
      if (document.node(i).isElement()) parent = page.resolver().styleOf(i, parent);
    EXPECT_LE(parent.inherited.fontSize, 10'000);
  }
  EXPECT_EQ(colorWith({sheet(NSString::stringWithCharacters(rules + u"p{color:lime}"))}), "0 255 0");
}

}  // namespace
}  // namespace nimbo::detail
