// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/OrderedMarks.hpp"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <new>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

namespace {

/// Shorter runs, in units, are left to ICU.
constexpr std::size_t kLongRun = 64;
/// What a run is cut into, in units.
constexpr std::size_t kCutRun = 16;
constexpr unichar kJoiner = u'\u034f';

/// Of characters: more than any decomposes to.
constexpr std::int32_t kDecompositionCapacity = 32;

/// A stable counting sort of marks by their combining class.
class MarkSorter {
 public:
  void append(std::u16string_view marks) { marks_ += marks; }

  std::u16string sorted() const {
    std::array<std::size_t, kClasses + 1> places{};
    visit([&](std::uint8_t markClass, std::u16string_view mark) { places[markClass + 1u] += mark.size(); });
    for (std::size_t c = 1; c < places.size(); ++c) places[c] += places[c - 1];
    std::u16string result(marks_.size(), u'\0');
    visit([&](std::uint8_t markClass, std::u16string_view mark) {
      std::ranges::copy(mark, result.data() + places[markClass]);
      places[markClass] += mark.size();
    });
    return result;
  }

 private:
  static constexpr std::size_t kClasses = 256;

  template <class Visit>
  void visit(Visit visitMark) const {
    for (std::size_t i = 0; i < marks_.size();) {
      const std::size_t start = i;
      UChar32 c;
      U16_NEXT(marks_, i, marks_.size(), c);
      visitMark(u_getCombiningClass(c), std::u16string_view(marks_).substr(start, i - start));
    }
  }

  std::u16string marks_;
};

/// Reads the characters of a text that are, or decompose to, nothing but marks.
class MarkReader {
 public:
  MarkReader(std::u16string_view units, const UNormalizer2 *decomposer)
      : units_(units), decomposer_(decomposer) {}

  /// The marks that the character at `place` is equivalent to, until the next call; `place` moves behind it.
  /// Nothing, and `place` stays, when it is another or the end of the text.
  std::u16string_view next(std::size_t &place) {
    if (place == units_.size()) return {};
    std::size_t end = place;
    UChar32 c;
    U16_NEXT(units_, end, units_.size(), c);
    const std::u16string_view marks = marksOf(c, units_.substr(place, end - place));
    if (!marks.empty()) place = end;
    return marks;
  }

  /// As `next`, before `place`, which moves to the character.
  std::u16string_view previous(std::size_t &place) {
    if (place == 0) return {};
    std::size_t start = place;
    UChar32 c;
    U16_PREV(units_, 0, start, c);
    const std::u16string_view marks = marksOf(c, units_.substr(start, place - start));
    if (!marks.empty()) place = start;
    return marks;
  }

 private:
  std::u16string_view marksOf(UChar32 c, std::u16string_view character) {
    // Most characters are told by this alone, in less time.
    if (unorm2_hasBoundaryBefore(decomposer_, c)) return {};
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t length =
        unorm2_getDecomposition(decomposer_, c, decomposition_.data(), kDecompositionCapacity, &error);
    if (U_FAILURE(error)) throw std::bad_alloc();
    const std::u16string_view marks =
        length < 0 ? character : std::u16string_view(decomposition_.data(), static_cast<std::size_t>(length));
    for (std::size_t i = 0; i < marks.size();) {
      U16_NEXT(marks, i, marks.size(), c);
      if (u_getCombiningClass(c) == 0) return {};
    }
    return marks;
  }

  std::u16string_view units_;
  const UNormalizer2 *decomposer_;
  std::array<UChar, kDecompositionCapacity> decomposition_;
};

void appendCut(std::u16string &result, std::u16string_view run) {
  while (!run.empty()) {
    const std::size_t length = run.size();
    std::size_t end = std::min(length, kCutRun);
    U16_SET_CP_LIMIT(run, 0, end, length);
    result.append(run.substr(0, end)).append(1, kJoiner);
    run.remove_prefix(end);
  }
}

}  // namespace

std::optional<std::u16string> withLongRunsOfMarksOrdered(std::u16string_view units,
                                                         const UNormalizer2 *decomposer, LongRun longRun) {
  MarkReader reader(units, decomposer);
  std::optional<std::u16string> result;
  std::size_t done = 0;
  // A long run has a unit at one of these places.
  for (std::size_t probe = kLongRun - 1; probe < units.size(); probe += kLongRun) {
    std::size_t start = probe;
    U16_SET_CP_START(units, 0, start);
    if (start < done) continue;
    std::size_t end = start;
    if (reader.next(end).empty()) continue;
    while (start > done && !reader.previous(start).empty()) continue;
    while (end < units.size() && !reader.next(end).empty()) continue;
    if (end - start < kLongRun) continue;
    if (!result) result.emplace();
    result->append(units, done, start - done);
    MarkSorter sorter;
    for (done = start; done < end;) sorter.append(reader.next(done));
    if (longRun == LongRun::kOrdered)
      *result += sorter.sorted();
    else
      appendCut(*result, sorter.sorted());
  }
  if (result) result->append(units, done);
  return result;
}

}  // namespace nimbo::detail
