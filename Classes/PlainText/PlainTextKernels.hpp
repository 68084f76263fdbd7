// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/Foundation/NSRange.hpp"

namespace nimbo::detail {

/// How many units may be written behind what `copyPlainUnits` copies, and read behind what it may copy.
inline constexpr std::size_t kPlainUnitsSlack = 16;

/// A blank that is shown as a space, or not at all where another one stands: no no-break space.
constexpr bool isCollapsible(unichar c) {
  return c <= u' ' || (c >= 0x2028 && (c <= 0x2029 || c == 0xfeff || c == 0xfffc));
}

constexpr unichar kSoftHyphen = 0x00ad;

/// Copies units up to the first that is not plain: a collapsible one, but for a space in front of a unit above
/// U+0020; a soft hyphen; "&" if `stopsAtAmpersand`. Answers how many it copied. `readable` units stand at
/// `source`, at least `length`; `destination` has room for `kPlainUnitsSlack` units more.
std::size_t copyPlainUnits(const unichar *source, std::size_t length, std::size_t readable,
                           unichar *destination, bool stopsAtAmpersand);

}  // namespace nimbo::detail
