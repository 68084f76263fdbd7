// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSSelector.hpp"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "platform/CSS/CSSSelectorMatcher.hpp"
#include "platform/CSS/CSSSelectorReader.hpp"
#include "tests/platform/CSS/CSSPage.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

/// The indexes of the elements that a list of selectors matches; "invalid" for a list that is.
std::string matchesOf(std::string_view selectors, const CSSPage &page, bool onlyKnownNames = false) {
  const std::u16string units = unitsOf(selectors);
  CSSArena arena;
  const auto list = readSelectors(
      units, {.names = &page.elements.names(), .mode = page.elements.mode(), .onlyKnownNames = onlyKnownNames},
      arena);
  if (!list) return "invalid";
  CSSSelectorMatcher matcher(page.elements);
  std::string text;
  for (CSSElementIndex i = 0; i < page.elements.size(); ++i) {
    bool isMatched = false;
    for (const CSSSelector &selector : *list) isMatched = isMatched || matcher.matches(selector, i);
    if (isMatched) text += (text.empty() ? "" : " ") + std::to_string(i);
  }
  return text;
}

TEST(CSSSelector, MatchesByTheStandard) {
  CSSNames names;
  const CSSPage page(
      "<html lang=en-US dir=ltr>"                             // 0
      "<body id=B class='x y'>"                               // 1
      "<div class=a><p>text</><p id=p class='b  a'><b></>"    // 2 div, 3 p, 4 p, 5 b
      "<i></></></>"                                          // 6 i
      "<div class='A c' title='Hello world' data-x=Foo-bar>"  // 7
      "<a href=x></><a></><input type=CheckBox checked></><input type=text required disabled></></>"  // 8 9 10
                                                                                                      // 11
      "<ul dir=rtl lang=de><li></><li class=m></><li class=m></><li></><li class=m></></>"  // 12; 13-17
      "<SvG><linearGradient></><foreignObject></></></></>",                                // 18 19 20
      names);
  struct Case {
    std::string_view selectors, elements;
  };
  for (const Case &test : std::initializer_list<Case>{
           {"*", "0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20"},
           {"div", "2 7"},
           {"DIV", "2 7"},
           {"linearGradient", "19"},
           {"lineargradient", ""},
           {"#B", "1"},
           {"#b", ""},
           {".a", "2 4"},
           {".A", "7"},
           {"p.a.b", "4"},
           {"div p", "3 4"},
           {"body > p", ""},
           {"body>div>p", "3 4"},
           {"p + p", "4"},
           {"b + i", "6"},
           {"b+*", "6"},
           {"div ~ ul", "12"},
           {"div ~ div ~ ul > li + li", "14 15 16 17"},
           {"html div p i, a", "6 8 9"},
           {"[title]", "7"},
           {"[TITLE='Hello world']", "7"},
           {"[title=Hello]", ""},
           {"[title~=world]", "7"},
           {"[class~='']", ""},
           {"[title~=wor]", ""},
           {"[title!=world]", "invalid"},
           {"[title^=Hel]", "7"},
           {"[title^='']", ""},
           {"[title$=rld]", "7"},
           {"[title*='o w']", "7"},
           {"[title*='O W']", ""},
           {"[title*='O W' i]", "7"},
           {"[ title *= 'O W' i ]", "7"},
           {"[ title = 'Hello world' ]", "7"},
           {"[/**/data-x/**/|=/**/Foo/**/]", "7"},
           {"[data-x|=Foo]", "7"},
           {"[data-x|=Foo-bar]", "7"},
           {"[data-x|=Fo]", ""},
           {"[type=checkbox]", "10"},
           {"[type=checkbox s]", ""},
           {"[*|title]", "7"},
           {"[|title]", "7"},
           {"[*title]", "invalid"},
           {"[*|*]", "invalid"},
           {"[title|]", "invalid"},
           {"*|a", "8 9"},
           {"|a", ""},
           {":root", "0"},
           {":scope", "0"},
           {":first-child", "0 1 2 3 5 8 13 19"},
           {"li:last-child", "17"},
           {":only-child", "0 1"},
           {":empty", "5 6 8 9 10 11 13 14 15 16 17 19 20"},
           {"li:nth-child(odd)", "13 15 17"},
           {"li:nth-child(2n)", "14 16"},
           {"li:nth-child(-n + 2)", "13 14"},
           {"li:nth-child(n+4)", "16 17"},
           {"li:nth-last-child(1)", "17"},
           {"li:nth-child(2 of .m)", "15"},
           {"li:nth-last-child(odd of .m, .n)", "14 17"},
           {"a:first-of-type", "8"},
           {"input:nth-of-type(2)", "11"},
           {"a:last-of-type, input:nth-last-of-type(2)", "9 10"},
           {"div:only-of-type", ""},
           {"ul:only-of-type", "12"},
           {":is(p, b)", "3 4 5"},
           {":is(p, :foo, ::before)", "3 4"},
           {":is()", ""},
           {":where(.a) > :not(.b)", "3 5 6"},
           {"body :not(div *, div, ul *)", "12 18 19 20"},
           {"p:has(b)", "4"},
           {"div:has(> a)", "7"},
           {"p:has(+ p)", "3"},
           {"div:has(~ ul li)", "2 7"},
           {"body:has(p i):not(:has(u))", "1"},
           {":link", "8"},
           {":any-link", "8"},
           {":visited, a:hover, :focus-within", ""},
           {"a:not(:hover)", "8 9"},
           {":checked", "10"},
           {":disabled", "11"},
           {":enabled", "10"},
           {":required", "11"},
           {":optional", "10"},
           {"input:read-only", "10 11"},
           {":lang(en)", "0 1 2 3 4 5 6 7 8 9 10 11 18 19 20"},
           {"ul:lang(fr, de)", "12"},
           {"html:lang(\\*-us)", "0"},
           {":host(.a), p:host-context(div), p:state(x)", ""},
           {"p:not(:host(.a)):not(:state(x))", "3 4"},
           {"li:dir(rtl)", "13 14 15 16 17"},
           {"p:dir(ltr)", "3 4"},
           {"p:dir( LTR )", "3 4"},
           {"p:dir(ltr", "3 4"},
           {":dir(up)", ""},
           {"p:not(:dir(up))", "3 4"},
           {"ul:lang( fr , 'de' )", "12"},
           {"[title='hello world' I]", "7"},
           {"[title='hello world' S]", ""},
           {"u, :unknown-thing(x)", "invalid"},
           {"u p, p", "3 4"},
           {"p::before", "3 4"},
           {"p:after", "3 4"},
           {"p::first-line, p:first-letter", ""},
           {"p::-webkit-scrollbar", ""},
           {"li::marker", "13 14 15 16 17"},
           {"p::before:hover", ""},
           {"p \\69", "6"},
           {".\\61", "2 4"},
           {"p/**/b", "invalid"},
           {"", "invalid"},
           {"p,", "invalid"},
           {"> p", "invalid"},
           {"p >", "invalid"},
           {"p > > b", "invalid"},
           {"p::before b", "invalid"},
           {"p::foo", "invalid"},
           {":foo", "invalid"},
           {"#1", "invalid"},
           {".1", "invalid"},
           {"p..a", "invalid"},
           {"*p", "invalid"},
           {"[title=1]", "invalid"},
           {"[title=a b]", "invalid"},
           {"[=a]", "invalid"},
           {"x|a", "invalid"},
           {":not()", "invalid"},
           {":not(:foo, p)", "invalid"},
           {":has(:has(a))", "invalid"},
           {":is(p", "3 4"},
           {"[title", "7"},
           {"p{", "invalid"},
           {"p)", "invalid"},
           {":nth-child(n of)", "invalid"},
           {":nth-of-type(n of p)", "invalid"},
           {":nth-child()", "invalid"},
           {"li:nth-child(/**/2n/**/)", "14 16"},
           {"li:nth-child(2/**/n)", "invalid"},
           {"li:nth-child(2n", "14 16"},
           {":dir()", "invalid"},
           {":dir(1)", "invalid"},
           {":dir(ltr rtl)", "invalid"},
           {":lang()", "invalid"},
           {":lang(1)", "invalid"},
           {":lang(en fr)", "invalid"},
           {":lang(en,)", "invalid"},
       }) {
    EXPECT_EQ(matchesOf(test.selectors, page), test.elements) << test.selectors;
    EXPECT_EQ(matchesOf(test.selectors, page, true), test.elements) << test.selectors;
  }
}

