// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSMedium.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/platform/CSS/CSSText.hpp"

namespace nimbo {
namespace {

TEST(CSSMedium, AnswersQueriesForAScreen) {
  for (const std::string_view query : {
           "",
           "all",
           "SCREEN",
           "print, screen",
           "only screen",
           "not print",
           "screen and (color)",
           "(min-width: 80em)",
           "(min-width:1280px)",
           "(max-width: 1280px)",
           "(width: 1280px)",
           "(width >= 600px)",
           "(600px <= width < 1281px)",
           "(1280px = width)",
           "(2000px > width > 100px)",
           "not (min-width: 2000px)",
           "(min-width: 1px) and (max-width: 9999px)",
           "(min-width: 9999px) or (color)",
           "((color) and (not (monochrome)))",
           "(orientation: landscape)",
           "(min-aspect-ratio: 16/9)",
           "(aspect-ratio > 1)",
           "(prefers-color-scheme: light)",
           "(hover)",
           "(pointer: fine)",
           "(min-resolution: 96dpi)",
           "(max-resolution: 1dppx)",
           "(width)",
           "(-webkit-min-device-pixel-ratio: 1)",
           "(prefers-reduced-motion: no-preference)",
           "unknown, screen",
           "(foo), screen",
           "not (grid)",
           "(min-width: calc(10px * 2))",
           "screen and (min-width:1px) and (color)",
           "(height: 720px)",
           "(719px < device-height <= 45em)",
       }) {
    EXPECT_TRUE(matchesMedium(unitsOf(query), {})) << query;
  }
  for (const std::string_view query : {
           "print",
           "not all",
           "not screen",
           "speech",
           "(min-width: 1281px)",
           "(width < 1280px)",
           "(max-width: 79.9em)",
           "(prefers-color-scheme: dark)",
           "(prefers-reduced-motion)",
           "(orientation: portrait)",
           "(hover: none)",
           "(monochrome)",
           "(scripting: enabled)",
           "(foo)",
           "not (foo)",
           "(not (foo))",
           "(min-width)",
           "(min-width: 1)",
           "(min-width: 10%)",
           "screen or (color)",
           "screen and",
           "(color) and (grid) or (color)",
           "screen (color)",
           "only",
           "not",
           "(min-resolution: 2dppx)",
           "(1px < width > 2px)",
           "(min-pointer: fine)",
           "and",
           "(width 3px)",
           "color",
           "(min-height: 721px)",
           "(height < 720px)",
       }) {
    EXPECT_FALSE(matchesMedium(unitsOf(query), {})) << query;
  }
  EXPECT_TRUE(matchesMedium(u"(max-width: 500px) and (orientation: portrait)", {400, 600}));
  // The text's end closes what is open.
  EXPECT_TRUE(matchesMedium(u"(color", {}));
  const std::u16string deep(100000, u'(');
  EXPECT_FALSE(matchesMedium(deep, {}));
}

TEST(CSSMedium, KnowsWhatIsSupported) {
  for (const std::string_view condition : {
           "(display: grid)",
           "(color: red)",
           "not (display: foo)",
           "(display: grid) and (color: red)",
           "(display: foo) or (color: red)",
           "((color: red))",
           "(not (color: foo))",
           "(--x: y)",
           "(width: calc(1px + 2em))",
           "selector(:is(a, b))",
           "selector(a > b) and (color: var(--x))",
       })
    EXPECT_TRUE(isSupportedByCSS(unitsOf(condition))) << condition;
  for (const std::string_view condition : {
           "",
           "display: grid",
           "(display: foo)",
           "(foo: bar)",
           "not (color: red)",
           "selector(:foo)",
           "foo(bar)",
           "(color: red) and (foo: bar)",
           "(color: red) and (color: blue) or (color: green)",
           "(color)",
       })
    EXPECT_FALSE(isSupportedByCSS(unitsOf(condition))) << condition;
}

}  // namespace
}  // namespace nimbo
