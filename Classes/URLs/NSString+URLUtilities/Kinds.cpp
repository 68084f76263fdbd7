// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSString+URLUtilities/Kinds.hpp"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "Classes/Characters/CharacterSetRep.hpp"
#include "Classes/Characters/FastComparisons.hpp"
#include "Classes/URLs/URLStringParts.hpp"

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

bool isWhite(unichar c) {
  return whiteCharacterSetRep()->contains(c);
}

std::u16string_view trimmed(std::u16string_view units) {
  while (!units.empty() && isWhite(units.front())) units.remove_prefix(1);
  while (!units.empty() && isWhite(units.back())) units.remove_suffix(1);
  return units;
}

bool hasScheme(std::u16string_view url, std::u16string_view scheme) {
  return isNamed(url.substr(0, lengthOfScheme(url)), scheme);
}

bool hasScheme(const NSString &string, std::u16string_view scheme) {
  return hasScheme(trimmed(string.view()), scheme);
}

std::u16string_view lastComponentOfPath(std::u16string_view url) {
  const URLStringParts parts = partsOfURLString(url);
  if (!parts.isHierarchical) return {};
  std::u16string_view path = url.substr(parts.pathStart, parts.queryStart - parts.pathStart);
  while (!path.empty() && path.back() == u'/') path.remove_suffix(1);
  return path.substr(path.rfind(u'/') + 1);
}

/// Whether the last `suffix.size()` units are these.
bool endsWith(std::u16string_view units, std::u16string_view suffix) {
  return units.size() >= suffix.size() && isNamed(units.substr(units.size() - suffix.size()), suffix);
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
  return hasScheme(string, u"file");
}

bool isMailStringURL(const NSString &string) {
  return hasScheme(string, u"mailto");
}

bool isJavaScriptStringURL(const NSString &string) {
  return hasScheme(string, u"javascript");
}

bool isAppleScriptStringURL(const NSString &string) {
  return hasScheme(string, u"applescript");
}

bool isFeedStringURL(const NSString &string) {
  const std::u16string_view url = trimmed(string.view());
  if (hasScheme(url, u"feed")) return true;
  const std::u16string_view component = lastComponentOfPath(url);
  if (isNamed(component, u"index.xml")) return true;
  const std::size_t dot = std::min(component.rfind(u'.'), component.size());
  return isOneOfNames(component.substr(0, dot), {u"feed", u"feeds", u"rss", u"rss2", u"atom"}) ||
         isOneOfNames(component.substr(dot), {u".rss", u".rdf", u".atom"});
}

bool isMarkupMIMEType(const NSString &string) {
  const std::u16string_view type = trimmed(string.view().substr(0, string.view().find(u';')));
  if (isOneOfNames(type, {u"text/html", u"text/xml", u"text/sgml", u"text/x-opml", u"text/vnd.wap.wml",
                          u"application/xml", u"application/sgml"})) {
    return true;
  }
  return endsWith(type, u"+xml") && isOneOfNames(type.substr(0, type.find(u'/')), {u"text", u"application"});
}

}  // namespace URLUtilities
}  // namespace nimbo
