// SPDX-License-Identifier: Apache-2.0
//
//     static constexpr StopUnits kStops({u'<', u'&'});
//     kStops.find(u"a & b", 0);  // 2
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "platform/Foundation/Vectors/UnicharRanges.hpp"

namespace nimbo {

/// Few units of ASCII that end a run of others. Any thread may search.
class StopUnits {
 public:
  constexpr StopUnits(std::initializer_list<unichar> units) {
    for (const unichar c : units) {
      isStop_[c] = true;
      ranges_[count_++] = {c, c};
    }
  }

  constexpr bool contains(unichar c) const { return c < isStop_.size() && isStop_[c]; }

  /// The first of them from `index` on; the size of the text when there is none.
  std::size_t find(std::u16string_view text, std::size_t index) const {
    // Most runs are too short for vectors to pay.
    const std::size_t near = std::min(text.size(), index + 48);
    for (; index < near; ++index)
      if (contains(text[index])) return index;
    return index +
           detail::findUnicharInRanges(text.data() + index, text.size() - index, {ranges_.data(), count_});
  }

 private:
  std::array<bool, 128> isStop_{};
  std::array<detail::UnicharRange, 8> ranges_{};
  std::size_t count_ = 0;
};

}  // namespace nimbo
