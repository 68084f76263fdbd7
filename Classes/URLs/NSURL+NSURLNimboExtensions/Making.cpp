// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "Classes/URLs/URLRepair.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/NSStringFormatting.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

constexpr std::string_view kPlainInUserInfo = "-._~";
constexpr std::string_view kPlainInComponents = "-._~!$&'()*+,=:@/";

template <class... Pieces>
NSURL URLOfPieces(const Pieces &...pieces) {
  return NSURL::URLWithString(stringByConcatenating(pieces...));
}

/// Any text as part of a URL: a "%" is a character of its own.
NSString escaped(const NSString &text, std::string_view plain) {
  return NSString::stringWithUTF8String(bytesByAddingPercentEscapes(text.UTF8String(), plain));
}

/// What stands before the path.
NSString front(const NSURL &url) {
  const NSString whole = url.absoluteString();
  const std::size_t pathEnd = std::min(whole.view().find_first_of(u"?#"), whole.view().size());
  return NSString::stringWithCharacters(whole.view().substr(0, pathEnd - url.escapedPath().length()));
}

/// The path as it is written, without parameters, which files have none of.
NSString pathWithoutParameters(const NSURL &url) {
  NSString path = url.escapedPath();
  if (url.isFileURL()) return path;
  return NSString::stringWithCharacters(path.view().substr(0, path.view().find(u';')));
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
    repaired = stringByConcatenating(u"http://", repaired);
  else if (hasPrefixNoCase(repaired, u"ftp."_ns))
    repaired = stringByConcatenating(u"ftp://", repaired);
  return NSURL::URLWithString(ASCIIStringURL(repaired, encoding));
}

NSURL URLWithFormat(const NSString &format, std::span<const NSString> arguments) {
  if (!format) return NSURL();
  std::vector<FormatArgument> views;
  for (const NSString &argument : arguments) views.emplace_back(argument.view());
  return NSURL::URLWithString(stringWithFormat(format, std::span<const FormatArgument>(views)));
}

NSURL URLWithFormat(const NSString &format, std::initializer_list<NSString> arguments) {
  return URLWithFormat(format, std::span(arguments.begin(), arguments.size()));
}

NSURL URLWithAnchor(const NSURL &url, const NSString &anchor) {
  if (!url) return NSURL();
  const NSString whole = url.absoluteString();
  const std::u16string_view plain = whole.view().substr(0, whole.view().find(u'#'));
  std::u16string_view name = anchor.view();
  if (name.starts_with(u'#')) name.remove_prefix(1);
  if (name.empty()) return plain.size() == whole.length() ? url : URLOfPieces(plain);
  return URLOfPieces(plain, ASCIIStringURL(stringByConcatenating(u'#', name), NSUTF8StringEncoding));
}

NSURL URLWithoutAnchor(const NSURL &url) {
  return URLWithAnchor(url, NSString());
}

NSURL URLWithScheme(const NSURL &url, const NSString &scheme) {
  if (!url || scheme.length() == 0) return NSURL();
  const NSURL changed = URLOfPieces(scheme, u':', url.resourceSpecifier());
  return changed.scheme() == scheme ? changed : NSURL();
}

NSURL URLForUser(const NSURL &url, const NSString &user, const NSString &password) {
  if (!url.host()) return NSURL();
  const NSString whole = url.absoluteString();
  const std::size_t authority = whole.view().find(u"//") + 2;
  const std::size_t end = std::min(whole.view().find_first_of(u"/?#", authority), whole.view().size());
  const std::size_t at = whole.view().substr(0, end).rfind(u'@');
  const std::u16string_view before = whole.view().substr(0, authority);
  const std::u16string_view rest = whole.view().substr(at == std::u16string_view::npos ? authority : at + 1);
  if (!user) return URLOfPieces(before, rest);
  const NSString name = escaped(user, kPlainInUserInfo);
  if (!password) return URLOfPieces(before, name, u'@', rest);
  return URLOfPieces(before, name, u':', escaped(password, kPlainInUserInfo), u'@', rest);
}

NSURL URLByAppendingPathComponent(const NSURL &url, const NSString &component) {
  if (!url || !component || url.isOpaque()) return NSURL();
  const NSString path = pathWithoutParameters(url);
  const bool needsSlash = !path.view().ends_with(u'/') && (path.length() > 0 || url.host());
  std::u16string_view name = component.view();
  while (name.starts_with(u'/')) name.remove_prefix(1);
  return URLOfPieces(front(url), path, needsSlash ? u"/" : u"",
                     escaped(NSString::stringWithCharacters(name), kPlainInComponents));
}

NSURL URLByDeletingLastPathComponent(const NSURL &url) {
  if (!url || url.isOpaque()) return NSURL();
  const NSString path = pathWithoutParameters(url);
  std::u16string_view kept = path.view();
  if (kept.size() > 1 && kept.ends_with(u'/')) kept.remove_suffix(1);
  return URLOfPieces(front(url), kept.substr(0, kept.rfind(u'/') + 1));
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
