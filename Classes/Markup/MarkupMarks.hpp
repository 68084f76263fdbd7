// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// Where the units that mean something to markup stand among 64 units: bit i for unit i.
struct MarkupBlock {
  std::uint64_t less, greater, quotes, apostrophes, equals;
};

/// The marks of `length` units, in as many blocks as they fill; bits beyond the last unit are clear.
void markUnits(const unichar *units, std::size_t length, MarkupBlock *blocks);

/// The next "<" in a run of units; its length when there is none.
std::size_t findLessThan(const unichar *units, std::size_t length);

/// Finds the marks of a run of units, from front to back. It looks at a window of the run at a time, with
/// vectors, so that each step afterwards is a step over bits.
class MarkupMarks {
 public:
  /// `units` must live, and stay as they are from the last position asked for, as long as this.
  MarkupMarks(const unichar *units, std::uint32_t length) : units_(units), length_(length) {}

  /// The first position from `from` on with the mark; the run's length when there is none. No call may ask
  /// from in front of an earlier one's `from`, but for `goBack`.
  std::uint32_t nextGreater(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.greater; });
  }
  std::uint32_t nextQuote(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.quotes; });
  }
  std::uint32_t nextApostrophe(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.apostrophes; });
  }
  /// The marks that mean something inside a tag, outside its values.
  std::uint32_t nextGreaterOrEquals(std::uint32_t from) {
    return next(from, [](const MarkupBlock &block) { return block.greater | block.equals; });
  }
  /// Text may be long: beyond the window it is searched without marking it.
  std::uint32_t nextLess(std::uint32_t from) {
    const std::uint32_t found = nextInWindow(from, [](const MarkupBlock &block) { return block.less; });
    if (found < windowEnd_ || found >= length_) return found;
    return found + static_cast<std::uint32_t>(findLessThan(units_ + found, length_ - found));
  }

  /// The next call asks from `position` on.
  void goBack(std::uint32_t position) {
    if (position < windowStart_) windowStart_ = windowEnd_ = 0;
  }

 private:
  static constexpr std::uint32_t kBlockUnits = 64;
  static constexpr std::uint32_t kWindowBlocks = 8;

  /// As `next`, but gives up at the end of the window.
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

}  // namespace detail
}  // namespace nimbo
