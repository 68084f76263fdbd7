// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Foundation/NSRange.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Searches of a run of units for single ones. An index counts from the start of the run; `NSNotFound` when
/// there is none. A run of length 0 may be null.

std::uint32_t findUnichar(const unichar *units, std::uint32_t length, unichar c);
std::uint32_t findLastUnichar(const unichar *units, std::uint32_t length, unichar c);
std::uint32_t countUnichar(const unichar *units, std::uint32_t length, unichar c);

/// The same for the units whose entry in `upperCharsTable` is `upper`; there are none when `upper` is itself
/// a letter with an uppercase form.
std::uint32_t findUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper);
std::uint32_t findLastUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper);
std::uint32_t countUnicharNoCase(const unichar *units, std::uint32_t length, unichar upper);

/// Whether all units are below 128; true for none.
bool isAsciiUnichars(const unichar *units, std::uint32_t length);

struct UnicharCounts {
  std::uint32_t first = 0;
  std::uint32_t second = 0;

  friend bool operator==(const UnicharCounts &, const UnicharCounts &) = default;
};

/// How often each of two units stands in the run, in one pass.
UnicharCounts countUnichars(const unichar *units, std::uint32_t length, unichar first, unichar second);

}  // namespace nimbo
