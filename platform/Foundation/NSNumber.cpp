// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSNumber.hpp"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

/// The characters that may belong to the number at the beginning of `units`, in ASCII, without a plus sign.
/// Empty when there is no number.
std::string leadingNumber(std::u16string_view units) {
  while (!units.empty() && isASCIIWhiteSpace(units.front())) units.remove_prefix(1);
  if (units.starts_with(u'+')) units.remove_prefix(1);
  const std::size_t first = units.starts_with(u'-') ? 1 : 0;
  const bool isNumber = units.size() > first && (isASCIIDigit(units[first]) || units[first] == u'.');
  if (!isNumber) return {};
  const std::size_t end = units.find_first_not_of(u"0123456789.eE+-");
  return std::string(units.begin(), units.begin() + static_cast<std::ptrdiff_t>(std::min(end, units.size())));
}

template <class Integer>
Integer integerOf(const std::string &text) {
  using Limits = std::numeric_limits<Integer>;
  Integer number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc::result_out_of_range) return number;
  return text.starts_with('-') ? Limits::min() : Limits::max();
}

double realOf(const std::string &text) {
  using Limits = std::numeric_limits<double>;
  return std::clamp(g_ascii_strtod(text.c_str(), nullptr), Limits::lowest(), Limits::max());
}

constexpr double kLimit = 9223372036854775808.0;  // 2^63.

std::int64_t truncated(double number) {
  if (std::isnan(number)) return 0;
  if (number >= kLimit) return std::numeric_limits<std::int64_t>::max();
  if (number < -kLimit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(number);
}

}  // namespace

std::optional<std::int64_t> longLongValue(const id &value) {
  if (const auto boolean = value.boolean()) return *boolean;
  if (const auto integer = value.integer()) return integer;
  if (const auto real = value.real()) return truncated(*real);
  if (const NSString string = value.string()) return integerOf<std::int64_t>(leadingNumber(string.view()));
  return std::nullopt;
}

std::optional<std::uint64_t> unsignedLongLongValue(const id &value) {
  if (const NSString string = value.string()) {
    const std::string text = leadingNumber(string.view());
    if (!text.starts_with('-')) return integerOf<std::uint64_t>(text);
  } else if (const auto real = value.real(); value.isReal() && *real >= kLimit) {
    return *real < 2 * kLimit ? static_cast<std::uint64_t>(*real) : std::numeric_limits<std::uint64_t>::max();
  }
  const auto number = longLongValue(value);
  return number ? std::optional(static_cast<std::uint64_t>(*number)) : std::nullopt;
}

std::optional<double> doubleValue(const id &value) {
  if (const auto boolean = value.boolean()) return *boolean;
  if (const auto real = value.real()) return real;
  if (const NSString string = value.string()) return realOf(leadingNumber(string.view()));
  return std::nullopt;
}

NSString stringValue(const id &value) {
  if (NSString string = value.string()) return string;
  if (const auto boolean = value.boolean()) return *boolean ? u"1"_ns : u"0"_ns;
  if (const auto integer = value.integer()) return stringWithFormat(u"%@", *integer);
  if (const auto real = value.real()) return stringWithFormat(u"%@", *real);
  return NSString();
}

}  // namespace nimbo
