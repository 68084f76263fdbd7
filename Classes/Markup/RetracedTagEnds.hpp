// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Classes/Characters/CharacterSetRep.hpp"

namespace nimbo::detail {

/// Finds the ends of tags in a part of a text that was searched for the end of a tag before. That happens when
/// the end tag of a raw-text element stands within a quoted value of its start tag: `<style a='</style>'`. Such
/// a value may be as long as the text, and there may be many.
///
/// A search stores its result for each block of the text that it enters, by the state in which it does, and
/// stops at a block with a stored result. So all searches together look at each unit once for each state.
class RetracedTagEnds {
 public:
  /// The units are borrowed; those behind the last location that was searched from must not change.
  RetracedTagEnds(const unichar *units, std::uint32_t length) : units_(units), length_(length) {}

  /// The first ">" outside of quotes, at `from` or behind it; the length of the text when there is none.
  /// `from` is inside a tag, and outside of its quotes.
  std::uint32_t endFrom(std::uint32_t from);

 private:
  static constexpr std::uint32_t kBlockUnits = 64;
  enum State { kInTag, kBehindEquals, kInQuotes, kInApostrophes, kStates };

  State stateBehind(unichar unit, State state) const;

  const unichar *units_;
  std::uint32_t length_;
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  /// The results for each block, by the state at its first unit; 0 where none is stored.
  std::vector<std::array<std::uint32_t, kStates>> ends_;
  /// The places for the result of the search that goes on.
  std::vector<std::uint32_t *> passed_;
};

}  // namespace nimbo::detail
