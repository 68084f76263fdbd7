// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSStringFormatting.hpp"

#include <charconv>
#include <cmath>
#include <iterator>

namespace nimbo {
namespace {

/// The most characters that a number takes.
constexpr std::size_t kLongestNumber = 32;

template <class Number>
NSString decimalString(Number number) {
  char digits[kLongestNumber];
  const auto [end, error] = std::to_chars(digits, std::end(digits), number);
  return NSString::stringWithUTF8String({digits, end});
}

}  // namespace

FormatArgument::Made FormatArgument::made(std::string_view text) {
  return {NSString::stringWithLossyUTF8String(text)};
}
FormatArgument::Made FormatArgument::made(std::int64_t number) {
  return {decimalString(number)};
}
FormatArgument::Made FormatArgument::made(std::uint64_t number) {
  return {decimalString(number)};
}
FormatArgument::Made FormatArgument::made(double number) {
  // A NaN may have a sign, which means nothing.
  return {std::isnan(number) ? u"nan"_ns : decimalString(number)};
}

void detail::appendFormatted(NSMutableString &string, std::u16string_view format,
                             std::span<const FormatArgument> arguments) {
  if (string.length() == 0) {
    std::size_t most = format.size();
    for (const FormatArgument &argument : arguments) most += argument.units().size();
    string.reserve(most);
  }
  for (std::size_t percent = 0; (percent = format.find(u'%')) != format.npos;) {
    const std::u16string_view directive = format.substr(percent, 2);
    string.append(format.substr(0, percent));
    format.remove_prefix(percent + directive.size());
    const bool isTaken =
        !arguments.empty() && (directive == u"%@" || (directive == u"%d" && arguments.front().isInteger()));
    if (isTaken) {
      string.append(arguments.front().units());
      arguments = arguments.subspan(1);
    } else if (directive == u"%%") {
      string.appendCharacter(u'%');
    } else if (directive != u"%@") {
      string.append(directive);
    }
  }
  string.append(format);
}

NSString stringWithFormat(const NSString &format, std::span<const FormatArgument> arguments) {
  NSMutableString result;
  detail::appendFormatted(result, format.view(), arguments);
  return std::move(result).string();
}

}  // namespace nimbo
