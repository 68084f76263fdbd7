// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/Characters/UnicharSearches.hpp"
#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "Classes/URLs/URLRepair.hpp"
#include "platform/Foundation/URLs/URLScheme.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

/// The target of a link that is a URL as it stands, or nil.
NSURL targetOfPlainLink(const NSString &link, const NSURL &base) {
  const bool isPlain =
      link && isUsualLink(link.view()) && findUnichar(link.characters(), link.length(), u'[') == NSNotFound;
  return isPlain ? NSURL::URLWithString(link, base).absoluteURL() : NSURL();
}

/// Browsers take a link that holds nothing for one to the page.
bool isBlank(const NSString &link) {
  return link && std::ranges::all_of(link.view(), [](unichar c) { return c <= u' '; });
}

/// Whether there is a scheme, without making a string of it.
bool isAbsolute(const NSURL &url) {
  return !schemeOfStringURL(url.absoluteString().view()).empty();
}

}  // namespace

NSURL URLRelativeTo(const NSString &link, const NSURL &base, Flag trimAnchor, NSStringEncoding encoding,
                    Flag standardize) {
  NSURL target = targetOfPlainLink(link, base);
  if (!target) {
    const NSString clean = isBlank(link) ? NSString::string() : stringURLWrittenBy(cleanURLUnits, link);
    const NSString repaired = repairedStringURL(clean, base.scheme().view());
    const NSString string = ASCIIStringURL(repaired, encoding);
    if (isForeignLink(repaired) || hasPrefixNoCase(repaired, u"feed:http:"_ns))
      return NSURL::URLWithString(string);
    target = NSURL::URLWithString(string, base).absoluteURL();
  }
  if (!isAbsolute(target)) return NSURL();
  if (trimAnchor) target = URLWithoutAnchor(target);
  return standardize ? target.standardizedURL() : target;
}

NSURL URLRelativeTo(const NSURL &url, const NSString &link, Flag trimAnchor, NSStringEncoding encoding,
                    Flag standardize) {
  return URLRelativeTo(link, url, trimAnchor, encoding, standardize);
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
