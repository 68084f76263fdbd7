// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/DateFields.hpp"

#include <algorithm>
#include <chrono>

namespace nimbo::detail {
namespace {

using namespace std::chrono;

constexpr std::int32_t kDaysOfWeek = 7;

year_month_day dateOf(const CalendarTime &time) {
  return year(time.year) / month(static_cast<unsigned>(time.month)) / day(static_cast<unsigned>(time.day));
}

CalendarTime withDate(CalendarTime time, const year_month_day &date) {
  time.year = static_cast<int>(date.year());
  time.month = static_cast<std::int32_t>(static_cast<unsigned>(date.month()));
  time.day = static_cast<std::int32_t>(static_cast<unsigned>(date.day()));
  return time;
}

CalendarTime withTime(CalendarTime time, const TimeOfDay &timeOfDay) {
  time.hour = timeOfDay.hour;
  time.minute = timeOfDay.minute;
  time.second = timeOfDay.second;
  return time;
}

CalendarTime plusDays(const CalendarTime &time, std::int32_t count) {
  return withDate(time, sys_days(dateOf(time)) + days(count));
}

/// In a month that lacks the day its last one counts.
CalendarTime plusMonths(const CalendarTime &time, std::int32_t count) {
  const year_month_day moved = dateOf(time) + months(count);
  return withDate(time, moved.ok() ? moved : year_month_day(moved.year() / moved.month() / last));
}

CalendarTime shifted(const CalendarTime &time, const DateShift &shift) {
  switch (shift.unit) {
    case DateUnit::kDay:
      return plusDays(time, shift.count);
    case DateUnit::kWeek:
      return plusDays(time, shift.count * kDaysOfWeek);
    case DateUnit::kMonth:
      return plusMonths(time, shift.count);
    default:
      return plusMonths(time, shift.count * 12);
  }
}

/// Seconds of a unit that is the same length every day; nothing for the others.
std::optional<std::int32_t> secondsOf(DateUnit unit) {
  switch (unit) {
    case DateUnit::kSecond:
      return 1;
    case DateUnit::kMinute:
      return 60;
    case DateUnit::kHour:
      return 3600;
    default:
      return std::nullopt;
  }
}

std::optional<CalendarTime> weekdayFrom(const DateFields &fields, const CalendarTime &today) {
  // Abbreviations are words of other meanings, too.
  if (!fields.weekday->isWhole && !fields.weekdayDirection) return std::nullopt;
  const auto weekdayToday = static_cast<std::int32_t>(weekday(sys_days(dateOf(today))).c_encoding());
  const std::int32_t ahead = (fields.weekday->number - weekdayToday + kDaysOfWeek) % kDaysOfWeek;
  const std::int32_t direction = fields.weekdayDirection.value_or(0);
  if (direction < 0) return plusDays(today, ahead - kDaysOfWeek);
  return plusDays(today, ahead == 0 && direction > 0 ? kDaysOfWeek : ahead);
}

std::optional<CalendarTime> namedDate(const DateFields &fields, const CalendarTime &today) {
  if (fields.dayOffset || fields.shift || fields.weekdayDirection || !fields.month) return std::nullopt;
  // Abbreviations alone are words of other meanings, too.
  if (!fields.month->isWhole && !fields.day && !fields.year) return std::nullopt;
  return CalendarTime{fields.year.value_or(today.year), fields.month->number, fields.day.value_or(1)};
}

}  // namespace

std::optional<NSDate> momentOf(const DateFields &fields, const NSDate &now) {
  const CalendarZone zone = fields.zone.value_or(CalendarZone());
  const CalendarTime present = calendarTimeOf(now, zone);
  const CalendarTime today = withTime(present, {});
  std::optional<CalendarTime> found;
  if (fields.year || fields.month || fields.day) {
    found = namedDate(fields, today);
  } else if (fields.shift) {
    if (fields.dayOffset) return std::nullopt;
    if (const auto seconds = secondsOf(fields.shift->unit)) {
      if (fields.time || fields.weekday) return std::nullopt;
      return NSDate::dateWithTimeIntervalSince1970(now.timeIntervalSince1970() +
                                                   1.0 * fields.shift->count * *seconds);
    }
    found = shifted(present, *fields.shift);
  } else if (fields.dayOffset) {
    found = plusDays(today, *fields.dayOffset);
  } else if (fields.weekday) {
    found = weekdayFrom(fields, today);
  } else if (fields.time) {
    found = today;
  }
  if (!found) return std::nullopt;
  if (fields.time) found = withTime(*found, *fields.time);
  return momentOf(*found, zone);
}

}  // namespace nimbo::detail
