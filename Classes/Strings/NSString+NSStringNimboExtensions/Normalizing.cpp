// SPDX-License-Identifier: Apache-2.0
#include "Classes/Strings/NSString+NSStringNimboExtensions/Normalizing.hpp"

#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/Strings/NSMutableString+NSMutableStringNimboExtensions/Normalizing.hpp"

namespace nimbo {
inline namespace NSStringNimboExtensions {

namespace {

template <class Edit>
NSString editedCopy(const NSString &string, Edit edit) {
  if (string.length() == 0) return string;
  return answerOr(string, [&] {
    NSMutableString copy(string);
    edit(copy);
    return std::move(copy).string();
  });
}

}  // namespace

NSString normalizedString(const NSString &string, CFStringNormalizationForm form) {
  return editedCopy(string, [form](NSMutableString &copy) { normalizeString(copy, form); });
}

NSString normalizedUppercaseString(const NSString &string) {
  return editedCopy(string, normalizeUppercaseString);
}

NSString normalizedLowercaseString(const NSString &string) {
  return editedCopy(string, normalizeLowercaseString);
}

NSString fixedAndNormalizedString(const NSString &string) {
  return editedCopy(string, fixAndNormalizeString);
}

}  // namespace NSStringNimboExtensions
}  // namespace nimbo
