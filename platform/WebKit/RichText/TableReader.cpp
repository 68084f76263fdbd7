// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/TableReader.hpp"

#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/RichText/Numbers.hpp"

namespace nimbo::detail {

namespace {

/// What stands for nodes that have no box.
constexpr CSSKeyword kNoBox = CSSKeyword::kNone;

bool isRowGroup(CSSKeyword display) {
  return display == CSSKeyword::kTableRowGroup || display == CSSKeyword::kTableHeaderGroup ||
         display == CSSKeyword::kTableFooterGroup;
}

bool isColumn(CSSKeyword display) {
  return display == CSSKeyword::kTableColumn || display == CSSKeyword::kTableColumnGroup;
}

/// What a claim of an attribute is, which is not negative.
std::uint32_t spanOf(std::optional<std::u16string_view> value) {
  const std::int32_t span = integerOfAttribute(value).value_or(1);
  return static_cast<std::uint32_t>(span < 0 ? 1 : span);
}

}  // namespace

bool isTablePart(CSSKeyword display) {
  return isRowGroup(display) || isColumn(display) || display == CSSKeyword::kTableRow ||
         display == CSSKeyword::kTableCell || display == CSSKeyword::kTableCaption;
}

/// The display of an element; `kNoBox` for blank text and comments, `kInline` for other text.
CSSKeyword TableReader::displayOf(HTMLNodeIndex index) {
  const HTMLNode &node = document_.node(index);
  if (node.kind == HTMLNodeKind::text)
    return std::ranges::all_of(document_.text(node), isASCIIWhiteSpace<char16_t>) ? kNoBox
                                                                                  : CSSKeyword::kInline;
  if (!node.isElement()) return kNoBox;
  const ComputedStyle &style = styles_.styleOf(index);
  const bool isCollapsed = style.inherited.visibility == CSSKeyword::kCollapse && isTablePart(style.display);
  return isCollapsed ? kNoBox : style.display;
}

/// The siblings in front of the first one that has a box and is no part.
template <class Predicate>
SiblingRange TableReader::rangeWhile(SiblingRange range, Predicate isPart) {
  HTMLNodeIndex end = range.first;
  for (; end != range.end && end != kNoHTMLNode; end = document_.node(end).nextSibling)
    if (const CSSKeyword display = displayOf(end); display != kNoBox && !isPart(display)) break;
  return {range.first, end};
}

SiblingRange TableReader::partsOfTable(SiblingRange range) {
  return rangeWhile(range, isTablePart);
}

TableShape TableReader::read(SiblingRange range) {
  readTable(range);
  return placed();
}

void TableReader::beginGroup(GroupKind kind) {
  const auto row = static_cast<std::uint32_t>(rows_.size());
  if (!groups_.empty()) groups_.back().endOfRows = row;
  groups_.push_back({kind, row, row});
}

void TableReader::readTable(SiblingRange range) {
  bool isInBody = false;
  for (HTMLNodeIndex i = range.first; i != range.end && i != kNoHTMLNode;) {
    const CSSKeyword display = displayOf(i);
    const HTMLNodeIndex next = document_.node(i).nextSibling;
    if (display == CSSKeyword::kTableCaption) {
      captions_.push_back(i);
    } else if (isRowGroup(display)) {
      isInBody = false;
      beginGroup(display == CSSKeyword::kTableHeaderGroup   ? GroupKind::header
                 : display == CSSKeyword::kTableFooterGroup ? GroupKind::footer
                                                            : GroupKind::body);
      styles_.push(i);
      readRows(childrenOf(i));
      styles_.pop();
    } else if (display == CSSKeyword::kContents) {
      styles_.push(i);
      readTable(childrenOf(i));
      styles_.pop();
      isInBody = false;
    } else if (display != kNoBox && !isColumn(display)) {
      if (!isInBody) beginGroup(GroupKind::body);
      isInBody = true;
      const SiblingRange rows = rangeWhile({i, range.end}, [](CSSKeyword part) {
        return !isRowGroup(part) && !isColumn(part) && part != CSSKeyword::kTableCaption &&
               part != CSSKeyword::kContents;
      });
      readRows(rows);
      i = rows.end;
      continue;
    }
    i = next;
  }
}

void TableReader::readRows(SiblingRange range) {
  for (HTMLNodeIndex i = range.first; i != range.end && i != kNoHTMLNode;) {
    const CSSKeyword display = displayOf(i);
    const HTMLNodeIndex next = document_.node(i).nextSibling;
    if (display == CSSKeyword::kTableRow || display == CSSKeyword::kContents) {
      styles_.push(i);
      if (display == CSSKeyword::kContents)
        readRows(childrenOf(i));
      else
        readRow(childrenOf(i));
      styles_.pop();
    } else if (display != kNoBox && !isColumn(display)) {
      const SiblingRange cells = rangeWhile({i, range.end}, [](CSSKeyword part) {
        return part != CSSKeyword::kTableRow && part != CSSKeyword::kContents;
      });
      readRow(cells);
      i = cells.end;
      continue;
    }
    i = next;
  }
}

void TableReader::readRow(SiblingRange range) {
  const auto first = static_cast<std::uint32_t>(cells_.size());
  readCells(range);
  rows_.push_back({first, static_cast<std::uint32_t>(cells_.size())});
}

void TableReader::readCells(SiblingRange range) {
  for (HTMLNodeIndex i = range.first; i != range.end && i != kNoHTMLNode;) {
    const CSSKeyword display = displayOf(i);
    const HTMLNodeIndex next = document_.node(i).nextSibling;
    if (display == CSSKeyword::kTableCell) {
      addCell({i, next}, true);
    } else if (display == CSSKeyword::kContents) {
      styles_.push(i);
      readCells(childrenOf(i));
      styles_.pop();
    } else if (display != kNoBox && !isColumn(display)) {
      const SiblingRange content = rangeWhile({i, range.end}, [](CSSKeyword part) {
        return part != CSSKeyword::kTableCell && part != CSSKeyword::kContents;
      });
      addCell(content, false);
      i = content.end;
      continue;
    }
    i = next;
  }
}

void TableReader::addCell(SiblingRange content, bool isElement) {
  TableCell cell{content, isElement, {}};
  if (isElement) {
    const HTMLNode &node = document_.node(content.first);
    cell.place.columnSpan = spanOf(document_.attribute(node, "colspan"_atom));
    cell.place.rowSpan = spanOf(document_.attribute(node, "rowspan"_atom));
  }
  cells_.push_back(cell);
}

/// Gives the cells their places: those of the first header group come first, of the first footer group last.
TableShape TableReader::placed() {
  if (!groups_.empty()) groups_.back().endOfRows = static_cast<std::uint32_t>(rows_.size());
  const auto moveGroup = [&](GroupKind kind, auto place) {
    const auto group = std::ranges::find(groups_, kind, [](const Group &candidate) { return candidate.kind; });
    if (group == groups_.end()) return;
    const Group moved = *group;
    groups_.erase(group);
    groups_.insert(place(), moved);
  };
  moveGroup(GroupKind::header, [&] { return groups_.begin(); });
  moveGroup(GroupKind::footer, [&] { return groups_.end(); });

  TableShape shape;
  TableGrid grid;
  for (const Group &group : groups_)
    for (std::uint32_t row = group.firstRow; row < group.endOfRows; ++row) {
      grid.beginRow(group.endOfRows - row);
      for (std::uint32_t i = rows_[row].firstCell; i < rows_[row].endOfCells; ++i) {
        TableCell cell = cells_[i];
        cell.place = grid.place(cell.place.columnSpan, cell.place.rowSpan);
        shape.cells.push_back(cell);
      }
    }
  grid.finish();
  for (TableCell &cell : shape.cells)
    if (!cell.place.isBeyond) grid.narrow(&cell.place);
  shape.columnCount = grid.columnCount();
  shape.captions = std::move(captions_);
  return shape;
}

}  // namespace nimbo::detail