TEST(CSSSelector, LimitsDepthAndLength) {
  CSSNames names;
  const CSSPage page(repeated("<a>", 300) + repeated("</>", 300), names);
  const auto nested = [&](std::size_t depth) {
    return matchesOf(repeated(":not(", depth) + "b" + repeated(")", depth), page) == "invalid";
  };
  EXPECT_FALSE(nested(detail::kMaximumSelectorNesting));
  EXPECT_TRUE(nested(detail::kMaximumSelectorNesting + 1));
  // An element has as many elements around it as there are compounds in front of its own.
  EXPECT_TRUE(matchesOf(repeated("a ", detail::kMaximumCompounds), page).starts_with("255 256 "));
  EXPECT_EQ(matchesOf(repeated("a ", detail::kMaximumCompounds + 1), page), "");
  constexpr std::size_t kLongestPlace = 64;
  EXPECT_EQ(matchesOf("a:nth-child(" + std::string(kLongestPlace - 1, '0') + "2)", page), "");
  EXPECT_EQ(matchesOf("a:nth-child(" + std::string(kLongestPlace, '0') + "2)", page), "invalid");
}

TEST(CSSSelector, MatchesARootThatIsAnOption) {
  CSSNames names;
  const CSSPage page("<option></>", names);
  EXPECT_EQ(matchesOf(":enabled", page), "0");
  EXPECT_EQ(matchesOf(":disabled", page), "");
}

