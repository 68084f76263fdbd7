// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/CalendarTime.hpp"

#include <unicode/ucal.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <memory>
#include <new>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {
namespace {

struct CalendarCloser {
  void operator()(UCalendar *calendar) const { ucal_close(calendar); }
};
using Calendar = std::unique_ptr<UCalendar, CalendarCloser>;

/// A Gregorian calendar, also for times before 1582, for the place of a zone.
Calendar calendarOf(const CalendarZone &zone) {
  UErrorCode status = U_ZERO_ERROR;
  Calendar calendar(ucal_open(zone.place.characters(), static_cast<std::int32_t>(zone.place.length()), "en",
                              UCAL_GREGORIAN, &status));
  ucal_setGregorianChange(calendar.get(), -1e17, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
  return calendar;
}

bool isInCalendar(const CalendarTime &time) {
  using namespace std::chrono;
  const year_month_day date(year(time.year), month(static_cast<unsigned>(time.month)),
                            day(static_cast<unsigned>(time.day)));
  const bool isEndOfDay = time.hour == 24 && time.minute == 0 && time.second == 0;
  return date.ok() && time.year >= 0 && time.month > 0 && time.day > 0 && time.hour >= 0 &&
         (time.hour < 24 || isEndOfDay) && time.minute >= 0 && time.minute < 60 && time.second >= 0 &&
         time.second < 61;
}

/// The moment at which clocks that are so far ahead of UTC show this.
NSDate momentAhead(const CalendarTime &time, std::int32_t secondsAheadOfUTC) {
  return NSDate::dateWithUTC(time.year, time.month, time.day, time.hour, time.minute,
                             time.second - secondsAheadOfUTC);
}

/// As in ICU, clocks that are about to be set forward count as not yet set, those that are set back as set.
/// A day later the last change is over; a season that ends sooner shows at the moment that this leads to.
NSDate momentInProcess(const CalendarTime &time) {
  constexpr std::int32_t kDay = 24 * 60 * 60;
  const std::int32_t after = processSecondsAheadOfUTC(momentAhead(time, -kDay));
  const std::int32_t present = processSecondsAheadOfUTC(momentAhead(time, after));
  const bool isShown = processSecondsAheadOfUTC(momentAhead(time, present)) == present;
  return momentAhead(time, isShown ? present : std::min(after, present));
}

bool isProcessZone(const CalendarZone &zone) {
  return !zone.secondsAheadOfUTC && !zone.place;
}

}  // namespace

double fractionOfDigits(std::u16string_view digits) {
  constexpr std::size_t kMostDigits = 9;
  double fraction = 0, place = 1;
  for (const unichar digit : digits.substr(0, kMostDigits)) {
    fraction = fraction * 10 + digitValue(digit);
    place *= 10;
  }
  return fraction / place;
}

std::optional<NSDate> momentOf(const CalendarTime &time, const CalendarZone &zone) {
  if (!isInCalendar(time)) return std::nullopt;
  if (zone.secondsAheadOfUTC) return momentAhead(time, *zone.secondsAheadOfUTC);
  if (isProcessZone(zone)) return momentInProcess(time);
  const Calendar calendar = calendarOf(zone);
  UErrorCode status = U_ZERO_ERROR;
  ucal_clear(calendar.get());
  const double wholeSecond = std::floor(time.second);
  // ICU's year 0 is the year 1 before Christ.
  ucal_set(calendar.get(), UCAL_EXTENDED_YEAR, time.year);
  ucal_set(calendar.get(), UCAL_MONTH, time.month - 1);
  ucal_set(calendar.get(), UCAL_DATE, time.day);
  ucal_set(calendar.get(), UCAL_HOUR_OF_DAY, time.hour);
  ucal_set(calendar.get(), UCAL_MINUTE, time.minute);
  ucal_set(calendar.get(), UCAL_SECOND, static_cast<std::int32_t>(wholeSecond));
  const double milliseconds = ucal_getMillis(calendar.get(), &status);
  if (U_FAILURE(status)) return std::nullopt;
  return NSDate::dateWithTimeIntervalSince1970(milliseconds / 1000 + (time.second - wholeSecond));
}

CalendarTime calendarTimeOf(const NSDate &moment, const CalendarZone &zone) {
  if (isProcessZone(zone)) return calendarTimeOf(moment, {processSecondsAheadOfUTC(moment), {}});
  const Calendar calendar = calendarOf(zone.secondsAheadOfUTC ? CalendarZone{{}, u"Etc/UTC"_ns} : zone);
  UErrorCode status = U_ZERO_ERROR;
  const double seconds = moment.timeIntervalSince1970() + zone.secondsAheadOfUTC.value_or(0);
  ucal_setMillis(calendar.get(), std::floor(seconds) * 1000, &status);
  const auto field = [&](UCalendarDateFields which) { return ucal_get(calendar.get(), which, &status); };
  const CalendarTime time{field(UCAL_EXTENDED_YEAR), field(UCAL_MONTH) + 1,
                          field(UCAL_DATE),          field(UCAL_HOUR_OF_DAY),
                          field(UCAL_MINUTE),        static_cast<double>(field(UCAL_SECOND))};
  if (U_FAILURE(status)) throw std::bad_alloc();
  return time;
}

}  // namespace nimbo::detail
