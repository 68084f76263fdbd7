// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Relative.hpp"

#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/URLs/URLNormalizing.hpp"
#include "Classes/URLs/URLRepair.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

/// Whether the path may hold "." or "..".
bool mayHoldDots(const NSURL &url) {
  const NSString path = url.escapedPath();
  return path.view().find(u"./") != std::u16string_view::npos ||
         path.view().find(u"/.") != std::u16string_view::npos;
}

}  // namespace

NSURL URLRelativeTo(const NSString &link, const NSURL &base, Flag trimAnchor, NSStringEncoding encoding,
                    Flag standardize) {
  const NSString clean = stringURLWrittenBy(cleanURLUnits, link);
  if (!clean) return NSURL();
  const NSString repaired = repairedStringURL(clean);
  const NSString string = ASCIIStringURL(repaired, encoding);
  if (isForeignLink(repaired) || hasPrefixNoCase(repaired, u"feed:http:"_ns))
    return NSURL::URLWithString(string);
  NSURL target = NSURL::URLWithString(string, base).absoluteURL();
  if (!target.scheme()) return NSURL();
  if (trimAnchor) target = URLWithoutAnchor(target);
  return standardize && mayHoldDots(target) ? target.standardizedURL() : target;
}

NSURL URLRelativeTo(const NSURL &url, const NSString &link, Flag trimAnchor, NSStringEncoding encoding,
                    Flag standardize) {
  return URLRelativeTo(link, url, trimAnchor, encoding, standardize);
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