TEST(CSSSelector, ComparesNamesInAnyCaseOnQuirkyPages) {
  CSSNames names;
  const CSSPage page("<html><p id=Aa class='Bb Cc'></></>", names, CSSMode::kQuirks);
  for (const std::string_view selector : {"#aA", ".bB", "P.CC"})
    EXPECT_EQ(matchesOf(selector, page), "1") << selector;
}

TEST(CSSSelector, ComparesSomeAttributesOfHTMLInAnyCase) {
  const auto isAnyCase = [](std::string_view element, std::string_view attribute) {
    CSSNames names;
    const CSSPage page("<" + std::string(element) + " " + std::string(attribute) + "=X></>", names);
    return matchesOf("[" + std::string(attribute) + "=x]", page) == "0";
  };
  for (const std::string_view attribute :
       {"accept",     "accept-charset", "align",     "alink",    "axis",     "bgcolor", "charset",
        "checked",    "clear",          "codetype",  "color",    "compact",  "declare", "defer",
        "dir",        "direction",      "disabled",  "enctype",  "face",     "frame",   "hreflang",
        "http-equiv", "lang",           "language",  "link",     "media",    "method",  "multiple",
        "nohref",     "noresize",       "noshade",   "nowrap",   "readonly", "rel",     "rev",
        "rules",      "scope",          "scrolling", "selected", "shape",    "target",  "text",
        "type",       "valign",         "valuetype", "vlink"}) {
    EXPECT_TRUE(isAnyCase("p", attribute)) << attribute;
    EXPECT_FALSE(isAnyCase("linearGradient", attribute)) << attribute;
  }
  for (const std::string_view attribute : {"id", "class", "title", "name", "value", "data-x"})
    EXPECT_FALSE(isAnyCase("p", attribute)) << attribute;
}

TEST(CSSSelector, KnowsTheStatesOfControls) {
  CSSNames names;
  const CSSPage texts(
      "<r><textarea></><textarea readonly></><textarea disabled></>"                           // 1 2 3
      "<input></><input type=TEXT></><input type=x></><input readonly></>"                     // 4 5 6 7
      "<input type=button></><input type=CheckBox></><input type=color></>"                    // 8 9 10
      "<input type=file></><input type=hidden></><input type=image></>"                        // 11 12 13
      "<input type=radio></><input type=range></><input type=reset></><input type=submit></>"  // 14 15 16 17
      "<b contenteditable></><b contenteditable=FALSE></><b contenteditable=true></>"          // 18 19 20
      "<fieldset disabled><p><input></></></></>",                                             // 21 22 23
      names);
  CSSNames otherNames;
  const CSSPage others(
      "<r><select><optgroup disabled><option></></><option selected></><option></></>"  // 1 2 3 4 5
      "<input type=RADIO checked></><input checked></><b checked></>"                   // 6 7 8
      "<fieldset disabled><select><optgroup><option></></></><fieldset></></>"          // 9 10 11 12 13
      "<button required></><select required></><textarea required></>"                  // 14 15 16
      "<area href=x></><link href=x></><Link href=x></></>",                            // 17 18 19
      otherNames);
  const struct {
    const CSSPage &page;
    std::string_view selector, elements;
  } cases[] = {
      {texts, ":read-write", "1 4 5 6 18 20"},
      {texts, ":read-only", "0 2 3 7 8 9 10 11 12 13 14 15 16 17 19 21 22 23"},
      {texts, ":disabled", "3 21 23"},
      {others, ":disabled", "2 3 9 10 13"},
      {others, ":enabled", "1 4 5 6 7 11 12 14 15 16"},
      {others, ":checked", "4 6"},
      {others, ":required", "15 16"},
      {others, ":optional", "1 6 7 10"},
      {others, ":any-link", "17"},
      {others, ":-webkit-any-link", "17"},
  };
  for (const auto &[page, selector, elements] : cases)
    EXPECT_EQ(matchesOf(selector, page), elements) << selector;
}

