// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatDocumentTables.hpp"

#include <algorithm>
#include <array>

#include "platform/Documents/FlatDocumentValues.hpp"

namespace nimbo::detail {
namespace {

/// Groups of rows may hold groups.
constexpr std::uint32_t kMaximumGroups = 16;
constexpr std::uint32_t kMaximumSpan = kMaximumCells;
/// A row that a sheet repeats more often is a pattern, not text.
constexpr std::uint32_t kMaximumRepetitions = 100;

constexpr std::array<const char *, kRectEdges> kBorders = {"fo:border-top", "fo:border-left",
                                                           "fo:border-bottom", "fo:border-right"};
constexpr std::array<const char *, kRectEdges> kPaddings = {"fo:padding-top", "fo:padding-left",
                                                            "fo:padding-bottom", "fo:padding-right"};

std::uint32_t repetitions(const pugi::xml_node &node, const char *attribute, std::uint32_t most) {
  return std::max(wholeNumber(node.attribute(attribute).value(), most).value_or(1), 1u);
}

bool isCell(const pugi::xml_node &node) {
  const std::string_view name = node.name();
  return name == "table:table-cell" || name == "table:covered-table-cell";
}

bool isEmpty(const pugi::xml_node &cell) {
  return !cell.first_child() && !cell.attribute("table:number-columns-spanned");
}

/// "0.5pt solid #000000", or "none".
void readBorder(std::string_view value, double *width, std::optional<NSColor> *borderColor) {
  const std::size_t first = value.find(' '), last = value.rfind(' ');
  *width = lengthInPoints(value.substr(0, first)).value_or(0);
  *borderColor = last == std::string_view::npos ? std::nullopt : color(value.substr(last + 1));
}

void readCellProperties(const pugi::xml_node &properties, NSTextTableBlock &block) {
  block.backgroundColor = color(properties.attribute("fo:background-color").value());
  for (std::size_t edge = 0; edge < kRectEdges; ++edge) {
    for (const char *name : {"fo:border", kBorders[edge]})
      if (const pugi::xml_attribute border = properties.attribute(name))
        readBorder(border.value(), &block.borderWidths[edge], &block.borderColors[edge]);
    for (const char *name : {"fo:padding", kPaddings[edge]})
      if (const auto padding = lengthInPoints(properties.attribute(name).value()))
        block.padding[edge] = *padding;
  }
  const std::string_view place = properties.attribute("style:vertical-align").value();
  if (place == "middle") block.verticalAlignment = NSTextBlockVerticalAlignment::middle;
  if (place == "bottom") block.verticalAlignment = NSTextBlockVerticalAlignment::bottom;
}

/// How many columns a row has, without the empty ones at its end that stand for the rest of a sheet.
std::uint32_t usedColumns(const pugi::xml_node &row) {
  std::uint32_t column = 0, used = 0;
  for (const pugi::xml_node &cell : row.children()) {
    if (!isCell(cell)) continue;
    const std::uint32_t count = repetitions(cell, "table:number-columns-repeated", kMaximumColumns);
    column = std::min(column + count, kMaximumColumns);
    if (count == 1 || !isEmpty(cell)) used = column;
  }
  return used;
}

}  // namespace

FlatDocumentTable::FlatDocumentTable(const pugi::xml_node &table, std::uint32_t identifier,
                                     const FlatDocumentStyles &styles, std::uint32_t *cellsLeft)
    : styles_(styles) {
  readColumns(table, 0);
  collectRows(table, 0);
  NSTextTable shared;
  shared.identifier = identifier;
  for (const pugi::xml_node &row : rows_)
    shared.numberOfColumns = std::max(shared.numberOfColumns, usedColumns(row));
  const pugi::xml_node properties =
      styles.properties("table", table.attribute("table:style-name").value(), "style:table-properties");
  if (const auto width = lengthInPoints(properties.attribute("style:width").value()))
    shared.width = {*width, NSTextBlockWidth::Unit::points};
  shared.collapsesBorders =
      std::string_view(properties.attribute("table:border-model").value()) == "collapsing";
  table_ = Interned<NSTextTable>(shared);
  collectCells(cellsLeft);
}

void FlatDocumentTable::collectCells(std::uint32_t *cellsLeft) {
  for (std::uint32_t row = 0; row < rows_.size(); ++row) {
    std::uint32_t column = 0;
    for (const pugi::xml_node &cell : rows_[row].children()) {
      if (!isCell(cell)) continue;
      const bool isCovered = std::string_view(cell.name()) == "table:covered-table-cell";
      const std::uint32_t end =
          std::min(column + repetitions(cell, "table:number-columns-repeated", kMaximumColumns),
                   table_->numberOfColumns);
      for (; column < end; ++column) {
        if (isCovered) continue;
        if (*cellsLeft == 0) {
          isCut_ = true;
          return;
        }
        --*cellsLeft;
        cells_.push_back({cell, row, column});
      }
    }
  }
}

Interned<NSTextTableBlock> FlatDocumentTable::block(const Cell &cell) const {
  NSTextTableBlock result;
  result.table = table_;
  result.startingRow = cell.row;
  result.startingColumn = cell.column;
  result.columnSpan = std::min(repetitions(cell.node, "table:number-columns-spanned", kMaximumColumns),
                               table_->numberOfColumns - cell.column);
  result.rowSpan = std::min(repetitions(cell.node, "table:number-rows-spanned", kMaximumSpan),
                            static_cast<std::uint32_t>(rows_.size()) - cell.row);
  if (const std::size_t end = cell.column + result.columnSpan; end <= columnWidths_.size())
    for (std::size_t column = cell.column; column < end; ++column) result.width.value += columnWidths_[column];
  if (result.width.value > 0) result.width.unit = NSTextBlockWidth::Unit::points;
  readCellProperties(styles_.properties("table-cell", cell.node.attribute("table:style-name").value(),
                                        "style:table-cell-properties"),
                     result);
  return Interned<NSTextTableBlock>(result);
}

void FlatDocumentTable::collectRows(const pugi::xml_node &parent, std::uint32_t depth) {
  for (const pugi::xml_node &node : parent.children()) {
    const std::string_view name = node.name();
    const bool isGroup =
        name == "table:table-header-rows" || name == "table:table-rows" || name == "table:table-row-group";
    if (isGroup && depth < kMaximumGroups) collectRows(node, depth + 1);
    if (name != "table:table-row") continue;
    const std::uint32_t count = repetitions(node, "table:number-rows-repeated", kMaximumSpan);
    // Empty rows that are repeated fill a sheet up.
    if (count > 1 && usedColumns(node) == 0) continue;
    const std::uint32_t taken = std::min(count, kMaximumRepetitions);
    if (rows_.size() + taken > kMaximumCells) {
      isCut_ = true;
      return;
    }
    rows_.insert(rows_.end(), taken, node);
  }
}

void FlatDocumentTable::readColumns(const pugi::xml_node &parent, std::uint32_t depth) {
  for (const pugi::xml_node &node : parent.children()) {
    const std::string_view name = node.name();
    if (name == "table:table-column") {
      const pugi::xml_node properties = styles_.properties(
          "table-column", node.attribute("table:style-name").value(), "style:table-column-properties");
      const double width = lengthInPoints(properties.attribute("style:column-width").value()).value_or(0);
      const std::uint32_t count = repetitions(node, "table:number-columns-repeated", kMaximumColumns);
      if (columnWidths_.size() + count <= kMaximumColumns)
        columnWidths_.insert(columnWidths_.end(), count, std::max(width, 0.0));
    } else if (name.starts_with("table:table-") && name.find("column") != std::string_view::npos &&
               depth < kMaximumGroups) {
      readColumns(node, depth + 1);
    }
  }
}

}  // namespace nimbo::detail
