// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringSearch.hpp"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <optional>
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/StreamMatcher.hpp"

namespace nimbo {
namespace {

/// The most units that one character folds to.
constexpr std::int32_t kLongestFold = 3;

constexpr bool isAscii(unichar unit) {
  return unit < 0x80;
}

bool isInsidePair(std::u16string_view string, std::size_t position) {
  return position > 0 && position < string.size() && U16_IS_TRAIL(string[position]) &&
         U16_IS_LEAD(string[position - 1]);
}

/// How many units may be compared in vain: so many, and these for each unit that was passed. Then the rest is
/// searched in a way that is slower for most text, but whose time grows with the text alone.
constexpr std::size_t kVainUnits = 512, kVainUnitsPerUnit = 2;

bool isTooVain(std::size_t vainUnits, std::size_t passed) {
  return vainUnits > kVainUnits + kVainUnitsPerUnit * passed;
}

/// Reads a string as the units that its characters fold to, from its beginning or from its end.
template <bool Backwards>
class FoldedUnits {
 public:
  explicit FoldedUnits(std::u16string_view units) : units_(units) {}

  /// Whether all units of the characters read so far have been given.
  bool atCharacterBoundary() const { return given_ == folded_; }
  /// How many units have been read.
  std::size_t position() const { return position_; }

  std::optional<unichar> next() {
    if (given_ == folded_ && !foldNext()) return std::nullopt;
    const std::int32_t index = Backwards ? folded_ - 1 - given_ : given_;
    ++given_;
    return fold_[index];
  }

 private:
  bool foldNext() {
    if (position_ == units_.size()) return false;
    given_ = 0;
    folded_ = 1;
    if (const unichar unit = unitAt(position_); isAscii(unit)) {
      fold_[0] = toASCIILower(unit);
      ++position_;
      return true;
    }
    const std::size_t length = isPairAt(position_) ? 2 : 1;
    const std::size_t start = Backwards ? units_.size() - position_ - length : position_;
    UErrorCode error = U_ZERO_ERROR;
    folded_ = u_strFoldCase(fold_, kLongestFold, units_.data() + start, static_cast<std::int32_t>(length),
                            U_FOLD_CASE_DEFAULT, &error);
    position_ += length;
    return true;
  }

  unichar unitAt(std::size_t position) const {
    return units_[Backwards ? units_.size() - 1 - position : position];
  }
  bool isPairAt(std::size_t position) const {
    if (position + 1 == units_.size()) return false;
    const unichar first = unitAt(position), second = unitAt(position + 1);
    return Backwards ? U16_IS_TRAIL(first) && U16_IS_LEAD(second) : U16_IS_LEAD(first) && U16_IS_TRAIL(second);
  }

  std::u16string_view units_;
  std::size_t position_ = 0;
  unichar fold_[kLongestFold];
  std::int32_t given_ = 0;
  std::int32_t folded_ = 0;
};

/// In the order in which they are read.
template <bool Backwards>
std::u16string folded(std::u16string_view units) {
  std::u16string result;
  FoldedUnits<Backwards> reader(units);
  while (const std::optional<unichar> unit = reader.next()) result.push_back(*unit);
  return result;
}

/// Where a match of folded units stands, counted in the direction of the search.
struct FoldedMatch {
  std::size_t start, end;
};

/// Reads folded units, as `FoldedUnits` does.
struct StoredUnits {
  std::u16string_view units;