/// A list with a name that is not known holds for nothing.
TEST(CSSSelector, KnowsThePseudosThatHoldForNothing) {
  CSSNames names;
  const CSSPage page("<p></>", names);
  std::istringstream states(
      "active autofill -webkit-autofill buffering default focus focus-visible focus-within "
      "fullscreen future host hover in-range indeterminate invalid local-link modal muted open "
      "out-of-range past paused picture-in-picture placeholder-shown playing popover-open "
      "seeking stalled target target-within user-invalid user-valid valid visited");
  for (std::string state; states >> state;) {
    EXPECT_EQ(matchesOf(":" + state, page), "") << state;
    EXPECT_EQ(matchesOf("p:not(:" + state + ")", page), "0") << state;
  }
  for (const std::string_view element :
       {"selection", "backdrop", "placeholder", "file-selector-button", "cue", "part", "slotted", "highlight",
        "target-text", "spelling-error", "grammar-error", "details-content", "view-transition",
        "view-transition-group", "view-transition-image-pair", "view-transition-new", "view-transition-old"}) {
    EXPECT_EQ(matchesOf("p::" + std::string(element), page), "") << element;
    EXPECT_EQ(matchesOf("p, p::" + std::string(element), page), "0") << element;
    EXPECT_EQ(matchesOf("p, p:" + std::string(element), page), "invalid") << element;
  }
}

TEST(CSSSelector, KnowsLanguagesAndDirections) {
  CSSNames names;
  const CSSPage page(
      "<html><p lang=de-x-CH></><p lang=de-Latn-CH dir=RTL></><p lang=''><i dir=ltr></></>"  // 1 2 3 4
      "<b xml:lang=fr></><ul dir=rtl><i dir=LTR><u></></></></>",                            // 5 6 7 8
      names);
  struct Case {
    std::string_view selector, elements;
  };
  for (const Case &test : std::initializer_list<Case>{
           {":lang(de)", "1 2"},
           {":lang(de-ch)", "2"},
           {":lang('*-ch')", "2"},
           {":lang(de-x-ch)", "1"},
           {":lang('de-*-ch')", "2"},
           {":lang(de-Latn-CH-1996)", ""},
           {":lang(d, fr)", "5"},
           {"p:lang('')", "3"},
           {":not(:lang(de)):not(i)", "0 3 5 6 8"},
           {":dir(rtl)", "2 6"},
           {":dir(ltr)", "0 1 3 4 5 7 8"},
       })
    EXPECT_EQ(matchesOf(test.selector, page), test.elements) << test.selector;
}

TEST(CSSSelector, WeighsByTheStandard) {
  struct Case {
    std::u16string_view selector;
    CSSSpecificity specificity;
  };
  CSSNames names;
  CSSArena arena;
  for (const Case &test : std::initializer_list<Case>{
           {u"*", specificity(0, 0, 0)},
           {u"li", specificity(0, 0, 1)},
           {u"ul ol + li", specificity(0, 0, 3)},
           {u"h1 + *[rel=up]", specificity(0, 1, 1)},
           {u"ul li.red.level", specificity(0, 2, 2)},
           {u"#x34y:hover::before", specificity(1, 1, 1)},
           {u"#s12:not(foo)", specificity(1, 0, 1)},
           {u".foo:is(.bar, #baz)", specificity(1, 1, 0)},
           {u":where(#a .b) c", specificity(0, 0, 1)},
           {u":has(> #a, .b)", specificity(1, 0, 0)},
           {u"a:nth-child(2n+1)", specificity(0, 1, 1)},
           {u":nth-child(even of li, .item)", specificity(0, 2, 0)},
           {u":is(em, :foo, #bar#baz) a", specificity(2, 0, 1)},
       }) {
    const auto list = readSelectors(test.selector, {.names = &names}, arena);
    ASSERT_TRUE(list && list->size() <= 1) << textOf(test.selector);
    if (!list->empty()) {
      EXPECT_EQ(list->front().specificity, test.specificity) << textOf(test.selector);
    }
  }
  // More than a field has room for stays in it.
  std::u16string many = u"a";
  for (int i = 0; i < 2'100'000; ++i) many += u".a";
  const auto list = readSelectors(many, {.names = &names}, arena);
  EXPECT_EQ(list->front().specificity, specificity(0, (1 << 21) - 1, 1));
}

