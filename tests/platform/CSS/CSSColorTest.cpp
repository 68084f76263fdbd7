// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSDeclaration.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

#include "tests/platform/CSS/CSSText.hpp"

namespace nimbo {
namespace {

struct Case {
  std::string_view style, declarations;
};

TEST(CSSColor, IsReadInAllForms) {
  for (const Case &test : std::initializer_list<Case>{
           {"#abc", "#aabbcc"},
           {"#abcd", "#aabbcc/0.8667"},
           {"#12345678", "#123456/0.4706"},
           {"#12345", ""},
           {"#abg", ""},
           {"#abcdeg", ""},
           {"#ab", ""},
           {"#abcdefab1", ""},
           {"ReBeccaPurple", "#663399"},
           {"transparent", "#000000/0"},
           {"currentColor", "currentcolor"},
           {"CanvasText", "#000000"},
           {"fff", ""},
           {"rgb(1,2,3)", "#010203"},
           {"rgba(1, 2, 3, .5)", "#010203/0.5"},
           {"rgb(100% 0% 50% / 25%)", "#ff0080/0.25"},
           {"rgb(300, -5, 127.5)", "#ff0080"},
           {"rgb(1, 2%, 3)", ""},
           {"rgb(1 2, 3)", ""},
           {"rgb(1, 2 3)", ""},
           {"rgb(1, 2, 3 / 1)", ""},
           {"rgb(1 2 3, 1)", ""},
           {"rgb(1, 2)", ""},
           {"rgb(1%, 2%, 3)", ""},
           {"rgb(1, none, 3)", ""},
           {"rgb(none, 2, 3, 1)", ""},
           {"rgb(1, 2, 3, 50%)", "#010203/0.5"},
           {"rgb(none 2 3)", "#000203"},
           {"rgb(calc(1 + 1) 2 3)", "#020203"},
           {"rgb(calc(25% * 2) 0% 100%)", "#8000ff"},
           {"hsl(120, 100%, 25%)", "#008000"},
           {"hsl(200grad 100% 50%)", "#00ffff"},
           {"hsl(3.14159rad 100% 50%)", "#00ffff"},
           {"hsl(.5turn 100% 50% / 1)", "#00ffff"},
           {"hsl(-120 100 50)", "#0000ff"},
           {"hsl(120, 1, .5)", ""},
           {"hsl(120, 100%, .5)", ""},
           {"hsl(120, 1, 50%)", ""},
           {"hsl(1px 100% 50%)", ""},
           {"hsl(120 100%)", ""},
           {"hsl(480 100% 25%)", "#008000"},
           {"hsl(120 -5% 50%)", "#808080"},
           {"hsl(120 200% 25%)", "#008000"},
           {"hsl(120 100% 150%)", "#ffffff"},
           {"hsl(120 100% -1%)", "#000000"},
           {"hwb(120, 0%, 0%)", ""},
           {"hwb(120 0 0 / .5)", "#00ff00/0.5"},
           {"hwb(0 20% -10%)", "#ff3333"},
           {"hwb(0 -10% 20%)", "#cc0000"},
           {"hwb(0 30% 90%)", "#404040"},
           {"hwb(0 20% 40%)", "#993333"},
           {"hwb(0 60% 60%)", "#808080"},
           {"lab(100% 0 0)", "#ffffff"},
           {"lab(29.2345% 39.3825 20.0664)", "#7d2329"},
           {"lab(29.2345 31.506% 16.0531%)", "#7d2329"},
           {"lab(120% 0 0)", "#ffffff"},
           {"lab(-20% 0 0)", "#000000"},
           {"lab(5% 0 0)", "#111111"},
           {"lab(1% 0 0)", "#040404"},
           {"lab(50% 0)", ""},
           {"lab(50%, 0, 0)", ""},
           {"lch(52.2345% 72.2 56.2)", "#c65d06"},
           {"lch(52.2345 48.1333% 56.2deg)", "#c65d06"},
           {"lch(50% -9 0)", "#777777"},
           {"lch(50% 9 1px)", ""},
           {"oklab(0.40101 28.675% 11.325%)", "#7d2329"},
           {"oklab(2 0 0)", "#ffffff"},
           {"oklch(0.59686 39.0475% 49.7694)", "#c65d06"},
           {"oklab(40.101% 0.1147 0.0453)", "#7d2329"},
           {"oklch(59.686% 0.15619 49.7694deg)", "#c65d06"},
           {"color(srgb 1 .5 0)", "#ff8000"},
           {"color(srgb 100% 50% 0%)", "#ff8000"},
           {"color(srgb 1 0)", ""},
           {"color(srgb 1, 0, 0)", ""},
           {"color(oklab 1 0 0)", ""},
           {"color('srgb' 1 0 0)", ""},
           {"color(srgb-linear 0.002 0 0)", "#070000"},
           {"color(display-p3 0 1 0)", "#00ff00"},
           {"color(srgb-linear 0.5 0 0)", "#bc0000"},
           {"color(xyz 0.9505 1 1.089)", "#ffffff"},
           {"color(xyz-d50 0.9643 1 0.8251)", "#ffffff"},
           {"color(rec2020 1 1 1 / .5)", "#ffffff/0.5"},
           {"color(prophoto-rgb 1 1 1)", "#ffffff"},
           {"color(a98-rgb 1 1 1)", "#ffffff"},
           {"color-mix(in srgb, red, blue)", "#800080"},
           {"color-mix(in srgb, red 25%, blue)", "#4000bf"},
           {"color-mix(in oklab, white, black)", "#636363"},
           {"color-mix(in srgb, red 0%, blue 0%)", ""},
           {"color-mix(in srgb, red 30%, blue 30%)", "#800080/0.6"},
           {"color-mix(in srgb-linear, red, blue)", "#bc00bc"},
           {"color-mix(in xyz, white, black)", "#bcbcbc"},
           {"color-mix(in srgb, 25% red, blue)", "#4000bf"},
           {"color-mix(in srgb, red, blue 25%)", "#bf0040"},
           {"color-mix(in srgb, red 100%, blue)", "#ff0000"},
           {"color-mix(in srgb, red 101%, blue)", ""},
           {"color-mix(in srgb, transparent, red)", "#ff0000/0.5"},
           {"color-mix(in srgb, transparent, transparent)", "#000000/0"},
           {"color-mix(in srgb, red 100%, blue 100%)", "#800080"},
           {"color-mix(in srgb, 30% red 30%, blue)", ""},
           {"color-mix(in srgb, 30 red, blue)", ""},
           {"color-mix(in unknown, red, blue)", ""},
           {"color-mix(in srgb, red, blue, lime)", ""},
           {"color-mix(in srgb red, blue)", ""},
           {"color-mix(in srgb, red)", ""},
           {"color(lab 1 0 0)", ""},
           {"color(unknown 1 0 0)", ""},
           {"color-mix(srgb, red, blue)", ""},
           {"color-mix(10% red, blue)", ""},
           {"rgb(1 2 3 / x)", ""},
           {"rgb(1 2 3 / .5 6)", ""},
           {"rgb(1, 2, 3, none)", ""},
           {"rgb(1 2 3 / none)", "#010203/0"},
           {"light-dark(red, blue)", "#ff0000"},
           {"light-dark(red)", ""},
           {"light-dark(red, x)", ""},
           {"light-dark(red, blue, lime)", ""},
           {"light-dark(red blue)", ""},
           {"red blue", ""},
       }) {
    const std::string expected = test.declarations.empty() ? "" : "color: " + std::string(test.declarations);
    EXPECT_EQ(declarationsOf("color:" + std::string(test.style)), expected) << test.style;
  }
}

TEST(CSSColor, IsKnownByName) {
  std::istringstream names(
      "aliceblue antiquewhite aqua aquamarine azure beige bisque black blanchedalmond blue blueviolet "
      "brown burlywood cadetblue chartreuse chocolate coral cornflowerblue cornsilk crimson cyan darkblue "
      "darkcyan darkgoldenrod darkgray darkgreen darkgrey darkkhaki darkmagenta darkolivegreen darkorange "
      "darkorchid darkred darksalmon darkseagreen darkslateblue darkslategray darkslategrey darkturquoise "
      "darkviolet deeppink deepskyblue dimgray dimgrey dodgerblue firebrick floralwhite forestgreen "
      "fuchsia gainsboro ghostwhite gold goldenrod gray green greenyellow grey honeydew hotpink indianred "
      "indigo ivory khaki lavender lavenderblush lawngreen lemonchiffon lightblue lightcoral lightcyan "
      "lightgoldenrodyellow lightgray lightgreen lightgrey lightpink lightsalmon lightseagreen "
      "lightskyblue lightslategray lightslategrey lightsteelblue lightyellow lime limegreen linen magenta "
      "maroon mediumaquamarine mediumblue mediumorchid mediumpurple mediumseagreen mediumslateblue "
      "mediumspringgreen mediumturquoise mediumvioletred midnightblue mintcream mistyrose moccasin "
      "navajowhite navy oldlace olive olivedrab orange orangered orchid palegoldenrod palegreen "
      "paleturquoise palevioletred papayawhip peachpuff peru pink plum powderblue purple rebeccapurple "
      "red rosybrown royalblue saddlebrown salmon sandybrown seagreen seashell sienna silver skyblue "
      "slateblue slategray slategrey snow springgreen steelblue tan teal thistle tomato turquoise violet "
      "wheat white whitesmoke yellow yellowgreen");
  std::uint32_t sum = 0;
  for (std::string name; names >> name;) {
    const CSSColor color = colorNamed(unitsOf(name)).value_or(CSSColor{1, 1, 1});
    for (const std::uint8_t part : {color.red, color.green, color.blue}) sum = sum * 257 + part;
  }
  // Of the decimal numbers in the standard's table, in the same way.
  EXPECT_EQ(sum, 0xea8bfb08U);
}

TEST(CSSColor, IsKnownByOldNamesOfSystems) {
  // Old names of the system's colours stand for those of today.
  std::istringstream names(
      "infobackground Canvas infotext CanvasText menu Canvas menutext CanvasText window Canvas windowtext "
      "CanvasText buttonhighlight ButtonFace buttonshadow ButtonFace threedface ButtonFace -webkit-link "
      "LinkText -webkit-activelink ActiveText");
  for (std::string old, today; names >> old >> today;) {
    EXPECT_NE(declarationsOf("color:" + old), "") << old;
    EXPECT_EQ(declarationsOf("color:" + old), declarationsOf("color:" + today)) << old;
  }
}

}  // namespace
}  // namespace nimbo
