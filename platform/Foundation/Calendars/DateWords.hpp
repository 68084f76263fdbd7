// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nimbo::detail {

/// What a word can stand for in a date; a word may be of several kinds.
enum class DateKeyword {
  /// Nothing that matters, as "of".
  kFiller,
  /// A day; its value counts days from today.
  kDay,
  /// The present moment.
  kNow,
  /// A `DateUnit`.
  kUnit,
  /// The number 1.
  kOne,
  /// "ago", behind a number of units.
  kAgo,
  /// The direction, -1 or 1, of a number of units that follows, as "in".
  kDirection,
  /// "last", "this" or "next" (-1, 0, 1), beside a unit or a weekday.
  kModifier,
  /// A time of day, in hours.
  kTimeOfDay,
  /// "am" and "pm"; the value is the hour of the first one in that half of the day.
  kMeridian,
  /// "o'clock", behind an hour.
  kOClock,
  /// The end of an ordinal number.
  kOrdinal,
  /// A `DateUnit`, behind the number of that part of the date itself.
  kPartMark,
};

enum class DateUnit { kSecond, kMinute, kHour, kDay, kWeek, kMonth, kYear };

/// The name of a month, from 1 on, or of a weekday, from 0, Sunday, on.
struct CalendarName {
  std::int32_t number = 0;
  /// Whether the name is not abbreviated.
  bool isWhole = false;
};

/// A word in lower case, without its diacritics.
std::u16string foldedDateWord(std::u16string_view word);

/// The value of a folded word of this kind; nothing when it is none.
std::optional<std::int32_t> dateKeyword(std::u16string_view folded, DateKeyword kind);

/// The month of a folded name in one of the languages of docs/dates.md, or of its beginning; the first language
/// counts that knows it. Nothing for another word.
std::optional<CalendarName> monthNamed(std::u16string_view folded);
/// The weekday of a name, as above.
std::optional<CalendarName> weekdayNamed(std::u16string_view folded);

}  // namespace nimbo::detail
