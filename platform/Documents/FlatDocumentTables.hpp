// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/Documents/FlatDocumentStyles.hpp"

namespace nimbo::detail {

/// The most cells that are taken of all tables of a document.
inline constexpr std::uint32_t kMaximumCells = 1'000'000;
inline constexpr std::uint32_t kMaximumColumns = 16'384;

/// The rows and columns of one table of a flat OpenDocument.
class FlatDocumentTable {
 public:
  /// Takes as many cells as are left, and counts them.
  FlatDocumentTable(const pugi::xml_node &table, std::uint32_t identifier, const FlatDocumentStyles &styles,
                    std::uint32_t *cellsLeft);

  /// A cell with its place.
  struct Cell {
    pugi::xml_node node;
    std::uint32_t row = 0, column = 0;
  };
  /// The cells in reading order.
  const std::vector<Cell> &cells() const { return cells_; }
  /// What paragraphs of a cell have in common.
  Interned<NSTextTableBlock> block(const Cell &cell) const;
  /// Whether cells are left out.
  bool isCut() const { return isCut_; }

 private:
  void collectCells(std::uint32_t *cellsLeft);
  void collectRows(const pugi::xml_node &parent, std::uint32_t depth);
  void readColumns(const pugi::xml_node &parent, std::uint32_t depth);

  const FlatDocumentStyles &styles_;
  std::vector<pugi::xml_node> rows_;
  std::vector<double> columnWidths_;
  std::vector<Cell> cells_;
  Interned<NSTextTable> table_;
  bool isCut_ = false;
};

}  // namespace nimbo::detail
