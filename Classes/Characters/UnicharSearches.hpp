// SPDX-License-Identifier: Apache-2.0
//
// Searches of a run of units for single ones, which any thread may make. An index counts from the start of the
// run; `NSNotFound` when there is none. A run of length 0 may be null.
//
//     findUnichar(u"a/b/c", 5, u'/');  // 1
//     findLastUnicharNoCase(u"a-A-b", 5, u'A');  // 2
//     const auto [lt, gt] = countUnichars(u"<a><b", 5, u'<', u'>');
#pragma once

#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The index of the first unit `c`.
std::uint32_t findUnichar(const unichar *units, std::uint32_t length, unichar c);
/// The index of the last unit `c`.
std::uint32_t findLastUnichar(const unichar *units, std::uint32_t length, unichar c);
/// How many units are `c`.
std::uint32_t countUnichar(const unichar *units, std::uint32_t length, unichar c);

/// The index of the first unit whose entry in `initUpperCharsTable` is `upper`; there is none when `upper` is
/// itself a letter with an uppercase form.
std::uint32_t findUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper);
/// The index of the last unit that `findUnicharNoCase` takes for `upper`.
std::uint32_t findLastUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper);
/// How many units `findUnicharNoCase` takes for `upper`.
std::uint32_t countUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper);

/// Whether all units are below 128; true for none.
bool isAsciiUnichars(const unichar *units, std::uint32_t length);

/// How often two units stand in a run.
struct UnicharCounts {
  /// How often the first stands there.
  std::uint32_t first = 0;
  /// How often the second stands there.
  std::uint32_t second = 0;

  /// Whether both counts are equal.
  friend bool operator==(const UnicharCounts &, const UnicharCounts &) = default;
};

/// How often each of two units stands in the run, in one pass.
UnicharCounts countUnichars(const unichar *units, std::uint32_t length, unichar first, unichar second);

}  // namespace nimbo
