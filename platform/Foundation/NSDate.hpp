// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A moment in time: a plain value.
///
///     const NSDate date = NSDate::dateWithUTC(2001, 2, 3, 4, 5, 6);
///     date.ISO8601String().value();  // "2001-02-03T04:05:06Z"
///     const double age = NSDate::date().timeIntervalSince1970() - date.timeIntervalSince1970();
struct NSDate {
  /// Seconds between 1970-01-01 and the reference date, 2001-01-01, both 00:00:00 UTC.
  static constexpr double kTimeIntervalBetween1970AndReferenceDate = 978307200.0;

  /// Seconds since the reference date; earlier moments are negative.
  double timeIntervalSinceReferenceDate = 0;

  /// The present moment.
  static NSDate date();
  /// The moment so many seconds after 1970-01-01 00:00:00 UTC.
  static constexpr NSDate dateWithTimeIntervalSince1970(double seconds) {
    return NSDate{seconds - kTimeIntervalBetween1970AndReferenceDate};
  }
  /// The moment of a proleptic Gregorian date and time of day in UTC; months and days count from 1. The fields
  /// are not checked: those beyond their range carry over.
  static NSDate dateWithUTC(std::int64_t year, int month, int day, int hour, int minute, double second);

  /// Seconds since 1970-01-01 00:00:00 UTC; earlier moments are negative.
  constexpr double timeIntervalSince1970() const {
    return timeIntervalSinceReferenceDate + kTimeIntervalBetween1970AndReferenceDate;
  }
  /// ISO 8601 in UTC, as "2001-01-01T00:00:00Z", with fractions of a second, to microseconds, only when there
  /// are any. Nothing for a moment outside the years 0 to 9999 (or not a number).
  std::optional<std::string> ISO8601String() const;

  /// Whether both are the same moment.
  friend constexpr bool operator==(const NSDate &, const NSDate &) = default;
};

}  // namespace nimbo
