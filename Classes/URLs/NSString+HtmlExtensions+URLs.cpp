// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"

#include <string_view>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

template <bool trimAnchor, bool preservingMeaning>
std::uint32_t normalizeUnits(const unichar *units, std::uint32_t length, unichar *out) {
  return normalizeURLUnits(units, length, trimAnchor, out, preservingMeaning);
}

}  // namespace

NSString normalizedStringURL(const NSString &string, Flag trimAnchor, Flag preservingMeaning) {
  constexpr URLUnitsWriter kWriters[2][2] = {{normalizeUnits<false, false>, normalizeUnits<false, true>},
                                             {normalizeUnits<true, false>, normalizeUnits<true, true>}};
  const URLUnitsWriter write = kWriters[trimAnchor][preservingMeaning];
  return isPlainURL(string.characters(), string.length(), trimAnchor) ? string
                                                                      : stringURLWrittenBy(write, string);
}

NSString normalizedStringURL(const NSString &string) {
  return normalizedStringURL(string, false);
}

NSString normalizedRelLink(const NSString &string, Flag preservingMeaning) {
  NSString url = normalizedStringURL(string, false, preservingMeaning);
  if (!url || url.view().front() == u'.' || url.view().front() == u'/' ||
      url.view().find(u"://") != std::u16string_view::npos) {
    return url;
  }
  return answerOr(NSString(), [&] { return stringByConcatenating(u'/', url); });
}

NSString normalizedRelLink(const NSString &string) {
  return normalizedRelLink(string, false);
}

}  // namespace HtmlExtensions
}  // namespace nimbo
