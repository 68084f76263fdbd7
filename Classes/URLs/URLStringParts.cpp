// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLStringParts.hpp"

#include <algorithm>

#include "Classes/Characters/UnicharKernels.hpp"

namespace nimbo {

namespace {

constexpr unichar smallASCII(unichar c) {
  return c >= u'A' && c <= u'Z' ? static_cast<unichar>(c + 0x20) : c;
}

constexpr bool isLetter(unichar c) {
  return smallASCII(c) >= u'a' && smallASCII(c) <= u'z';
}

constexpr bool isPartOfScheme(unichar c) {
  return isLetter(c) || (c >= u'0' && c <= u'9') || c == u'+' || c == u'-' || c == u'.';
}

bool isWebScheme(std::u16string_view scheme) {
  return isOneOfNames(scheme, {u"http", u"https", u"ftp", u"ftps", u"sftp", u"feed", u"file"});
}

}  // namespace

bool isNamed(std::u16string_view units, std::u16string_view name) {
  return std::ranges::equal(units, name, {}, smallASCII);
}

bool isOneOfNames(std::u16string_view units, std::initializer_list<std::u16string_view> names) {
  return std::ranges::any_of(names, [&](std::u16string_view name) { return isNamed(units, name); });
}

std::uint32_t lengthOfScheme(std::u16string_view url) {
  if (url.empty() || !isLetter(url[0])) return 0;
  const auto end = std::ranges::find_if_not(url, isPartOfScheme);
  return end != url.end() && *end == u':' ? static_cast<std::uint32_t>(end - url.begin()) : 0;
}

bool isTextScheme(std::u16string_view scheme) {
  return isOneOfNames(scheme, {u"javascript", u"applescript", u"data"});
}

URLStringParts partsOfURLString(std::u16string_view url) {
  URLStringParts parts;
  parts.schemeLength = lengthOfScheme(url);
  const std::u16string_view scheme = url.substr(0, parts.schemeLength);
  parts.isHierarchical = scheme.empty() || isWebScheme(scheme);
  parts.isText = isTextScheme(scheme);
  const auto lengthBefore = [](std::u16string_view units, unichar c) {
    return static_cast<std::uint32_t>(
        detail::findOneOfChoice(units.data(), units.size(), detail::UnicharChoice::only(c)));
  };
  parts.fragmentStart = lengthBefore(url, u'#');
  url = url.substr(0, parts.fragmentStart);
  parts.queryStart = lengthBefore(url, u'?');
  url = url.substr(0, parts.queryStart);

  const auto isSlash = [&](unichar c) { return c == u'/' || (c == u'\\' && parts.isHierarchical); };
  parts.authorityStart = parts.schemeLength == 0 ? 0 : parts.schemeLength + 1;
  const std::u16string_view rest = url.substr(parts.authorityStart);
  if (rest.size() >= 2 && isSlash(rest[0]) && isSlash(rest[1])) {
    parts.authorityStart += 2;
    const auto end = std::find_if(rest.begin() + 2, rest.end(), isSlash);
    parts.pathStart = parts.authorityStart + static_cast<std::uint32_t>(end - rest.begin() - 2);
  } else {
    parts.pathStart = parts.authorityStart;
  }
  return parts;
}

}  // namespace nimbo
