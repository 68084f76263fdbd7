// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFDate.hpp"

#include <chrono>
#include <iterator>
#include <string_view>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

class Reader {
 public:
  explicit Reader(std::u16string_view text) : text_(text) {}

  bool atEnd() const { return text_.empty(); }
  char16_t next() const { return text_.empty() ? u'\0' : text_.front(); }
  bool startsNumber() const { return isASCIIDigit(next()); }

  bool skip(char16_t unit) {
    if (next() != unit || atEnd()) return false;
    text_.remove_prefix(1);
    return true;
  }
  /// Skips all units that are one of `units`.
  void skipAll(std::u16string_view units) {
    const std::size_t end = text_.find_first_not_of(units);
    text_.remove_prefix(end == text_.npos ? text_.size() : end);
  }
  /// Skips one separator that a number follows.
  bool skipSeparator(std::u16string_view separators) {
    if (text_.size() < 2 || separators.find(text_[0]) == separators.npos || !isASCIIDigit(text_[1]))
      return false;
    text_.remove_prefix(1);
    return true;
  }
  std::optional<int> number(std::size_t minimumDigits, std::size_t maximumDigits) {
    int value = 0;
    std::size_t count = 0;
    for (; count < maximumDigits && count < text_.size() && isASCIIDigit(text_[count]); ++count)
      value = value * 10 + static_cast<int>(digitValue(text_[count]));
    if (count < minimumDigits) return std::nullopt;
    text_.remove_prefix(count);
    return value;
  }

 private:
  std::u16string_view text_;
};

constexpr std::u16string_view kBlanks(u" \t\r\n\0", 5);

/// Seconds east of UTC; 0 when the string names no zone.
std::optional<int> readZone(Reader &reader) {
  const bool west = reader.next() == u'-';
  const bool universal = reader.skip(u'Z') || reader.skip(u'z');
  if (!universal && !reader.skip(u'+') && !reader.skip(u'-')) return 0;
  int hours = 0, minutes = 0;
  if (universal) {
    reader.skip(u'+');
    reader.skip(u'-');
  }
  if (reader.startsNumber()) {
    hours = reader.number(2, 2).value_or(24);
    reader.skipAll(u"':");
    if (reader.startsNumber()) minutes = reader.number(2, 2).value_or(60);
  }
  if (hours > 23 || minutes > 59 || (universal && hours + minutes != 0)) return std::nullopt;
  const int seconds = hours * 3600 + minutes * 60;
  return west ? -seconds : seconds;
}

}  // namespace

std::optional<NSDate> dateWithPDFDateString(const NSString &string) {
  Reader reader(string.view());
  reader.skipAll(kBlanks);
  if (reader.skip(u'D') || reader.skip(u'd')) reader.skip(u':');
  reader.skipAll(kBlanks);

  const std::optional<int> year = reader.number(4, 4);
  if (!year) return std::nullopt;
  // The separator after the year is the one before the day too; without one, a dash after the month begins a
  // zone.
  const char16_t dateSeparator = reader.next();
  std::u16string_view separators[] = {u"-/.:", {}, u" T", u":.", u":."};
  int fields[] = {1, 1, 0, 0, 0};
  for (std::size_t i = 0; i < std::size(fields); ++i) {
    const bool separated = reader.skipSeparator(separators[i]);
    if (i == 0 && separated) separators[1] = {&dateSeparator, 1};
    if (!reader.startsNumber()) break;
    const std::optional<int> field = reader.number(separated ? 1 : 2, 2);
    if (!field) return std::nullopt;
    fields[i] = *field;
  }
  const auto [month, day, hour, minute, second] = fields;
  if (reader.skip(u'.')) reader.skipAll(u"0123456789");
  reader.skipAll(kBlanks);
  const std::optional<int> zone = readZone(reader);
  reader.skipAll(u"'");
  reader.skipAll(kBlanks);

  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!reader.atEnd() || !zone || *year == 0 || !date.ok() || hour > 23 || minute > 59 || second > 59)
    return std::nullopt;
  return NSDate::dateWithUTC(*year, month, day, hour, minute, second - *zone);
}

}  // namespace nimbo