TEST(CSSSelector, ReadsPlaces) {
  struct Case {
    std::u16string_view text;
    std::int32_t step, offset;
  };
  for (const Case &test : std::initializer_list<Case>{
           {u"odd", 2, 1},
           {u" EVEN ", 2, 0},
           {u"5", 0, 5},
           {u"-5", 0, -5},
           {u"n", 1, 0},
           {u"-n", -1, 0},
           {u"+n", 1, 0},
           {u"2n", 2, 0},
           {u"2n+1", 2, 1},
           {u"-2N - 3", -2, -3},
           {u"n+ 4", 1, 4},
           {u"0n+3", 0, 3},
           {u"3n -2", 3, -2},
           {u"+3", 0, 3},
           {u"99999999999n", 0x7fffffff, 0},
       }) {
    const std::optional<detail::NthPlaces> places = detail::nthPlaces(test.text);
    ASSERT_TRUE(places) << textOf(test.text);
    EXPECT_EQ(places->step, test.step) << textOf(test.text);
    EXPECT_EQ(places->offset, test.offset) << textOf(test.text);
  }
  for (const std::u16string_view text :
       {u"", u"x", u"n n", u"2n+", u"+ n", u"2 n", u"n+-1", u"n 1", u"--n", u"1.5", u"2n+1x"})
    EXPECT_FALSE(detail::nthPlaces(text)) << textOf(text);
}

/// A matcher as the standard reads, which tries every way; for types, classes, combinators and ":not()".
class NaiveMatcher {
 public:
  explicit NaiveMatcher(const CSSElements &elements) : elements_(elements) {}

  /// `compounds` and the combinators between them, from left to right.
  bool matches(const std::vector<std::string> &compounds, const std::string &combinators,
               CSSElementIndex element, std::size_t last) const {
    if (!matchesCompound(compounds[last], element)) return false;
    if (last == 0) return true;
    const char combinator = combinators[last - 1];
    const bool isAmongSiblings = combinator == '+' || combinator == '~';
    const auto next = [&](CSSElementIndex i) {
      return isAmongSiblings ? elements_[i].previousSibling : elements_[i].parent;
    };
    for (CSSElementIndex i = next(element); i != kNoCSSElement; i = next(i)) {
      if (matches(compounds, combinators, i, last - 1)) return true;
      if (combinator == '+' || combinator == '>') return false;
    }
    return false;
  }

 private:
  bool matchesCompound(std::string_view compound, CSSElementIndex element) const {
    const CSSElements::Element &own = elements_[element];
    if (compound.starts_with(":not("))
      return !matchesCompound(compound.substr(5, compound.size() - 6), element);
    if (compound == ":first-child") return own.previousSibling == kNoCSSElement;
    if (!compound.starts_with('.')) return elements_.names().text(own.type) == unitsOf(compound);
    for (const CSSName name : elements_.classes(own))
      if (elements_.names().text(name) == unitsOf(compound.substr(1))) return true;
    return false;
  }

  const CSSElements &elements_;
};

TEST(CSSSelector, MatchesAsANaiveMatcherDoes) {
  std::mt19937 random(5);
  const auto oneOf = [&](auto const &values) { return values[random() % std::size(values)]; };
  constexpr std::string_view kTypes[] = {"a", "b", "c"}, kClasses[] = {"x", "y", "z"};
  constexpr std::string_view kCompounds[] = {"a", "b", ".x", ".y", ".z", ":not(.x)", ":first-child"};
  for (int round = 0; round < 300; ++round) {
    std::string markup = "<a>";
    int depth = 1;
    for (int i = 0; i < 40; ++i) {
      if (depth > 1 && random() % 5 < 2) {
        markup += "</>";
        --depth;
        continue;
      }
      markup += "<" + std::string(oneOf(kTypes)) + " class=" + std::string(oneOf(kClasses)) + ">";
      ++depth;
    }
    for (; depth > 0; --depth) markup += "</>";
    CSSNames names;
    const CSSPage page(markup, names);
    CSSSelectorMatcher matcher(page.elements);
    const NaiveMatcher naive(page.elements);
    for (int i = 0; i < 10; ++i) {
      std::vector<std::string> compounds{std::string(oneOf(kCompounds))};
      std::string combinators, text = compounds[0];
      for (std::size_t count = random() % 5; count > 0; --count) {
        combinators += oneOf(std::string_view(" >+~"));
        compounds.emplace_back(oneOf(kCompounds));
        text += combinators.back() + compounds.back();
      }
      CSSArena arena;
      const std::u16string units = unitsOf(text);
      const auto list = readSelectors(units, {.names = &names}, arena);
      ASSERT_TRUE(list) << text;
      for (CSSElementIndex element = 0; element < page.elements.size(); ++element) {
        const bool expected = naive.matches(compounds, combinators, element, compounds.size() - 1);
        ASSERT_EQ(!list->empty() && matcher.matches(list->front(), element), expected)
            << text << " " << element << " " << markup;
      }
    }
  }
}

