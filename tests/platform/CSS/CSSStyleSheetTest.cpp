// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSStyleSheet.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/CSS/CSSRuleIndex.hpp"
#include "tests/platform/CSS/CSSPage.hpp"
#include "tests/support/GrowthRatio.hpp"

namespace nimbo {
namespace {

CSSStyleSheet sheetOf(std::string_view text, CSSNames &names, bool onlyKnownNames = false) {
  CSSSheetReading reading;
  reading.selectors.names = &names;
  reading.selectors.onlyKnownNames = onlyKnownNames;
  return {NSString::stringWithUTF8String(text), reading};
}

/// What holds for an element by the sheet, the winner of each property last.
std::string styleOf(const CSSRuleIndex &index, const CSSPage &page, CSSElementIndex element) {
  CSSSelectorMatcher matcher(page.elements);
  std::vector<CSSMatch> matches;
  index.match(matcher, element, matches);
  std::string text;
  for (const CSSMatch &match : matches) {
    if (!text.empty()) text += " | ";
    constexpr const char *kElements[] = {"", "before ", "after ", "marker "};
    text += kElements[static_cast<std::size_t>(match.pseudoElement)] + textOfDeclarations(match.declarations);
  }
  return text;
}

std::string styleBySheet(std::string_view text, bool onlyKnownNames = false) {
  CSSNames names;
  const CSSPage page("<html><div class=a id=i><p class='b c'></></></>", names);
  const CSSStyleSheet sheet = sheetOf(text, names, onlyKnownNames);
  CSSRuleIndex index;
  index.add(sheet);
  index.finish();
  return styleOf(index, page, 2);
}

TEST(CSSStyleSheet, ReadsRulesAndGoesOnBehindErrors) {
  struct Case {
    std::string_view sheet, style;
  };
  for (const Case &test : std::initializer_list<Case>{
           {"p{float:left}", "float: left"},
           {"p{float:left", "float: left"},
           {"p{float:left} p", "float: left"},
           {"p{float:none}.b{float:left}p{float:right}", "float: none | float: right | float: left"},
           {".b{float:none}p.b{float:left}.c{float:right}#i p{top:0}",
            "float: none | float: right | float: left | top: 0px"},
           {"u,p,.b{float:left}", "float: left"},
           {"p,:foo{float:left}.b{float:none}", "float: none"},
           {"p}{float:left}p{float:none}", "float: none"},
           {"}p{float:left}p{float:none}", "float: none"},
           {";p{float:left}p{float:none}", "float: none"},
           {"p{(float:left}p{float:none}", ""},
           {"p[{float:left}]{}p{float:none}", "float: none"},
           {"<!-- p{float:left} -->", "float: left"},
           {"/* p{float:left}", ""},
           {"p{}.u{float:left}", ""},
           {"@charset 'x';@namespace x url(y);p{float:left}", "float: left"},
           {"@font-face{float:none}@keyframes x{from{float:none}}@page{float:none}p{float:left}",
            "float: left"},
           {"@foo x{p{float:none}} @foo; p{float:left}", "float: left"},
           {"@media screen{p{float:left}}@media print{p{float:none}}", "float: left"},
           {"@media screen{@media (min-width:1px){p{float:left}}p{top:0}}", "float: left | top: 0px"},
           {"@media screen{p{float:left;}x}p{float:none}", "float: left | float: none"},
           {"@media screen{;p{float:left}", "float: left"},
           {"@media screen;p{float:left}", "float: left"},
           {"@media screen{<!--p{float:none}p{float:left}-->p{float:right}}", "float: left"},
           {"@media{p{float:left}}", "float: left"},
           {"@container (min-width:400px){p{float:left}}@container side (width<400px){p{float:none}}",
            "float: left"},
           {"@container not (width>9999px){p{float:left}}@container style(--x:y){p{top:0}}@container{p{top:0}}",
            "float: left"},
           {"@supports (display:grid){p{float:left}}@supports (foo:bar){p{float:none}}", "float: left"},
           {"@supports not (foo:bar){p{float:left}}", "float: left"},
           {"@layer a,b;@layer b{p{float:left}}@layer a{p#x,p{float:none}}p{top:0}",
            "float: none | float: left | top: 0px"},
           {"@layer a{p{float:left}@layer c{p.b{float:none}}}@layer a.c{p{top:0}}",
            "top: 0px | float: none | float: left"},
           {"@layer{p{float:left}}@layer{p{float:none}}", "float: left | float: none"},
           {"@layer a b{p{float:left}}", ""},
           {"div{p{float:left}&>.b{float:none}}", "float: left | float: none"},
           {"p{float:left;&.b{top:0}left:0}", "float: left | left: 0px | top: 0px"},
           {".a{.c &,.x{top:0}p:is(&>*){float:left}}", "float: left"},
           {".a,#i{p{float:left}}#i p{float:none}", "float: left | float: none"},
           {"div{@media screen{top:0;p{float:left}}@media print{p{float:none}}}", "float: left"},
           {"p{a:hover{float:left}float:none}", "float: none"},
           {"p{.x float:left;float:none}", "float: none"},
           {"p{@media screen{float:left}}", "float: left"},
           {"& p{float:left}", "float: left"},
           {"p::before{content:'x'}p:after{top:0}p::marker{left:0}p{float:none}",
            "float: none | before content: [\"x\"] | after top: 0px | marker left: 0px"},
           {"p::before,p{float:left}", "float: left | before float: left"},
       }) {
    EXPECT_EQ(styleBySheet(test.sheet), test.style) << test.sheet;
    EXPECT_EQ(styleBySheet(test.sheet, true), test.style) << test.sheet;
  }
}

TEST(CSSStyleSheet, KnowsWhatItImports) {
  CSSNames names;
  const CSSStyleSheet sheet = sheetOf(
      "@charset 'utf-8';@import 'a';@layer x;@import url(b) screen;@import url('c') print;@import url(d) layer;"
      "@import 'e' layer(y.z) supports(display:grid) (min-width:1px);@import 'f' supports(foo:bar);@import g;"
      "p{float:left}@import 'h';",
      names);
  std::string text;
  for (const CSSImport &import : sheet.imports()) {
    text += textOf(import.url) + (import.layer == kNoCSSLayer ? "" : "@" + std::to_string(import.layer)) + "/" +
            std::to_string(import.precedingLayers) + " ";
  }
  EXPECT_EQ(text, "a/0 b/1 d@1/1 e@3/2 ");
  EXPECT_EQ(sheet.layers().size(), 4u);
}

TEST(CSSStyleSheet, ImportsNothingInWrongPlaces) {
  for (const std::string_view text :
       {"@media screen{@import 'a';}", "@layer x{@import 'a';}", "p{@import 'a';}", "p{}@import 'a';",
        "@layer x{}@import 'a';", "@namespace y;@import 'a';", "@import 'a'{}", "@import a;", "@import;",
        "@import 'a' layer();", "@import 'a' layer(x y);", "@import 'a' layer(x.);",
        "@import 'a' layer screen or x;", "@import 'a' layer supports(foo:bar);"}) {
    CSSNames names;
    EXPECT_TRUE(sheetOf(text, names).imports().empty()) << text;
  }
  for (const std::string_view text :
       {"@import 'a'", "@IMPORT 'a' all;", "<!--@import 'a';", "@charset 'x';@layer x;@import 'a';",
        "@import 'a' LAYER(x.y) screen;", "@import 'a' supports(not (foo:bar));"}) {
    CSSNames names;
    EXPECT_EQ(sheetOf(text, names).imports().size(), 1u) << text;
  }
}

TEST(CSSStyleSheet, OrdersLayersOfSeveralSheets) {
  CSSNames names;
  const CSSPage page("<p></>", names);
  const CSSStyleSheet outer =
      sheetOf("@layer b;@import 'x' layer(a);@import 'y';@layer d{p{top:0}}@layer b{p{float:left}}", names);
  const CSSStyleSheet inner = sheetOf("p{float:none}@layer c{p{float:right}}", names);
  const CSSStyleSheet other = sheetOf("@layer e{p{top:1px}}", names);
  CSSRuleIndex index;
  const CSSImport &import = outer.imports()[0];
  index.addLayers(outer, import.precedingLayers);
  index.add(inner, index.addedLayer(outer, import.layer));
  index.addLayers(outer, outer.imports()[1].precedingLayers);
  index.add(other);
  index.add(outer);
  index.finish();
  EXPECT_EQ(styleOf(index, page, 0), "float: left | float: right | float: none | top: 1px | top: 0px");
}

TEST(CSSStyleSheet, LeavesOutWhatThePageCannotHave) {
  CSSNames names;
  const CSSPage page("<p class=a></>", names);
  const std::size_t before = names.size();
  const CSSStyleSheet sheet = sheetOf(
      ".x{top:0} p .x{top:0} #y{top:0} [z]{top:0} q{top:0} p:not(.x){top:0} :is(.x,p){top:0} .x{p{top:0}}",
      names, true);
  EXPECT_EQ(sheet.rules().size(), 2u);
  EXPECT_EQ(names.size(), before);
}

/// A table that stands on another one finds its names under their numbers.
TEST(CSSStyleSheet, SharesNamesOfABaseTable) {
  CSSNames base;
  const CSSStyleSheet userAgent = sheetOf("p{float:left}", base);
  CSSNames names(&base);
  const CSSPage page("<html><p class=p></></>", names);
  CSSRuleIndex index;
  index.add(userAgent);
  index.finish();
  EXPECT_EQ(styleOf(index, page, 1), "float: left");
  EXPECT_EQ(names.find(u"p"), base.find(u"p"));
  EXPECT_EQ(names.text(names.intern(u"new")), u"new");
  EXPECT_EQ(base.find(u"new"), kNoCSSName);
  const std::size_t before = names.size();
  for (int i = 0; i < 2000; ++i) names.intern(unitsOf(std::to_string(i % 1000)));
  EXPECT_EQ(names.size(), before + 1000);
}

TEST(CSSStyleSheet, LimitsTheDepthOfBlocksAndTheTokensOfPreludes) {
  const auto nested = [](std::size_t depth) {
    std::string text;
    for (std::size_t i = 1; i < depth; ++i) text += "@media screen{";
    text += "p{float:left}" + std::string(depth - 1, '}');
    return styleBySheet(text + "p{top:0}");
  };
  EXPECT_EQ(nested(CSSStyleSheet::kMaximumNesting), "float: left | top: 0px");
  EXPECT_EQ(nested(CSSStyleSheet::kMaximumNesting + 1), "top: 0px");
  // The blank and the first word are tokens, too.
  constexpr std::size_t kMostTokens = 1 << 16;
  const auto asked = [](std::size_t tokens) {
    return styleBySheet("@media screen" + std::string(tokens - 2, ',') + "{p{float:left}}p{top:0}");
  };
  EXPECT_EQ(asked(kMostTokens), "float: left | top: 0px");
  EXPECT_EQ(asked(kMostTokens + 1), "top: 0px");
}

/// Rules and selectors in each other multiply; the stack must not.
TEST(CSSStyleSheet, BoundsTheDepthOfMatching) {
  std::string chain, sheet, markup;
  for (int i = 0; i < 250; ++i) chain += " a";
  for (int rule = 0; rule < 30; ++rule) {
    std::string selector = rule == 0 ? "a" : "&";
    for (int nested = 0; nested < 30; ++nested)
      selector = ":is(" + selector + ")" + (nested % 10 == 0 ? chain : " a");
    sheet += selector + "{";
  }
  sheet += "top:0";
  for (int i = 0; i < 50000; ++i) markup += "<a>";
  for (int i = 0; i < 50000; ++i) markup += "</>";
  CSSNames names;
  const CSSPage page(markup, names);
  const CSSStyleSheet read = sheetOf(sheet, names);
  ASSERT_EQ(read.rules().size(), 1u);
  CSSSelectorMatcher matcher(page.elements, 10'000'000);
  EXPECT_FALSE(matcher.matches(read.selectors(read.rules()[0])[0], 49999));
}

TEST(CSSStyleSheet, RulesThatHoldForManyElementsAreLimited) {
  constexpr std::size_t kRules = 1000, kElements = 1000, kBudget = 1'000'000;
  std::string sheet, markup = "<r>";
  for (std::size_t i = 0; i < kRules; ++i) sheet += "*{top:0}";
  for (std::size_t i = 0; i < kElements; ++i) markup += "<a></>";
  CSSNames names;
  const CSSPage page(markup + "</>", names);
  const CSSStyleSheet read = sheetOf(sheet, names);
  CSSRuleIndex index;
  index.add(read);
  index.finish();
  CSSSelectorMatcher matcher(page.elements, kBudget);
  std::vector<CSSMatch> matches;
  index.match(matcher, 1, matches);
  EXPECT_EQ(matches.size(), kRules);
  for (CSSElementIndex i = 2; i < kElements; ++i) index.match(matcher, i, matches);
  EXPECT_LT(matches.size(), kBudget / 10);
}

TEST(CSSStyleSheet, ReadsEverySheetInLinearTime) {
  for (const std::string_view part : {"{",
                                      "}",
                                      "(",
                                      "a{",
                                      "@media x{",
                                      "@media screen{",
                                      "@layer a{",
                                      "@layer a.b;",
                                      "@supports (",
                                      "a{b:c}",
                                      "a,",
                                      "a{color:red;",
                                      "@import 'a';",
                                      "&{",
                                      "a:hover{",
                                      "a{a:hover{",
                                      ":is(a,",
                                      "@x",
                                      "'",
                                      "\\",
                                      "/*",
                                      "url(",
                                      "a{--x:{",
                                      "a{&:is(&,&){",
                                      "@layer{",
                                      "<!--",
                                      "@supports not (not ("})
    expectLinearTime(3000, [&](std::size_t n) {
      std::string text;
      for (std::size_t i = 0; i < n; ++i) text += part;
      CSSNames names;
      const CSSStyleSheet sheet = sheetOf(text, names);
      CSSRuleIndex index;
      index.add(sheet);
      index.finish();
    });
}

}  // namespace
}  // namespace nimbo
