// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/BoxDisplay.hpp"

namespace nimbo::detail {

namespace {

bool isOutOfFlow(const ComputedStyle &style) {
  return style.position == CSSKeyword::kAbsolute || style.position == CSSKeyword::kFixed;
}

/// The block that a display becomes.
CSSKeyword blockOf(CSSKeyword display) {
  switch (display) {
    case CSSKeyword::kInlineFlex:
      return CSSKeyword::kFlex;
    case CSSKeyword::kInlineGrid:
      return CSSKeyword::kGrid;
    case CSSKeyword::kInlineTable:
      return CSSKeyword::kTable;
    case CSSKeyword::kInline:
    case CSSKeyword::kInlineBlock:
    case CSSKeyword::kRunIn:
    case CSSKeyword::kMath:
    case CSSKeyword::kRuby:
    case CSSKeyword::kRubyBase:
    case CSSKeyword::kRubyText:
    case CSSKeyword::kRubyBaseContainer:
    case CSSKeyword::kRubyTextContainer:
    case CSSKeyword::kTableRowGroup:
    case CSSKeyword::kTableHeaderGroup:
    case CSSKeyword::kTableFooterGroup:
    case CSSKeyword::kTableRow:
    case CSSKeyword::kTableCell:
    case CSSKeyword::kTableColumnGroup:
    case CSSKeyword::kTableColumn:
    case CSSKeyword::kTableCaption:
      return CSSKeyword::kBlock;
    default:
      return display;
  }
}

}  // namespace

void adjustDisplay(const ComputedStyle &parent, bool isRoot, ComputedStyle &style) {
  const bool isRightToLeft = style.inherited.direction == CSSKeyword::kRtl;
  if (style.floating == CSSKeyword::kInlineStart)
    style.floating = isRightToLeft ? CSSKeyword::kRight : CSSKeyword::kLeft;
  if (style.floating == CSSKeyword::kInlineEnd)
    style.floating = isRightToLeft ? CSSKeyword::kLeft : CSSKeyword::kRight;
  if (style.display == CSSKeyword::kNone || style.display == CSSKeyword::kContents) {
    if (isRoot && style.display == CSSKeyword::kContents) style.display = CSSKeyword::kBlock;
    return;
  }
  const bool isItem = !isRoot && makesItems(parent.display);
  if (isItem || isOutOfFlow(style)) style.floating = CSSKeyword::kNone;
  if (isRoot || isItem || isOutOfFlow(style) || style.floating != CSSKeyword::kNone)
    style.display = blockOf(style.display);
}

bool breaksDecorations(const ComputedStyle &style, bool isDeclaredFloat) {
  return style.display == CSSKeyword::kInlineBlock || style.display == CSSKeyword::kInlineTable ||
         style.display == CSSKeyword::kInlineFlex || style.display == CSSKeyword::kInlineGrid ||
         isDeclaredFloat || isOutOfFlow(style);
}

bool makesItems(CSSKeyword display) {
  return display == CSSKeyword::kFlex || display == CSSKeyword::kInlineFlex || display == CSSKeyword::kGrid ||
         display == CSSKeyword::kInlineGrid;
}

}  // namespace nimbo::detail
