// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleResolver.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "platform/CSS/CSSKeyword.hpp"

namespace nimbo::detail {
namespace {

std::string utf8(std::u16string_view text) {
  return NSString::stringWithCharacters(text).UTF8String();
}

std::string described(CSSColor color) {
  std::ostringstream text;
  text << int{color.red} << ' ' << int{color.green} << ' ' << int{color.blue};
  if (color.alpha < 1) text << '/' << std::round(color.alpha * 100) << '%';
  return text.str();
}

std::string described(double number) {
  std::ostringstream text;
  text << std::round(number * 1000) / 1000;
  return text.str();
}

std::string described(BoxLength length) {
  if (length.kind == BoxLength::Kind::automatic) return "auto";
  return described(length.value) + (length.kind == BoxLength::Kind::percent ? "%" : "");
}

std::string described(const CSSValue &value) {
  if (value.kind() == CSSValueKind::kKeyword) return std::string(nameOfCSSKeyword(value.keyword()));
  if (value.kind() == CSSValueKind::kLength) return described(value.number());
  return value.kind() == CSSValueKind::kNone ? "" : "value";
}

/// What a test says of a property.
std::string described(const ComputedStyle &style, std::string_view property) {
  const InheritedStyle &own = style.inherited;
  const auto keyword = [](CSSKeyword word) { return std::string(nameOfCSSKeyword(word)); };
  if (property == "color") return described(own.color);
  if (property == "size") return described(own.fontSize);
  if (property == "weight") return std::to_string(own.fontWeight);
  if (property == "italic") return own.isItalic ? "yes" : "no";
  if (property == "caps") return own.isSmallCaps ? "yes" : "no";
  if (property == "family") return own.fontFamily.UTF8String() + "," + keyword(own.genericFamily);
  if (property == "line-height") return own.lineHeight ? described(*own.lineHeight) : "normal";
  if (property == "align") return keyword(own.textAlign);
  if (property == "direction") return keyword(own.direction);
  if (property == "white-space") return keyword(own.whiteSpace);
  if (property == "visibility") return keyword(own.visibility);
  if (property == "transform") return keyword(own.textTransform);
  if (property == "indent") return described(own.textIndent);
  if (property == "list") return described(own.listStyleType);
  if (property == "list-position") return keyword(own.listStylePosition);
  if (property == "collapse") return keyword(own.borderCollapse);
  if (property == "caption") return keyword(own.captionSide);
  if (property == "spacing") return described(own.letterSpacing);
  if (property == "quotes") return described(own.quotes);
  if (property == "display") return keyword(style.display);
  if (property == "float") return keyword(style.floating);
  if (property == "background") return described(style.backgroundColor);
  if (property == "vertical") return described(style.verticalAlign);
  if (property == "width") return described(style.width);
  if (property == "unseen") return style.isUnseen ? "yes" : "no";
  const auto sides = [](const auto &values) {
    std::string text;
    for (const auto &side : values) text += (text.empty() ? "" : " ") + described(side);
    return text;
  };
  if (property == "margin") return sides(style.margin);
  if (property == "padding") return sides(style.padding);
  if (property == "border") return sides(style.borderWidth);
  if (property == "border-color") return described(style.borderColor[kTopSide]);
  std::string lines;
  if (property == "lines") {
    if (style.underline.style != CSSKeyword::kNone) lines += "under " + described(style.underline.color);
    if (style.overline.style != CSSKeyword::kNone) lines += "over " + described(style.overline.color);
    if (style.lineThrough.style != CSSKeyword::kNone) lines += "through " + described(style.lineThrough.color);
    return lines;
  }
  ADD_FAILURE() << property;
  return {};
}

/// A page and the styles of its elements.
class Page {
 public:
  explicit Page(std::u16string text, std::vector<AuthorSheet> sheets = {})
      : text_(std::move(text)), document_(HTMLDocument::documentWithText(text_)), sheets_(std::move(sheets)) {
    for (HTMLNodeIndex i = 0; i != kNoHTMLNode; i = document_.nextInTree(i)) {
      const HTMLNode &node = document_.node(i);
      if (!node.isHTML("style"_atom) || node.firstChild == kNoHTMLNode) continue;
      const std::u16string_view sheet = document_.text(document_.node(node.firstChild));
      sheets_.push_back(
          {NSString::stringWithCharacters(sheet), document_.attribute(node, "media"_atom).value_or(u""), {}});
    }
    resolver_.emplace(document_, sheets_);
  }

  HTMLDocument &document() { return document_; }
  StyleResolver &resolver() { return *resolver_; }

