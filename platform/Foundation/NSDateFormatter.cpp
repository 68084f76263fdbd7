// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDateFormatter.hpp"

#include <unicode/ucal.h>
#include <unicode/udat.h>
#include <unicode/uloc.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

#include "platform/Foundation/Calendars/CalendarZone.hpp"

namespace nimbo {
namespace {

/// ICU's name of the user's locale, without the character set that POSIX adds.
std::string userLocale() {
  std::string locale = "C";
  for (const char *name : {"LANG", "LC_TIME", "LC_ALL"})
    if (const char *value = std::getenv(name); value && value[0]) locale = value;
  if (const std::size_t dot = locale.find('.'); dot != locale.npos)
    locale.erase(dot, locale.find('@', dot) - dot);
  if (locale == "C" || locale == "POSIX") return "en_US_POSIX";
  std::array<char, ULOC_FULLNAME_CAPACITY> canonical{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_canonicalize(locale.c_str(), canonical.data(), static_cast<std::int32_t>(canonical.size()), &status);
  return U_SUCCESS(status) ? canonical.data() : "en_US_POSIX";
}

UDateFormatStyle styleOfICU(NSDateFormatterStyle style) {
  constexpr std::array kStyles = {UDAT_NONE, UDAT_SHORT, UDAT_MEDIUM, UDAT_LONG, UDAT_FULL};
  return kStyles[style];
}

using Calendar = std::unique_ptr<UCalendar, decltype(&ucal_close)>;

/// A calendar at the moment, in ICU's zone, which has a name, or at the process's distance from UTC where ICU
/// has read TZ otherwise.
Calendar calendarAt(const NSDate &date, UErrorCode *status) {
  Calendar calendar(ucal_open(nullptr, 0, nullptr, UCAL_DEFAULT, status), &ucal_close);
  ucal_setMillis(calendar.get(), date.timeIntervalSince1970() * 1000, status);
  const std::int32_t seconds = detail::processSecondsAheadOfUTC(date);
  const auto milliseconds = [&](UCalendarDateFields field) { return ucal_get(calendar.get(), field, status); };
  if (milliseconds(UCAL_ZONE_OFFSET) + milliseconds(UCAL_DST_OFFSET) == seconds * 1000) return calendar;
  const std::int32_t distance = std::abs(seconds);
  std::array<char, 48> name{};
  std::snprintf(name.data(), name.size(), "GMT%c%02d:%02d:%02d", seconds < 0 ? '-' : '+', distance / 3600,
                distance / 60 % 60, distance % 60);
  const NSString zone = NSString::stringWithUTF8String(name.data());
  ucal_setTimeZone(calendar.get(), zone.characters(), static_cast<std::int32_t>(zone.length()), status);
  return calendar;
}

}  // namespace

NSDateFormatter::NSDateFormatter(NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle,
                                 const std::string &locale) {
  UErrorCode status = U_ZERO_ERROR;
  format_ = udat_open(styleOfICU(timeStyle), styleOfICU(dateStyle),
                      (locale.empty() ? userLocale() : locale).c_str(), nullptr, 0, nullptr, 0, &status);
  if (U_FAILURE(status)) throw std::bad_alloc();
}

NSDateFormatter::~NSDateFormatter() {
  udat_close(static_cast<UDateFormat *>(format_));
}

NSString NSDateFormatter::stringFromDate(const NSDate &date) const {
  if (!std::isfinite(date.timeIntervalSince1970() * 1000)) return {};
  UErrorCode opened = U_ZERO_ERROR;
  const Calendar calendar = calendarAt(date, &opened);
  if (U_FAILURE(opened)) return {};
  std::vector<unichar> units(128);
  for (;;) {
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length =
        udat_formatCalendar(static_cast<const UDateFormat *>(format_), calendar.get(), units.data(),
                            static_cast<std::int32_t>(units.size()), nullptr, &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
      units.resize(static_cast<std::size_t>(length) + 1);
      continue;
    }
    if (U_FAILURE(status)) return {};
    return NSString::stringWithCharacters(units.data(), static_cast<std::uint32_t>(length));
  }
}

}  // namespace nimbo
