// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/RetracedTagEnds.hpp"

namespace nimbo::detail {

std::uint32_t RetracedTagEnds::endFrom(std::uint32_t from) {
  if (ends_.empty()) ends_.resize(length_ / kBlockUnits + 1);
  passed_.clear();
  State state = kInTag;
  std::uint32_t end = length_;
  for (std::uint32_t i = from; i < length_; ++i) {
    if (i % kBlockUnits == 0) {
      std::uint32_t &known = ends_[i / kBlockUnits][state];
      if (known) {
        end = known;
        break;
      }
      passed_.push_back(&known);
    }
    if (units_[i] == u'>' && (state == kInTag || state == kBehindEquals)) {
      end = i;
      break;
    }
    state = stateBehind(units_[i], state);
  }
  for (std::uint32_t *known : passed_) *known = end;
  return end;
}

RetracedTagEnds::State RetracedTagEnds::stateBehind(unichar unit, State state) const {
  switch (unit) {
    case u'"':
      return state == kBehindEquals ? kInQuotes : state == kInQuotes ? kInTag : state;
    case u'\'':
      return state == kBehindEquals ? kInApostrophes : state == kInApostrophes ? kInTag : state;
    case u'=':
      return state == kInTag ? kBehindEquals : state;
    default:
      return state == kBehindEquals && !whites_.contains(unit) ? kInTag : state;
  }
}

}  // namespace nimbo::detail
