// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatDocumentValues.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace nimbo::detail {
namespace {

/// No page is larger, and sums of such lengths stay finite.
constexpr double kLargestNumber = 1e6;

struct Unit {
  std::string_view name;
  double points;
};

constexpr Unit kUnits[] = {{"pt", 1},         {"in", 72}, {"cm", 72 / 2.54},
                           {"mm", 72 / 25.4}, {"pc", 12}, {"px", 0.75}};

/// A whole number that fills the text.
std::optional<int> digits(std::string_view text) {
  int value = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || status != std::errc() || end != text.data() + text.size() || value < 0)
    return std::nullopt;
  return value;
}

}  // namespace

std::optional<LeadingNumber> leadingNumber(std::string_view text) {
  LeadingNumber number;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number.value);
  if (status != std::errc() || !(std::abs(number.value) <= kLargestNumber)) return std::nullopt;
  number.unit = text.substr(static_cast<std::size_t>(end - text.data()));
  return number;
}

std::optional<double> lengthInPoints(std::string_view text) {
  const auto number = leadingNumber(text);
  if (!number) return std::nullopt;
  const auto unit = std::ranges::find(kUnits, number->unit, &Unit::name);
  // Thousandths are more than any document means.
  if (unit != std::end(kUnits)) return std::round(number->value * unit->points * 1000) / 1000;
  return number->value == 0 && number->unit.empty() ? std::optional(0.0) : std::nullopt;
}

std::optional<double> percentage(std::string_view text) {
  const auto number = leadingNumber(text);
  return number && number->unit == "%" ? std::optional(number->value / 100) : std::nullopt;
}

std::optional<NSColor> color(std::string_view text) {
  constexpr std::size_t kLength = 7;
  std::uint32_t value = 0;
  if (text.size() != kLength || text.front() != '#') return std::nullopt;
  const auto [end, status] = std::from_chars(text.data() + 1, text.data() + kLength, value, 16);
  if (status != std::errc() || end != text.data() + kLength) return std::nullopt;
  return NSColor{static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
                 static_cast<std::uint8_t>(value)};
}

std::optional<std::uint32_t> wholeNumber(std::string_view text, std::uint32_t most) {
  std::uint32_t value = 0;
  const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end == text.data() || end != text.data() + text.size()) return std::nullopt;
  return status == std::errc::result_out_of_range ? most : std::min(value, most);
}

std::optional<NSDate> dateAndTime(std::string_view text) {
  constexpr std::string_view kPattern = "dddd-dd-dd";
  if (text.size() < kPattern.size() || text[4] != '-' || text[7] != '-') return std::nullopt;
  const auto year = digits(text.substr(0, 4)), month = digits(text.substr(5, 2)),
             day = digits(text.substr(8, 2));
  if (!year || !month || !day || *month < 1 || *month > 12 || *day < 1 || *day > 31) return std::nullopt;
  text.remove_prefix(kPattern.size());
  if (text.empty()) return NSDate::dateWithUTC(*year, *month, *day, 0, 0, 0);
  constexpr std::string_view kTime = "Tdd:dd:dd";
  if (text.size() < kTime.size() || text[0] != 'T' || text[3] != ':' || text[6] != ':') return std::nullopt;
  const auto hour = digits(text.substr(1, 2)), minute = digits(text.substr(4, 2));
  const auto second = leadingNumber(text.substr(7));
  if (!hour || !minute || !second || *hour > 23 || *minute > 59 || !(second->value >= 0 && second->value < 61))
    return std::nullopt;
  return NSDate::dateWithUTC(*year, *month, *day, *hour, *minute, std::floor(second->value));
}

}  // namespace nimbo::detail
