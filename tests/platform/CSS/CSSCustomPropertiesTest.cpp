// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSCustomProperties.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/platform/CSS/CSSText.hpp"

namespace nimbo {
namespace {

class CSSCustomPropertiesTest : public ::testing::Test {
 protected:
  /// An element's properties by its style.
  SharedPointer<CSSCustomProperties> make(std::string_view style,
                                          const SharedPointer<CSSCustomProperties> &inherited = {}) {
    const std::u16string units = unitsOf(style);
    CSSArena arena;
    std::vector<CSSDeclaration> declarations;
    readDeclarations(units, CSSMode::kStandard, arena, declarations);
    return CSSCustomProperties::make(inherited, declarations, budget_);
  }

  /// What a value becomes, without the comments that keep tokens apart.
  std::string replaced(std::string_view tokens, const SharedPointer<CSSCustomProperties> &properties) {
    const std::optional<std::u16string> text = replacedVariables(unitsOf(tokens), properties.get(), budget_);
    if (!text) return "invalid";
    std::string plain = textOf(*text);
    for (std::size_t i; (i = plain.find("/**/")) != plain.npos;) plain.replace(i, 4, "|");
    return plain;
  }

  CSSVariableBudget budget_;
};

TEST_F(CSSCustomPropertiesTest, ReplacesVariables) {
  const auto root = make("--a:1px; --b: var(--a) 2px; --c: var(--none, x); --d: var(--none); --e:; --A: big");
  const auto child = make("--a: 3px; --c: initial; --b: inherit; --f: var(--b)", root);
  struct Case {
    std::string_view tokens, ofRoot, ofChild;
  };
  for (const Case &test : std::initializer_list<Case>{
           {"var(--a)", "|1px|", "|3px|"},
           {"x var( --a ) y", "x |1px| y", "x |3px| y"},
           {"calc(var(--a)*2)", "calc(|1px|*2)", "calc(|3px|*2)"},
           {"var(--b)", "||1px| 2px|", "||1px| 2px|"},
           {"var(--f)", "invalid", "|||1px| 2px||"},
           {"var(--c, y)", "||x||", "|y|"},
           {"var(--d, y)", "|y|", "|y|"},
           {"var(--d)", "invalid", "invalid"},
           {"[var(--e)]", "[||]", "[||]"},
           {"var(--A)", "|big|", "|big|"},
           {"var(--x, var(--y, var(--a)))", "|||1px|||", "|||3px|||"},
           {"var(--x,)", "||", "||"},
           {"var(a)", "invalid", "invalid"},
           {"var(1)", "invalid", "invalid"},
           {"var()", "invalid", "invalid"},
           {"var(--a", "|1px|", "|3px|"},
           {"var(--a x)", "invalid", "invalid"},
           {"var(--\\61)", "|1px|", "|3px|"},
           {"'var(--a)' url(var(--a))", "'var(--a)' url(var(--a))", "'var(--a)' url(var(--a))"},
           {"env(safe-area-inset-top) env(foo, 2px)", "|0px| |2px|", "|0px| |2px|"},
       }) {
    EXPECT_EQ(replaced(test.tokens, root), test.ofRoot) << test.tokens;
    EXPECT_EQ(replaced(test.tokens, child), test.ofChild) << test.tokens;
  }
}

TEST_F(CSSCustomPropertiesTest, HasNoValueForWhatDependsOnItself) {
  const auto properties = make("--a: var(--b, x); --b: var(--a); --c: var(--a, y); --d: var(--d, z); --e: ok");
  for (const std::string_view name : {"--a", "--b", "--d"})
    EXPECT_FALSE(properties->value(unitsOf(name))) << name;
  EXPECT_EQ(replaced("var(--c)", properties), "||y||");
  EXPECT_EQ(replaced("var(--e)", properties), "|ok|");
  const auto child = make("--e: var(--e)", properties);
  EXPECT_FALSE(child->value(u"--e"));
}

TEST_F(CSSCustomPropertiesTest, SharesWhatIsInherited) {
  const auto root = make("--a: 1; --b: 2");
  EXPECT_EQ(make("color: red", root), root);
  EXPECT_EQ(make("--a: 1; --b: unset", root), root);
  EXPECT_FALSE(make("--a: 2", root) == root);
  // However deep the page is, what the root says is found.
  SharedPointer<CSSCustomProperties> element = root;
  for (int i = 0; i < 1000; ++i) {
    const std::string number = std::to_string(i);
    element = make("--c: " + number + (i < 500 ? "; --d: " + number : ""), element);
  }
  EXPECT_EQ(replaced("var(--a) var(--b) var(--c) var(--d)", element), "|1| |2| |999| |499|");
}

TEST_F(CSSCustomPropertiesTest, BoundsWhatGrows) {
  std::string style = "--v0: xxxxxxxxxxxxxxxx;";
  for (int i = 1; i < 40; ++i) {
    const std::string previous = "var(--v" + std::to_string(i - 1) + ")";
    style += "--v" + std::to_string(i) + ":" + previous + previous + ";";
  }
  const auto properties = make(style);
  EXPECT_TRUE(properties->value(u"--v4"));
  EXPECT_FALSE(properties->value(u"--v39"));
  const std::string longest(CSSCustomProperties::kMaximumValueLength, 'x');
  const auto plain = make("--a:" + longest + ";--b:y" + longest);
  EXPECT_TRUE(plain->value(u"--a"));
  EXPECT_FALSE(plain->value(u"--b"));
  // What stands around a replaced value counts, too.
  const std::string room = longest.substr(std::string_view("/**//**/").size());
  EXPECT_NE(replaced("var(--a)", make("--a:" + room)), "invalid");
  EXPECT_EQ(replaced("var(--a)", make("--a:" + room + "x")), "invalid");
  for (const std::size_t depth : {CSSCustomProperties::kMaximumDepth, CSSCustomProperties::kMaximumDepth + 1}) {
    std::string fallbacks, chain;
    for (std::size_t i = 0; i < depth; ++i) {
      fallbacks += "var(--none,";
      chain += "--v" + std::to_string(100 + i) + ":var(--v" + std::to_string(101 + i) + ");";
    }
    const bool isTooDeep = depth > CSSCustomProperties::kMaximumDepth;
    EXPECT_EQ(replaced(fallbacks, properties) == "invalid", isTooDeep);
    EXPECT_EQ(!make(chain + "--v" + std::to_string(100 + depth) + ":x")->value(u"--v100"), isTooDeep);
  }
  budget_.remaining = 10;
  EXPECT_EQ(replaced("var(--v4)", properties), "invalid");
  EXPECT_EQ(budget_.remaining, 0u);
}

}  // namespace
}  // namespace nimbo
