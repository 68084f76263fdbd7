// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSCalendarDate.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>

#include "platform/Foundation/Calendars/CalendarTime.hpp"
#include "platform/Foundation/Calendars/ISODate.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kWeekdays[] = {"sunday",   "monday", "tuesday", "wednesday",
                                          "thursday", "friday", "saturday"};
constexpr std::string_view kMonths[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                        "jul", "aug", "sep", "oct", "nov", "dec"};
constexpr std::size_t kAbbreviatedLength = 3;
constexpr std::int32_t kHoursOfDay = 24;

/// Reads a text from left to right, a directive at a time.
class FormReader {
 public:
  explicit FormReader(std::u16string_view text) : rest_(text) {}

  /// Whether the next units are what the directive stands for, which are then read.
  bool read(unichar directive) {
    switch (directive) {
      case u'a':
        return readName(kWeekdays, kAbbreviatedLength).has_value();
      case u'A':
        return readName(kWeekdays, rest_.npos).has_value();
      case u'b':
        return readMonth();
      case u'd':
        return readNumber(1, 2, time_.day);
      case u'm':
        return readNumber(1, 2, time_.month);
      case u'Y':
        return readNumber(4, 4, time_.year);
      case u'y':
        return readShortYear();
      case u'H':
        return readNumber(1, 2, time_.hour) && time_.hour < kHoursOfDay;
      case u'M':
        return readNumber(1, 2, time_.minute);
      case u'S':
        return readSecond();
      case u'Z':
        return readZone();
      default:
        return directive == u'%' && readCharacter(u'%');
    }
  }

  bool readCharacter(unichar expected) {
    if (!rest_.starts_with(expected)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::optional<NSDate> moment() const {
    if (!rest_.empty()) return std::nullopt;
    return detail::momentOf(time_, zone_);
  }

 private:
  std::optional<std::int32_t> readName(std::span<const std::string_view> names, std::size_t length) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string_view name = names[i].substr(0, length);
      if (!startsWithASCIINoCase(rest_, name)) continue;
      rest_.remove_prefix(name.size());
      return static_cast<std::int32_t>(i);
    }
    return std::nullopt;
  }

  bool readMonth() {
    const auto index = readName(kMonths, kAbbreviatedLength);
    time_.month = index.value_or(0) + 1;
    return index.has_value();
  }

  bool readNumber(std::size_t fewest, std::size_t most, std::int32_t &number) {
    // A number without its leading zero may stand behind a blank in its place.
    if (rest_.starts_with(u' ') && (rest_.size() < 3 || !isASCIIDigit(rest_[2]))) rest_.remove_prefix(1);
    std::size_t count = 0;
    for (number = 0; count < most && count < rest_.size() && isASCIIDigit(rest_[count]); ++count)
      number = number * 10 + static_cast<std::int32_t>(digitValue(rest_[count]));
    rest_.remove_prefix(count);
    return count >= fewest;
  }

  bool readShortYear() {
    if (!readNumber(2, 2, time_.year)) return false;
    time_.year = detail::yearOfTwoDigits(time_.year);
    return true;
  }

  bool readSecond() {
    std::int32_t second = 0;
    const bool isRead = readNumber(1, 2, second);
    time_.second = second;
    return isRead;
  }

  bool readZone() {
    const auto isOfZone = [](unichar c) {
      return isASCIIAlphanumeric(c) || c == u'+' || c == u'-' || c == u'/' || c == u'_' || c == u':';
    };
    const auto end = std::ranges::find_if_not(rest_, isOfZone);
    const auto length = static_cast<std::size_t>(std::distance(rest_.begin(), end));
    const auto zone = detail::zoneNamed(rest_.substr(0, length));
    if (!zone) return false;
    zone_ = *zone;
    rest_.remove_prefix(length);
    return true;
  }

  std::u16string_view rest_;
  /// No moment unless the form has a year.
  detail::CalendarTime time_{.year = -1};
  detail::CalendarZone zone_;
};

}  // namespace

std::optional<NSDate> dateWithCalendarFormat(const NSString &string, std::u16string_view format) {
  FormReader reader(string.view());
  for (std::size_t i = 0; i < format.size(); ++i) {
    const bool isDirective = format[i] == u'%' && i + 1 < format.size();
    if (isDirective ? !reader.read(format[++i]) : !reader.readCharacter(format[i])) return std::nullopt;
  }
  return reader.moment();
}

std::optional<NSDate> dateWithISO8601String(const NSString &string, const NSString &zone) {
  const auto given = zone ? detail::zoneNamed(zone.view()) : detail::CalendarZone();
  return given ? detail::momentOfISODate(string.view(), *given) : std::nullopt;
}

}  // namespace nimbo
