// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "platform/WebKit/Style/StyleResolver.hpp"
#include "tests/platform/WebKit/Style/StyledPage.hpp"

namespace nimbo::detail {
namespace {

TEST(ElementStyles, KnowsWhatElementsLookLike) {
  expect({
      {u"<h2 id=x>a", "size", "24"},
      {u"<h2 id=x>a", "margin", "19.92 0 19.92 0"},
      {u"<b><strong id=x>a", "weight", "900"},
      {u"<small><small id=x>a", "size", "11.111"},
      {u"<sub id=x>a", "vertical", "sub"},
      {u"<a id=x href=''>a", "color", "0 0 238"},
      {u"<a id=x>a", "lines", ""},
      {u"<del><i id=x>a", "lines", "through 0 0 0"},
      {u"<ul><li><ol><li><ul id=x>", "list", "square"},
      {u"<ul><li><ol id=x>", "margin", "0 0 0 0"},
      {u"<ul dir=rtl id=x>", "padding", "0 40 0 0"},
      {u"<table><tr><th id=x>a", "align", "center"},
      {u"<table align=right style='text-align:left'><tr><th id=x>a", "align", "left"},
      {u"<table><tr><td id=x>a", "vertical", "middle"},
      {u"<noscript><p id=x>a</noscript>", "display", "block"},
      {u"<dialog id=x>a", "display", "none"},
      {u"<input type=HIDDEN style='display:block!important' id=x>", "display", "none"},
      {u"<template id=x style='display:block'>", "display", "block"},
      {u"<button id=x style='font-weight:inherit'>a", "size", "13.333"},
      {u"<pre id=x>a", "white-space", "pre"},
      {u"<svg><text font-size=20 id=x>", "size", "20"},
      {u"<svg><text font-size=20 id=x style='font-size:3px'>", "size", "3"},
  });
}

TEST(ElementStyles, TakesElementsOfScriptsForUndefined) {
  expect({
      {u"<style>:not(:defined){display:none}</style><my-x id=x>a", "display", "none"},
      {u"<style>:defined{color:red}</style><b id=x>a", "color", "255 0 0"},
      {u"<style>:defined{color:red}</style><svg><font-face id=x>a", "color", "255 0 0"},
  });
}

TEST(ElementStyles, TakesCommentsForNoContent) {
  expect({
      {u"<style>b:empty{color:red}</style><b id=x><!--a--></b>", "color", "255 0 0"},
      {u"<style>b:empty{color:red}</style><b id=x><!--a-->b</b>", "color", "0 0 0"},
      {u"<style>b:empty{color:red}</style><b id=x><i></i></b>", "color", "0 0 0"},
  });
}

TEST(ElementStyles, MakesPartsOfFormulasSmaller) {
  expect({
      {u"<math><msup><mi>a</mi><mi id=x>b</msup>", "size", "12.8"},
      {u"<math><msup><mi id=x>a</mi><mi>b</msup>", "size", "16"},
      {u"<math><msup><mi>a</mi><msup><mi>b</mi><mi id=x>c</msup></msup>", "size", "9.6"},
      {u"<math><msub><mi>a</mi><msub><mi>b</mi><msub><mi>c</mi><mi id=x>d</msub></msub></msub>", "size",
       "6.816"},
      {u"<math><msubsup><mi>a</mi><mi>b</mi><mi id=x>c</msubsup>", "size", "12.8"},
      {u"<math><mmultiscripts><mi>a</mi><mi id=x>b</mmultiscripts>", "size", "12.8"},
      {u"<math><munder><mi>a</mi><mi id=x>b</munder>", "size", "12.8"},
      {u"<math><mover><mi>a</mi><mi id=x>b</mover>", "size", "12.8"},
      {u"<math><munderover accent=true><mi>a</mi><mi>b</mi><mi id=x>c</munderover>", "size", "16"},
      {u"<math><mroot><mi id=x>a</mi><mi>b</mroot>", "size", "16"},
      {u"<math><mroot><mi>a</mi><mi id=x>b</mroot>", "size", "9.6"},
      {u"<math><munder accentunder=true><mi>a</mi><mi id=x>b</munder>", "size", "16"},
      {u"<math><munderover accentunder=true accent=no><mi>a</mi><mi>b</mi><mi id=x>c</munderover>", "size",
       "12.8"},
      {u"<math><mover accentunder=true accent=TRUE><mi>a</mi><mi id=x>b</mover>", "size", "16"},
      {u"<math><mfrac><mi id=x>a</mi><mi>b</mfrac>", "size", "12.8"},
      {u"<math display=block><mfrac><mi id=x>a</mi><mi>b</mfrac>", "size", "16"},
      {u"<math display=block><mfrac><mfrac><mi id=x>a</mi><mi>b</mfrac></mfrac>", "size", "12.8"},
      {u"<math display=block><mtable><mtr><mtd><mfrac><mi id=x>a</mi></mfrac>", "size", "12.8"},
      {u"<math><mstyle displaystyle=true><mfrac><mi id=x>a</mi></mfrac>", "size", "16"},
      {u"<math><mover accent=true><mi>a</mi><mo id=x>b</mover>", "size", "16"},
      {u"<math><munderover accent=true><mi>a</mi><mo id=x>b</mo><mo>c</munderover>", "size", "12.8"},
      {u"<math><mstyle id=x mathsize=20px mathcolor=red><mi>a</mstyle>", "size", "20"},
      {u"<math><mstyle mathcolor=red><mi id=x>a</mstyle>", "color", "255 0 0"},
      {u"<math mathcolor=red mathsize=20px><mi id=x>a", "color", "255 0 0"},
      {u"<math mathcolor=red mathsize=20px><mi id=x>a", "size", "20"},
      {u"<msup><b></b><math id=x><mi>a", "size", "16"},
  });
}

TEST(ElementStyles, HidesWhatHasNoBoxButNotWhatIsShownOfIt) {
  expect({
      {u"<details id=x>a", "unseen", "yes"},
      {u"<details><p style='display:flex' id=x>a", "unseen", "yes"},
      {u"<details open><p id=x>a", "unseen", "no"},
      {u"<details><summary><b id=x>a", "unseen", "no"},
      {u"<details><summary>a</summary><summary id=x>b", "unseen", "yes"},
      {u"<details><div><details><summary id=x>a", "unseen", "yes"},
      {u"<select><option>a<option selected id=x>b</select>", "unseen", "no"},
      {u"<select><option id=x>a<option selected>b</select>", "unseen", "yes"},
      {u"<select><option disabled>a<optgroup><option id=x>b</select>", "unseen", "no"},
      {u"<select size=2><option>a<option id=x>b</select>", "unseen", "no"},
      {u"<select size=1><option>a<option id=x>b</select>", "unseen", "yes"},
      {u"<select multiple><option>a<option id=x>b</select>", "unseen", "no"},
      {u"<div style='content-visibility:hidden'><p id=x>a", "unseen", "yes"},
      {u"<p hidden=until-found id=x>a", "unseen", "yes"},
      {u"<p style='opacity:0' id=x>a", "unseen", "no"},
      {u"<p hidden id=x>a", "display", "none"},
      {u"<p hidden style='display:block' id=x>a", "display", "block"},
      {u"<p style='visibility:hidden'><b style='visibility:visible' id=x>a", "visibility", "visible"},
  });
}

TEST(ElementStyles, ReadsPresentationalAttributesBelowTheAuthorsRules) {
  expect({
      {u"<font color=chucknorris id=x>a", "color", "192 0 0"},
      {u"<style>*{color:blue}</style><font color=red id=x>a", "color", "0 0 255"},
      {u"<style>font{color:revert}</style><font color=red id=x>a", "color", "0 0 0"},
      {u"<font size=+2 face='Arial, sans-serif' id=x>a", "size", "24"},
      {u"<font size=+2 face='Arial, sans-serif' id=x>a", "family", "Arial,sans-serif"},
      {u"<body link=lime><a href=y id=x>a", "color", "0 255 0"},
      {u"<body text=#102030><p id=x>a", "color", "16 32 48"},
      {u"<body marginwidth=3 topmargin=4 id=x>a", "margin", "4 3 8 3"},
      {u"<table bgcolor=#eee id=x>", "background", "238 238 238"},
      {u"<body leftmargin=1 topmargin=2 rightmargin=3 bottommargin=4 id=x>", "margin", "2 3 4 1"},
      {u"<body marginheight=5 id=x>a", "margin", "5 8 5 8"},
      {u"<body link=lime><a id=x>a", "color", "0 0 0"},
      {u"<body link=lime><area href=y id=x>", "color", "0 255 0"},
      {u"<p popover id=x>", "display", "none"},
      {u"<p bgcolor=#eee id=x>", "background", "0 0 0/0%"},
      {u"<table border=5 id=x>", "border", "5 5 5 5"},
      {u"<table border=x id=x>", "border", "1 1 1 1"},
      {u"<table border=x><tr><td id=x>", "border", "1 1 1 1"},
      {u"<table rules=ROWS border=0><tr><th id=x>", "border", "1 0 1 0"},
      {u"<table border=9><tr><td><table><tr><td id=x>", "border", "0 0 0 0"},
      {u"<table border><tr><td id=x>", "border", "1 1 1 1"},
      {u"<table border=0><tr><td id=x>", "border", "0 0 0 0"},
      {u"<table rules=rows><tr><td id=x>", "border", "1 0 1 0"},
      {u"<table border rules=none><tr><td id=x>", "border", "0 0 0 0"},
      {u"<table border rules=groups><tr><td id=x>", "border", "0 0 0 0"},
      {u"<table border rules=x><tr><td id=x>", "border", "1 1 1 1"},
      {u"<table cellpadding=7><tr><td id=x>", "padding", "7 7 7 7"},
      {u"<table><tr valign=bottom><td id=x>", "vertical", "bottom"},
      {u"<table><tr valign=bottom><td valign=top id=x>", "vertical", "top"},
      {u"<table><tr valign=bottom><td valign=MIDDLE id=x>", "vertical", "middle"},
      {u"<table><tr><td align=center><div><p id=x>", "align", "-webkit-center"},
      {u"<table><tr><td nowrap id=x>", "white-space", "nowrap"},
      {u"<table width=50% align=center id=x>", "margin", "0 auto 0 auto"},
      {u"<table width=50% align=center id=x>", "width", "50%"},
      {u"<h1 align=right id=x>", "align", "right"},
      {u"<legend align=center id=x>", "align", "center"},
      {u"<div align=MIDDLE id=x>", "align", "-webkit-center"},
      {u"<div align=left id=x>", "align", "-webkit-left"},
      {u"<div align=right id=x>", "align", "-webkit-right"},
      {u"<div align=right><p align=middle id=x>", "align", "-webkit-right"},
      {u"<p align=left id=x>", "align", "left"},
      {u"<table><caption align=left id=x>", "align", "-webkit-left"},
      {u"<table><caption align=BOTTOM id=x>", "caption", "bottom"},
      {u"<table><caption align=top id=x>", "caption", "top"},
      {u"<img align=top id=x>", "vertical", "top"},
      {u"<img align=texttop id=x>", "vertical", "text-top"},
      {u"<img align=middle id=x>", "vertical", "middle"},
      {u"<img align=absmiddle id=x>", "vertical", "middle"},
      {u"<img align=center id=x>", "vertical", "middle"},
      {u"<img align=right id=x>", "float", "right"},
      {u"<ul><li type=1 id=x>", "list", "decimal"},
      {u"<ul><li type=a id=x>", "list", "lower-alpha"},
      {u"<ul><li type=i id=x>", "list", "lower-roman"},
      {u"<ul><li type=I id=x>", "list", "upper-roman"},
      {u"<p width=30 id=x>", "width", "auto"},
      {u"<ol type=A><li id=x>", "list", "upper-alpha"},
      {u"<img align=left id=x>", "display", "block"},
      {u"<p align=justify id=x>", "align", "justify"},
      {u"<ul type=none id=x>", "list", "none"},
      {u"<ul type=DISC id=x>", "list", "disc"},
      {u"<ul type=circle id=x>", "list", "circle"},
      {u"<ul type=square id=x>", "list", "square"},
      {u"<ol type=box id=x>", "list", "decimal"},
      {u"<table rules=cols><tr><td id=x>", "border", "0 1 0 1"},
      {u"<table rules=all><tr><td id=x>", "border", "1 1 1 1"},
      {u"<table border bordercolor=lime id=x>", "border-color", "0 255 0"},
      {u"<table><td valign=baseline id=x>", "vertical", "baseline"},
      {u"<img hspace=3 vspace=4 id=x>", "margin", "4 3 4 3"},
      {u"<p hspace=3 vspace=4 id=x>", "margin", "16 0 16 0"},
      {u"<hr align=left id=x>", "margin", "8 auto 8 0"},
      {u"<hr align=right id=x>", "margin", "8 0 8 auto"},
      {u"<hr width=50% id=x>", "width", "50%"},
      {u"<p type=a id=x>", "list", "disc"},
      {u"<font face='Arial, sans-serif' color=red size=2 id=x>a", "family", "Arial,sans-serif"},
      {u"<hr align=left color=red width=9 id=x>", "border-color", "255 0 0"},
      {u"<p dir=auto id=x>1 \u05d0 a", "direction", "rtl"},
      {u"<p dir=auto id=x>1 \u0e01 \u05d0", "direction", "ltr"},
      {u"<p dir=auto id=x>1 \u4e00 \u05d0", "direction", "ltr"},
      {u"<p dir=auto id=x>1 \uff21 \u05d0", "direction", "ltr"},
      {u"<p dir=auto id=x>1 \u200e \u05d0", "direction", "ltr"},
      {u"<p dir=auto id=x>1 \U00020000 \u05d0", "direction", "ltr"},
      {u"<p dir=auto id=x>\u2014 \U00010a00 a", "direction", "rtl"},
      {u"<p dir=auto id=x>1 \u0627 a", "direction", "rtl"},
      {u"<div dir=auto id=x><textarea>a</textarea><style>b</style><script>s</script><bdi>c</bdi><p "
       u"dir=ltr>d</p>\u05d0",
       "direction", "rtl"},
      {u"<p dir=rtl><bdi id=x>abc", "direction", "ltr"},
      {u"<p dir=auto id=x><b>\u05d0</b>a", "direction", "rtl"},
      {u"<p dir=auto id=x><b><i></i></b>a<b>\u05d0", "direction", "ltr"},
      {u"<div dir=rtl><p dir=auto id=x>1", "direction", "ltr"},
      {u"<div dir=rtl><p style='text-align:match-parent' id=x>", "align", "right"},
  });
  for (const std::u16string start :
       {u"<table><td", u"<table><th", u"<table><col", u"<table><colgroup", u"<iframe", u"<object", u"<embed",
        u"<video", u"<applet", u"<input", u"<marquee"})
    expect({{start + u" width=30 id=x>", "width", "30"}});
}

/// By the first and the last letters of blocks, and what is none beside them.
TEST(ElementStyles, TellsTheDirectionByTheFirstLetter) {
  const auto direction = [](const std::u16string &text) {
    StyledPage page(u"<!DOCTYPE html><p dir=auto id=x>" + text);
    return described(page.styleOf(page.elementWithId(u"x")), "direction");
  };
  for (const std::u16string letter :
       {u"A",          u"z",      u"\u00c0", u"\u02b8", u"\u0370", u"\u0556",     u"\u0905",
        u"\u1ffc",     u"\u2c00", u"\u2dde", u"\u3005", u"\ud7fb", u"\U00010000", u"\U0001d400",
        u"\U00020000", u"\uf900", u"\ufb17", u"\uff21", u"\uffdc", u"\u200e"})
    EXPECT_EQ(direction(u"1 " + letter + u" \u05d0"), "ltr") << utf8(letter);
  for (const std::u16string letter :
       {u"\u05be", u"\u05d0", u"\u08b4", u"\ufb1d", u"\ufdfb", u"\ufe70", u"\ufefc", u"\U00010800",
        u"\U00010f30", u"\U0001e800", u"\U0001ee00", u"\u200f"})
    EXPECT_EQ(direction(u"1 " + letter + u" a"), "rtl") << utf8(letter);
  for (const std::u16string none : {u"@", u"[", u"`", u"{", u"\u00bf", u"\u02b9", u"\u2014", u"\u2bff",
                                    u"\u2e00", u"\u3004", u"\ufe00", u"\uff20", u"\ufeff", u"\U0001f600"}) {
    EXPECT_EQ(direction(none + u"a\u05d0"), "ltr") << utf8(none);
    EXPECT_EQ(direction(none + u"\u05d0a"), "rtl") << utf8(none);
  }
}

}  // namespace
}  // namespace nimbo::detail
