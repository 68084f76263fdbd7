// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Replacing.hpp"

#include <algorithm>
#include <utility>

#include "Classes/Strings/UnitReplacing.hpp"

namespace nimbo {
inline namespace NSMutableStringNimboExtensions {

namespace {

NSString stringWithFormat(const NSString &format, std::initializer_list<NSString> arguments) {
  NSMutableString result;
  const std::u16string_view units = format.view();
  auto argument = arguments.begin();
  for (std::size_t i = 0; i < units.size(); ++i) {
    const std::u16string_view directive = units.substr(i, 2);
    if (directive == u"%@") {
      if (argument != arguments.end()) result.appendString(*argument++);
      ++i;
    } else {
      result.appendCharacter(units[i]);
      if (directive == u"%%") ++i;
    }
  }
  return std::move(result).string();
}

}  // namespace

void replaceString(NSMutableString &string, const NSString &replaced, const NSString &withString,
                   Flag caseSensitive) {
  NSMutableString result;
  if (replaceOccurrences(string.view(), replaced, withString, caseSensitive, result))
    string = std::move(result);
}

void replaceStringWithFormat(NSMutableString &string, const NSString &replaced, const NSString &format,
                             std::initializer_list<NSString> arguments) {
  if (format) replaceString(string, replaced, stringWithFormat(format, arguments));
}

void replaceCharacter(NSMutableString &string, unichar character, unichar withCharacter, Flag caseSensitive) {
  unichar *const units = string.mutableCharacters();
  std::replace_if(units, units + string.length(), IsReplaced(character, withCharacter, caseSensitive),
                  withCharacter);
}

}  // namespace NSMutableStringNimboExtensions
}  // namespace nimbo
