// SPDX-License-Identifier: Apache-2.0
#include "Classes/NSString+HtmlExtensions+URLs.hpp"

#include <array>
#include <string_view>
#include <utility>

#include "Classes/URLNormalizing.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {
inline namespace HtmlExtensions {

namespace {

/// Up to this length the work is done on the stack.
constexpr std::uint32_t kStackLength = 256;

}  // namespace

NSString normalizedStringURL(const NSString &string, bool trimAnchor) {
  const unichar *const units = string.characters();
  const std::uint32_t length = string.length();
  if (length > kMaxNormalizedURLLength) return {};
  if (isPlainURL(units, length, trimAnchor)) return string;
  const auto result = [&](std::u16string_view url) {
    if (url.empty()) return NSString();
    return url == string.view() ? string : NSString::stringWithCharacters(url);
  };
  if (length <= kStackLength) {
    std::array<unichar, kMaxURLGrowth * kStackLength> out;
    return result({out.data(), normalizeURLUnits(units, length, trimAnchor, out.data())});
  }
  NSMutableString out;
  out.setLength(kMaxURLGrowth * length);
  return result({out.characters(), normalizeURLUnits(units, length, trimAnchor, out.mutableCharacters())});
}

NSString normalizedStringURL(const NSString &string) {
  return normalizedStringURL(string, false);
}

NSString normalizedRelLink(const NSString &string) {
  const NSString url = normalizedStringURL(string);
  if (!url || url.view().front() == u'.' || url.view().front() == u'/' ||
      url.view().find(u"://") != std::u16string_view::npos) {
    return url;
  }
  NSMutableString link;
  link.reserve(url.length() + 1);
  link.appendCharacter(u'/');
  link.appendString(url);
  return std::move(link).string();
}

}  // namespace HtmlExtensions
}  // namespace nimbo
