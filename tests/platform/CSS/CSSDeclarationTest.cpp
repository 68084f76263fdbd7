// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSDeclaration.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/platform/CSS/CSSText.hpp"
#include "tests/support/GrowthRatio.hpp"
#include "tests/support/Repeated.hpp"

namespace nimbo {
namespace {

struct Case {
  std::string_view style, declarations;
};

TEST(CSSDeclaration, DropsWhatIsInvalidAndGoesOn) {
  for (const Case &test : std::initializer_list<Case>{
           {"", ""},
           {"color:red", "color: #ff0000"},
           {"foo color:red", ""},
           {"COLOR : RED ! Important ; float:left", "color: #ff0000 !; float: left"},
           {"color:red!", ""},
           {"color:red!\\69mportant", "color: #ff0000 !"},
           {"--x:!important;--y:a !important ;--z:important", "--x: {} !; --y: {a} !; --z: {important}"},
           {"color:red !important x", ""},
           {"--x:a important;--y:a ! b important;color:red important",
            "--x: {a important}; --y: {a ! b important}"},
           {"color:red;;;color:;color;:red;color:green", "color: #ff0000; color: #008000"},
           {"color red; color:lime", "color: #00ff00"},
           {"color:rgb(1,2,3;color:red);float:none", "float: none"},
           {"color:red)", ""},
           {"color:'\n;float:left", "float: left"},
           {"color:url(x y);float:left", "float: left"},
           {"unknown: ({;});float:left", "float: left"},
           {"a:hover { color:red } float:left", "float: left"},
           {"@media x; float:left", "float: left"},
           {"@media x { color: red } float:left", "float: left"},
           {"c\\6flor:red", "color: #ff0000"},
           {"color:/**/red/**/", "color: #ff0000"},
           {"-moz-float:left; -webkit-margin-start:1px", "margin-inline-start: 1px"},
           {"float:left right", ""},
           {"color:inherit; float:Initial; margin:unset",
            "color: inherit; float: initial; margin-top: unset; margin-right: unset; margin-bottom: unset; "
            "margin-left: unset"},
           {"all:revert", "all: revert"},
           {"all:red", ""},
           {"--a:{;};--B: x y ;--c:;--:x;--d:inherit !important",
            "--a: {{;}}; --B: {x y}; --c: {}; --d: inherit !"},
           {"color:var(--a);margin:1px var(--b, 2px)!important",
            "color: {var(--a)}; margin: {1px var(--b, 2px)} !"},
       })
    EXPECT_EQ(declarationsOf(test.style), test.declarations) << test.style;
}

TEST(CSSDeclaration, ReadsValues) {
  for (const Case &test : std::initializer_list<Case>{
           {"width:1in;height:2.54cm;top:25.4mm;left:101.6q;right:72pt;bottom:6pc",
            "width: 96px; height: 96px; top: 96px; left: 96px; right: 96px; bottom: 96px"},
           {"width:1em;width:2REM;width:3vw;width:4dvh;width:5ch",
            "width: 1em; width: 2rem; width: 3vw; width: 4vh; width: 5ch"},
           {"width:1svw;width:2lvw;width:3dvw;width:4svh;width:5lvh",
            "width: 1vw; width: 2vw; width: 3vw; width: 4vh; width: 5vh"},
           {"width:1svmin;width:2lvmin;width:3dvmin;width:4svmax;width:5lvmax;width:6dvmax",
            "width: 1vmin; width: 2vmin; width: 3vmin; width: 4vmax; width: 5vmax; width: 6vmax"},
           {"width:0;width:1;width:-1px;margin-left:-1px;width:5%", "width: 0px; margin-left: -1px; width: 5%"},
           {"width:auto;max-width:none;max-width:auto;width:fit-content(2px)",
            "width: auto; max-width: none; width: fit-content"},
           {"width:calc(1px + 2px);width:calc(1px+2px);width:calc(10% - 2em);width:min(10px, 2em)",
            "width: 3px; width: =-12px; width: =10px"},
           {"width:clamp(1px, 5%, 8px);width:calc(2 * (3px + 4px) / 7);width:calc(1px * 1px);width:calc(1 / 0 "
            "* 1px)",
            "width: =8px; width: 2px; width: 3.403e+38px"},
           {"width:calc(1 + 1px);opacity:calc(.25 + .25);width:max(1px,2px,3px);width:calc(-5px);z:1",
            "opacity: 0.5; width: 3px; width: 0px"},
           {"width:round(up, 7px, 5px);width:mod(7px, 5px);width:calc(sqrt(16) * "
            "1px);width:abs(-3px);width:hypot(3px, 4px)",
            "width: 10px; width: 2px; width: 4px; width: 3px; width: 5px"},
           {"border-top-width:10%;border-top-width:calc(1px + 0%);border-top-width:thick",
            "border-top-width: 5px"},
           {"display:block flow;display:inline flow-root;display:list-item block;display:flow inline",
            "display: block; display: inline-block; display: list-item; display: inline"},
           {"display:-webkit-flex;display:-webkit-inline-box;display:-webkit-inline-flex;position:-webkit-"
            "sticky",
            "display: flex; display: inline-flex; display: inline-flex; position: sticky"},
           {"unicode-bidi:-webkit-isolate;unicode-bidi:-webkit-plaintext;text-align:-webkit-match-parent",
            "unicode-bidi: isolate; unicode-bidi: plaintext; text-align: match-parent"},
           {"display:flow;display:flow-root;display:block flex;display:inline flow;display:run-in;"
            "display:list-item flow-root;display:inline list-item;display:inline flow list-item",
            "display: block; display: flow-root; display: flex; display: inline; display: run-in; "
            "display: list-item; display: list-item; display: list-item"},
           {"display:list-item flex;display:block block;display:flex grid;display:list-item list-item;display:",
            ""},
           {"border-top-width:thin;border-top-width:medium;border-top-width:2px;border-top-width:-1px",
            "border-top-width: 1px; border-top-width: 3px; border-top-width: 2px"},
           {"clip:auto;clip:rect(1px, 2px);clip:rect(1px 2px 3px 4px 5px);clip:circle(1px)", "clip: auto"},
           {"clip-path:none;clip-path:url(a);clip-path:path('x');clip-path:ellipse(1px);clip-path:polygon(0 0)",
            "clip-path: none; clip-path: url(a); clip-path: path[]; clip-path: polygon[]; clip-path: "
            "polygon[]"},
           {"clip-path:inset();clip-path:square(1px);clip-path:inset(1px 2px 3px 4px)",
            "clip-path: inset[1px 2px 3px 4px]"},
           {"content:attr(1);content:counters(c);content:counters(c, d);content:counter(c x);content:count(c);"
            "content:'a' / 5;content:/ 'a';content:counter(c,);content:",
            ""},
           {"content:close-quote no-open-quote no-close-quote;content:counter(c, none) 'a' / attr(x) 'b'",
            "content: [close-quote no-open-quote no-close-quote]; content: [counter[c none] \"a\"]"},
           {"counter-reset:none a;counter-reset:a none;counter-reset:;quotes:none;quotes:none none;quotes:",
            "quotes: none"},
           {"text-decoration-line:spelling-error;text-decoration-line:grammar-error;"
            "text-decoration-line:none underline;text-decoration-line:line-through blink",
            "text-decoration-line: [spelling-error]; text-decoration-line: [grammar-error]; "
            "text-decoration-line: [line-through blink]"},
           {"font-weight:normal;font-weight:bolder", "font-weight: 400; font-weight: bolder"},
           {"background-image:-webkit-image-set(url(a) 1x);background-image:-webkit-cross-fade(url(b), url(c), "
            "5%)",
            "background-image: url(a); background-image: url(b)"},
           {"display:-webkit-box;display:inline grid;display:table-cell block;display:grid;display:none none",
            "display: flex; display: inline-grid; display: grid"},
           {"font-weight:0;font-weight:1;font-weight:1000;font-weight:1000.5",
            "font-weight: 1; font-weight: 1000"},
           {"font-weight:bold;font-weight:350;font-weight:1001;font-weight:lighter",
            "font-weight: 700; font-weight: 350; font-weight: lighter"},
           {"font-family:Times  New\tRoman, 'A b', serif, \"serif\"",
            "font-family: [\"Times New Roman\" \"A b\" serif \"serif\"]"},
           {"font-family:a,,b;font-family:inherit, x;font-family:1a", ""},
           {"font-style:oblique 0deg", "font-style: normal"},
           {"font-style:oblique 10deg;font-stretch:condensed;font-size:larger;line-height:1.5",
            "font-style: oblique; font-stretch: 75%; font-size: larger; line-height: 1.5"},
           {"font-stretch:ultra-condensed;font-stretch:extra-condensed;font-stretch:semi-condensed;"
            "font-stretch:normal;font-stretch:semi-expanded;font-stretch:expanded;font-stretch:extra-expanded;"
            "font-stretch:ultra-expanded;font-stretch:-1%",
            "font-stretch: 50%; font-stretch: 62.5%; font-stretch: 87.5%; font-stretch: 100%; "
            "font-stretch: 112.5%; font-stretch: 125%; font-stretch: 150%; font-stretch: 200%"},
           {"line-height:-1;font-size:-1px;padding:-1px;tab-size:4", "tab-size: 4"},
           {"content:'a' attr(x) counter(c) counters(c, '.', upper-roman) open-quote url(i.png)",
            "content: [\"a\" attr[x] counter[c decimal] counters[c \".\" upper-roman] open-quote url(i.png)]"},
           {"content:none;content:normal;content:'a' / 'b';content:linear-gradient(red, blue);content:none 'a'",
            "content: none; content: normal; content: [\"a\"]; content: [gradient]"},
           {"counter-reset:a b 2;counter-increment:a -1 c;counter-set:none;counter-reset:1 a",
            "counter-reset: [a 0 b 2]; counter-increment: [a -1 c 1]; counter-set: none"},
           {"quotes:'<' '>' '(' ')';quotes:'a';quotes:auto", "quotes: [\"<\" \">\" \"(\" \")\"]; quotes: auto"},
           {"list-style-type:mine;list-style-type:'-';list-style-type:square;list-style-type:none",
            "list-style-type: mine; list-style-type: \"-\"; list-style-type: square; list-style-type: none"},
           {"text-decoration-line:underline overline;text-decoration-line:underline "
            "underline;text-decoration-line:none",
            "text-decoration-line: [underline overline]; text-decoration-line: none"},
           {"clip:rect(0, 1px, auto, 0);clip:rect(1px 1px 1px 1px);clip-path:inset(50%);clip-path:circle(4px)",
            "clip: rect[0px 1px auto 0px]; clip: rect[1px 1px 1px 1px]; clip-path: inset[50%]; clip-path: "
            "polygon[]"},
           {"vertical-align:super;vertical-align:-2px;text-align:-webkit-center;opacity:150%;border-spacing:"
            "1px 2px",
            "vertical-align: super; vertical-align: -2px; text-align: -webkit-center; opacity: 1; "
            "border-spacing: [1px 2px]"},
           {"text-transform:uppercase full-width;text-indent:2em hanging;white-space:pre-wrap",
            "text-transform: uppercase; text-indent: 2em; white-space: pre-wrap"},
           {"background-image:none, url(a), url(b);background-image:image-set('c' 1x)",
            "background-image: url(a); background-image: url(c)"},
           {"margin-block-start:1px;block-size:2px;inset-block-end:3px;padding-inline-end:4px",
            "margin-top: 1px; height: 2px; bottom: 3px; padding-inline-end: 4px"},
           {"clear:both;clear:inline-start;clear:top;direction:rtl;direction:up;empty-cells:hide;empty-cells:"
            "auto",
            "clear: both; clear: inline-start; direction: rtl; empty-cells: hide"},
           {"table-layout:fixed;table-layout:none;text-align-last:justify;text-align-last:-webkit-center",
            "table-layout: fixed; text-align-last: justify"},
           {"text-overflow:ellipsis;text-overflow:'>';text-overflow:fade",
            "text-overflow: ellipsis; text-overflow: \">\""},
           {"display:inline table;display:flex inline;display:inline ruby;display:inline math",
            "display: inline-table; display: inline-flex; display: ruby; display: math"},
           {"content:'a' 5;content:'a' none;content:#a", ""},
           {"background-image:cross-fade(25% url(a), url(b));background-image:image-set(linear-gradient(red, "
            "url(x)) 1x, 'c' 2x);background-image:image-set(type('a/b') 1x, url(d) 2x);"
            "background-image:cross-fade(red, blue)",
            "background-image: url(a); background-image: gradient; background-image: url(d)"},
           {"text-transform:full-width;text-transform:full-size-kana lowercase;text-transform:none full-width",
            "text-transform: none; text-transform: lowercase"},
           {"text-transform:lowercase full-width;text-indent:hanging 1px each-line;text-indent:hanging",
            "text-transform: lowercase; text-indent: 1px"},
           {"border-spacing:1px;border-spacing:-1px;border-spacing:1px 2px 3px;border-spacing:1%",
            "border-spacing: [1px 1px]"},
           {"width:fit-content(2px 3px);width:fit-content(x);width:fit-content()", ""},
           {"font-style:oblique 1px;font-style:italic 1deg;font-style:oblique x", ""},
           {"quotes:'a' 'b' 'c';quotes:a b;counter-reset:a 1.5;counter-reset:a 1 2;font-family:'a' b", ""},
           {"opacity:-1;opacity:2;opacity:.25;opacity:1px", "opacity: 0; opacity: 1; opacity: 0.25"},
           {"clip:rect(1px 2px 3px);clip:rect(x 1px 1px 1px);clip:rect(1% 1px 1px 1px)", ""},
           {"letter-spacing:normal;letter-spacing:2px;word-spacing:-1px;line-height:5%;line-height:normal",
            "letter-spacing: normal; letter-spacing: 2px; word-spacing: -1px; line-height: 5%; line-height: "
            "normal"},
       })
    EXPECT_EQ(declarationsOf(test.style), test.declarations) << test.style;
}

TEST(CSSDeclaration, ReadsWholeValues) {
  const auto read = [](CSSProperty property, std::u16string_view text) {
    CSSArena arena;
    std::vector<CSSDeclaration> declarations;
    const bool isRead = readValue(property, text, CSSMode::kStandard, arena, declarations);
    EXPECT_EQ(isRead, !declarations.empty()) << textOf(text);
    return textOfDeclarations(declarations);
  };
  EXPECT_EQ(read(CSSProperty::kColor, u" red "), "color: #ff0000");
  EXPECT_EQ(read(CSSProperty::kMarginInline, u"1px"), "margin-inline-start: 1px; margin-inline-end: 1px");
  for (const std::u16string_view none :
       {u"", u"red)", u"red !important", u"red;", u"rgb(1 2 3]", u"'a\n", u"1px"})
    EXPECT_EQ(read(CSSProperty::kColor, none), "") << textOf(none);
  EXPECT_EQ(read(CSSProperty::kMargin, u"1px 2px red"), "") << "nothing is left of what was read";
  EXPECT_EQ(read(CSSProperty::kCustom, u"a"), "");
  EXPECT_EQ(read(CSSProperty::kUnknown, u"a"), "");
}

TEST(CSSDeclaration, Calculates) {
  struct Calculation {
    std::string_view value, length;
  };
  for (const Calculation &test : std::initializer_list<Calculation>{
           {"round(8px, 5px)", "10px"},
           {"round(nearest, -7.5px, 5px)", "-5px"},
           {"round(up, 6px, 5px)", "10px"},
           {"round(up, -9px, 5px)", "-5px"},
           {"round(down, 9px, 5px)", "5px"},
           {"round(down, -6px, 5px)", "-10px"},
           {"round(TO-ZERO, -9px, 5px)", "-5px"},
           {"round(to-zero, 9px, 5px)", "5px"},
           // The sign of the step means nothing.
           {"round(up, 6px, -5px)", "10px"},
           {"round(down, 9px, -5px)", "5px"},
           {"calc(round(2.5) * 1px)", "3px"},
           {"calc(round(down, -2.5) * 1px)", "-3px"},
           {"calc(round(up, 2.2) * 1px)", "3px"},
           {"calc(round(to-zero, -2.7) * 1px)", "-2px"},
           {"round(1px)", ""},
           {"round(sideways, 1px, 2px)", ""},
           {"round(up 1px, 2px)", ""},
           {"mod(-7px, 5px)", "3px"},
           {"mod(7px, -5px)", "-3px"},
           {"rem(-7px, 5px)", "-2px"},
           {"rem(7px, -5px)", "2px"},
           {"calc(pow(2, 3) * 1px)", "8px"},
           {"calc(log(8, 2) * 1px)", "3px"},
           {"calc(log(e) * 5px)", "5px"},
           {"calc(exp(2) * 1px)", "7.389px"},
           {"calc(sign(-3px) * 7px)", "-7px"},
           {"calc(sign(3) * 7px)", "7px"},
           {"calc(sign(0%) * 7px)", "=0px"},
           {"hypot(-3px)", "3px"},
           {"hypot(2px, 3px, 6px)", "7px"},
           {"calc(PI * 1px)", "3.142px"},
           {"calc(-infinity * 1px)", "-3.403e+38px"},
           {"calc(NaN * 1px)", "0px"},
           {"calc(tau * 1px)", ""},
           {"calc('1px')", ""},
           {"calc(1px, 2px)", ""},
           {"min(1px, 2)", ""},
           {"calc(1px + (2px))", "3px"},
           {"calc(1px +(2px))", ""},
           {"calc((1px)+ (2px))", ""},
           {"calc(1px - (2px))", "-1px"},
           {"calc(1px -(2px))", ""},
           {"calc(1px + )", ""},
           {"calc(2 * )", ""},
           {"calc(1px / 1px)", ""},
           {"calc(1 / 2px)", ""},
           {"calc((1px)", "1px"},
           {"calc((1px 2px))", ""},
           {"calc(1deg)", ""},
           {"clamp(2px, 1px, 3px)", "2px"},
           {"clamp(2px, 4px, 3px)", "3px"},
           {"clamp(1px, 2px, 3px, 4px)", ""},
           {"pow(2)", ""},
           {"calc(pow(1, 2, 3) * 1px)", ""},
           {"calc(exp(1, 2) * 1px)", ""},
           {"calc(sqrt(1, 2) * 1px)", ""},
           {"calc(sign(1px, 2px) * 1px)", ""},
           {"abs(1px, 2px)", ""},
           {"round(1px, 2px, 3px)", ""},
           {"mod(1px, 2px, 3px)", ""},
           {"rem(1px, 2px, 3px)", ""},
           {"rem(1px)", ""},
           {"hypot()", ""},
           {"max()", ""},
           {"-webkit-calc(1px)", "1px"},
           {"calc(log(1, 2, 3) * 1px)", ""},
           {"calc(log(1px) * 1px)", ""},
           {"clamp(1px, 2px)", ""},
           {"mod(7px)", ""},
           {"pow(2px, 2)", ""},
           {"sqrt()", ""},
       }) {
    const std::string expected = test.length.empty() ? "" : "margin-left: " + std::string(test.length);
    EXPECT_EQ(declarationsOf("margin-left:" + std::string(test.value)), expected) << test.value;
  }
}

TEST(CSSDeclaration, ResolvesLengths) {
  CSSLengthContext context;
  context.fontSize = 10;
  context.rootFontSize = 20;
  context.xHeight = 3;
  context.chWidth = 4;
  context.lineHeight = 13;
  context.rootLineHeight = 17;
  context.viewportWidth = 400;
  context.viewportHeight = 300;
  const auto pixelsOf = [&](std::string_view length) {
    const std::u16string style = unitsOf("width:" + std::string(length));
    CSSArena arena;
    std::vector<CSSDeclaration> declarations;
    readDeclarations(style, CSSMode::kStandard, arena, declarations);
    return declarations.size() == 1 ? resolvedNumber(declarations[0].value, context) : std::nullopt;
  };
  struct Length {
    std::string_view text;
    double pixels;
  };
  for (const Length &test : std::initializer_list<Length>{
           {"2px", 2},           {"2em", 20},    {"2ex", 6},
           {"10cap", 70},        {"2ch", 8},     {"2ic", 20},
           {"2rem", 40},         {"2rex", 20},   {"2rch", 20},
           {"2lh", 26},          {"2rlh", 34},   {"10vw", 40},
           {"10vi", 40},         {"10vh", 30},   {"10vb", 30},
           {"10vmin", 30},       {"10vmax", 40}, {"calc(2ex + 1lh)", 19},
           {"max(1vh, 1ch)", 4},
       })
    EXPECT_NEAR(pixelsOf(test.text).value_or(-1), test.pixels, 1e-9) << test.text;
  std::swap(context.viewportWidth, context.viewportHeight);
  EXPECT_EQ(pixelsOf("10vmin"), 30);
  EXPECT_EQ(pixelsOf("10vmax"), 40);
  EXPECT_EQ(pixelsOf("50%"), std::nullopt);
  EXPECT_EQ(pixelsOf("calc(50% + 1px)"), std::nullopt);
  EXPECT_EQ(pixelsOf("min(50%)"), std::nullopt);
  for (const std::string_view percentage :
       {"clamp(50%, 1px, 2px)", "clamp(1px, 50%, 2px)", "clamp(1px, 2px, 50%)", "calc(1px + 50%)"})
    EXPECT_EQ(pixelsOf(percentage), std::nullopt) << percentage;
  EXPECT_EQ(pixelsOf("auto"), std::nullopt);
  context.percentageBase = 50;
  EXPECT_EQ(pixelsOf("50%"), 25);
}

TEST(CSSDeclaration, TakesShorthandsApart) {
  for (const Case &test : std::initializer_list<Case>{
           {"margin:1px 2px 3px", "margin-top: 1px; margin-right: 2px; margin-bottom: 3px; margin-left: 2px"},
           {"margin:1px 2px 3px 4px 5px;padding:auto;margin:", ""},
           {"margin-inline:1px 2px;inset:auto",
            "margin-inline-start: 1px; margin-inline-end: 2px; top: auto; right: auto; bottom: auto; left: "
            "auto"},
           {"border-top:solid red",
            "border-top-width: 3px; border-top-style: solid; border-top-color: #ff0000"},
           {"border-left:0",
            "border-left-width: 0px; border-left-style: none; border-left-color: currentcolor"},
           {"border:1px 2px;border:;border-top:;text-decoration:;text-decoration:red red", ""},
           {"border-color:red blue",
            "border-top-color: #ff0000; border-right-color: #0000ff; border-bottom-color: #ff0000; "
            "border-left-color: #0000ff"},
           {"font:italic small-caps bold 12px/1.5 a, serif",
            "font-style: italic; font-variant-caps: small-caps; font-variant-position: normal; font-weight: "
            "700; "
            "font-stretch: 100%; font-size: 12px; line-height: 1.5; font-family: [\"a\" serif]"},
           {"font:normal oblique 350 x-large serif",
            "font-style: oblique; font-variant-caps: normal; font-variant-position: normal; font-weight: 350; "
            "font-stretch: 100%; font-size: x-large; line-height: normal; font-family: [serif]"},
           {"font:12px;font:bold serif;font:12px/x serif;font:bold bold 12px serif;font:math serif", ""},
           {"list-style:none", "list-style-type: none; list-style-position: outside; list-style-image: none"},
           {"list-style:inside url(a) none",
            "list-style-type: none; list-style-position: inside; list-style-image: url(a)"},
           {"list-style:none none none;list-style:disc circle;list-style:none disc url(a);list-style:", ""},
           {"list-style:none disc",
            "list-style-type: disc; list-style-position: outside; list-style-image: none"},
           {"background:url(a) no-repeat 0 0 / 10px auto, #fff",
            "background-color: #ffffff; background-image: url(a)"},
           {"background:left top/contain no-repeat fixed border-box red",
            "background-color: #ff0000; "
            "background-image: none"},
           {"background:right bottom/cover repeat-x local padding-box text red",
            "background-color: #ff0000; "
            "background-image: none"},
           {"background:center/auto space round scroll content-box red",
            "background-color: #ff0000; "
            "background-image: none"},
           {"background:repeat red;background:repeat-y",
            "background-color: #ff0000; background-image: none; "
            "background-color: #000000/0; background-image: none"},
           {"background:none,url(a),url(b) red", "background-color: #ff0000; background-image: url(a)"},
           {"background:none", "background-color: #000000/0; background-image: none"},
           {"background:red, url(a);background:foo;background:red red", ""},
           {"background:none url(a);background:url(a),;background:", ""},
           {"text-decoration:underline dotted red 2px",
            "text-decoration-line: [underline]; text-decoration-style: dotted; text-decoration-color: #ff0000; "
            "text-decoration-thickness: 2px"},
           {"text-decoration:none",
            "text-decoration-line: none; text-decoration-style: solid; text-decoration-color: currentcolor; "
            "text-decoration-thickness: auto"},
           {"overflow:hidden", "overflow-x: hidden; overflow-y: hidden"},
           {"font-variant:small-caps tabular-nums;font-variant:none",
            "font-variant-caps: small-caps; font-variant-position: normal; font-variant-caps: normal; "
            "font-variant-position: normal"},
           {"font-variant:super;font-variant:sub unicase;font-variant:sub super 5;font-variant:sub normal",
            "font-variant-caps: normal; font-variant-position: super; font-variant-caps: unicase; "
            "font-variant-position: sub"},
           {"font-variant:;font-variant:normal small-caps", ""},
           {"font:caption",
            "font-style: normal; font-variant-caps: normal; font-variant-position: normal; font-weight: 400; "
            "font-stretch: 100%; font-size: 16px; line-height: normal; font-family: [system-ui]"},
           {"font:menu serif;font:bold icon;font:1001 12px serif;font:0 12px serif;font:oblique 1px 12px serif",
            ""},
           {"list-style:inside", "list-style-type: disc; list-style-position: inside; list-style-image: none"},
           {"background:inherit;list-style:revert",
            "background-color: inherit; background-image: inherit; list-style-type: revert; "
            "list-style-position: revert; list-style-image: revert"},
           {"border-block:1px solid red",
            "border-top-width: 1px; border-top-style: solid; border-top-color: #ff0000; border-bottom-width: "
            "1px; border-bottom-style: solid; border-bottom-color: #ff0000"},
           {"border-inline:dotted",
            "border-inline-start-width: 3px; border-inline-start-style: dotted; border-inline-start-color: "
            "currentcolor; border-inline-end-width: 3px; border-inline-end-style: dotted; "
            "border-inline-end-color: currentcolor"},
           {"border-right:thin;border-bottom:double",
            "border-right-width: 1px; border-right-style: none; border-right-color: currentcolor; "
            "border-bottom-width: 3px; border-bottom-style: double; border-bottom-color: currentcolor"},
           {"border-inline-start:1px;border-inline-end:red",
            "border-inline-start-width: 1px; border-inline-start-style: none; border-inline-start-color: "
            "currentcolor; border-inline-end-width: 3px; border-inline-end-style: none; "
            "border-inline-end-color: #ff0000"},
           {"border-width:1px 2px 3px 4px;border-style:solid dotted dashed",
            "border-top-width: 1px; border-right-width: 2px; border-bottom-width: 3px; border-left-width: 4px; "
            "border-top-style: solid; border-right-style: dotted; border-bottom-style: dashed; "
            "border-left-style: dotted"},
           {"border-block-width:1px 2px;border-block-style:solid none;border-block-color:red blue",
            "border-top-width: 1px; border-bottom-width: 2px; border-top-style: solid; border-bottom-style: "
            "none; border-top-color: #ff0000; border-bottom-color: #0000ff"},
           {"border-inline-width:1px 2px;border-inline-style:solid none;border-inline-color:red blue",
            "border-inline-start-width: 1px; border-inline-end-width: 2px; border-inline-start-style: solid; "
            "border-inline-end-style: none; border-inline-start-color: #ff0000; border-inline-end-color: "
            "#0000ff"},
           {"inset-block:1px 2px;inset-inline:1px 2px;inset-block:1px 2px 3px",
            "top: 1px; bottom: 2px; inset-inline-start: 1px; inset-inline-end: 2px"},
           {"margin-block:1px 2px;padding-block:3px;padding-inline:1px 2px",
            "margin-top: 1px; margin-bottom: 2px; padding-top: 3px; padding-bottom: 3px; "
            "padding-inline-start: 1px; padding-inline-end: 2px"},
       })
    EXPECT_EQ(declarationsOf(test.style), test.declarations) << test.style;
}

TEST(CSSDeclaration, KnowsPropertiesByOtherNames) {
  std::istringstream names(
      "inline-size width min-inline-size min-width max-inline-size max-width block-size height min-block-size "
      "min-height max-block-size max-height inset-block-start top inset-block-end bottom margin-block-start "
      "margin-top margin-block-end margin-bottom padding-block-start padding-top padding-block-end "
      "padding-bottom border-block-start border-top border-block-end border-bottom border-block-start-color "
      "border-top-color border-block-end-color border-bottom-color border-block-start-style border-top-style "
      "border-block-end-style border-bottom-style border-block-start-width border-top-width "
      "border-block-end-width border-bottom-width overflow-inline overflow-x overflow-block overflow-y "
      "-webkit-margin-start margin-inline-start -webkit-margin-end margin-inline-end -webkit-padding-start "
      "padding-inline-start -webkit-padding-end padding-inline-end -webkit-box-sizing box-sizing "
      "-webkit-opacity opacity -webkit-text-decoration text-decoration");
  for (std::string name, known; names >> name >> known;)
    EXPECT_EQ(declarationsOf(name + ":inherit"), declarationsOf(known + ":inherit")) << name;
}

TEST(CSSDeclaration, LetsQuirkyPagesLeaveUnitsAndHashesOut) {
  for (const Case &test : std::initializer_list<Case>{
           {"width:10;font-size:12;margin:1 2",
            "width: 10px; font-size: 12px; margin-top: 1px; margin-right: 2px; margin-bottom: 1px; "
            "margin-left: 2px"},
           {"line-height:2;border:1 solid;font:12 serif", "line-height: 2"},
           {"color:ff0000;background-color:123;background:fff", "color: #ff0000; background-color: #000123"},
           {"color:12ab56;color:000001;color:+123;color:1.5;color:00f;color:1234567",
            "color: #12ab56; color: #000001; color: #00000f"},
           {"width:calc(10);border-top-color:abc", "border-top-color: #aabbcc"},
           {"color:0;color:1\\61 2;color:xyz;color:00000g;color:abcd;color:abcdefab", "color: #000000"},
           {"padding:1;border-width:2;border-color:abc 123456",
            "padding-top: 1px; padding-right: 1px; padding-bottom: 1px; padding-left: 1px; border-top-width: "
            "2px; "
            "border-right-width: 2px; border-bottom-width: 2px; border-left-width: 2px; border-top-color: "
            "#aabbcc; "
            "border-right-color: #123456; border-bottom-color: #aabbcc; border-left-color: #123456"},
           {"color:00000012", "color: #000012"},
           {"padding-inline:1;inset:1;border-top:abc solid;background:#000 url(a) 1 2;"
            "color:light-dark(abc, red);color:light-dark(red, abc)",
            ""},
       })
    EXPECT_EQ(declarationsOf(test.style, CSSMode::kQuirks), test.declarations) << test.style;
}

TEST(CSSDeclaration, TakesRawDeclarationsApart) {
  struct RawCase {
    std::u16string_view style, declarations;
  };
  for (const RawCase &test : std::initializer_list<RawCase>{
           {u"a : b c ;d:e!important;f:g !  IMPORTANT", u"a=b c|d=e!|f=g!|"},
           {u"a:';';b:(;);c;d:", u"a=';'|b=(;)|d=|"},
           {u"x{a:b}c:d;@e f;g:h", u"c=d|g=h|"},
           {u"a:!important;b:x!y", u"a=!|b=x!y|"},
       }) {
    CSSRawDeclarations declarations(test.style);
    std::u16string text;
    while (const std::optional<CSSRawDeclaration> declaration = declarations.next()) {
      text += declaration->name;
      text += u'=';
      text += declaration->value;
      text += declaration->isImportant ? u"!|" : u"|";
    }
    EXPECT_EQ(textOf(text), textOf(test.declarations)) << textOf(test.style);
  }
}

TEST(CSSDeclaration, LimitsTheDepthAndTheTokensOfValues) {
  const auto read = [](const std::u16string &style) { return declarationsOf(textOf(style)); };
  const auto nested = [&](std::size_t depth) {
    return u"width:calc(" + repeated(u"(", depth - 1) + u"1px" + repeated(u")", depth);
  };
  constexpr std::size_t kDeepest = 32, kMostTokens = 1 << 16;
  EXPECT_EQ(read(nested(kDeepest)), "width: 1px");
  EXPECT_EQ(read(nested(kDeepest + 1)), "");
  EXPECT_NE(read(u"--x:" + repeated(u":", kMostTokens)), "");
  EXPECT_EQ(read(u"--x:" + repeated(u":", kMostTokens + 1) + u";--y:z"), "--y: {z}");
  const auto isWhole = [](const std::u16string &text) {
    CSSArena arena;
    std::vector<CSSDeclaration> declarations;
    return readValue(CSSProperty::kFontFamily, text, CSSMode::kStandard, arena, declarations);
  };
  EXPECT_TRUE(isWhole(repeated(u"a,", kMostTokens / 2 - 1) + u"a "));
  EXPECT_FALSE(isWhole(repeated(u"a,", kMostTokens / 2) + u"a"));
}

TEST(CSSDeclaration, FollowsBracketsAtAnyDepth) {
  constexpr std::u16string_view kOpening = u"([{", kClosing = u")]}";
  for (const std::size_t depth : {1, 2, 63, 64, 65, 66, 67, 200}) {
    std::u16string opening, closing;
    for (std::size_t i = 0; i < depth; ++i) {
      opening += kOpening[i % 3];
      closing.insert(closing.begin(), kClosing[i % 3]);
    }
    EXPECT_NE(declarationsOf(textOf(u"--x:" + opening + closing)), "") << depth;
    EXPECT_TRUE(declarationsOf(textOf(u"--x:" + opening + closing + u";--y:z")).ends_with("; --y: {z}"))
        << depth;
    // What is closed in another order is bad, and nothing behind it is outside of the brackets.
    for (std::size_t wrong = 1; wrong < depth; wrong += 7) {
      std::u16string swapped = closing;
      std::swap(swapped[wrong - 1], swapped[wrong]);
      EXPECT_EQ(declarationsOf(textOf(u"--x:" + opening + swapped + u";--y:z")), "") << depth << " " << wrong;
    }
  }
}

/// What is made to cost much must neither take time by the square nor the stack.
TEST(CSSDeclaration, BearsDeepAndLongValues) {
  const auto read = [](const std::u16string &style) {
    CSSArena arena;
    std::vector<CSSDeclaration> declarations;
    readDeclarations(style, CSSMode::kStandard, arena, declarations);
    CSSRawDeclarations raw(style);
    while (raw.next()) continue;
  };
  for (const std::u16string_view part :
       {u"(", u"{", u"[", u"calc(", u"min(", u"color-mix(in srgb,", u"var(--a,", u"a:hover{", u"a:b;", u"a,",
        u"1px ", u"url(", u"'a'", u"@x{", u"cross-fade("})
    for (const std::u16string_view head : {u"width:", u"font-family:", u"background-image:", u"--x:", u""})
      expectLinearTime(4000, [&](std::size_t n) { read(std::u16string(head) + repeated(part, n)); });
}

}  // namespace
}  // namespace nimbo
