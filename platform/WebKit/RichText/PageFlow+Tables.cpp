// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <utility>
#include <vector>

#include "platform/WebKit/RichText/PageFlow.hpp"
#include "platform/WebKit/RichText/Points.hpp"

namespace nimbo::detail {

namespace {

/// The sides of a box, by the sides of a cell.
constexpr std::array<BoxSide, kRectEdges> kSides = {kTopSide, kLeftSide, kBottomSide, kRightSide};

NSTextBlockWidth widthOf(const BoxLength &length) {
  using Unit = NSTextBlockWidth::Unit;
  switch (length.kind) {
    case BoxLength::Kind::automatic:
      return {};
    case BoxLength::Kind::pixels:
      return {pointsOfPixels(length.value), Unit::points};
    case BoxLength::Kind::percent:
      return {length.value, Unit::percent};
  }
  return {};
}

NSTextBlockVerticalAlignment verticalAlignmentOf(const CSSValue &align) {
  if (align.is(CSSKeyword::kMiddle)) return NSTextBlockVerticalAlignment::middle;
  if (align.is(CSSKeyword::kBottom)) return NSTextBlockVerticalAlignment::bottom;
  return NSTextBlockVerticalAlignment::top;
}

}  // namespace

void PageFlow::flowTable(SiblingRange range, const ComputedStyle *style) {
  const std::size_t base = styles_.size();
  const TableShape shape = TableReader(document_, styles_).read(range);
  NSTextTable table;
  table.identifier = ++lastTable_;
  table.numberOfColumns = shape.columnCount;
  if (style) {
    table.collapsesBorders = style->inherited.borderCollapse == CSSKeyword::kCollapse;
    table.width = widthOf(style->width);
  }
  const Interned<NSTextTable> interned(table);
  flowCaptions(shape, CSSKeyword::kTop, base);
  Interned<NSTextTableBlock> block;
  for (const TableCell &cell : shape.cells) flowCell(cell, interned, base, &block);
  leaveElements(base);
  flowCaptions(shape, CSSKeyword::kBottom, base);
}

void PageFlow::flowCaptions(const TableShape &shape, CSSKeyword side, std::size_t base) {
  for (const HTMLNodeIndex caption : shape.captions) {
    enterAncestors(document_.node(caption).parent, base);
    styles_.push(caption);
    const bool isBelow = top().style.inherited.captionSide == CSSKeyword::kBottom;
    if (isBelow == (side == CSSKeyword::kBottom)) flowElement(CSSKeyword::kBlock);
    leaveElement();
  }
  leaveElements(base);
}

/// Brings the elements between the table's and a cell onto the stack, that which the cell is a child of last.
void PageFlow::enterAncestors(HTMLNodeIndex parent, std::size_t base) {
  if (top().node == parent) return;
  std::vector<HTMLNodeIndex> ancestors;
  for (HTMLNodeIndex i = parent; i != styles_.at(base - 1).node; i = document_.node(i).parent)
    ancestors.push_back(i);
  std::size_t size = base;
  for (; size < styles_.size() && !ancestors.empty() && ancestors.back() == styles_.at(size).node; ++size)
    ancestors.pop_back();
  leaveElements(size);
  for (; !ancestors.empty(); ancestors.pop_back()) {
    styles_.push(ancestors.back());
    enterCounters();
  }
}

/// A cell; `*block` is the one before it and becomes this one.
void PageFlow::flowCell(const TableCell &cell, const Interned<NSTextTable> &table, std::size_t base,
                        Interned<NSTextTableBlock> *block) {
  enterAncestors(document_.node(cell.content.first).parent, base);
  const std::size_t outer = styles_.size();
  if (cell.isElement) {
    styles_.push(cell.content.first);
    enterCounters();
  }
  if (!cell.place.isBeyond) *block = Interned(blockOfCell(cell, table, base));
  BlockStyle style = blockStyleOf(top().style);
  style.leftInset = style.rightInset = 0;
  style.marginTop = style.marginBottom = style.edgeTop = style.edgeBottom = 0;
  paragraphs_.openCell(*block, style);
  if (cell.isElement)
    flowContent();
  else
    flowSiblings(cell.content);
  paragraphs_.closeCell(top().attributes());
  leaveElements(outer);
}

/// The cell as paragraphs have it. Its background is that of the row or the table where it has none of its own.
NSTextTableBlock PageFlow::blockOfCell(const TableCell &cell, const Interned<NSTextTable> &table,
                                       std::size_t base) {
  NSTextTableBlock block;
  block.table = table;
  block.startingRow = cell.place.row;
  block.rowSpan = cell.place.rowSpan;
  block.startingColumn = cell.place.column;
  block.columnSpan = cell.place.columnSpan;
  const std::size_t outermost = cell.isElement ? base - 1 : base;
  for (std::size_t i = styles_.size(); i > outermost && !block.backgroundColor; --i) {
    const ComputedStyle &style = styles_.at(i - 1).style;
    if (style.backgroundColor.alpha > 0) block.backgroundColor = colorOf(style.backgroundColor);
  }
  if (!cell.isElement) return block;
  Level &level = top();
  if (block.backgroundColor) level.context.blockBackground.reset();
  const ComputedStyle &style = level.style;
  for (std::size_t edge = 0; edge < kRectEdges; ++edge) {
    const BoxSide side = kSides[edge];
    block.borderWidths[edge] = pointsOfPixels(style.borderWidth[side]);
    if (block.borderWidths[edge] > 0) block.borderColors[edge] = colorOf(style.borderColor[side]);
    if (style.padding[side].kind == BoxLength::Kind::pixels)
      block.padding[edge] = pointsOfPixels(style.padding[side].value);
  }
  block.width = widthOf(style.width);
  block.verticalAlignment = verticalAlignmentOf(style.verticalAlign);
  return block;
}

}  // namespace nimbo::detail