  HTMLNodeIndex elementWithId(std::u16string_view id) {
    HTMLNodeIndex i = 0;
    while (i != kNoHTMLNode &&
           !(document_.node(i).isElement() && document_.attribute(document_.node(i), "id"_atom) == id))
      i = document_.nextInTree(i);
    return i;
  }
  ComputedStyle styleOf(HTMLNodeIndex element) {
    if (element == document_.rootElement()) return resolver_->rootStyle();
    const ComputedStyle parent = styleOf(document_.node(element).parent);
    return resolver_->styleOf(element, parent);
  }

 private:
  std::u16string text_;
  HTMLDocument document_;
  std::vector<AuthorSheet> sheets_;
  std::optional<StyleResolver> resolver_;
};

/// What the element with the id "x" must have. Pages have the doctype of today unless they bring one.
struct Case {
  std::u16string page;
  std::string_view property;
  std::string expected;
};

void expect(const std::vector<Case> &cases) {
  for (const auto &[text, property, expected] : cases) {
    Page page(text.starts_with(u"<html") ? text : u"<!DOCTYPE html>" + text);
    const HTMLNodeIndex element = page.elementWithId(u"x");
    ASSERT_NE(element, kNoHTMLNode) << utf8(text);
    EXPECT_EQ(described(page.styleOf(element), property), expected) << property << " of " << utf8(text);
  }
}

TEST(StyleResolver, KnowsWhatElementsLookLike) {
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

TEST(StyleResolver, TakesElementsOfScriptsForUndefined) {
  expect({
      {u"<style>:not(:defined){display:none}</style><my-x id=x>a", "display", "none"},
      {u"<style>:defined{color:red}</style><b id=x>a", "color", "255 0 0"},
      {u"<style>:defined{color:red}</style><svg><font-face id=x>a", "color", "255 0 0"},
  });
}

TEST(StyleResolver, TakesCommentsForNoContent) {
  expect({
      {u"<style>b:empty{color:red}</style><b id=x><!--a--></b>", "color", "255 0 0"},
      {u"<style>b:empty{color:red}</style><b id=x><!--a-->b</b>", "color", "0 0 0"},
      {u"<style>b:empty{color:red}</style><b id=x><i></i></b>", "color", "0 0 0"},
  });
}

TEST(StyleResolver, MakesPartsOfFormulasSmaller) {
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

TEST(StyleResolver, HidesWhatHasNoBoxButNotWhatIsShownOfIt) {
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

TEST(StyleResolver, ReadsPresentationalAttributesBelowTheAuthorsRules) {
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
      {u"<ol type=none id=x>", "list", "none"},
      {u"<ol type=DISC id=x>", "list", "disc"},
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
TEST(StyleResolver, TellsTheDirectionByTheFirstLetter) {
  const auto direction = [](const std::u16string &text) {
    Page page(u"<!DOCTYPE html><p dir=auto id=x>" + text);
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
  Page page(
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
  Page page(u"<!DOCTYPE html><p id=x>", std::move(sheets));
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

/// There are more styles than the resolver remembers, and each comes again.
TEST(StyleResolver, RemembersStylesOfEqualElementsOnly) {
  std::u16string text =
      u"<!DOCTYPE html><style>b:nth-child(3n){color:lime}.k b{font-style:italic}</style><body>";
  constexpr unsigned kElements = 40'000;
  for (unsigned i = 0; i < kElements; ++i) {
    const std::string number = std::to_string(i % 20'000 + 1);
    const std::u16string wide(number.begin(), number.end());
    text += u"<p class=" + std::u16string(i % 2 ? u"k" : u"j") + u" style='margin-left:" + wide +
            u"px'><i>a</i><b>b</b><b>c</b></p>";
  }
  Page page(std::move(text));
  HTMLDocument &document = page.document();
  const ComputedStyle root = page.resolver().rootStyle();
  const ComputedStyle body = page.resolver().styleOf(document.body(), root);
  unsigned i = 0;
  for (HTMLNodeIndex p = document.node(document.body()).firstChild; p != kNoHTMLNode;
       p = document.node(p).nextSibling, ++i) {
    const ComputedStyle style = page.resolver().styleOf(p, body);
    ASSERT_EQ(style.margin[kLeftSide].value, i % 20'000 + 1);
    const HTMLNodeIndex second = document.node(document.node(p).firstChild).nextSibling;
    for (HTMLNodeIndex b = second; b != kNoHTMLNode; b = document.node(b).nextSibling) {
      const ComputedStyle bold = page.resolver().styleOf(b, style);
      ASSERT_EQ(bold.inherited.isItalic, i % 2 == 1);
      ASSERT_EQ(bold.inherited.color.green, b == second ? 0 : 255);
    }
  }
  EXPECT_EQ(i, kElements);
}

/// Elements in parents that differ in what is inherited do not get each other's style.
TEST(StyleResolver, TellsInheritedStylesApart) {
  const struct {
    std::string_view property;
    std::u16string first, second, child = {};
  } cases[] = {
      {"family", u"font-family:a", u"font-family:b"},
      {"family", u"font-family:serif", u"font-family:sans-serif"},
      {"size", u"font-size:10px", u"font-size:20px"},
      {"weight", u"font-weight:300", u"font-weight:301", u"font-weight:inherit"},
      {"weight", u"font-weight:300", u"font-weight:556", u"font-weight:inherit"},
      {"italic", u"font-style:normal", u"font-style:italic"},
      {"caps", u"font-variant:normal", u"font-variant:small-caps"},
      {"visibility", u"visibility:visible", u"visibility:hidden"},
      {"align", u"text-align:left", u"text-align:right"},
      {"transform", u"text-transform:uppercase", u"text-transform:lowercase"},
      {"white-space", u"white-space:pre", u"white-space:nowrap"},
      {"direction", u"direction:ltr", u"direction:rtl"},
      {"list", u"list-style:disc", u"list-style:square"},
      {"color", u"color:red", u"color:lime"},
      {"color", u"--a:red", u"--a:lime", u"color:var(--a)"},
      {"indent", u"text-indent:1px", u"text-indent:2px"},
      {"spacing", u"letter-spacing:1px", u"letter-spacing:2px"},
      {"list-position", u"list-style-position:inside", u"list-style-position:outside"},
      {"collapse", u"border-collapse:collapse", u"border-collapse:separate"},
      {"caption", u"caption-side:bottom", u"caption-side:top"},
      {"quotes", u"quotes:none", u"quotes:auto"},
      {"vertical", u"vertical-align:1px", u"vertical-align:2px", u"vertical-align:inherit"},
      {"border", u"border:1px solid", u"border:2px solid", u"border:inherit"},
      {"background", u"background:red", u"background:lime", u"background:inherit"},
      {"margin", u"margin:1px", u"margin:2px", u"margin:inherit"},
      {"padding", u"padding:1px", u"padding:2px", u"padding:inherit"},
      {"width", u"width:1px", u"width:2px", u"width:inherit"},
      {"float", u"float:left", u"float:right", u"float:inherit"},
      {"line-height", u"line-height:10px", u"line-height:20px"},
      {"line-height", u"line-height:1", u"line-height:2"},
      {"line-height", u"line-height:normal", u"line-height:2"},
      {"line-height", u"font-size:10px;line-height:20px", u"font-size:10px;line-height:2", u"font-size:30px"},
      {"lines", u"text-decoration:underline red", u"text-decoration:underline lime"},
      {"lines", u"text-decoration:overline red", u"text-decoration:overline lime"},
      {"lines", u"text-decoration:line-through red", u"text-decoration:line-through lime"},
      {"lines", u"text-decoration:none", u"text-decoration:underline"},
      {"display", u"display:block", u"display:flex"},
      {"unseen", u"content-visibility:visible", u"content-visibility:hidden"},
  };
  for (const auto &[property, first, second, child] : cases) {
    const auto paragraph = [&child](const std::u16string &style, const std::u16string &id) {
      return u"<p style='" + style + u"'><b style='" + child + u"' id=" + id + u"></b></p>";
    };
    Page both(u"<!DOCTYPE html>" + paragraph(first, u"a") + paragraph(second, u"b"));
    Page alone(u"<!DOCTYPE html>" + paragraph(second, u"b"));
    const std::string ofFirst = described(both.styleOf(both.elementWithId(u"a")), property);
    const std::string ofSecond = described(both.styleOf(both.elementWithId(u"b")), property);
    EXPECT_NE(ofFirst, ofSecond) << utf8(second);
    EXPECT_EQ(ofSecond, described(alone.styleOf(alone.elementWithId(u"b")), property)) << utf8(second);
  }
}

TEST(StyleResolver, EndsOnHostilePages) {
  std::u16string deep = u"<!DOCTYPE html>", style = u"<!DOCTYPE html><p style='", rules;
  for (int i = 0; i < 100'000; ++i) deep += u"<div style='font-size:2em'>";
  for (int i = 0; i < 300'000; ++i) style += u"color:red;--a:var(--b)var(--b);";
  for (int i = 0; i < 200'000; ++i) rules += u"div div *{color:red}";
  for (const std::u16string &text : {deep, style + u"' id=x>"}) {
    Page page(text, {sheet(NSString::stringWithCharacters(rules).substringWithRange({0, 20'000}))});
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
