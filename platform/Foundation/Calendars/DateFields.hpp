// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Foundation/Calendars/CalendarTime.hpp"
#include "platform/Foundation/Calendars/DateWords.hpp"
#include "platform/Foundation/NSDate.hpp"

namespace nimbo::detail {

struct TimeOfDay {
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  double second = 0;
};

/// A distance in time: so many units, of four digits at most, backwards when negative.
struct DateShift {
  std::int32_t count = 0;
  DateUnit unit = DateUnit::kDay;
};

/// What a phrase says about a moment.
struct DateFields {
  std::optional<std::int32_t> year;
  std::optional<CalendarName> month;
  std::optional<std::int32_t> day;
  std::optional<CalendarName> weekday;
  /// -1 for the last such weekday, 1 for the next one behind today.
  std::optional<std::int32_t> weekdayDirection;
  /// Days from today.
  std::optional<std::int32_t> dayOffset;
  /// The distance from now.
  std::optional<DateShift> shift;
  std::optional<TimeOfDay> time;
  std::optional<CalendarZone> zone;
};

/// The moment that the fields name, where `now` is the present one; nothing when they contradict each other or
/// name none.
std::optional<NSDate> momentOf(const DateFields &fields, const NSDate &now);

}  // namespace nimbo::detail
