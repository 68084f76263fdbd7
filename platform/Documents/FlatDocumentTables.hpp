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
    Interned<NSTextTableBlock> block;
  };
  /// The cells in reading order.
  const std::vector<Cell> &cells() const { return cells_; }
  /// Whether cells are left out.
  bool isCut() const { return isCut_; }

 private:
  void collectRows(const pugi::xml_node &parent, std::uint32_t depth);
  void readColumns(const pugi::xml_node &parent, std::uint32_t depth);
  NSTextTableBlock block(const pugi::xml_node &cell) const;

  const FlatDocumentStyles &styles_;
  std::vector<pugi::xml_node> rows_;
  std::vector<double> columnWidths_;
  std::vector<Cell> cells_;
  bool isCut_ = false;
};

}  // namespace nimbo::detail