/// The work does not grow with powers of the depth, whatever the selector is.
TEST(CSSSelector, BoundsTheWorkOfHostileSelectors) {
  const auto costOf = [](const std::string &selector, const std::string &markup) {
    CSSNames names;
    const CSSPage page(markup, names);
    CSSArena arena;
    const std::u16string units = unitsOf(selector);
    const auto list = readSelectors(units, {.names = &names}, arena);
    CSSSelectorMatcher matcher(page.elements);
    for (const CSSSelector &one : list.value_or(std::span<const CSSSelector>()))
      EXPECT_FALSE(matcher.matches(one, static_cast<CSSElementIndex>(page.elements.size() - 1)));
    return matcher.cost();
  };
  const auto nested = [](std::size_t n) { return repeated("<a>", n) + repeated("</>", n); };
  const auto flat = [](std::size_t n) { return "<r>" + repeated("<a></>", n) + "</>"; };
  for (const std::string &selector : {"u " + repeated("a ", 100) + "a", "u > " + repeated("a ", 100) + "a",
                                      "u " + repeated("a > a ", 50) + "a", "u + " + repeated("a ", 100) + "a"})
    EXPECT_LT(costOf(selector, nested(2000)), 2.5 * static_cast<double>(costOf(selector, nested(1000))))
        << selector;
  for (const std::string &selector :
       {"u ~ " + repeated("a ~ ", 100) + "a", "u + " + repeated("a ~ ", 100) + "a",
        "u > " + repeated("a + a ~ ", 50) + "a"})
    EXPECT_LT(costOf(selector, flat(2000)), 2.5 * static_cast<double>(costOf(selector, flat(1000))))
        << selector;
  EXPECT_LE(costOf("a:has(u)", nested(20000)), CSSSelectorMatcher::kMaximumHasElements * 3);
}

TEST(CSSSelector, CountsSiblingsOnce) {
  CSSNames names;
  const CSSPage page("<r>" + repeated("<a class=x></><b></>", 5000) + "</>", names);
  CSSArena arena;
  for (const std::u16string_view selector : {u"a:nth-of-type(3n)", u"a:nth-last-of-type(3n)",
                                             u":nth-child(2n of .x)", u":nth-last-child(2n of .x)"}) {
    const auto list = readSelectors(selector, {.names = &names}, arena);
    CSSSelectorMatcher matcher(page.elements);
    for (CSSElementIndex i = 0; i < page.elements.size(); ++i) matcher.matches(list->front(), i);
    EXPECT_LT(matcher.cost(), 12 * page.elements.size()) << textOf(selector);
  }
  CSSSelectorMatcher poor(page.elements, 1000);
  const auto list = readSelectors(u"b", {.names = &names}, arena);
  EXPECT_TRUE(poor.matches(list->front(), 2));
  while (poor.spend(1)) continue;
  EXPECT_FALSE(poor.matches(list->front(), 2));
}

TEST(CSSSelector, BearsDeepAndLongSelectors) {
  for (const std::string_view part : {":is(", ":not(", ":has(", "a,", "a ", ".a", ":not(:is(:where(", "[a=b]",
                                      "&", ":nth-child(2 of ", "(", "a>", ":is(,", ":lang("})
    expectLinearTime(4000, [&](std::size_t n) {
      const std::u16string text = unitsOf(repeated(part, n) + "a");
      CSSNames names;
      CSSArena arena;
      (void)readSelectors(text, {.names = &names}, arena);
    });
}

}  // namespace
}  // namespace nimbo
