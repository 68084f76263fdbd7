// SPDX-License-Identifier: Apache-2.0
//
// Combining marks in the canonical order of Unicode, in linear time. ICU puts each mark of a run in its place
// by going back over those before it, which takes time by the square of the run's length.
#pragma once

#include <unicode/unorm2.h>

#include <optional>
#include <string>
#include <string_view>

namespace nimbo::detail {

/// What becomes of a long run of marks.
enum class LongRun {
  /// It is put in order.
  kOrdered,
  /// It is also cut into short ones by U+034F (combining grapheme joiner), which nothing is reordered or joined
  /// across. That is not an equivalent, but sorts nearly the same.
  kOrderedAndCut,
};

/// An equivalent of the units in which each long run of marks is decomposed by `decomposer` and in canonical
/// order; nothing when there is no such run. ICU then normalises it in linear time.
std::optional<std::u16string> withLongRunsOfMarksOrdered(std::u16string_view units,
                                                         const UNormalizer2 *decomposer,
                                                         LongRun longRun = LongRun::kOrdered);

}  // namespace nimbo::detail
