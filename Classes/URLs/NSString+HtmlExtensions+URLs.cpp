// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+HtmlExtensions+URLs.hpp"

#include <string_view>

#include "Classes/Characters/AnswerOr.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "platform/Foundation/NSStringJoining.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

template <bool trimAnchor>
std::uint32_t normalizeUnits(const unichar *units, std::uint32_t length, unichar *out) {
  return normalizeURLUnits(units, length, trimAnchor, out);
}

}  // namespace

NSString normalizedStringURL(const NSString &string, Flag trimAnchor) {
  const URLUnitsWriter write = trimAnchor ? normalizeUnits<true> : normalizeUnits<false>;
  return isPlainURL(string.characters(), string.length(), trimAnchor) ? string
                                                                      : stringURLWrittenBy(write, string);
}

NSString normalizedStringURL(const NSString &string) {
  return normalizedStringURL(string, false);
}

NSString normalizedRelLink(const NSString &string) {
  NSString url = normalizedStringURL(string);
  if (!url || url.view().front() == u'.' || url.view().front() == u'/' ||
      url.view().find(u"://") != std::u16string_view::npos) {
    return url;
  }
  return answerOr(NSString(), [&] { return stringByConcatenating(u'/', url); });
}

}  // namespace HtmlExtensions
}  // namespace nimbo
