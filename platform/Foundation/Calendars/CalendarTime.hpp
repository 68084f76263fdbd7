// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/Foundation/Calendars/CalendarZone.hpp"
#include "platform/Foundation/NSDate.hpp"

namespace nimbo::detail {

/// A date of the Gregorian calendar and a time of day, as a clock on the wall shows them.
struct CalendarTime {
  std::int32_t year = 0;
  std::int32_t month = 1;
  std::int32_t day = 1;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  /// A leap second is 60.
  double second = 0;
};

/// The year that two digits stand for.
constexpr std::int32_t yearOfTwoDigits(std::int32_t digits) {
  return digits + (digits < 69 ? 2000 : 1900);
}

/// The fraction of 1 that digits behind a decimal point stand for, to nanoseconds.
double fractionOfDigits(std::u16string_view digits);

/// The moment at which a clock in the zone shows this; nothing when none ever does, as on 30 February. 24:00:00
/// is the end of the day.
std::optional<NSDate> momentOf(const CalendarTime &time, const CalendarZone &zone);

/// What a clock in the zone shows at this moment.
CalendarTime calendarTimeOf(const NSDate &moment, const CalendarZone &zone);

}  // namespace nimbo::detail
