// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// Which of 64 units are marks, the units that mean something to the scanner: bit i stands for unit i.
struct MarkupBlock {
  std::uint64_t less, greater, quotes, apostrophes, equals;
};

/// Writes the marks of `length` units into as many blocks as they fill; bits behind the last unit are clear.
void markUnits(const unichar *units, std::size_t length, MarkupBlock *blocks);

/// The index of the first "<" of a run of units; the run's length when there is none.
std::size_t findLessThan(const unichar *units, std::size_t length);

/// Finds the marks of a run of units, going forward. It marks a window of the run at a time, with vectors; each
/// search in the window is then a step over bits.
class MarkupMarks {
 public:
  /// The units are borrowed; those from the last position that was searched from on must not change.
  MarkupMarks(const unichar *units, std::uint32_t length) : units_(units), length_(length) {}

  /// The first ">", double quote or apostrophe, at `from` or behind it; the run's length when there is none. No
  /// search may begin in front of an earlier one, but for `goBack`.
  std::uint32_t nextGreater(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.greater; });
  }
  std::uint32_t nextQuote(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.quotes; });
  }
  std::uint32_t nextApostrophe(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.apostrophes; });
  }
  /// The first ">" or "=", which are the marks inside a tag and outside its values.
  std::uint32_t nextGreaterOrEquals(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.greater | block.equals; });
  }
  /// The first "<". Text may be long: behind the window it is searched without being marked.
  std::uint32_t nextLess(std::uint32_t from) {
    const std::uint32_t found = nextInWindow(from, [](const MarkupBlock &block) { return block.less; });
    if (found < windowEnd_ || found >= length_) return found;
    return found + static_cast<std::uint32_t>(findLessThan(units_ + found, length_ - found));
  }

  /// Lets the next search begin at the position, which may be in front of earlier ones.
  void goBack(std::uint32_t position) {
    if (position < windowStart_) windowStart_ = windowEnd_ = 0;
  }

 private:
  static constexpr std::uint32_t kBlockUnits = 64;
  static constexpr std::uint32_t kWindowBlocks = 8;

  /// The first mark within the window; the end of the window or run when there is none.
  template <class Select>
  std::uint32_t nextInWindow(std::uint32_t from, Select select) const {
    while (from < windowEnd_) {
      const std::uint32_t offset = from - windowStart_;
      const std::uint64_t bits = select(blocks_[offset / kBlockUnits]) >> (offset % kBlockUnits);
      if (bits) return from + static_cast<std::uint32_t>(std::countr_zero(bits));
      from += kBlockUnits - offset % kBlockUnits;
    }
    return from < length_ ? from : length_;
  }

  template <class Select>
  std::uint32_t next(std::uint32_t from, Select select) {
    for (;;) {
      const std::uint32_t found = nextInWindow(from, select);
      if (found < windowEnd_ || found >= length_) return found;
      from = found;
      moveWindow(from);
    }
  }

  void moveWindow(std::uint32_t start) {
    const std::uint32_t rest = length_ - start;
    windowStart_ = start;
    windowEnd_ = start + (rest < kWindowBlocks * kBlockUnits ? rest : kWindowBlocks * kBlockUnits);
    markUnits(units_ + start, windowEnd_ - start, blocks_.data());
  }

  const unichar *units_;
  std::uint32_t length_;
  std::uint32_t windowStart_ = 0;
  std::uint32_t windowEnd_ = 0;
  std::array<MarkupBlock, kWindowBlocks> blocks_;
};

}  // namespace nimbo::detail
