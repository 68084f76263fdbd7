// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+URLUtilities/Escaping.hpp"

#include <utility>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/URLs/URLEscapes.hpp"
#include "Classes/URLs/URLEscaping.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
inline namespace URLUtilities {

namespace {

NSString stringByReplacingEscapes(const NSString &string, bool standard) {
  if (string.length() < kEscapeLength) return string;
  return answerOr(string, [&] {
    NSMutableString unescaped(string);
    unescaped.setLength(
        convertPercentEscapesOfURL(unescaped.mutableCharacters(), unescaped.length(), standard));
    return std::move(unescaped).string();
  });
}

}  // namespace

NSString stringByReplacingASCIIPercentEscapesOfURL(const NSString &string) {
  return stringByReplacingEscapes(string, false);
}

NSString stringByReplacingStandardPercentEscapesOfURL(const NSString &string) {
  return stringByReplacingEscapes(string, true);
}

NSString stringByAddingASCIIPercentEscapesToURL(const NSString &string) {
  return stringByAddingPercentEscapesToURL(string, false);
}

NSString stringByAddingStandardPercentEscapesToURL(const NSString &string) {
  return stringByAddingPercentEscapesToURL(string, true);
}

}  // namespace URLUtilities
}  // namespace nimbo
