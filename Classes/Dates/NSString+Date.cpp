// SPDX-License-Identifier: Apache-2.0
#include "Classes/Dates/NSString+Date.hpp"

#include <algorithm>
#include <exception>
#include <string_view>

#include "Classes/Strings/NSString+NSStringNimboExtensions/Finding.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Replacing.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions/Trimming.hpp"
#include "platform/Foundation/NSCalendarDate.hpp"
#include "platform/Foundation/NSDateNaturalLanguage.hpp"
#include "platform/Foundation/NSLog.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
namespace {

constexpr std::u16string_view kMailForm = u"%a, %d %b %Y %H:%M:%S %Z";
constexpr std::u16string_view kUsenetForm = u"%A, %d-%b-%y %H:%M:%S %Z";
constexpr std::u16string_view kTimeStampForm = u"%a %b %d %H:%M:%S %Y";

bool endsWithDigit(const NSString &text) {
  return isASCIIDigit(text.view().back());
}

NSString withEnglishMonths(NSString text) {
  // English names of days and months have none of these letters.
  const auto isForeign = [](unichar c) { return c == u'z' || c == u'k'; };
  if (std::ranges::none_of(text.view(), isForeign) && text.view().find(u"Mai") == text.view().npos) return text;
  text = stringByReplacingString(text, u"Mrz"_ns, u"Mar"_ns);
  text = stringByReplacingString(text, u"Mai"_ns, u"May"_ns);
  text = stringByReplacingString(text, u"Okt"_ns, u"Oct"_ns);
  return stringByReplacingString(text, u"Dez"_ns, u"Dec"_ns);
}

std::optional<NSDate> dateInNaturalLanguage(NSString text) {
  if (countCharacter(text, u'-') == 2) text = stringByReplacingCharacter(text, u'-', u'/');
  // A month alone is no date to the parser; its first day is.
  if (!endsWithDigit(text)) text = stringByConcatenating(text, u" 1 1");
  return dateWithNaturalLanguageString(text);
}

std::optional<NSDate> dateWithMonthName(const NSString &text) {
  if (const auto found = dateWithCalendarFormat(text, kMailForm)) return found;
  if (countCharacter(text, u'-') == 2) return dateWithCalendarFormat(text, kUsenetForm);
  if (countCharacter(text, u'/') == 2) return dateWithCalendarFormat(text, u"%d/%m/%Y %H:%M:%S %Z");
  return dateWithCalendarFormat(text, kTimeStampForm);
}

/// The moment that a text names which is neither empty nor has white space at its ends.
std::optional<NSDate> dateOfTrimmed(NSString text) {
  const std::uint32_t fullStops = countCharacter(text, u'.');
  const std::uint32_t colons = countCharacter(text, u':');
  if (fullStops == 2) {
    switch (text.length()) {
      case 8:
        return dateWithCalendarFormat(text, u"%d.%m.%y");
      case 10:
        return dateWithCalendarFormat(text, u"%d.%m.%Y");
      case 19:
        return colons == 2 ? dateWithCalendarFormat(text, u"%d.%m.%Y %H:%M:%S") : dateInNaturalLanguage(text);
      default:
        break;
    }
  }
  std::optional<NSDate> found;
  if (colons == 2) {
    text = withEnglishMonths(text);
    found = dateWithMonthName(text);
  } else if (fullStops <= 1 && colons >= 3 && countCharacter(text, u'-') == 2) {
    found = dateWithCalendarFormat(text, u"%Y-%m-%dT%H:%M:%S");
  }
  return found ? found : dateInNaturalLanguage(text);
}

}  // namespace

inline namespace Date {

std::optional<NSDate> date(const NSString &string) {
  const NSString text =
      stringByTrimmingWhiteSpaces(string.substringWithRange({0, findOneOf(string, u";[]{}()"_ns)}));
  if (text.length() == 0) return std::nullopt;
  std::optional<NSDate> found;
  try {
    found = dateOfTrimmed(text);
  } catch (const std::exception &) {
  }
  if (!found) NSLog(u"Unknown date: %@", string);
  return found;
}

std::optional<NSDate> dateFromHTTPHeaderValue(const NSString &string) {
  for (const std::u16string_view form : {kMailForm, kUsenetForm, kTimeStampForm})
    if (const auto found = dateWithCalendarFormat(string, form)) return found;
  return std::nullopt;
}

}  // namespace Date
}  // namespace nimbo
