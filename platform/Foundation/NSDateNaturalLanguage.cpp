// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSDateNaturalLanguage.hpp"

#include <unicode/uchar.h>

#include <string_view>

#include "platform/Foundation/Calendars/DatePhrase.hpp"
#include "platform/Foundation/Calendars/ISODate.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {
namespace {

constexpr std::u16string_view kFilling = u" 1 1";

std::u16string_view withoutSpaceAround(std::u16string_view text) {
  return trimmed(text, [](unichar c) { return u_isUWhiteSpace(c) != 0; });
}

}  // namespace

std::optional<NSDate> dateWithNaturalLanguageString(const NSString &string, const NSDate &now) {
  if (string.length() > kLongestNaturalDate) return std::nullopt;
  std::u16string_view text = withoutSpaceAround(string.view());
  if (text.ends_with(kFilling)) text = withoutSpaceAround(text.substr(0, text.size() - kFilling.size()));
  if (const auto found = detail::momentOfISODate(text)) return found;
  const auto fields = detail::readDatePhrase(text);
  return fields ? detail::momentOf(*fields, now) : std::nullopt;
}

}  // namespace nimbo
