// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <vector>

#include "platform/AppKit/RTF/RTFWords.hpp"
#include "platform/AppKit/TextAttributes.hpp"

namespace nimbo {

/// What is known about characters at a place of the source; lengths in thousandths of a point, what a number
/// names by its index, -1 for none.
struct RTFCharacterState {
  std::int32_t font = -1;
  std::int32_t size = 12'000;
  std::int32_t foreground = -1;
  std::int32_t background = -1;
  std::int32_t underlineColor = -1;
  std::int32_t baselineOffset = 0;
  std::int32_t kern = 0;
  std::int32_t link = -1;
  std::int32_t attachment = -1;
  std::uint16_t weight = kRegularFontWeight;
  NSUnderlineStyle underline = NSUnderlineStyle::none;
  NSStrikethroughStyle strikethrough = NSStrikethroughStyle::none;
  std::int8_t superscript = 0;
  bool isItalic = false;
  bool isSmallCaps = false;
  bool isHidden = false;

  /// Takes a word of characters but for that of the font; false when it is none.
  bool take(RTFWord word, std::optional<std::int32_t> parameter);
  friend bool operator==(const RTFCharacterState &, const RTFCharacterState &) = default;
};

static_assert(std::has_unique_object_representations_v<RTFCharacterState>);

/// Tab stops that states share.
struct RTFTabStops : ReferenceCounted {
  /// How many are kept.
  static constexpr std::size_t kMaximum = 64;

  std::vector<NSTextTab> stops;
};

/// What is known about the paragraph at a place of the source; lengths in twips.
struct RTFParagraphState {
  std::int32_t firstLine = 0, left = 0, right = 0;
  std::int32_t before = 0, after = 0;
  std::int32_t lineHeight = 0, lineHeightIsMultiple = 0;
  std::int32_t minimumLineHeight = 0, maximumLineHeight = 0, leading = 0;
  std::int32_t tabInterval = 0;
  std::int32_t list = 0, level = 0;
  NSTextAlignment alignment = NSTextAlignment::natural;
  NSWritingDirection direction = NSWritingDirection::natural;
  std::uint8_t headerLevel = 0;
  NSTextTabType nextTab = NSTextTabType::left;
  bool isInTable = false;
  std::uint32_t tableDepth = 1;
  SharedPointer<RTFTabStops> tabs;

  /// Takes a word of paragraphs; false when it is none.
  bool take(RTFWord word, std::optional<std::int32_t> parameter);
  /// How many tables the paragraph stands in.
  std::uint32_t depth() const { return isInTable ? tableDepth : 0; }
  /// The style without lists and cells.
  NSParagraphStyle style() const;
  std::size_t hash() const;
  /// Whether the styles are equal.
  friend bool operator==(const RTFParagraphState &a, const RTFParagraphState &b);
};

}  // namespace nimbo
