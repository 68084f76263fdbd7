// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFTables.hpp"

#include <algorithm>
#include <unordered_map>

#include "platform/AppKit/RTF/RTFUnits.hpp"

namespace nimbo {

namespace {

/// The width of a border that is only said to be there.
constexpr std::int32_t kDefaultBorderTwips = 15;
/// Edges that are nearer to each other are one.
constexpr std::int32_t kEdgeToleranceTwips = 20;
/// The width of a cell that has no definition.
constexpr std::int32_t kDefaultCellTwips = 1440;
constexpr std::int32_t kFiftiethsOfPercent = 50;

/// The width of a number and the unit it is told to be in; nothing where that leaves it to the edges.
std::optional<NSTextBlockWidth> widthOf(std::int32_t number, std::optional<std::int32_t> unit) {
  if (!unit) return {};
  if (*unit == 3) return NSTextBlockWidth{pointsOfTwips(number), NSTextBlockWidth::Unit::points};
  if (*unit == 2)
    return NSTextBlockWidth{static_cast<double>(number) / kFiftiethsOfPercent, NSTextBlockWidth::Unit::percent};
  return NSTextBlockWidth();
}

}  // namespace

void RTFRowDefinition::take(RTFWord word, std::optional<std::int32_t> parameter) {
  const std::int32_t number = std::clamp(parameter.value_or(0), -kMaximumTwips, kMaximumTwips);
  switch (word) {
    case RTFWord::trleft_:
      left_ = number;
      return;
    case RTFWord::trgaph_:
      gap_ = number;
      return;
    case RTFWord::trwWidth_:
      widthNumber_ = number;
      width_ = widthOf(widthNumber_, widthUnit_).value_or(width_);
      return;
    case RTFWord::trftsWidth_:
      widthUnit_ = number;
      width_ = widthOf(widthNumber_, widthUnit_).value_or(width_);
      return;
    case RTFWord::taflags_:
      collapsesBorders_ = (number & 1) != 0;
      return;
    case RTFWord::lastrow_:
      isLast_ = true;
      return;
    case RTFWord::trpaddt_:
      padding_[NSTopEdge] = number;
      return;
    case RTFWord::trpaddl_:
      padding_[NSLeftEdge] = number;
      return;
    case RTFWord::trpaddb_:
      padding_[NSBottomEdge] = number;
      return;
    case RTFWord::trpaddr_:
      padding_[NSRightEdge] = number;
      return;
    case RTFWord::cellx_:
      next_.right = number;
      next_.width = widthOf(cellWidthNumber_, cellWidthUnit_);
      if (cells_.size() < kMaximumCells) cells_.push_back(next_);
      next_ = RTFCellDefinition();
      cellWidthUnit_.reset();
      edge_.reset();
      return;
    case RTFWord::clmgf_:
      next_.startsHorizontally = true;
      return;
    case RTFWord::clmrg_:
      next_.continuesHorizontally = true;
      return;
    case RTFWord::clvmgf_:
      next_.startsVertically = true;
      return;
    case RTFWord::clvmrg_:
      next_.continuesVertically = true;
      return;
    case RTFWord::clgap_:
      next_.isGap = true;
      return;
    case RTFWord::clwWidth_:
      cellWidthNumber_ = number;
      return;
    case RTFWord::clftsWidth_:
      cellWidthUnit_ = number;
      return;
    case RTFWord::clvertalt_:
      next_.verticalAlignment = NSTextBlockVerticalAlignment::top;
      return;
    case RTFWord::clvertalc_:
      next_.verticalAlignment = NSTextBlockVerticalAlignment::middle;
      return;
    case RTFWord::clvertalb_:
      next_.verticalAlignment = NSTextBlockVerticalAlignment::bottom;
      return;
    case RTFWord::clcbpat_:
      next_.background = number;
      return;
    case RTFWord::clpadt_:
      next_.padding[NSTopEdge] = number;
      return;
    case RTFWord::clpadl_:
      next_.padding[NSLeftEdge] = number;
      return;
    case RTFWord::clpadb_:
      next_.padding[NSBottomEdge] = number;
      return;
    case RTFWord::clpadr_:
      next_.padding[NSRightEdge] = number;
      return;
    case RTFWord::clbrdrt_:
      edge_ = NSTopEdge;
      return;
    case RTFWord::clbrdrl_:
      edge_ = NSLeftEdge;
      return;
    case RTFWord::clbrdrb_:
      edge_ = NSBottomEdge;
      return;
    case RTFWord::clbrdrr_:
      edge_ = NSRightEdge;
      return;
    case RTFWord::brdrt_:
    case RTFWord::brdrb_:
    case RTFWord::brdrl_:
    case RTFWord::brdrr_:
    case RTFWord::brdrbtw_:
    case RTFWord::brdrbar_:
    case RTFWord::box_:
    case RTFWord::trbrdrt_:
    case RTFWord::trbrdrb_:
    case RTFWord::trbrdrl_:
    case RTFWord::trbrdrr_:
    case RTFWord::trbrdrh_:
    case RTFWord::trbrdrv_:
    case RTFWord::cldglu_:
    case RTFWord::cldgll_:
    case RTFWord::chbrdr_:
      edge_.reset();
      return;
    case RTFWord::brdrs_:
    case RTFWord::brdrth_:
    case RTFWord::brdrdb_:
    case RTFWord::brdrdot_:
    case RTFWord::brdrdash_:
    case RTFWord::brdrhair_:
      if (edge_ && next_.borderWidths[*edge_] == 0) next_.borderWidths[*edge_] = kDefaultBorderTwips;
      return;
    case RTFWord::brdrnone_:
    case RTFWord::brdrnil_:
      if (edge_) next_.borderWidths[*edge_] = 0;
      return;
    case RTFWord::brdrw_:
      if (edge_) next_.borderWidths[*edge_] = std::max(number, 0);
      return;
    case RTFWord::brdrcf_:
      if (edge_) next_.borderColors[*edge_] = number;
      return;
    default:
      return;
  }
}

std::int32_t RTFRowDefinition::paddingOf(const RTFCellDefinition &cell, std::size_t edge) const {
  if (cell.padding[edge] >= 0) return cell.padding[edge];
  if (padding_[edge] >= 0) return padding_[edge];
  return edge == NSLeftEdge || edge == NSRightEdge ? std::max(gap_, 0) : 0;
}

std::uint32_t RTFTables::cellAtDepth(std::size_t depth) {
  depth = std::min(depth, kMaximumDepth);
  while (depth < open_.size()) {
    if (open_.back().hasRow) endRow(RTFRowDefinition());
    open_.pop_back();
    isBehindInnerTable_ = true;
  }
  while (open_.size() < depth) {
    const std::uint32_t parent = cellAtDepth(open_.size());
    open_.push_back({static_cast<std::uint32_t>(tables_.size()), false, 0});
    tables_.emplace_back();
    tables_.back().parentCell = parent;
    tables_.back().table.identifier = static_cast<std::uint32_t>(tables_.size());
  }
  if (depth == 0) return 0;
  Open &open = open_.back();
  Table &table = tables_[open.table];
  if (!open.hasRow) table.rows.emplace_back();
  open.hasRow = true;
  if (open.cell) return open.cell;
  isBehindInnerTable_ = false;
  std::vector<std::uint32_t> &row = table.rows.back().cells;
  if (cells_.size() == kMaximumCells || row.size() == RTFRowDefinition::kMaximumCells)
    return open.cell = static_cast<std::uint32_t>(cells_.size());
  cells_.emplace_back();
  open.cell = static_cast<std::uint32_t>(cells_.size());
  cells_.back().table = open.table;
  row.push_back(open.cell);
  return open.cell;
}

void RTFTables::endCell() {
  open_.back().cell = 0;
  isBehindInnerTable_ = false;
}

void RTFTables::endRow(const RTFRowDefinition &definition) {
  if (open_.empty()) return;
  Open &open = open_.back();
  Table &table = tables_[open.table];
  if (open.hasRow) {
    Row &row = table.rows.back();
    row.left = definition.left();
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      RTFCellDefinition &cell = cells_[row.cells[i] - 1].definition;
      const std::int32_t left = i == 0 ? row.left : cells_[row.cells[i - 1] - 1].definition.right;
      if (i < definition.cells().size()) {
        cell = definition.cells()[i];
        for (std::size_t edge = 0; edge < kRectEdges; ++edge)
          cell.padding[edge] = definition.paddingOf(cell, edge);
      } else {
        cell.right = left + kDefaultCellTwips;
        cell.width = NSTextBlockWidth();
        cell.padding.fill(0);
      }
      cell.right = std::max(cell.right, left + 2 * kEdgeToleranceTwips);
    }
  }
  table.table.width = definition.width();
  table.table.collapsesBorders = definition.collapsesBorders();
  open.hasRow = false;
  open.cell = 0;
  if (!definition.isLast()) return;
  open_.pop_back();
  isBehindInnerTable_ = true;
}

