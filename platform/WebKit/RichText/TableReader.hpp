// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/WebKit/RichText/StyleStack.hpp"
#include "platform/WebKit/RichText/TableGrid.hpp"

namespace nimbo::detail {

/// Siblings from `first` on up to `end`, which is `kNoHTMLNode` for all that follow.
struct SiblingRange {
  HTMLNodeIndex first = kNoHTMLNode;
  HTMLNodeIndex end = kNoHTMLNode;
};

/// A cell of a table.
struct TableCell {
  /// The element, or what stands where a cell should be.
  SiblingRange content;
  bool isElement = true;
  TableGrid::Place place;
};

/// What a table is made of.
struct TableShape {
  /// In the order in which they are shown.
  std::vector<TableCell> cells;
  std::vector<HTMLNodeIndex> captions;
  std::uint32_t columnCount = 0;
};

/// Whether a box of this display belongs into a table.
bool isTablePart(CSSKeyword display);

/// Finds the rows and cells of a table by their styles. What stands at a place where rows or cells have to be
/// makes up a row or a cell, as style sheets have it.
class TableReader {
 public:
  TableReader(const HTMLDocument &document, StyleStack &styles) : document_(document), styles_(styles) {}

  /// The table of these siblings, whose parent is the last element of the stack.
  TableShape read(SiblingRange range);
  /// The siblings from `range.first` on that are parts of one table without an element for it.
  SiblingRange partsOfTable(SiblingRange range);

 private:
  enum class GroupKind : std::uint8_t { header, body, footer };
  struct Row {
    std::uint32_t firstCell = 0;
    std::uint32_t endOfCells = 0;
  };
  struct Group {
    GroupKind kind = GroupKind::body;
    std::uint32_t firstRow = 0;
    std::uint32_t endOfRows = 0;
  };

  CSSKeyword displayOf(HTMLNodeIndex node);
  template <class Predicate>
  SiblingRange rangeWhile(SiblingRange range, Predicate isPart);
  SiblingRange childrenOf(HTMLNodeIndex node) const { return {document_.node(node).firstChild}; }
  void readTable(SiblingRange range);
  void readRows(SiblingRange range);
  void readRow(SiblingRange range);
  void readCells(SiblingRange range);
  void addCell(SiblingRange content, bool isElement);
  void beginGroup(GroupKind kind);
  TableShape placed();

  const HTMLDocument &document_;
  StyleStack &styles_;
  std::vector<TableCell> cells_;
  std::vector<Row> rows_;
  std::vector<Group> groups_;
  std::vector<HTMLNodeIndex> captions_;
};

}  // namespace nimbo::detail
