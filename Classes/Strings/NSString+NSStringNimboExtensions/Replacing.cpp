// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Replacing.hpp"

#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Strings/UnitEditing.hpp"
#include "Classes/Strings/UnitReplacing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

NSString stringByReplacingString(const NSString &string, const NSString &replaced, const NSString &withString,
                                 Flag caseSensitive) {
  return answerOr(string, [&] {
    NSMutableString result;
    return replaceOccurrences(string.view(), replaced, withString, caseSensitive, result)
               ? std::move(result).string()
               : string;
  });
}

NSString stringByReplacingCharacter(const NSString &string, unichar character, unichar withCharacter,
                                    Flag caseSensitive) {
  const IsReplaced isReplaced(character, withCharacter, caseSensitive);
  return stringByMappingUnits(string, [&](unichar c) { return isReplaced(c) ? withCharacter : c; });
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
