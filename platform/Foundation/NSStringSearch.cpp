// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringSearch.hpp"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <optional>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// The most units that one character folds to.
constexpr std::int32_t kLongestFold = 3;

constexpr bool isAscii(unichar unit) {
  return unit < 0x80;
}

/// Reads a string as the units that its characters fold to.
class FoldedUnits {
 public:
  explicit FoldedUnits(std::u16string_view units) : units_(units) {}

  /// Whether all units of the characters read so far have been given.
  bool atCharacterBoundary() const { return given_ == folded_; }
  std::size_t position() const { return position_; }

  std::optional<unichar> next() {
    if (given_ == folded_ && !foldNext()) return std::nullopt;
    return fold_[given_++];
  }

 private:
  bool foldNext() {
    if (position_ == units_.size()) return false;
    given_ = 0;
    folded_ = 1;
    const unichar unit = units_[position_];
    if (isAscii(unit)) {
      fold_[0] = toASCIILower(unit);
      ++position_;
      return true;
    }
    const bool pair = U16_IS_LEAD(unit) && position_ + 1 < units_.size() && U16_IS_TRAIL(units_[position_ + 1]);
    UErrorCode error = U_ZERO_ERROR;
    folded_ = u_strFoldCase(fold_, kLongestFold, units_.data() + position_, pair ? 2 : 1, U_FOLD_CASE_DEFAULT,
                            &error);
    position_ += pair ? 2 : 1;
    return true;
  }

  std::u16string_view units_;
  std::size_t position_ = 0;
  unichar fold_[kLongestFold];
  std::int32_t given_ = 0;
  std::int32_t folded_ = 0;
};

std::u16string folded(std::u16string_view units) {
  std::u16string result;
  FoldedUnits reader(units);
  while (const std::optional<unichar> unit = reader.next()) result.push_back(*unit);
  return result;
}

/// How many units at the beginning of `string` fold to `foldedFind`, or nothing when none do.
std::optional<std::size_t> lengthOfFoldedPrefix(std::u16string_view string, std::u16string_view foldedFind) {
  FoldedUnits reader(string);
  for (const unichar expected : foldedFind)
    if (reader.next() != expected) return std::nullopt;
  return reader.atCharacterBoundary() ? std::optional(reader.position()) : std::nullopt;
}

bool isInsidePair(std::u16string_view string, std::size_t position) {
  return position > 0 && position < string.size() && U16_IS_TRAIL(string[position]) &&
         U16_IS_LEAD(string[position - 1]);
}

/// As `rangeOfString`, with the location counted in `part`.
std::optional<NSRange> rangeOfFolded(std::u16string_view part, std::u16string_view find,
                                     std::uint32_t options) {
  const std::u16string foldedFind = folded(find);
  const bool backwards = options & NSBackwardsSearch;
  const bool anchored = options & NSAnchoredSearch;
  // A character never folds to fewer units, so that a match at the end cannot begin further left than this.
  const std::size_t leftmost =
      anchored && backwards ? part.size() - std::min(part.size(), foldedFind.size()) : 0;
  const std::size_t candidates = anchored && !backwards ? std::min<std::size_t>(part.size(), 1) : part.size();
  for (std::size_t i = leftmost; i < candidates; ++i) {
    const std::size_t start = backwards ? leftmost + (candidates - 1 - i) : i;
    // Most text is ASCII, and most of that is another letter.
    if (isAscii(part[start]) && toASCIILower(part[start]) != foldedFind[0]) continue;
    if (isInsidePair(part, start)) continue;
    const std::optional<std::size_t> length = lengthOfFoldedPrefix(part.substr(start), foldedFind);
    if (!length || (anchored && backwards && start + *length != part.size())) continue;
    return NSRange{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(*length)};
  }
  return std::nullopt;
}

/// As above, for units as they are.
std::optional<NSRange> rangeOfUnits(std::u16string_view part, std::u16string_view find, std::uint32_t options) {
  std::size_t start;
  if (options & NSAnchoredSearch) {
    const bool matches = options & NSBackwardsSearch ? part.ends_with(find) : part.starts_with(find);
    start = !matches ? part.npos : options & NSBackwardsSearch ? part.size() - find.size() : 0;
  } else {
    start = options & NSBackwardsSearch ? part.rfind(find) : part.find(find);
  }
  if (start == part.npos) return std::nullopt;
  return NSRange{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(find.size())};
}

}  // namespace

NSRange rangeOfString(std::u16string_view string, std::u16string_view find, std::uint32_t options,
                      NSRange range) {
  if (find.empty() || range.location >= string.size()) return {NSNotFound, 0};
  const std::u16string_view part = string.substr(range.location, range.length);
  const std::optional<NSRange> found = options & NSCaseInsensitiveSearch ? rangeOfFolded(part, find, options)
                                                                         : rangeOfUnits(part, find, options);
  return found ? NSRange{range.location + found->location, found->length} : NSRange{NSNotFound, 0};
}

bool isEqualCaseInsensitive(std::u16string_view a, std::u16string_view b) {
  FoldedUnits left(a), right(b);
  for (;;) {
    const std::optional<unichar> unit = left.next();
    if (unit != right.next()) return false;
    if (!unit) return true;
  }
}

}  // namespace nimbo