void RTFTables::findSpans() {
  for (Table &table : tables_) {
    findSpans(&table);
    table.interned = Interned(table.table);
  }
}

void RTFTables::findSpans(Table *table) {
  std::vector<std::int32_t> edges;
  for (const Row &row : table->rows) {
    edges.push_back(row.left);
    for (const std::uint32_t cell : row.cells) edges.push_back(cells_[cell - 1].definition.right);
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end(),
                          [](std::int32_t a, std::int32_t b) { return b - a <= kEdgeToleranceTwips; }),
              edges.end());
  const auto columnAt = [&](std::int32_t edge) {
    const auto next = std::upper_bound(edges.begin(), edges.end(), edge);
    return static_cast<std::uint32_t>(std::max<std::ptrdiff_t>(next - edges.begin() - 1, 0));
  };
  table->table.numberOfColumns = edges.empty() ? 0 : static_cast<std::uint32_t>(edges.size() - 1);

  // The cells that may go on below, by their columns.
  std::unordered_map<std::uint32_t, std::uint32_t> above;
  for (std::uint32_t r = 0; r < table->rows.size(); ++r) {
    const Row &row = table->rows[r];
    std::unordered_map<std::uint32_t, std::uint32_t> here;
    std::uint32_t wide = 0;
    std::int32_t left = row.left;
    for (const std::uint32_t number : row.cells) {
      Cell &cell = cells_[number - 1];
      const RTFCellDefinition &definition = cell.definition;
      cell.row = r;
      cell.column = columnAt(left);
      cell.columnSpan = std::max(columnAt(definition.right), cell.column + 1) - cell.column;
      cell.left = left;
      left = definition.right;
      cell.isFiller = definition.isGap || definition.continuesHorizontally || definition.continuesVertically;
      if (definition.isGap) continue;
      if (definition.continuesHorizontally) {
        cell.owner = wide;
        // Of a cell that is high, too, the first row says how wide it is.
        if (wide && cells_[wide - 1].row == r) cells_[wide - 1].columnSpan += cell.columnSpan;
        continue;
      }
      wide = 0;
      if (definition.continuesVertically) {
        if (const auto found = above.find(cell.column); found != above.end()) {
          cell.owner = found->second;
          Cell &owner = cells_[cell.owner - 1];
          owner.rowSpan = r - owner.row + 1;
          here.emplace(cell.column, cell.owner);
        }
        if (definition.startsHorizontally) wide = cell.owner;
        continue;
      }
      if (definition.startsVertically) here.emplace(cell.column, number);
      if (definition.startsHorizontally) wide = number;
    }
    above = std::move(here);
  }
}

NSTextTableBlock RTFTables::plainBlock(const Cell &cell) const {
  NSTextTableBlock block;
  block.table = tables_[cell.table].interned;
  block.startingRow = cell.row;
  block.rowSpan = cell.rowSpan;
  block.startingColumn = cell.column;
  block.columnSpan = cell.columnSpan;
  block.verticalAlignment = cell.definition.verticalAlignment;
  for (std::size_t edge = 0; edge < kRectEdges; ++edge) {
    block.borderWidths[edge] = pointsOfTwips(cell.definition.borderWidths[edge]);
    block.padding[edge] = pointsOfTwips(std::max(cell.definition.padding[edge], 0));
  }
  block.width = cell.definition.width.value_or(NSTextBlockWidth{
      pointsOfTwips(std::max(cell.definition.right - cell.left, 0)), NSTextBlockWidth::Unit::points});
  return block;
}

}  // namespace nimbo
