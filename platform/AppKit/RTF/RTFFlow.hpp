// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/AppKit/RTF/RTFLists.hpp"
#include "platform/AppKit/RTF/RTFState.hpp"
#include "platform/AppKit/RTF/RTFTables.hpp"

namespace nimbo {

/// What states of characters name by index.
struct RTFNames {
  std::vector<NSString> fonts;
  /// The family of characters without a font.
  NSString defaultFont;
  std::vector<std::optional<NSColor>> colors;
  std::vector<NSString> links;
  std::vector<NSTextAttachment> attachments;

  std::optional<NSColor> color(std::int32_t index) const {
    return index >= 0 && static_cast<std::size_t>(index) < colors.size()
               ? colors[static_cast<std::size_t>(index)]
               : std::nullopt;
  }
};

/// States by number; equal ones mostly have the same, as far as a small table tells.
template <class State, std::size_t kSlots>
class RTFStateTable {
 public:
  std::uint32_t numberOf(const State &state, std::size_t hash) {
    std::uint32_t &slot = slots_[(hash ^ (hash >> 17)) % kSlots];
    if (slot < states_.size() && states_[slot] == state) return slot;
    slot = static_cast<std::uint32_t>(states_.size());
    states_.push_back(state);
    return slot;
  }
  const State &operator[](std::uint32_t number) const { return states_[number]; }

 private:
  std::vector<State> states_;
  std::array<std::uint32_t, kSlots> slots_{};
};

/// Text as it is read, whose attributes are found out when all is read: fonts and colours may come late, and
/// what a cell is like stands behind it.
class RTFFlow {
 public:
  /// How many runs there may be; what follows looks as the last one.
  static constexpr std::size_t kMaximumRuns = 1 << 24;

  /// Makes room for so many units, within reason.
  void reserve(std::size_t units);
  /// Appends units that look as the state says.
  void append(std::u16string_view units, const RTFCharacterState &state);
  /// Appends ASCII.
  void append(std::string_view units, const RTFCharacterState &state);
  /// Ends a paragraph, with a line feed or without.
  void endParagraph(const RTFCharacterState &characters, const RTFParagraphState &paragraph, bool withLineFeed);
  /// Ends a cell at a depth of tables.
  void endCell(std::uint32_t depth, const RTFCharacterState &characters, const RTFParagraphState &paragraph);
  RTFTables &tables() { return tables_; }
  /// Whether anything stands in the paragraph that has not ended.
  bool hasOpenParagraph() const { return text_.length() > (paragraphs_.empty() ? 0 : paragraphs_.back().end); }
  std::u16string_view text() const { return text_.view(); }

  /// Appends the text with its attributes.
  void finish(const RTFNames &names, const RTFLists &lists, NSMutableAttributedString *output);

 private:
  struct Run {
    std::uint32_t end;
    std::uint32_t state;
  };
  struct Paragraph {
    std::uint32_t end;
    std::uint32_t state;
    std::uint32_t cell;
  };

  void addRun(const RTFCharacterState &state);
  void addParagraph(const RTFParagraphState &state, std::uint32_t cell);

  NSMutableString text_;
  std::vector<Run> runs_;
  std::vector<Paragraph> paragraphs_;
  RTFTables tables_;
  RTFStateTable<RTFCharacterState, 1024> characterStates_;
  RTFStateTable<RTFParagraphState, 256> paragraphStates_;
};

}  // namespace nimbo
