// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/AppKit/NSParagraphStyle.hpp"
#include "platform/AppKit/RTF/RTFWords.hpp"

namespace nimbo {

/// The lists of a document while it is read: those of its tables, and the old ones that paragraphs describe.
class RTFLists {
 public:
  /// How many lists, and how many overrides of them, are kept.
  static constexpr std::size_t kMaximumLists = 1 << 16;
  /// How many levels a list has.
  static constexpr std::size_t kMaximumLevels = 9;

  /// Takes a word of the list tables or of an old list; others say nothing.
  void take(RTFWord word, std::int32_t parameter);
  /// The text of a level, whose first unit is its length, units below that of the number of levels standing for
  /// their numbers.
  void setLevelText(std::u16string_view text);
  /// The marker of a level as it is to be.
  void setLevelMarker(std::u16string_view marker);
  /// Ends the description of an old list. Answers the number to ask for it, which is negative; the same for
  /// equal descriptions one after another.
  std::int32_t endOldList();

  /// The lists that a paragraph stands in, of an override's number and a level; none for an unknown number.
  std::vector<NSTextList> lists(std::int32_t number, std::int32_t level) const;

 private:
  struct Level {
    std::int32_t kind = 0;
    std::int32_t start = 1;
    std::int32_t templateNumber = 0;
    std::u16string text;
    std::optional<std::u16string> marker;
  };
  struct List {
    std::int32_t number = 0;
    std::vector<Level> levels;
  };
  struct Override {
    std::int32_t list = 0;
    std::uint32_t order = 0;
    std::vector<std::optional<std::int32_t>> starts;
  };
  struct OldList {
    std::u16string_view format;
    std::int32_t start = 1;

    friend bool operator==(const OldList &, const OldList &) = default;
  };

  static std::u16string formatOf(const Level &level, std::size_t index);

  std::vector<List> lists_;
  std::unordered_map<std::int32_t, std::size_t> listsByNumber_;
  std::unordered_map<std::int32_t, Override> overrides_;
  Override override_;
  bool isInOverride_ = false;
  OldList oldList_;
  std::vector<OldList> oldLists_;
};

}  // namespace nimbo
