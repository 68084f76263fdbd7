// SPDX-License-Identifier: Apache-2.0
//
// The style of a paragraph, its lists and its table cells. All lengths are points.
//
//     NSParagraphStyle style;
//     style.alignment = NSTextAlignment::center;
//     style.textLists.push_back({u"{disc}"_ns, 1, 1});
//     const Interned<NSParagraphStyle> interned(style);
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/AppKit/Interned.hpp"
#include "platform/AppKit/NSColor.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Where the lines of a paragraph stand between its margins; natural is left or right by the writing direction.
enum class NSTextAlignment : std::uint8_t { natural, left, center, right, justified };

/// The direction that a paragraph is written in; natural is that of its first strong character.
enum class NSWritingDirection : std::uint8_t { natural, leftToRight, rightToLeft };

/// What stands at the place of a tab: the beginning of the text behind it, its middle, its end or its decimal
/// point.
enum class NSTextTabType : std::uint8_t { left, center, right, decimal };

/// A tab stop: a plain value.
struct NSTextTab {
  /// What stands at the place.
  NSTextTabType type = NSTextTabType::left;
  /// The distance from the margin at which lines begin.
  double location = 0;

  /// Whether both are equal.
  friend bool operator==(const NSTextTab &, const NSTextTab &) = default;
};

/// One of the lists that a paragraph stands in: a plain value. The marker itself is part of the paragraph's
/// text: a tab, the marker, a tab.
struct NSTextList {
  /// The marker, with its kind in braces: "{disc}", "{circle}", "{square}", "{hyphen}"; "{decimal}.",
  /// "({lower-alpha})", "{upper-alpha}", "{lower-roman}", "{upper-roman}". Text without braces is a marker of
  /// its own.
  NSString markerFormat;
  /// The number of the first item.
  std::int32_t startingItemNumber = 1;
  /// What tells the lists of one text apart: paragraphs whose numbers are equal belong to the same list.
  std::uint32_t identifier = 0;

  /// Whether the markers count.
  bool isOrdered() const;
  /// The marker of an item, its number counted from `startingItemNumber`: "3." for "{decimal}." and 3.
  NSString markerForItemNumber(std::int32_t number) const;
  /// Whether all are equal.
  friend bool operator==(const NSTextList &, const NSTextList &) = default;
};

/// A width: a plain value.
struct NSTextBlockWidth {
  /// What the number counts.
  enum class Unit : std::uint8_t {
    automatic,  ///< Nothing: it is as wide as it has to be.
    points,
    percent,  ///< Hundredths of what contains it.
  };
  /// How many of the unit; 0 when automatic.
  double value = 0;
  /// What the number counts.
  Unit unit = Unit::automatic;

  /// Whether both are equal.
  friend bool operator==(const NSTextBlockWidth &, const NSTextBlockWidth &) = default;
};

/// A table: a plain value.
struct NSTextTable {
  /// What tells the tables of one text apart: cells whose tables have equal numbers belong to the same one.
  std::uint32_t identifier = 0;
  /// How many columns there are.
  std::uint32_t numberOfColumns = 0;
  /// Whether neighbours share their borders.
  bool collapsesBorders = false;
  /// The width of the whole.
  NSTextBlockWidth width;

  /// Whether all are equal.
  friend bool operator==(const NSTextTable &, const NSTextTable &) = default;
};

/// The sides of a rectangle, as indices.
enum NSRectEdge : std::size_t { NSTopEdge, NSLeftEdge, NSBottomEdge, NSRightEdge };
/// How many sides a rectangle has.
inline constexpr std::size_t kRectEdges = 4;

/// Where the text of a cell stands in it.
enum class NSTextBlockVerticalAlignment : std::uint8_t { top, middle, bottom };

/// A cell of a table: a plain value. All paragraphs of one cell have an equal one, each ends in a line feed.
struct NSTextTableBlock {
  /// The table.
  Interned<NSTextTable> table;
  /// The first row, counted from 0. Rows follow each other in the text, and cells in a row.
  std::uint32_t startingRow = 0;
  /// How many rows it is high.
  std::uint32_t rowSpan = 1;
  /// The first column, counted from 0.
  std::uint32_t startingColumn = 0;
  /// How many columns it is wide.
  std::uint32_t columnSpan = 1;
  /// What is behind the text; nothing for what is behind the table.
  std::optional<NSColor> backgroundColor;
  /// How thick the borders are, by `NSRectEdge`.
  std::array<double, kRectEdges> borderWidths{};
  /// The colours of the borders; nothing for that of the text.
  std::array<std::optional<NSColor>, kRectEdges> borderColors{};
  /// The distances of the text from the borders.
  std::array<double, kRectEdges> padding{};
  /// The width.
  NSTextBlockWidth width;
  /// Where the text stands.
  NSTextBlockVerticalAlignment verticalAlignment = NSTextBlockVerticalAlignment::top;

