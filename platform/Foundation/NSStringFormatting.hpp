// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// A number, and neither a truth value nor a character.
template <class T>
concept FormattedInteger = std::integral<T> && sizeof(T) <= sizeof(std::uint64_t) && !std::same_as<T, bool> &&
                           !std::same_as<T, char> && !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                           !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// An argument of a format: a string, whose nil is "(null)", units, text in UTF-8 or a number, which is written
/// in decimal, a real one with as few digits as tell it from all others ("0.1", "1e+300"). It borrows strings
/// and units.
class FormatArgument {
 public:
  /// A string; nil is "(null)".
  FormatArgument(const NSString &string NIMBO_LIFETIMEBOUND) noexcept
      : units_(string ? string.view() : u"(null)") {}
  /// Units.
  template <std::convertible_to<std::u16string_view> Units>
  FormatArgument(const Units &units NIMBO_LIFETIMEBOUND) noexcept : units_(units) {}
  /// UTF-8, which is converted.
  template <std::convertible_to<std::string_view> Text>
  FormatArgument(const Text &text) : FormatArgument(made(std::string_view(text))) {}
  /// A whole number in decimal.
  template <FormattedInteger Integer>
  FormatArgument(Integer number)
      : FormatArgument(std::signed_integral<Integer> ? made(static_cast<std::int64_t>(number))
                                                     : made(static_cast<std::uint64_t>(number))) {
    isInteger_ = true;
  }
  /// A real number with as few digits as tell it from all others.
  template <std::same_as<double> Real>
  FormatArgument(Real number) : FormatArgument(made(number)) {}

  /// The argument as text; borrowed from this object or from what it was made of.
  std::u16string_view units() const noexcept NIMBO_LIFETIMEBOUND { return units_; }
  /// Whether "%d" takes it.
  bool isInteger() const noexcept { return isInteger_; }

 private:
  struct Made {
    NSString string;
  };
  explicit FormatArgument(Made made) noexcept : made_(std::move(made.string)), units_(made_.view()) {}
  static Made made(std::string_view text);
  static Made made(std::int64_t number);
  static Made made(std::uint64_t number);
  static Made made(double number);

  NSString made_;
  std::u16string_view units_;
  bool isInteger_ = false;
};

/// A format as it is written in the code. What does not fit the arguments does not compile: each "%@" takes the
/// next argument, each "%d" the next one, which must be an integer, and "%%" is a per cent sign.
template <class... Arguments>
class FormatString {
 public:
  /// The format, which is checked when the program is compiled.
  template <std::size_t Size>
  consteval FormatString(const char16_t (&text)[Size]) : units_(text, Size - 1) {
    constexpr bool isInteger[] = {FormattedInteger<Arguments>..., false};
    std::size_t count = 0;
    for (std::size_t i = 0; i < units_.size(); ++i) {
      if (units_[i] != u'%') continue;
      if (++i == units_.size()) throw "The format ends in the middle of a directive.";
      if (units_[i] == u'%') continue;
      if (count == sizeof...(Arguments)) throw "The format has more directives than arguments.";
      if (units_[i] != u'@' && !(units_[i] == u'd' && isInteger[count]))
        throw "The format has a directive that does not fit its argument.";
      ++count;
    }
    if (count < sizeof...(Arguments)) throw "The format has fewer directives than arguments.";
  }

  /// The units of the format; they live as long as the process.
  constexpr std::u16string_view units() const noexcept { return units_; }

 private:
  std::u16string_view units_;
};

namespace detail {

/// Appends a format with its directives replaced, whatever they are.
void appendFormatted(NSMutableString &string, std::u16string_view format,
                     std::span<const FormatArgument> arguments);

template <class... Arguments>
void appendFormat(NSMutableString &string, std::u16string_view format, const Arguments &...arguments) {
  if constexpr (sizeof...(Arguments) == 0) {
    appendFormatted(string, format, {});
  } else {
    const FormatArgument converted[] = {arguments...};
    appendFormatted(string, format, converted);
  }
}

}  // namespace detail

/// Appends a format with its directives replaced by the arguments, which must not lie in the string itself. One
/// thread changes a string at a time.
///
///     appendFormat(list, u"%d: %@\n", index, name);
///     appendFormat(list, u"%@ of %d bytes\n", "in UTF-8", bytes.size());
///     appendFormat(list, u"%d%%\n", 50);  // "50%"
template <class... Arguments>
void appendFormat(NSMutableString &string, FormatString<std::type_identity_t<Arguments>...> format,
                  const Arguments &...arguments) {
  detail::appendFormat(string, format.units(), arguments...);
}

/// A new string out of a format and its arguments; never nil. Any thread may make one.
///
///     NSString name = stringWithFormat(u"%@-%d.%@", base, counter, extension);
template <class... Arguments>
NSString stringWithFormat(FormatString<std::type_identity_t<Arguments>...> format,
                          const Arguments &...arguments) {
  NSMutableString result;
  detail::appendFormat(result, format.units(), arguments...);
  return std::move(result).string();
}

/// A new string out of a format that only the running program knows, as a translation is. Arguments that are
/// not asked for are left out, and nothing stands for those that are missing. Other directives stay as they
/// are, "%d" too where the next argument is no integer.
NSString stringWithFormat(const NSString &format, std::span<const FormatArgument> arguments);
/// The same with the arguments one by one.
template <class... Arguments>
requires(std::constructible_from<FormatArgument, const Arguments &> &&...) NSString
    stringWithFormat(const NSString &format, const Arguments &...arguments) {
  NSMutableString result;
  detail::appendFormat(result, format.view(), arguments...);
  return std::move(result).string();
}

}  // namespace nimbo