  std::optional<unichar> next() {
    if (units.empty()) return std::nullopt;
    const unichar unit = units.front();
    units.remove_prefix(1);
    return unit;
  }
};

/// How many units at the beginning of `string`, in the direction, fold to those that `find` reads; nothing when
/// none do. `compared` grows by the number of units compared.
template <bool Backwards, class Reader>
std::optional<std::size_t> lengthOfFoldedPrefix(std::u16string_view string, Reader find,
                                                std::size_t &compared) {
  FoldedUnits<Backwards> reader(string);
  while (const std::optional<unichar> expected = find.next()) {
    ++compared;
    if (reader.next() != expected) return std::nullopt;
  }
  return reader.atCharacterBoundary() ? std::optional(reader.position()) : std::nullopt;
}

/// The units of `string` behind the first `count` in the direction.
template <bool Backwards>
std::u16string_view behind(std::u16string_view string, std::size_t count) {
  return Backwards ? string.substr(0, string.size() - count) : string.substr(count);
}

/// In linear time.
template <bool Backwards>
std::optional<FoldedMatch> findFoldedInStream(std::u16string_view string, const std::u16string &foldedFind) {
  detail::StreamMatcher matcher(foldedFind);
  // The second reader follows the first at the distance of a match, and so knows where one begins.
  FoldedUnits<Backwards> end(string), start(string);
  std::size_t missing = foldedFind.size();
  while (const std::optional<unichar> unit = end.next()) {
    if (missing > 0)
      --missing;
    else
      start.next();
    if (matcher.advance(*unit) && end.atCharacterBoundary() && start.atCharacterBoundary())
      return FoldedMatch{start.position(), end.position()};
  }
  return std::nullopt;
}

template <bool Backwards>
std::optional<FoldedMatch> findFolded(std::u16string_view string, const std::u16string &foldedFind) {
  std::size_t compared = 0;
  for (std::size_t start = 0; start < string.size(); ++start) {
    // Most text is ASCII, and most of that is another letter.
    const unichar unit = string[Backwards ? string.size() - 1 - start : start];
    if (isAscii(unit) && toASCIILower(unit) != foldedFind[0]) continue;
    if (isInsidePair(string, Backwards ? string.size() - start : start)) continue;
    const std::u16string_view rest = behind<Backwards>(string, start);
    const auto length = lengthOfFoldedPrefix<Backwards>(rest, StoredUnits{foldedFind}, compared);
    if (length) return FoldedMatch{start, start + *length};
    if (!isTooVain(compared, start)) continue;
    const std::optional<FoldedMatch> found = findFoldedInStream<Backwards>(rest, foldedFind);
    return found ? std::optional(FoldedMatch{start + found->start, start + found->end}) : std::nullopt;
  }
  return std::nullopt;
}

template <bool Backwards>
std::optional<FoldedMatch> foldedPrefix(std::u16string_view string, std::u16string_view find) {
  std::size_t compared = 0;
  const auto length = lengthOfFoldedPrefix<Backwards>(string, FoldedUnits<Backwards>(find), compared);
  return length ? std::optional(FoldedMatch{0, *length}) : std::nullopt;
}

/// As `rangeOfString`, with the location counted in `part`.
template <bool Backwards>
std::optional<NSRange> rangeOfFolded(std::u16string_view part, std::u16string_view find, bool isAnchored) {
  const std::optional<FoldedMatch> found =
      isAnchored ? foldedPrefix<Backwards>(part, find) : findFolded<Backwards>(part, folded<Backwards>(find));
  if (!found) return std::nullopt;
  return NSRange{static_cast<std::uint32_t>(Backwards ? part.size() - found->end : found->start),
                 static_cast<std::uint32_t>(found->end - found->start)};
}

/// Where `find` begins, in linear time; `last` when nowhere.
template <class Iterator>
Iterator findUnitsInStream(Iterator first, Iterator last, Iterator find, Iterator findEnd) {
  detail::StreamMatcher matcher(std::u16string(find, findEnd));
  const Iterator end = std::find_if(first, last, [&](unichar unit) { return matcher.advance(unit); });
  return end == last ? last : end - (findEnd - find - 1);
}

template <class Iterator>
Iterator findUnits(Iterator first, Iterator last, Iterator find, Iterator findEnd) {
  if (last - first < findEnd - find) return last;
  const Iterator placesEnd = last - (findEnd - find - 1);
  std::size_t vainUnits = 0;
  for (Iterator place = first; (place = std::find(place, placesEnd, *find)) != placesEnd; ++place) {
    const Iterator different = std::mismatch(find + 1, findEnd, place + 1).first;
    if (different == findEnd) return place;
    vainUnits += static_cast<std::size_t>(different - find);
    if (isTooVain(vainUnits, static_cast<std::size_t>(place - first)))
      return findUnitsInStream(place, last, find, findEnd);
  }
  return last;
}

/// Where `find` stands as it is; `part.size()` when nowhere.
std::size_t placeOfUnits(std::u16string_view part, std::u16string_view find, std::uint32_t options) {
  const bool backwards = options & NSBackwardsSearch;
  if (options & NSAnchoredSearch) {
    const bool matches = backwards ? part.ends_with(find) : part.starts_with(find);
    return !matches ? part.size() : backwards ? part.size() - find.size() : 0;
  }
  if (!backwards)
    return static_cast<std::size_t>(findUnits(part.begin(), part.end(), find.begin(), find.end()) -
                                    part.begin());
  const auto found = findUnits(part.rbegin(), part.rend(), find.rbegin(), find.rend());
  return found == part.rend() ? part.size() : static_cast<std::size_t>(part.rend() - found) - find.size();
}

std::optional<NSRange> rangeInPart(std::u16string_view part, std::u16string_view find, std::uint32_t options) {
  if (options & NSCaseInsensitiveSearch) {
    const bool isAnchored = options & NSAnchoredSearch;
    return options & NSBackwardsSearch ? rangeOfFolded<true>(part, find, isAnchored)
                                       : rangeOfFolded<false>(part, find, isAnchored);
  }
  const std::size_t place = placeOfUnits(part, find, options);
  if (place == part.size()) return std::nullopt;
  return NSRange{static_cast<std::uint32_t>(place), static_cast<std::uint32_t>(find.size())};
}

}  // namespace

NSRange rangeOfString(std::u16string_view string, std::u16string_view find, std::uint32_t options,
                      NSRange range) {
  if (find.empty() || range.location >= string.size()) return {NSNotFound, 0};
  const std::u16string_view part = string.substr(range.location, range.length);
  const std::optional<NSRange> found = rangeInPart(part, find, options);
  return found ? NSRange{range.location + found->location, found->length} : NSRange{NSNotFound, 0};
}

bool isEqualCaseInsensitive(std::u16string_view a, std::u16string_view b) {
  FoldedUnits<false> left(a), right(b);
  for (;;) {
    const std::optional<unichar> unit = left.next();
    if (unit != right.next()) return false;
    if (!unit) return true;
  }
}

}  // namespace nimbo
