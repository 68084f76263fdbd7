// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/AppKit/NSParagraphStyle.hpp"
#include "platform/AppKit/RTF/RTFWords.hpp"

namespace nimbo {

/// The shape of a cell as a row's definition has it; lengths in twips.
struct RTFCellDefinition {
  std::int32_t right = 0;
  bool startsHorizontally = false, continuesHorizontally = false;
  bool startsVertically = false, continuesVertically = false;
  bool isGap = false;
  std::optional<NSTextBlockWidth> width;
  NSTextBlockVerticalAlignment verticalAlignment = NSTextBlockVerticalAlignment::top;
  /// An index of the colour table, as all colours here; -1 for none.
  std::int32_t background = -1;
  std::array<std::int32_t, kRectEdges> borderWidths{};
  std::array<std::int32_t, kRectEdges> borderColors{-1, -1, -1, -1};
  /// Negative where the row's holds.
  std::array<std::int32_t, kRectEdges> padding{-1, -1, -1, -1};
};

/// The definition of a row.
class RTFRowDefinition {
 public:
  /// How many cells a row may have.
  static constexpr std::size_t kMaximumCells = 4096;

  /// Takes a word of rows, cells or borders; others say nothing.
  void take(RTFWord word, std::optional<std::int32_t> parameter);

  const std::vector<RTFCellDefinition> &cells() const { return cells_; }
  std::int32_t left() const { return left_; }
  const NSTextBlockWidth &width() const { return width_; }
  bool collapsesBorders() const { return collapsesBorders_; }
  bool isLast() const { return isLast_; }
  std::int32_t paddingOf(const RTFCellDefinition &cell, std::size_t edge) const;

 private:
  std::vector<RTFCellDefinition> cells_;
  RTFCellDefinition next_;
  std::int32_t left_ = 0;
  std::int32_t gap_ = 0;
  std::array<std::int32_t, kRectEdges> padding_{-1, -1, -1, -1};
  NSTextBlockWidth width_;
  std::int32_t widthNumber_ = 0, cellWidthNumber_ = 0;
  std::optional<std::int32_t> widthUnit_, cellWidthUnit_;
  bool collapsesBorders_ = false;
  bool isLast_ = false;
  /// The border that words of borders mean; none where a paragraph's or a row's is meant.
  std::optional<std::size_t> edge_;
};

/// The tables of a text while it is read. Cells have numbers, 0 is none.
class RTFTables {
 public:
  /// How many cells are kept apart; the text of more goes on in the last one.
  static constexpr std::size_t kMaximumCells = 1 << 20;
  /// How deep tables may stand in cells.
  static constexpr std::size_t kMaximumDepth = 16;

  /// How many tables are open around the place that is read.
  std::size_t depth() const { return open_.size(); }
  /// Opens and closes tables until so many are open. Answers the innermost open cell, which is opened if need
  /// be.
  std::uint32_t cellAtDepth(std::size_t depth);
  /// Ends the open cell of the innermost table.
  void endCell();
  /// Ends the open row of the innermost table; the definition holds for it, and for the table.
  void endRow(const RTFRowDefinition &definition);
  /// Whether nothing stands between here and the end of a row in the innermost open cell.
  bool isBehindInnerTable() const { return isBehindInnerTable_; }
  /// Something stands here.
  void noteContent() { isBehindInnerTable_ = false; }

  /// Finds out what the cells span, when all is read. `color` answers the colour of an index.
  template <class Color>
  void resolve(Color &&color) {
    findSpans();
    for (Cell &cell : cells_) makeBlock(&cell, color);
  }
  /// The block of a cell and of those around it, from the outermost on; for `resolve` was called.
  const std::vector<Interned<NSTextTableBlock>> &blocks(std::uint32_t cell) const {
    return cells_[cell - 1].blocks;
  }
  /// Whether the cell is only there to fill the place of another one; it has no text of its own unless there is
  /// some.
  bool isFiller(std::uint32_t cell) const { return cells_[cell - 1].isFiller; }

 private:
  struct Cell {
    std::uint32_t table = 0;
    std::uint32_t row = 0;
    std::uint32_t rowSpan = 1;
    std::uint32_t column = 0;
    std::uint32_t columnSpan = 1;
    /// The cell whose text this one's is, when it fills the place of one.
    std::uint32_t owner = 0;
    bool isFiller = false;
    RTFCellDefinition definition;
    std::int32_t left = 0;
    std::vector<Interned<NSTextTableBlock>> blocks;
  };
  struct Row {
    std::vector<std::uint32_t> cells;
    std::int32_t left = 0;
  };
  struct Table {
    std::uint32_t parentCell = 0;
    std::vector<Row> rows;
    NSTextTable table;
    Interned<NSTextTable> interned;
  };
  struct Open {
    std::uint32_t table = 0;
    bool hasRow = false;
    std::uint32_t cell = 0;
  };

  void findSpans();
  void findSpans(Table *table);
  template <class Color>
  void makeBlock(Cell *cell, Color &&color) {
    const Table &table = tables_[cell->table];
    if (table.parentCell) cell->blocks = cells_[table.parentCell - 1].blocks;
    if (cell->owner) {
      cell->blocks = cells_[cell->owner - 1].blocks;
      return;
    }
    NSTextTableBlock block = plainBlock(*cell);
    block.backgroundColor = color(cell->definition.background);
    for (std::size_t edge = 0; edge < kRectEdges; ++edge)
      block.borderColors[edge] = color(cell->definition.borderColors[edge]);
    cell->blocks.emplace_back(block);
  }
  NSTextTableBlock plainBlock(const Cell &cell) const;

  std::vector<Cell> cells_;
  std::vector<Table> tables_;
  std::vector<Open> open_;
  bool isBehindInnerTable_ = false;
};

}  // namespace nimbo
