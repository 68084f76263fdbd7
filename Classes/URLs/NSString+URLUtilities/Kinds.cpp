// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/Characters/UnitPredicates.hpp"
#include "Classes/Paths/FileTypes.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {
inline namespace URLUtilities {

namespace {

bool hasPrefix(const NSString &string, std::initializer_list<std::string_view> prefixes) {
  return std::ranges::any_of(prefixes, [&](std::string_view prefix) {
    const auto length = static_cast<std::uint32_t>(prefix.size());
    return string.length() >= length &&
           fastCaseInsensitiveCompareUnicharsWithChars(string.characters(), length, prefix.data(), length) == 0;
  });
}

bool hasScheme(const NSString &string, std::string_view scheme) {
  return equalsASCIINoCase(schemeOfStringURL(trimmed(string.view(), isWhite())), scheme);
}

std::u16string_view lastComponentOfPath(std::u16string_view url) {
  const URLStringParts parts = partsOfURLString(url);
  if (!parts.isHierarchical) return {};
  std::u16string_view path = url.substr(parts.pathStart, parts.queryStart - parts.pathStart);
  while (path.ends_with(u'/')) path.remove_suffix(1);
  return path.substr(path.rfind(u'/') + 1);
}

}  // namespace

bool isHTTPStringURL(const NSString &string) {
  return hasPrefix(string, {"http://", "https://"});
}

bool isFTPStringURL(const NSString &string) {
  return hasPrefix(string, {"ftp://", "ftps://", "sftp://"});
}

bool isNewsStringURL(const NSString &string) {
  return hasPrefix(string, {"news://", "nntp://"});
}

bool isFileStringURL(const NSString &string) {
  return hasScheme(string, "file");
}

bool isMailStringURL(const NSString &string) {
  return hasScheme(string, "mailto");
}

bool isJavaScriptStringURL(const NSString &string) {
  return hasScheme(string, "javascript");
}

bool isAppleScriptStringURL(const NSString &string) {
  return hasScheme(string, "applescript");
}

bool isFeedStringURL(const NSString &string) {
  if (hasScheme(string, "feed")) return true;
  const std::u16string_view component = lastComponentOfPath(trimmed(string.view(), isWhite()));
  if (equalsASCIINoCase(component, "index.xml")) return true;
  const std::size_t dot = std::min(component.rfind(u'.'), component.size());
  return equalsOneOfASCIINoCase(component.substr(0, dot), {"feed", "feeds", "rss", "rss2", "atom"}) ||
         (dot < component.size() && intersects(kindsOfExtension(component.substr(dot + 1)), FileKinds::feed));
}

bool isMarkupMIMEType(const NSString &string) {
  const std::u16string_view type = trimmed(string.view().substr(0, string.view().find(u';')), isWhite());
  if (equalsOneOfASCIINoCase(type, {"text/html", "text/xml", "text/sgml", "text/x-opml", "text/vnd.wap.wml",
                                    "application/xml", "application/sgml"})) {
    return true;
  }
  return endsWithASCIINoCase(type, "+xml") &&
         equalsOneOfASCIINoCase(type.substr(0, type.find(u'/')), {"text", "application"});
}

}  // namespace URLUtilities
}  // namespace nimbo