  /// Whether all are equal.
  friend bool operator==(const NSTextTableBlock &, const NSTextTableBlock &) = default;
};

/// The style of a paragraph: a plain value. Numbers are finite.
struct NSParagraphStyle {
  /// Where the lines stand.
  NSTextAlignment alignment = NSTextAlignment::natural;
  /// The direction of the text.
  NSWritingDirection baseWritingDirection = NSWritingDirection::natural;
  /// 1 to 6 for headings, 0 for other text.
  std::uint8_t headerLevel = 0;
  /// From the margin at which lines begin to the first line.
  double firstLineHeadIndent = 0;
  /// From the margin at which lines begin to the others.
  double headIndent = 0;
  /// From the margin at which lines end to their ends, into the text.
  double tailIndent = 0;
  /// What is added between lines.
  double lineSpacing = 0;
  /// What the natural height of lines is multiplied by; 0 for nothing.
  double lineHeightMultiple = 0;
  /// The least height of a line.
  double minimumLineHeight = 0;
  /// The greatest height of a line; 0 for any.
  double maximumLineHeight = 0;
  /// What follows the paragraph.
  double paragraphSpacing = 0;
  /// What precedes the paragraph.
  double paragraphSpacingBefore = 0;
  /// The distance of tabs behind the last tab stop; 0 for the reader's own.
  double defaultTabInterval = 0;
  /// The tab stops, from the first on.
  std::vector<NSTextTab> tabStops;
  /// The lists, from the outermost on.
  std::vector<NSTextList> textLists;
  /// The cells, from the outermost on.
  std::vector<Interned<NSTextTableBlock>> textBlocks;

  /// Whether all are equal.
  friend bool operator==(const NSParagraphStyle &, const NSParagraphStyle &) = default;
};

/// The names of a paragraph's attributes, for visitors.
namespace ParagraphAttribute {
struct Alignment {};
struct BaseWritingDirection {};
struct HeaderLevel {};
struct FirstLineHeadIndent {};
struct HeadIndent {};
struct TailIndent {};
struct LineSpacing {};
struct LineHeightMultiple {};
struct MinimumLineHeight {};
struct MaximumLineHeight {};
struct ParagraphSpacing {};
struct ParagraphSpacingBefore {};
struct DefaultTabInterval {};
struct TabStops {};
struct TextLists {};
struct TextBlocks {};
}  // namespace ParagraphAttribute

/// Calls `visitor(name, value)` with every attribute of the style. A visitor that is a class with a function
/// for each name does not compile when it lacks one.
template <class Visitor>
void visitAttributes(const NSParagraphStyle &style, Visitor &&visitor) {
  const auto &[alignment, direction, level, firstLine, head, tail, spacing, multiple, minimum, maximum, after,
               before, interval, tabs, lists, blocks] = style;
  visitor(ParagraphAttribute::Alignment(), alignment);
  visitor(ParagraphAttribute::BaseWritingDirection(), direction);
  visitor(ParagraphAttribute::HeaderLevel(), level);
  visitor(ParagraphAttribute::FirstLineHeadIndent(), firstLine);
  visitor(ParagraphAttribute::HeadIndent(), head);
  visitor(ParagraphAttribute::TailIndent(), tail);
  visitor(ParagraphAttribute::LineSpacing(), spacing);
  visitor(ParagraphAttribute::LineHeightMultiple(), multiple);
  visitor(ParagraphAttribute::MinimumLineHeight(), minimum);
  visitor(ParagraphAttribute::MaximumLineHeight(), maximum);
  visitor(ParagraphAttribute::ParagraphSpacing(), after);
  visitor(ParagraphAttribute::ParagraphSpacingBefore(), before);
  visitor(ParagraphAttribute::DefaultTabInterval(), interval);
  visitor(ParagraphAttribute::TabStops(), tabs);
  visitor(ParagraphAttribute::TextLists(), lists);
  visitor(ParagraphAttribute::TextBlocks(), blocks);
}

}  // namespace nimbo
