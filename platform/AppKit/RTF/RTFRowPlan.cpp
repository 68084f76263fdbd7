// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFRowPlan.hpp"

#include <algorithm>

#include "platform/AppKit/RTF/RTFUnits.hpp"

namespace nimbo {

namespace {

/// The width of a page's text, which columns share that do not say how wide they are.
constexpr std::int32_t kTextTwips = 8640;
constexpr std::int32_t kNarrowestColumnTwips = 60;
constexpr std::int32_t kWidestColumnTwips = 4000;

std::int32_t widthOf(const NSTextBlockWidth &width) {
  if (width.unit == NSTextBlockWidth::Unit::points) return twipsOfPoints(width.value);
  if (width.unit == NSTextBlockWidth::Unit::percent) return unitsOfPoints(width.value, kTextTwips / 100.0);
  return 0;
}

}  // namespace

void RTFRowPlans::add(const Blocks &allBlocks) {
  const Blocks blocks(allBlocks.begin(), allBlocks.begin() + static_cast<std::ptrdiff_t>(
                                                                 std::min(allBlocks.size(), kMaximumDepth)));
  if (blocks.empty() && open_.empty()) {
    ++paragraphs_;
    return;
  }
  endParagraph(blocks);
  for (std::size_t level = 0; level < blocks.size(); ++level) {
    if (level < open_.size() && open_[level].hasCell) continue;
    const Interned<NSTextTableBlock> &block = blocks[level];
    if (level == open_.size()) {
      const bool goesOn = ended_.isKnown && ended_.level == level && ended_.open.block->table == block->table;
      Open open{rows_.size(), block->startingRow, {}, false, {}};
      RTFRowPlan row;
      row.table = block->table;
      if (goesOn) {
        rows_[ended_.open.row].isLast = false;
        row.columns = rows_[ended_.open.row].columns;
        open.above = std::move(ended_.open.above);
        std::erase_if(open.above, [&](const auto &cell) { return cell.second.endRow <= block->startingRow; });
      } else {
        row.columns = columns_.size();
        columns_.emplace_back();
      }
      rows_.push_back(std::move(row));
      open_.push_back(std::move(open));
      addEvent(2 * paragraphs_,
               {RTFTableEvent::Kind::openRow, static_cast<std::uint32_t>(level), rows_.size() - 1, 0});
    }
    addCell(level, block);
  }
  ended_.isKnown = false;
  ++paragraphs_;
}

/// Ends what the next paragraph is not in.
void RTFRowPlans::endParagraph(const Blocks &next) {
  std::size_t common = 0;
  while (common < open_.size() && common < next.size() && open_[common].block == next[common]) ++common;
  ended_.isKnown = false;
  while (open_.size() > common) {
    const std::size_t level = open_.size() - 1;
    Open &open = open_.back();
    const std::size_t place = 2 * paragraphs_ - 1;
    addEvent(place, {RTFTableEvent::Kind::endCell, static_cast<std::uint32_t>(level), open.row, 0});
    open.hasCell = false;
    const bool goesOn = level == common && level < next.size() && next[level]->table == open.block->table &&
                        next[level]->startingRow == open.number;
    if (goesOn) return;
    // Cells of earlier rows may reach down to the end of this row, too.
    if (!open.above.empty()) fillTo(&open, open.above.rbegin()->first + 1);
    addEvent(place, {RTFTableEvent::Kind::endRow, static_cast<std::uint32_t>(level), open.row, 0});
    ended_ = {true, level, std::move(open)};
    open_.pop_back();
  }
}

void RTFRowPlans::addFiller(RTFRowPlan *row, RTFSlot slot) {
  slot.column = row->nextColumn++;
  if (fillers_ == kMaximumFillers) return;
  ++fillers_;
  row->slots.push_back(std::move(slot));
}

void RTFRowPlans::fillTo(Open *open, std::uint32_t column) {
  RTFRowPlan &row = rows_[open->row];
  column = std::min(column, kMaximumColumns);
  if (fillers_ == kMaximumFillers) {
    row.nextColumn = std::max(row.nextColumn, column);
    open->above.clear();
    return;
  }
  while (row.nextColumn < column) {
    const auto above = open->above.find(row.nextColumn);
    // What begins in this row reaches down from it, not into it.
    if (above == open->above.end() || above->second.endRow <= open->number) {
      RTFSlot gap;
      gap.isGap = true;
      addFiller(&row, gap);
      continue;
    }
    for (std::uint32_t i = 0; i < above->second.span; ++i) {
      RTFSlot part;
      part.continuesVertically = true;
      part.startsHorizontally = i == 0 && above->second.span > 1;
      part.continuesHorizontally = i > 0;
      addFiller(&row, part);
    }
  }
}

void RTFRowPlans::addCell(std::size_t level, const Interned<NSTextTableBlock> &block) {
  Open &open = open_[level];
  fillTo(&open, block->startingColumn);
  RTFRowPlan &row = rows_[open.row];
  RTFSlot slot;
  slot.block = block;
  slot.isCell = true;
  slot.column = row.nextColumn++;
  const std::uint32_t free = kMaximumColumns - std::min(slot.column, kMaximumColumns - 1);
  const std::uint32_t span = std::clamp(block->columnSpan, 1u, free);
  slot.startsHorizontally = span > 1;
  slot.startsVertically = block->rowSpan > 1;
  open.above.erase(slot.column);
  if (slot.startsVertically)
    open.above[slot.column] = {std::uint64_t{block->startingRow} + block->rowSpan, span};
  std::vector<std::int32_t> &widths = columns_[row.columns];
  if (widths.size() < row.nextColumn) widths.resize(row.nextColumn);
  if (span == 1 && widths[slot.column] == 0) widths[slot.column] = widthOf(block->width);
  addEvent(2 * paragraphs_,
           {RTFTableEvent::Kind::openCell, static_cast<std::uint32_t>(level), open.row, row.slots.size()});
  row.slots.push_back(slot);
  for (std::uint32_t i = 1; i < span; ++i) {
    RTFSlot part;
    part.continuesHorizontally = true;
    part.startsVertically = slot.startsVertically;
    addFiller(&row, part);
  }
  open.block = block;
  open.hasCell = true;
}

void RTFRowPlans::resolve() {
  std::vector<std::uint32_t> counts(columns_.size());
  for (const RTFRowPlan &row : rows_) counts[row.columns] = std::max(counts[row.columns], row.nextColumn);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    std::vector<std::int32_t> &widths = columns_[i];
    widths.resize(counts[i]);
    std::int32_t edge = 0;
    const auto share = std::max(kTextTwips / static_cast<std::int32_t>(std::max(widths.size(), std::size_t{1})),
                                kNarrowestColumnTwips);
    for (std::int32_t &width : widths)
      width = edge =
          std::min(edge + (width == 0 ? share : std::clamp(width, kNarrowestColumnTwips, kWidestColumnTwips)),
                   kMaximumTwips);
  }
}

std::int32_t RTFRowPlans::rightEdge(const RTFRowPlan &row, std::uint32_t column) const {
  return columns_[row.columns][column];
}

void RTFRowPlans::addEvent(std::size_t place, RTFTableEvent event) {
  if (places_.empty() || places_.back().place != place) places_.push_back({place, events_.size()});
  events_.push_back(event);
}

std::span<const RTFTableEvent> RTFRowPlans::eventsAt(std::size_t place) const {
  const auto found = std::ranges::lower_bound(places_, place, {}, &Place::place);
  if (found == places_.end() || found->place != place) return {};
  const auto next = std::next(found);
  const std::size_t end = next == places_.end() ? events_.size() : next->firstEvent;
  return std::span(events_).subspan(found->firstEvent, end - found->firstEvent);
}

}  // namespace nimbo
