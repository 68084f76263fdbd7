// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/URLStringParts.hpp"

#include <algorithm>

#include "Classes/Characters/UnicharKernels.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"

namespace nimbo {

namespace {

bool isWebScheme(std::u16string_view scheme) {
  return isFTPScheme(scheme) || equalsOneOfASCIINoCase(scheme, {"http", "https", "feed", "file"});
}

}  // namespace

bool isTextScheme(std::u16string_view scheme) {
  return equalsOneOfASCIINoCase(scheme, {"javascript", "applescript", "data"});
}

bool isSlashedScheme(std::u16string_view scheme) {
  return equalsOneOfASCIINoCase(scheme, {"http", "https", "ftp"});
}

bool isFTPScheme(std::u16string_view scheme) {
  return equalsOneOfASCIINoCase(scheme, {"ftp", "ftps", "sftp"});
}

URLStringParts partsOfURLString(std::u16string_view url) {
  URLStringParts parts;
  const std::u16string_view scheme = schemeOfStringURL(url);
  parts.schemeLength = static_cast<std::uint32_t>(scheme.size());
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
