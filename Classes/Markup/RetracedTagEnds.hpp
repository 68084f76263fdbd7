// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Classes/Characters/CharacterSetRep.hpp"

namespace NIMBO_PUBLIC nimbo {
namespace detail {

/// Finds where tags end in a part of a text that an earlier search for the end of a tag has been over. That
/// happens when the end tag of a raw-text element stands within a value of its own start tag, which may be as
/// long as the text.
///
/// A search remembers its answer at the beginning of each block that it comes through, for the state in which
/// it does. So all searches together cost no more than one over the text for each state, and a block each.
class RetracedTagEnds {
 public:
  /// The units must live, and stay as they are from the last position asked for, as long as this.
  RetracedTagEnds(const unichar *units, std::uint32_t length) : units_(units), length_(length) {}

  /// The first ">" outside of quotes from `from` on, which is inside a tag; the length when there is none.
  std::uint32_t endFrom(std::uint32_t from);

 private:
  static constexpr std::uint32_t kBlockUnits = 64;
  enum State { kInTag, kBehindEquals, kInQuotes, kInApostrophes, kStates };

  State stateBehind(unichar unit, State state) const;

  const unichar *units_;
  std::uint32_t length_;
  const CharacterSetRep &whites_ = *whiteCharacterSetRep();
  /// For each block, by the state at its first unit; 0 is not known yet.
  std::vector<std::array<std::uint32_t, kStates>> ends_;
  /// Which of them wait for the answer.
  std::vector<std::uint32_t *> passed_;
};

}  // namespace detail
}  // namespace nimbo
