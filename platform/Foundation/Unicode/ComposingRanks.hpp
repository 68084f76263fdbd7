// SPDX-License-Identifier: Apache-2.0
//
// Whether two units may stand side by side in Unicode normalization form C (NFC), from Unicode's
// NFC_Quick_Check, combining classes and decompositions as ICU has them.
//
// Each unit has a rank as the former of a pair and one as the latter, and text is in NFC when no former's rank
// is above the latter's:
//
//                                                       as former    as latter
//   base that nothing joins                                 1            15
//   other base                                              2            15
//   base that may join the unit before (a vowel sign)    1 or 2           1
//   mark of class n                                     3 to 15        3 to 14
//   mark of class n that may join the unit before       3 to 15           1
//   half of a pair, or never in NFC                         1             0
//
// So marks stand in the order of their classes, and what may join stands only behind what nothing joins. A base
// is joined when it is the first of a composition, or has a decomposition itself: a mark below joins the letter
// of one that has a mark above. A pair that breaks the rule is doubtful, not wrong; so are two marks of classes
// that share a rank, which is higher as former than as latter. One exception: a base joins nothing across a
// mark.
#pragma once

#include <array>
#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// Both ranks of a unit, as former in the upper four bits, as latter in the lower.
using ComposingRank = std::uint8_t;

/// The ranks of all units.
class ComposingRanks {
 public:
  /// The process's own, of 64 KB, made on first use, from any thread.
  static const ComposingRanks &shared();

  /// The bits of a unit's rank as latter.
  static constexpr ComposingRank kLatterMask = 15;
  /// How far above them those of its rank as former are.
  static constexpr int kFormerShift = 4;

  /// Whether the two may stand side by side by the rule alone.
  bool isOrdered(unichar former, unichar latter) const { return asFormer(former) <= asLatter(latter); }

  /// Whether the two may stand side by side by the rule and its exception.
  bool mayFollow(unichar former, unichar latter) const {
    return isOrdered(former, latter) || (isMark(former) && !isMark(latter) && mayBegin(latter));
  }
  /// Whether the unit may stand at the beginning of text.
  bool mayBegin(unichar c) const { return asLatter(c) != kNever; }

  /// Whether it is in NFC wherever it stands and nothing before it can change it: text can be cut before it and
  /// each piece brought into NFC by itself.
  bool isSteady(unichar c) const { return asLatter(c) == kAlways; }

  /// The ranks of each unit, in order.
  const ComposingRank *data() const { return ranks_.data(); }

 private:
  static constexpr std::size_t kUnits = 0x10000;
  /// Ranks as latter.
  static constexpr ComposingRank kNever = 0, kBehindUnjoined = 1, kAlways = 15;
  /// Ranks as former, of bases; those of marks are above.
  static constexpr ComposingRank kUnjoined = 1, kJoined = 2;

  ComposingRanks();
  int asFormer(unichar c) const { return ranks_[c] >> kFormerShift; }
  int asLatter(unichar c) const { return ranks_[c] & kLatterMask; }
  bool isMark(unichar c) const { return asFormer(c) > kJoined; }
  void setRanks(unichar c);
  void markJoined(unichar c);

  std::array<ComposingRank, kUnits> ranks_;
};

}  // namespace nimbo::detail
