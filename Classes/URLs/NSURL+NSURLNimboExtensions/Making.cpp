// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"

#include <algorithm>
#include <string>

#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "Classes/URLs/URLRepair.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

constexpr std::string_view kPlainInUserInfo = "-._~";
constexpr std::string_view kPlainInComponent = "-._~!$&'()*+,=:@";

NSURL URLOfUnits(std::u16string_view units) {
  return NSURL::URLWithString(NSString::stringWithCharacters(units));
}

/// Any text as part of a URL: a "%" is a character of its own.
std::u16string escaped(const NSString &text, std::string_view plain) {
  const std::string bytes = bytesByAddingPercentEscapes(text.UTF8String(), plain);
  return {bytes.begin(), bytes.end()};
}

/// What stands before the path.
std::u16string front(const NSURL &url) {
  const NSString whole = url.absoluteString();
  const std::size_t pathEnd = std::min(whole.view().find_first_of(u"?#"), whole.view().size());
  return std::u16string(whole.view().substr(0, pathEnd - url.escapedPath().length()));
}

/// The path as it is written, without parameters.
std::u16string pathWithoutParameters(const NSURL &url) {
  const NSString path = url.escapedPath();
  return std::u16string(path.view().substr(0, path.view().find(u';')));
}

}  // namespace

NSURL URLWithStringOrPath(const NSString &string) {
  const bool isPath = firstCharacter(string) == u'/' || firstCharacter(string) == u'~';
  return isPath ? NSURL::fileURLWithPath(stringByExpandingTildeInPath(string)) : NSURL::URLWithString(string);
}

NSURL URLWithNormalizedStringURL(const NSString &string, NSStringEncoding encoding) {
  const NSString clean = stringURLWrittenBy(cleanURLUnits, string);
  if (!clean) return NSURL();
  NSString repaired = repairedStringURL(clean);
  if (hasPrefixNoCase(repaired, u"www."_ns))
    repaired = NSString::stringWithCharacters(u"http://" + std::u16string(repaired.view()));
  else if (hasPrefixNoCase(repaired, u"ftp."_ns))
    repaired = NSString::stringWithCharacters(u"ftp://" + std::u16string(repaired.view()));
  return NSURL::URLWithString(ASCIIStringURL(repaired, encoding));
}

NSURL URLWithFormat(const NSString &format, std::span<const NSString> arguments) {
  if (!format) return NSURL();
  const std::u16string_view units = format.view();
  std::u16string result;
  for (std::size_t i = 0, next = 0; i < units.size(); ++i) {
    const unichar following = units[i] == u'%' && i + 1 < units.size() ? units[i + 1] : u'\0';
    if (following == u'@' && next < arguments.size()) result.append(arguments[next++].view());
    if (following == u'%') result.push_back(u'%');
    if (following == u'@' || following == u'%')
      ++i;
    else
      result.push_back(units[i]);
  }
  return URLOfUnits(result);
}

NSURL URLWithFormat(const NSString &format, std::initializer_list<NSString> arguments) {
  return URLWithFormat(format, std::span(arguments.begin(), arguments.size()));
}

NSURL URLWithAnchor(const NSURL &url, const NSString &anchor) {
  if (!url) return NSURL();
  const NSString whole = url.absoluteString();
  std::u16string result(whole.view().substr(0, whole.view().find(u'#')));
  std::u16string_view name = anchor.view();
  if (name.starts_with(u'#')) name.remove_prefix(1);
  if (name.empty()) return result.size() == whole.length() ? url : URLOfUnits(result);
  const NSString part = NSString::stringWithCharacters(u"#" + std::u16string(name));
  return URLOfUnits(result.append(ASCIIStringURL(part, NSUTF8StringEncoding).view()));
}

NSURL URLWithoutAnchor(const NSURL &url) {
  return URLWithAnchor(url, NSString());
}

NSURL URLWithScheme(const NSURL &url, const NSString &scheme) {
  if (!url || scheme.length() == 0) return NSURL();
  std::u16string result(scheme.view());
  result.append(u":").append(url.resourceSpecifier().view());
  const NSURL changed = URLOfUnits(result);
  return changed.scheme() == scheme ? changed : NSURL();
}

NSURL URLForUser(const NSURL &url, const NSString &user, const NSString &password) {
  if (!url.host()) return NSURL();
  const NSString whole = url.absoluteString();
  std::size_t authority = whole.view().find(u"//") + 2;
  std::u16string result(whole.view().substr(0, authority));
  const std::size_t end = std::min(whole.view().find_first_of(u"/?#", authority), whole.view().size());
  const std::size_t at = whole.view().substr(0, end).rfind(u'@');
  if (at != std::u16string_view::npos) authority = at + 1;
  if (user) {
    result.append(escaped(user, kPlainInUserInfo));
    if (password) result.append(u":").append(escaped(password, kPlainInUserInfo));
    result.push_back(u'@');
  }
  return URLOfUnits(result.append(whole.view().substr(authority)));
}

NSURL URLByAppendingPathComponent(const NSURL &url, const NSString &component) {
  if (!url || !component || url.isOpaque()) return NSURL();
  std::u16string path = pathWithoutParameters(url);
  if (!path.ends_with(u'/') && (!path.empty() || url.host())) path.push_back(u'/');
  std::u16string_view name = component.view();
  while (name.starts_with(u'/')) name.remove_prefix(1);
  return URLOfUnits(front(url) + path +
                    escaped(NSString::stringWithCharacters(name), std::string(kPlainInComponent) + "/"));
}

NSURL URLByDeletingLastPathComponent(const NSURL &url) {
  if (!url || url.isOpaque()) return NSURL();
  std::u16string path = pathWithoutParameters(url);
  if (path.size() > 1 && path.ends_with(u'/')) path.pop_back();
  const std::size_t slash = path.rfind(u'/');
  path.resize(slash == std::u16string::npos ? 0 : slash + 1);
  return URLOfUnits(front(url) + path);
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
