// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/platform/WebKit/RichText/PageDump.hpp"

namespace nimbo::detail {
namespace {

TEST(ParagraphFlow, DistancesAreThoseOfCollapsedMargins) {
  expectParagraphs({
      {u"<!doctype html><p>a<p>b", "<before=12 after=12>a|<after=12>b|"},
      {u"<div style='margin:8px 0 16px'>a</div><div style='margin-top:24px'>b</div>",
       "<before=6 after=12>a|<before=6>b|"},
      {u"<div style='margin-bottom:16px'>a</div><div style='margin-top:-8px'>b</div>", "<after=6>a|b|"},
      {u"<div style='margin-bottom:16px'><div style='margin-bottom:4px'>a</div></div>b", "<after=12>a|b|"},
      {u"<div>a</div><div style='margin:16px 0'></div><div>b</div>", "a|<before=12>b|"},
      {u"<div style='margin-top:16px;padding:8px 0'><div style='margin-top:4px'>a</div></div>b",
       "<before=21 after=6>a|b|"},
      {u"<div style='padding-bottom:8px;margin-bottom:16px'>a</div><div style='margin-top:24px'>b</div>",
       "<after=18>a|<before=6>b|"},
      {u"<div style='margin-bottom:16px'>a</div><div style='margin-top:24px;padding-top:8px'>b</div>",
       "<after=12>a|<before=12>b|"},
      {u"<body style='margin:50px;padding:9px'>a", "a|"},
      {u"<pre style='margin:8px 0'>a\nb</pre>", "<before=6>a|<after=6>b|"},
  });
}

TEST(ParagraphFlow, IndentsAlignmentAndLinesFollowBlocks) {
  expectParagraphs({
      {u"<blockquote style='margin:0 40px'>a<div "
       u"style='margin-left:-8px;padding-right:4px'>b</div></blockquote>",
       "<head=30 tail=30>a|<head=24 tail=33>b|"},
      {u"<div style='text-align:end'>a</div><div dir=rtl style='text-align:end'>\u05d0</div>",
       "<right>a|<left rtl>\u05d0|"},
      {u"<div dir=rtl style='text-align:right'>\u05d0</div><div align=right>b</div><div align=left>c</div>",
       "<rtl>\u05d0|<right>b|c|"},
      {u"<div style='padding-left:10%'>a", "<head=96>a|"},
      {u"<div style='padding-left:1e7px'>a<p style='margin:0 0 0 -1e7px'>b", "<head=750000>a|b|"},
      {u"<dl style='margin:0'><dt>a<dd>b</dl>", "a|<head=30>b|"},
      {u"<div style='text-indent:16px'>a<p style='margin:0'>b</p>c</div>", "<first=12>a|<first=12>b|c|"},
      {u"<center>a<div style='text-align:right'>b</div></center><p style='margin:0;text-align:justify'>c",
       "<center>a|<right>b|<justified>c|"},
      {u"<div dir=rtl>א<div style='text-align:left'>b</div></div><div>א</div>", "<rtl>א|<left rtl>b|<ltr>א|"},
      {u"<div style='line-height:1.8'>a</div><div style='line-height:40px'>b</div>",
       "<lines=1.5>a|<high=30>b|"},
      {u"<h3 style='margin:0'>a<div>b</div></h3>c", "<h3>a|<h3>b|c|"},
      {u"a<hr style='margin:8px 0'>b", "<after=6>a|<cell 1:0,0/1 border=0.75#808080>|<before=6>b|"},
  });
}

/// What such letters would turn around is said to run from left to right.
TEST(ParagraphFlow, LettersFromRightToLeftLeaveTheDirectionAlone) {
  const struct {
    std::u16string_view text;
    bool isFromRight;
  } cases[] = {{u"\u05d0", true},     {u"\u08a0", true},     {u"\ufb1d", true},      {u"\ufdf2", true},
               {u"\ufe76", true},     {u"\U00010a00", true}, {u"\U00010c00", true},  {u"\U0001e900", true},
               {u"\U0001ee00", true}, {u"\u0531", false},    {u"\u0905", false},     {u"\ufb13", false},
               {u"\ufe20", false},    {u"\uff21", false},    {u"\U00010330", false}, {u"\U0001f600", false}};
  for (const auto &[text, isFromRight] : cases) {
    const NSAttributedString shown = textOfHTML(u"a " + std::u16string(text)).text;
    EXPECT_EQ(shown.attributesAtIndex(0)->paragraphStyle->baseWritingDirection,
              isFromRight ? NSWritingDirection::leftToRight : NSWritingDirection::natural)
        << NSString::stringWithCharacters(text).UTF8String();
  }
}

TEST(ParagraphFlow, CharactersLookAsStylesSay) {
  expectRuns({
      {u"<h1>a <i>b</i></h1><p>c<b>d</b><tt>e</tt>", "{24 b}a {24 b i}b|c{b}d{Courier New 9.75}e|"},
      {u"<p style='font:600 italic small-caps 20px Georgia'>a", "{Georgia 15 weight=600 i caps}a|"},
      {u"a<font color=red>b</font><mark>c</mark>", "a{#ff0000}b{on#ffff00}c|"},
      {u"<u>a<s>b</s></u><span style='text-decoration:underline wavy red'>c", "{u}a{u s}b{u-wavy u#ff0000}c|"},
      {u"<u style='text-decoration-style:double'>a</u><u style='text-decoration-style:dotted'>b</u>"
       u"<u style='text-decoration-style:dashed'>c",
       "{u-double}a{u-dotted}b{u-dashed}c|"},
      {u"<b style='font-family:sans-serif'>a</b><i style='font-family:cursive'>b</i>"
       u"<b style='font-family:fantasy'>c",
       "{Arial b}a{Comic Sans MS i}b{Impact b}c|"},
      {u"x<sup>2<sub>i</sub></sup><span style='vertical-align:4px;letter-spacing:2px'>y",
       "x{10 super=1}2{8.33}i{up=3 kern=1.5}y|"},
      {u"<p style='font:italic small-caps 300 20px Georgia'>a<button style='font:inherit'>b",
       "{Georgia 15 weight=300 i caps}ab|"},
      {u"<b style='background:red'>a<div style='background:#000080'>b</div>c",
       "{b on#ff0000}a{b}|b|{b on#ff0000}c|"},
      {u"<i style='letter-spacing:1e7px'>a</i><i style='letter-spacing:-1e7px'>b",
       "{i kern=750000}a{i kern=-750000}b|"},
      {u"<a href=u>l<b>m</b></a> n<a>o</a>", "{#0000ee u ->u}l{b #0000ee u ->u}m{} no|"},
      {u"<a href=u><div>l</div></a>", "{#0000ee u ->u}l|"},
  });
}

TEST(ParagraphFlow, EndsOfParagraphsHaveNothingThatShows) {
  for (const std::u16string_view html :
       {u"<a href=u>x</a>", u"<b style='background:red'>x</b>", u"<u>x</u>", u"<s>x</s>", u"<sup>x</sup>",
        u"<p>x<b><br></b>", u"<i style='color:red'>x</i>", u"<sub><a href=u style='background:red'><s><tt>x"}) {
    const NSAttributedString text = textOfHTML(html).text;
    ASSERT_EQ(text.length(), 2U);
    const TextAttributes letter = *text.attributesAtIndex(0), end = *text.attributesAtIndex(1);
    TextAttributes plain;
    plain.font = letter.font;
    plain.foregroundColor = letter.foregroundColor;
    plain.paragraphStyle = letter.paragraphStyle;
    EXPECT_EQ(end, plain) << NSString::stringWithCharacters(html).UTF8String();
  }
}

TEST(ParagraphFlow, BackgroundsOfBlocksShowOnlyBehindLightText) {
  expectRuns({
      {u"<div style='background:#000080'>a<span style='color:white'>b</span></div>", "a{#ffffff on#000080}b|"},
      {u"<body bgcolor=black text=white>a<code style='background:red'>b",
       "{#ffffff on#000000}a{Courier New "
       "9.75 #ffffff on#ff0000}b|"},
      {u"<table bgcolor=black><tr><td style='color:white'>a</table>", "{#ffffff}a|"},
      // Against white these have contrasts of 2.006 and 1.962, and the pure ones of 1.37, 4.0 and 8.6.
      {u"<div style='background:#000080'><i style='color:#b7b7b7'>a</i><i style='color:#b9b9b9'>b</i></div>",
       "{i #b7b7b7}a{i #b9b9b9 on#000080}b|"},
      {u"<div style='background:#000080'><i style='color:lime'>a</i><i style='color:red'>b</i>"
       u"<i style='color:blue'>c</i></div>",
       "{i #00ff00 on#000080}a{i #ff0000}b{i #0000ff}c|"},
  });
}

TEST(ParagraphFlow, LinksAreWhatTheResolverSays) {
  PageTextOptions options;
  options.absoluteURL = [](const NSString &reference) {
    return reference.view() == u"x:" ? NSString()
                                     : NSString::stringWithUTF8String("http://a/" + reference.UTF8String());
  };
  const NSAttributedString text = textOfHTML(u"<a href=b>1</a><a href='x:'>2</a>", options).text;
  EXPECT_EQ(text.attributesAtIndex(0)->link, u"http://a/b"_ns);
  EXPECT_FALSE(text.attributesAtIndex(1)->link);
  const auto linkOf = [&](std::u16string_view html) {
    return textOfHTML(html, options).text.attributesAtIndex(0)->link;
  };
  EXPECT_EQ(linkOf(u"<svg><a xlink:href=b><text>1</text></a></svg>"), u"http://a/b"_ns);
  EXPECT_EQ(linkOf(u"<svg><a xlink:href=b href=c><text>1</text></a></svg>"), u"http://a/c"_ns);
  EXPECT_FALSE(linkOf(u"<a xlink:href=b>1</a>"));
  EXPECT_FALSE(linkOf(u"<area href=b><i href=b>1</i>"));
}

}  // namespace
}  // namespace nimbo::detail
