// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo::detail {

/// A time zone: clocks that are always so far ahead of UTC, or clocks that are set forward and back. A
/// default-made one is the process's.
struct CalendarZone {
  /// Nothing when the clocks are set by the rules of a place.
  std::optional<std::int32_t> secondsAheadOfUTC;
  /// The place, as "Europe/Berlin"; nil for the process's.
  NSString place;
};

/// The zone of a name ("Europe/Berlin"), an abbreviation in either case ("CET", "pdt") or an offset ("+01:00",
/// "-0500", "+1", "GMT+1"). Nothing for another text.
std::optional<CalendarZone> zoneNamed(std::u16string_view name);

/// How far clocks of the process's zone are ahead of UTC at the moment, in seconds. The C library says it,
/// which reads every form of TZ, as rules, and so agrees with the rest of the process.
std::int32_t processSecondsAheadOfUTC(const NSDate &moment);

}  // namespace nimbo::detail
