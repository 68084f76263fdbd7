// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Components.hpp"

#include <algorithm>

#include "Classes/URLs/URLQuery.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

/// Whether the host is an IPv6 address, or looks like one of IPv4.
bool isAddress(std::u16string_view host) {
  const auto isDigitOrDot = [](unichar c) { return isASCIIDigit(c) || c == u'.'; };
  return host.find(u':') != std::u16string_view::npos ||
         (std::ranges::all_of(host, isDigitOrDot) && std::ranges::count(host, u'.') == 3);
}

/// The path without parameters, which files have none of.
NSString pathToResource(const NSURL &url) {
  return url.isFileURL() ? fullPath(url) : url.path();
}

}  // namespace

std::vector<NSString> hostComponents(const NSURL &url) {
  const NSString host = url.host();
  std::u16string_view rest = host.view();
  if (isAddress(rest)) return {host};
  std::vector<NSString> labels;
  while (!rest.empty()) {
    const std::u16string_view label = rest.substr(0, rest.find(u'.'));
    if (!label.empty()) labels.push_back(NSString::stringWithCharacters(label));
    rest.remove_prefix(std::min(label.size() + 1, rest.size()));
  }
  return labels;
}

std::vector<NSString> invertedHostComponents(const NSURL &url) {
  std::vector<NSString> labels = hostComponents(url);
  std::ranges::reverse(labels);
  return labels;
}

NSString invertedHost(const NSURL &url) {
  return url.host() ? stringByJoining(invertedHostComponents(url), u".") : NSString();
}

NSString baseDirectory(const NSURL &url) {
  if (!url || url.isOpaque()) return NSString();
  const NSString path = url.escapedPath();
  std::u16string_view units = path.view();
  if (!url.isFileURL()) units = units.substr(0, units.find(u';'));
  if (units.empty()) return u"/"_ns;
  return NSString::stringWithCharacters(units.substr(0, units.rfind(u'/') + 1));
}

NSString standardizedBaseDirectory(const NSURL &url) {
  return baseDirectory(url.standardizedURL());
}

bool isBaseDirectory(const NSURL &url) {
  if (!url || url.isOpaque() || url.query() || url.fragment()) return false;
  const NSString path = url.escapedPath();
  return path.length() == 0 || (path.view().ends_with(u'/') &&
                                (url.isFileURL() || path.view().find(u';') == std::u16string_view::npos));
}

NSString pathWithParamsAndQuery(const NSURL &url) {
  const NSString whole = pathWithParamsAndQueryAndFragment(url);
  const std::size_t anchor = whole.view().find(u'#');
  return anchor == std::u16string_view::npos ? whole
                                             : NSString::stringWithCharacters(whole.view().substr(0, anchor));
}

NSString pathWithParamsAndQueryAndFragment(const NSURL &url) {
  if (!url || url.isOpaque()) return NSString();
  const NSString whole = url.absoluteString();
  const std::size_t pathEnd = std::min(whole.view().find_first_of(u"?#"), whole.view().size());
  return NSString::stringWithCharacters(whole.view().substr(pathEnd - url.escapedPath().length()));
}

NSString fullPath(const NSURL &url) {
  return url.pathWithParameters();
}

NSString pathExtension(const NSURL &url) {
  return pathExtension(pathToResource(url));
}

NSString lastPathComponent(const NSURL &url) {
  return lastPathComponent(pathToResource(url));
}

NSDictionary queryParams(const NSURL &url) {
  return queryParams(url.query(), 0);
}

std::uint32_t numberOfQueryParams(const NSURL &url) {
  return numberOfQueryParams(url.query(), 0);
}

NSString queryParamNamed(const NSURL &url, const NSString &name) {
  return queryParamNamed(url.query(), name, 0);
}

bool containsQueryParamNamed(const NSURL &url, const NSString &name) {
  return containsQueryParamNamed(url.query(), name, 0);
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
