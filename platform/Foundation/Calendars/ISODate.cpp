// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Calendars/ISODate.hpp"

#include <chrono>
#include <cstddef>
#include <utility>

#include "platform/Foundation/Calendars/CalendarTime.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {
namespace {

class ISOReader {
 public:
  ISOReader(std::u16string_view text, CalendarZone zone) : rest_(text), zone_(std::move(zone)) {}

  std::optional<NSDate> read() {
    if (!readDate()) return std::nullopt;
    const bool isWholeDate = hasDay_;
    if (isWholeDate && readTimeMark() && !readTime()) return std::nullopt;
    const bool hasBlanks = skipBlanks();
    if (rest_.empty()) return hasBlanks ? std::nullopt : momentOf(time_, zone_);
    const auto zone = isWholeDate ? zoneNamed(rest_) : std::nullopt;
    return zone ? momentOf(time_, *zone) : std::nullopt;
  }

 private:
  std::size_t countDigits() const {
    std::size_t count = 0;
    while (count < rest_.size() && isASCIIDigit(rest_[count])) ++count;
    return count;
  }

  bool readNumber(std::size_t digits, std::int32_t &number) {
    if (countDigits() < digits) return false;
    number = 0;
    for (const unichar digit : rest_.substr(0, digits))
      number = number * 10 + static_cast<std::int32_t>(digitValue(digit));
    rest_.remove_prefix(digits);
    return true;
  }

  bool readCharacter(unichar c) {
    if (rest_.empty() || toASCIILower(rest_[0]) != c) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool skipBlanks() {
    bool any = false;
    while (readCharacter(u' ')) any = true;
    return any;
  }

  bool readDate() {
    if (!readNumber(4, time_.year)) return false;
    if (rest_.empty()) return true;
    if (readCharacter(u'-')) return readExtendedDate(u'-');
    if (readCharacter(u'/')) return readExtendedDate(u'/');
    isBasic_ = true;
    if (readCharacter(u'w')) return readWeek(u'\0');
    switch (countDigits()) {
      case 3:
        return readDayOfYear();
      case 4:
      case 10:
        return readNumber(2, time_.month) && readDay();
      default:
        return false;
    }
  }

  bool readExtendedDate(unichar separator) {
    if (readCharacter(u'w')) return readWeek(separator);
    if (countDigits() == 3) return readDayOfYear();
    if (countDigits() != 2 || !readNumber(2, time_.month)) return false;
    return !readCharacter(separator) || readDay();
  }

  bool readDay() {
    hasDay_ = true;
    return readNumber(2, time_.day);
  }

  bool readDayOfYear() {
    std::int32_t day = 0;
    return readNumber(3, day) && day > 0 && setDay(firstOfYear() + std::chrono::days(day - 1));
  }

  bool readWeek(unichar separator) {
    std::int32_t week = 0, weekday = 1;
    if (!readNumber(2, week) || week < 1 || week > 53) return false;
    const bool hasWeekday = separator == u'\0' ? countDigits() > 0 : readCharacter(separator);
    if (hasWeekday && (!readNumber(1, weekday) || weekday < 1 || weekday > 7)) return false;
    // The first week is the one with 4 January.
    using namespace std::chrono;
    const sys_days fourth = firstOfYear() + days(3);
    const sys_days monday = fourth - days(year_month_weekday(fourth).weekday().iso_encoding() - 1);
    const std::int32_t year = time_.year;
    if (!setDay(monday + days(7 * (week - 1) + weekday - 1), true)) return false;
    // A week is of the year that its Thursday is in.
    return week < 53 || monday + weeks(52) + days(3) < firstOfYear(year + 1);
  }

  std::chrono::sys_days firstOfYear() const { return firstOfYear(time_.year); }
  static std::chrono::sys_days firstOfYear(std::int32_t year) {
    return std::chrono::sys_days(std::chrono::year(year) / 1 / 1);
  }

  bool setDay(std::chrono::sys_days day, bool mayBeOfOtherYear = false) {
    const std::chrono::year_month_day date(day);
    const std::int32_t year = static_cast<int>(date.year());
    if (!mayBeOfOtherYear && year != time_.year) return false;
    time_.year = year;
    time_.month = static_cast<std::int32_t>(static_cast<unsigned>(date.month()));
    time_.day = static_cast<std::int32_t>(static_cast<unsigned>(date.day()));
    hasDay_ = true;
    return true;
  }

  /// Whether a time follows, whose mark is then read.
  bool readTimeMark() {
    if (isBasic_ && countDigits() > 0) return true;
    if (readCharacter(u't')) return true;
    const std::u16string_view before = rest_;
    // Behind a blank a number without a colon is a zone, or nothing that is known here.
    if (skipBlanks() && countDigits() == 2 && rest_.size() > 2 && rest_[2] == u':') return true;
    rest_ = before;
    return false;
  }

  bool readTime() {
    if (!readNumber(2, time_.hour)) return false;
    std::int32_t fractionUnitSeconds = 3600;
    const bool isExtended = rest_.starts_with(u':');
    const auto readPart = [&](std::int32_t &number) {
      if (isExtended) return readCharacter(u':') && countDigits() == 2 && readNumber(2, number);
      return countDigits() >= 2 && readNumber(2, number);
    };
    if (isExtended || countDigits() > 0) {
      if (!readPart(time_.minute)) return false;
      fractionUnitSeconds = 60;
      const bool hasSecond = isExtended ? rest_.starts_with(u':') : countDigits() > 0;
      std::int32_t second = 0;
      if (hasSecond && !readPart(second)) return false;
      time_.second = second;
      if (hasSecond) fractionUnitSeconds = 1;
    }
    return readFraction(fractionUnitSeconds);
  }

  bool readFraction(std::int32_t unitSeconds) {
    if (!readCharacter(u'.') && !readCharacter(u',')) return true;
    const std::size_t digits = countDigits();
    if (digits == 0) return false;
    const double seconds = unitSeconds * fractionOfDigits(rest_.substr(0, digits));
    const auto minutes = static_cast<std::int32_t>(seconds / 60);
    time_.minute += minutes;
    time_.second += seconds - minutes * 60;
    rest_.remove_prefix(digits);
    return true;
  }

  std::u16string_view rest_;
  CalendarTime time_;
  CalendarZone zone_;
  bool isBasic_ = false;
  bool hasDay_ = false;
};

}  // namespace

std::optional<NSDate> momentOfISODate(std::u16string_view text, const CalendarZone &zone) {
  return ISOReader(text, zone).read();
}

}  // namespace nimbo::detail
