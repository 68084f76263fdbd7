// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Foundation/Attributes.hpp"

/// Calls X(value, name) for each keyword of the values.
// clang-format off
#define NIMBO_CSS_KEYWORDS(X) \
  X(Inherit, "inherit") X(Initial, "initial") X(Unset, "unset") X(Revert, "revert") \
  X(RevertLayer, "revert-layer") X(None, "none") X(Auto, "auto") X(Normal, "normal") \
  X(Block, "block") X(Inline, "inline") X(InlineBlock, "inline-block") X(RunIn, "run-in") \
  X(ListItem, "list-item") X(Contents, "contents") X(Flow, "flow") X(FlowRoot, "flow-root") X(Flex, "flex") \
  X(InlineFlex, "inline-flex") X(Grid, "grid") X(InlineGrid, "inline-grid") X(Ruby, "ruby") \
  X(RubyBase, "ruby-base") X(RubyText, "ruby-text") X(RubyBaseContainer, "ruby-base-container") \
  X(RubyTextContainer, "ruby-text-container") X(Math, "math") X(Table, "table") \
  X(InlineTable, "inline-table") X(TableRowGroup, "table-row-group") \
  X(TableHeaderGroup, "table-header-group") X(TableFooterGroup, "table-footer-group") \
  X(TableRow, "table-row") X(TableCell, "table-cell") X(TableColumnGroup, "table-column-group") \
  X(TableColumn, "table-column") X(TableCaption, "table-caption") \
  X(Visible, "visible") X(Hidden, "hidden") X(Collapse, "collapse") X(Separate, "separate") \
  X(Scroll, "scroll") X(Clip, "clip") X(Ellipsis, "ellipsis") X(Show, "show") X(Hide, "hide") \
  X(Static, "static") X(Relative, "relative") X(Absolute, "absolute") X(Fixed, "fixed") X(Sticky, "sticky") \
  X(Left, "left") X(Right, "right") X(Center, "center") X(Justify, "justify") X(Start, "start") \
  X(End, "end") X(MatchParent, "match-parent") X(WebkitLeft, "-webkit-left") \
  X(WebkitRight, "-webkit-right") X(WebkitCenter, "-webkit-center") X(InlineStart, "inline-start") \
  X(InlineEnd, "inline-end") X(Both, "both") \
  X(Baseline, "baseline") X(Sub, "sub") X(Super, "super") X(Top, "top") X(TextTop, "text-top") \
  X(Middle, "middle") X(Bottom, "bottom") X(TextBottom, "text-bottom") \
  X(Capitalize, "capitalize") X(Uppercase, "uppercase") X(Lowercase, "lowercase") \
  X(FullWidth, "full-width") X(FullSizeKana, "full-size-kana") X(MathAuto, "math-auto") \
  X(Pre, "pre") X(Nowrap, "nowrap") X(PreWrap, "pre-wrap") X(PreLine, "pre-line") \
  X(BreakSpaces, "break-spaces") \
  X(Ltr, "ltr") X(Rtl, "rtl") X(Embed, "embed") X(Isolate, "isolate") X(BidiOverride, "bidi-override") \
  X(IsolateOverride, "isolate-override") X(Plaintext, "plaintext") \
  X(Italic, "italic") X(Oblique, "oblique") X(Bold, "bold") X(Bolder, "bolder") X(Lighter, "lighter") \
  X(SmallCaps, "small-caps") X(AllSmallCaps, "all-small-caps") X(PetiteCaps, "petite-caps") \
  X(AllPetiteCaps, "all-petite-caps") X(Unicase, "unicase") X(TitlingCaps, "titling-caps") \
  X(UltraCondensed, "ultra-condensed") X(ExtraCondensed, "extra-condensed") X(Condensed, "condensed") \
  X(SemiCondensed, "semi-condensed") X(SemiExpanded, "semi-expanded") X(Expanded, "expanded") \
  X(ExtraExpanded, "extra-expanded") X(UltraExpanded, "ultra-expanded") \
  X(XXSmall, "xx-small") X(XSmall, "x-small") X(Small, "small") X(Medium, "medium") X(Large, "large") \
  X(XLarge, "x-large") X(XXLarge, "xx-large") X(XXXLarge, "xxx-large") X(Smaller, "smaller") \
  X(Larger, "larger") \
  X(CaptionFont, "caption") X(Icon, "icon") X(Menu, "menu") X(MessageBox, "message-box") \
  X(SmallCaption, "small-caption") X(StatusBar, "status-bar") \
  X(Serif, "serif") X(SansSerif, "sans-serif") X(Monospace, "monospace") X(Cursive, "cursive") \
  X(Fantasy, "fantasy") X(SystemUI, "system-ui") X(UISerif, "ui-serif") X(UISansSerif, "ui-sans-serif") \
  X(UIMonospace, "ui-monospace") X(UIRounded, "ui-rounded") X(Emoji, "emoji") X(Fangsong, "fangsong") \
  X(Underline, "underline") X(Overline, "overline") X(LineThrough, "line-through") X(Blink, "blink") \
  X(SpellingError, "spelling-error") X(GrammarError, "grammar-error") X(FromFont, "from-font") \
  X(Solid, "solid") X(Double, "double") X(Dotted, "dotted") X(Dashed, "dashed") X(Wavy, "wavy") \
  X(Groove, "groove") X(Ridge, "ridge") X(Inset, "inset") X(Outset, "outset") X(Thin, "thin") \
  X(Thick, "thick") \
  X(Inside, "inside") X(Outside, "outside") X(Disc, "disc") X(Circle, "circle") X(Square, "square") \
  X(Decimal, "decimal") X(DecimalLeadingZero, "decimal-leading-zero") X(LowerRoman, "lower-roman") \
  X(UpperRoman, "upper-roman") X(LowerAlpha, "lower-alpha") X(UpperAlpha, "upper-alpha") \
  X(LowerLatin, "lower-latin") X(UpperLatin, "upper-latin") X(LowerGreek, "lower-greek") \
  X(DisclosureOpen, "disclosure-open") X(DisclosureClosed, "disclosure-closed") \
  X(OpenQuote, "open-quote") X(CloseQuote, "close-quote") X(NoOpenQuote, "no-open-quote") \
  X(NoCloseQuote, "no-close-quote") X(Attr, "attr") X(Counter, "counter") X(Counters, "counters") \
  X(ContentBox, "content-box") X(BorderBox, "border-box") X(MinContent, "min-content") \
  X(MaxContent, "max-content") X(FitContent, "fit-content") X(Stretch, "stretch") \
  X(Hanging, "hanging") X(EachLine, "each-line") X(Rect, "rect") X(Polygon, "polygon") X(Path, "path") \
  X(Currentcolor, "currentcolor") X(Gradient, "gradient")
// clang-format on

namespace NIMBO_PUBLIC nimbo {

/// A keyword of the values, or the name of a function in them.
enum class CSSKeyword : std::uint8_t {
  kUnknown,
/// The value for a name.
#define NIMBO_CSS_KEYWORD(value, name) k##value,
  NIMBO_CSS_KEYWORDS(NIMBO_CSS_KEYWORD)
#undef NIMBO_CSS_KEYWORD
};

/// The keyword of the name in any case; `kUnknown` when it is not listed above.
CSSKeyword keywordNamed(std::u16string_view name);

/// The name; empty for `kUnknown`. It lives as long as the process.
std::string_view nameOfCSSKeyword(CSSKeyword keyword);

/// Whether every property may have it: "inherit", "initial", "unset", "revert", "revert-layer".
constexpr bool isCSSWideKeyword(CSSKeyword keyword) {
  return keyword >= CSSKeyword::kInherit && keyword <= CSSKeyword::kRevertLayer;
}

}  // namespace nimbo
