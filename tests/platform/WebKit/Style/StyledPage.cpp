// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/WebKit/Style/StyledPage.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "platform/CSS/CSSKeyword.hpp"

namespace nimbo::detail {

namespace {

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

}  // namespace

std::string utf8(std::u16string_view text) {
  return NSString::stringWithCharacters(text).UTF8String();
}

std::string described(CSSColor color) {
  std::ostringstream text;
  text << int{color.red} << ' ' << int{color.green} << ' ' << int{color.blue};
  if (color.alpha < 1) text << '/' << std::round(color.alpha * 100) << '%';
  return text.str();
}

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

void expect(const std::vector<StyledCase> &cases) {
  for (const auto &[text, property, expected] : cases) {
    StyledPage page(text.starts_with(u"<html") ? text : u"<!DOCTYPE html>" + text);
    const HTMLNodeIndex element = page.elementWithId(u"x");
    ASSERT_NE(element, kNoHTMLNode) << utf8(text);
    EXPECT_EQ(described(page.styleOf(element), property), expected) << property << " of " << utf8(text);
  }
}

}  // namespace nimbo::detail
