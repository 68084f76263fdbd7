// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

namespace nimbo::detail {

/// Places the cells of a table, row by row, beside those that reach down from rows above. A cell is as narrow
/// as it has to be to overlap no other one.
///
///     TableGrid grid;
///     grid.beginRow(2);
///     const TableGrid::Place first = grid.place(1, 2);
///     grid.beginRow(1);
///     grid.place(1, 1).column;  // 1
class TableGrid {
 public:
  /// How many columns a table has at most. What is further right is part of the last cell of its row.
  static constexpr std::uint32_t kMaximumColumns = 1000;
  /// The greatest claim of a cell to rows.
  static constexpr std::uint32_t kMaximumRowSpan = 65534;

  struct Place {
    std::uint32_t row = 0, column = 0;
    std::uint32_t rowSpan = 1, columnSpan = 1;
    /// Whether there was no column left.
    bool isBeyond = false;
  };

  /// Begins a row behind which the group has `rowsLeft` ones, itself counted.
  void beginRow(std::uint32_t rowsLeft);
  /// The place of the next cell of the row with its claims, of which 0 rows are all that are left.
  Place place(std::uint32_t columnSpan, std::uint32_t rowSpan);
  /// Merges the columns in which no cell begins with those to their left, in a place of this grid.
  void narrow(Place *place) const;
  /// How many columns are left after that.
  std::uint32_t columnCount() const;
  /// How many rows have begun.
  std::uint32_t rowCount() const { return rowCount_; }
  /// Makes `narrow` and `columnCount` ready, when all cells are placed.
  void finish();

 private:
  /// The first row in which each column is free again.
  std::vector<std::uint32_t> freeFrom_;
  std::vector<bool> isBegun_;
  /// How many columns with beginnings there are in front of each.
  std::vector<std::uint32_t> begunBefore_;
  std::uint32_t rowCount_ = 0;
  std::uint32_t rowsLeft_ = 0;
  std::uint32_t column_ = 0;
};

}  // namespace nimbo::detail
