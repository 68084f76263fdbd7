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
           "(device-width: 1280px) and (device-aspect-ratio: 16/9)",
           "(width: 100vw) and (height: 100vh)",
           "(width <= 1280px) and (width > 1279px)",
           "(1280px <= width <= 1280px)",
           "(2000px >= width >= 1280px)",
           "(calc(1px * pi) < width)",
           "(resolution: 96dpi) and (resolution = 1x)",
           "(37.79dpcm < resolution < 37.8dpcm)",
           "(-webkit-max-device-pixel-ratio: 1) and (-webkit-transform-3d)",
           "(color: 8) and (color-index: 0) and (monochrome: 0) and (grid: 0)",
           "(horizontal-viewport-segments: 1) and (vertical-viewport-segments: 1)",
           "(orientation)",
           "(any-hover: hover) and (any-pointer: fine) and (color-gamut: srgb) and (display-mode: browser)",
           "(dynamic-range: standard) and (video-dynamic-range: standard) and (update: fast)",
           "(overflow-block: scroll) and (overflow-inline: scroll) and (scan: progressive)",
           "(scripting: none) and (forced-colors: none) and (inverted-colors: none)",
           "(prefers-contrast: no-preference) and (prefers-reduced-data: no-preference)",
           "(prefers-reduced-transparency: no-preference)",
           "(foo) or (color)",
           "(grid) or (grid) or (color)",
           "not ((foo) and (grid))",
           "not (not (color))",
           "not screen and (grid)",
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
           "(width > 1280px)",
           "(width:)",
           "(min-width > 1px)",
           "(aspect-ratio: 16/)",
           "(resolution: 1)",
           "(resolution: 96px)",
           "not (resolution: 1)",
           "(dynamic-range: high)",
           "(prefers-contrast)",
           "(forced-colors)",
           "(hover: hover x)",
           "(color: 8 8)",
           "(0 = pointer)",
           "(pointer = fine)",
           "(1px 2px < width)",
           "(1px < 2px < width)",
           "(1280px = width > 1px)",
           "(1px < width = 1280px)",
           "(1px < width <)",
           "((color) x)",
           "[color]",
           "foo(color)",
           "print (a, all, b)",
           "only (color)",
           "not not",
           "not only",
           "not and",
           "not or",
           "not layer",
           "not (grid) and (color)",
           "(color) or (grid) and (color)",
           "screen and (color) or (grid)",
           "not ((grid) or (foo))",
           "not ((color) and (foo))",
       }) {
    EXPECT_FALSE(matchesMedium(unitsOf(query), {})) << query;
  }
  EXPECT_TRUE(matchesMedium(u"(max-width: 500px) and (orientation: portrait)", {400, 600}));
  EXPECT_TRUE(matchesMedium(u"(orientation: portrait)", {600, 600}));
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
           "NOT (foo: bar)",
           "(foo: bar) or (foo: bar) or (color: red)",
           "(color: red) or (foo: bar)",
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
           "[color: red]",
           "(color: red) x",
           "not (foo: bar) x",
           "(color: red) and (foo: bar) and (color: red)",
           "((color: red) and (foo: bar))",
           "selector(a,)",
           "selectors(a)",
       })
    EXPECT_FALSE(isSupportedByCSS(unitsOf(condition))) << condition;
}

}  // namespace
}  // namespace nimbo
