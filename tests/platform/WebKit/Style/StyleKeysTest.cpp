// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/StyleKeys.hpp"

#include <gtest/gtest.h>

#include "platform/WebKit/Style/StyleResolver.hpp"
#include "tests/platform/WebKit/Style/StyledPage.hpp"

namespace nimbo::detail {
namespace {

/// There are more styles than the resolver remembers, and each comes again.
TEST(StyleKeys, RemembersStylesOfEqualElementsOnly) {
  std::u16string text =
      u"<!DOCTYPE html><style>b:nth-child(3n){color:lime}.k b{font-style:italic}</style><body>";
  constexpr unsigned kElements = 40'000;
  for (unsigned i = 0; i < kElements; ++i) {
    const std::string number = std::to_string(i % 20'000 + 1);
    const std::u16string wide(number.begin(), number.end());
    text += u"<p class=" + std::u16string(i % 2 ? u"k" : u"j") + u" style='margin-left:" + wide +
            u"px'><i>a</i><b>b</b><b>c</b></p>";
  }
  StyledPage page(std::move(text));
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
TEST(StyleKeys, TellsInheritedStylesApart) {
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
    StyledPage both(u"<!DOCTYPE html>" + paragraph(first, u"a") + paragraph(second, u"b"));
    StyledPage alone(u"<!DOCTYPE html>" + paragraph(second, u"b"));
    const std::string ofFirst = described(both.styleOf(both.elementWithId(u"a")), property);
    const std::string ofSecond = described(both.styleOf(both.elementWithId(u"b")), property);
    EXPECT_NE(ofFirst, ofSecond) << utf8(second);
    EXPECT_EQ(ofSecond, described(alone.styleOf(alone.elementWithId(u"b")), property)) << utf8(second);
  }
}

}  // namespace
}  // namespace nimbo::detail
