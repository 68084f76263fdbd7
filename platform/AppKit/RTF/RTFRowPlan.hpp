// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "platform/AppKit/NSParagraphStyle.hpp"

namespace nimbo {

/// A place of a row: a cell, or what stands for the part of a cell that reaches there.
struct RTFSlot {
  Interned<NSTextTableBlock> block;
  bool isCell = false;
  bool isGap = false;
  bool startsHorizontally = false, continuesHorizontally = false;
  bool startsVertically = false, continuesVertically = false;
  std::uint32_t column = 0;
};

/// A row as it is written.
struct RTFRowPlan {
  Interned<NSTextTable> table;
  /// The table's columns, by index in the plans.
  std::size_t columns = 0;
  std::vector<RTFSlot> slots;
  /// The first column behind the slots.
  std::uint32_t nextColumn = 0;
  bool isLast = true;
};

/// What happens to tables before and behind a paragraph.
struct RTFTableEvent {
  enum class Kind : std::uint8_t { openRow, openCell, endCell, endRow };
  Kind kind;
  std::uint32_t level;
  /// The row, by index.
  std::size_t row;
  /// The slot of a cell that is opened.
  std::size_t slot;
};

/// The rows of a text, found before it is written, for a row says what its cells are like before they come.
class RTFRowPlans {
 public:
  /// How deep tables are written in cells.
  static constexpr std::size_t kMaximumDepth = 16;
  /// Cells that begin at a later column stand behind the others.
  static constexpr std::uint32_t kMaximumColumns = 2048;
  /// How many places of rows, that are no cells, there are in all.
  static constexpr std::size_t kMaximumFillers = 1 << 20;

  /// Takes the next paragraph's cells.
  void add(const std::vector<Interned<NSTextTableBlock>> &blocks);
  /// Ends the text.
  void end() { endParagraph({}); }

  std::span<const RTFTableEvent> eventsBefore(std::size_t paragraph) const { return eventsAt(2 * paragraph); }
  std::span<const RTFTableEvent> eventsBehind(std::size_t paragraph) const {
    return eventsAt(2 * paragraph + 1);
  }
  const RTFRowPlan &row(std::size_t index) const { return rows_[index]; }
  /// Where a row's column ends, in twips.
  std::int32_t rightEdge(const RTFRowPlan &row, std::uint32_t column) const;
  /// Computes the edges, when all is planned.
  void resolve();

 private:
  struct Open {
    std::size_t row;
    std::uint32_t number;
    Interned<NSTextTableBlock> block;
    bool hasCell = false;
    /// The cells that reach down into this row, by their columns: where they end.
    struct Above {
      std::uint64_t endRow;
      std::uint32_t span;
    };
    std::map<std::uint32_t, Above> above;
  };
  using Blocks = std::vector<Interned<NSTextTableBlock>>;

  void endParagraph(const Blocks &next);
  void addCell(std::size_t level, const Interned<NSTextTableBlock> &block);
  void fillTo(Open *open, std::uint32_t column);
  void addFiller(RTFRowPlan *row, RTFSlot slot);
  void addEvent(std::size_t place, RTFTableEvent event);
  std::span<const RTFTableEvent> eventsAt(std::size_t place) const;

  std::vector<RTFRowPlan> rows_;
  /// The widths of columns, then their right edges.
  std::vector<std::vector<std::int32_t>> columns_;
  std::vector<Open> open_;
  /// The row that has ended just now, and what reaches down from it; `level` is where.
  struct Ended {
    bool isKnown = false;
    std::size_t level = 0;
    Open open;
  } ended_;
  std::size_t paragraphs_ = 0;
  std::size_t fillers_ = 0;
  /// In the order of the text, those before and behind a paragraph each in one piece.
  std::vector<RTFTableEvent> events_;
  /// Where events are: twice the number of the paragraph, 1 more behind it, and the first of them.
  struct Place {
    std::size_t place;
    std::size_t firstEvent;
  };
  std::vector<Place> places_;
};

}  // namespace nimbo
