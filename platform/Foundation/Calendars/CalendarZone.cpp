// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/CalendarZone.hpp"

#include <unicode/ucal.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <ctime>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {
namespace {

struct Abbreviation {
  std::string_view lowerName;
  std::int32_t minutesAheadOfUTC;
};

constexpr std::int32_t hours(std::int32_t count) {
  return count * 60;
}

/// Where one abbreviation is used in several places, that of mail and the press counts: "EST" and "CST" are
/// American, "IST" is Indian.
constexpr Abbreviation kAbbreviations[] = {
    {"z", 0},
    {"ut", 0},
    {"utc", 0},
    {"gmt", 0},
    {"wet", 0},
    {"west", hours(1)},
    {"bst", hours(1)},
    {"cet", hours(1)},
    {"met", hours(1)},
    {"mez", hours(1)},
    {"cest", hours(2)},
    {"mest", hours(2)},
    {"mesz", hours(2)},
    {"eet", hours(2)},
    {"sast", hours(2)},
    {"cat", hours(2)},
    {"eest", hours(3)},
    {"msk", hours(3)},
    {"eat", hours(3)},
    {"trt", hours(3)},
    {"msd", hours(4)},
    {"gst", hours(4)},
    {"pkt", hours(5)},
    {"ist", 330},
    {"npt", 345},
    {"ict", hours(7)},
    {"wib", hours(7)},
    {"sgt", hours(8)},
    {"hkt", hours(8)},
    {"pht", hours(8)},
    {"awst", hours(8)},
    {"jst", hours(9)},
    {"kst", hours(9)},
    {"acst", 570},
    {"aest", hours(10)},
    {"acdt", 630},
    {"aedt", hours(11)},
    {"nzst", hours(12)},
    {"nzdt", hours(13)},
    {"brt", hours(-3)},
    {"art", hours(-3)},
    {"adt", hours(-3)},
    {"nst", -210},
    {"ndt", -150},
    {"ast", hours(-4)},
    {"edt", hours(-4)},
    {"est", hours(-5)},
    {"cdt", hours(-5)},
    {"cst", hours(-6)},
    {"mdt", hours(-6)},
    {"mst", hours(-7)},
    {"pdt", hours(-7)},
    {"pst", hours(-8)},
    {"akdt", hours(-8)},
    {"akst", hours(-9)},
    {"hst", hours(-10)},
};

struct Region {
  std::string_view lowerName;
  std::u16string_view place;
};

/// Names that leave open whether the clocks are set forward.
constexpr Region kRegions[] = {
    {"at", u"America/Halifax"}, {"et", u"America/New_York"},    {"ct", u"America/Chicago"},
    {"mt", u"America/Denver"},  {"pt", u"America/Los_Angeles"},
};

CalendarZone zoneAhead(std::int32_t minutes) {
  return {minutes * 60, {}};
}

/// No clock is further from UTC.
constexpr std::int32_t kHoursAhead = 14;
constexpr std::int32_t kHoursBehind = 12;
constexpr std::size_t kMostDigits = 4;

/// "+1", "+01", "+0130", "+01:30"; nothing for another text.
std::optional<CalendarZone> zoneOfOffset(std::u16string_view text) {
  const bool isBehind = text[0] == u'-' || text[0] == u'\u2212';
  if (!isBehind && text[0] != u'+') return std::nullopt;
  std::size_t count = 0;
  std::int32_t number = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    const bool isColon = text[i] == u':' && (i == 2 || i == 3) && text.size() == i + 3;
    if (isColon) continue;
    if (!isASCIIDigit(text[i]) || ++count > kMostDigits) return std::nullopt;
    number = number * 10 + static_cast<std::int32_t>(digitValue(text[i]));
  }
  if (count == 0) return std::nullopt;
  const bool hasMinutes = count > 2;
  const std::int32_t hour = hasMinutes ? number / 100 : number, minute = hasMinutes ? number % 100 : 0;
  if (hour > (isBehind ? kHoursBehind : kHoursAhead) || minute > 59) return std::nullopt;
  return zoneAhead((isBehind ? -1 : 1) * (hours(hour) + minute));
}

std::optional<CalendarZone> zoneOfPlace(std::u16string_view name) {
  std::array<unichar, 128> canonical{};
  UErrorCode status = U_ZERO_ERROR;
  UBool isKnown = false;
  ucal_getCanonicalTimeZoneID(name.data(), static_cast<std::int32_t>(name.size()), canonical.data(),
                              static_cast<std::int32_t>(canonical.size()), &isKnown, &status);
  if (U_FAILURE(status) || !isKnown) return std::nullopt;
  return CalendarZone{{}, NSString::stringWithCharacters(name)};
}

}  // namespace

std::optional<CalendarZone> zoneNamed(std::u16string_view name) {
  if (name.empty()) return std::nullopt;
  if (!isASCIILetter(name[0])) return zoneOfOffset(name);
  for (const Abbreviation &known : kAbbreviations)
    if (equalsASCIINoCase(name, known.lowerName)) return zoneAhead(known.minutesAheadOfUTC);
  for (const Region &region : kRegions) {
    if (equalsASCIINoCase(name, region.lowerName))
      return CalendarZone{{}, NSString::stringWithCharacters(region.place)};
  }
  for (const std::string_view prefix : {"gmt", "utc"})
    if (startsWithASCIINoCase(name, prefix)) return zoneOfOffset(name.substr(prefix.size()));
  // ICU knows other names without a solidus, which stand for other places than in mail.
  return name.find(u'/') != name.npos ? zoneOfPlace(name) : std::nullopt;
}

std::int32_t processSecondsAheadOfUTC(const NSDate &moment) {
  const double seconds = std::floor(moment.timeIntervalSince1970());
  constexpr double kLimit = 0x1p62;
  if (!(std::abs(seconds) < kLimit)) return 0;
  const auto time = static_cast<std::time_t>(seconds);
  std::tm fields{};
  return localtime_r(&time, &fields) ? static_cast<std::int32_t>(fields.tm_gmtoff) : 0;
}

}  // namespace nimbo::detail
