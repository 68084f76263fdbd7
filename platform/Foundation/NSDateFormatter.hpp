// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How much of a date, or of a time of day, is written.
enum NSDateFormatterStyle {
  /// Nothing.
  NSDateFormatterNoStyle,
  /// Digits, as "24/12/2006" and "18:30".
  NSDateFormatterShortStyle,
  /// Short names of months, as "24 Dec 2006", and seconds, as "18:30:00".
  NSDateFormatterMediumStyle,
  /// Whole names of months, as "24 December 2006", and the zone.
  NSDateFormatterLongStyle,
  /// The weekday as well, and the zone's whole name.
  NSDateFormatterFullStyle,
};

/// Writes moments for people, in the process's time zone. Any number of threads may share one.
///
///     const NSDateFormatter formatter(NSDateFormatterMediumStyle, NSDateFormatterShortStyle, "en_GB");
///     formatter.stringFromDate(NSDate::date());  // "24 Dec 2006, 18:30"
class NSDateFormatter {
 public:
  /// Writes as people of this locale do; of the user's, when it is empty.
  explicit NSDateFormatter(NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle,
                           const std::string &locale = "");
  NSDateFormatter(const NSDateFormatter &) = delete;
  NSDateFormatter &operator=(const NSDateFormatter &) = delete;
  ~NSDateFormatter();

  /// The moment as text; nil for one that is not a number.
  NSString stringFromDate(const NSDate &date) const;

 private:
  /// ICU's formatter, owned.
  void *format_;
};

}  // namespace nimbo
