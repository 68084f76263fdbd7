// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/ConfigurationText.hpp"

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Strings/LineIteration.hpp"
#include "Classes/Strings/UnitEditing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

std::vector<NSString> configLines(const NSString &string) {
  const IsPartOfSet isWhiteUnit = isWhite();
  return answerOr(std::vector<NSString>(), [&] {
    std::vector<NSString> result;
    visitLines(string.view(), [&](std::u16string_view line) {
      const NSRange kept = trimmedRange(line, {0, static_cast<std::uint32_t>(line.size())}, isWhiteUnit);
      const std::u16string_view text = line.substr(kept.location, kept.length);
      if (!text.starts_with(u'#')) result.push_back(NSString::stringWithCharacters(text));
    });
    return result;
  });
}

NSString configValueForKey(const NSString &line, const NSString &key) {
  const std::uint32_t length = key.length();
  if (length == 0 || line.length() <= length || !isWhite()(line.characterAtIndex(length)) ||
      fastCaseInsensitiveCompareUnichars(line.characters(), length, key.characters(), length) != 0)
    return NSString();
  const NSRange value = trimmedRange(line.view(), {length, line.length() - length}, isWhite());
  return value.length > 0 ? substringOr(NSString(), line, value) : NSString();
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
