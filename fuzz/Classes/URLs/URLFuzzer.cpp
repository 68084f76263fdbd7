// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "Classes/URLs/NSURL+NSURLNimboExtensions.hpp"
#include "Classes/URLs/URLRepair.hpp"

namespace {

using nimbo::operator""_ns;
using nimbo::NSString;
using nimbo::NSURL;

void require(bool good) {
  if (!good) std::abort();
}

/// The parts, put together again, are the URL.
void checkParts(const NSURL &url) {
  const NSString whole = url.absoluteString();
  require(NSURL::URLWithString(whole) == url.absoluteURL());
  std::u16string again;
  if (url.scheme()) again.append(url.scheme().view()).append(u":");
  require(std::u16string(whole.view()) == again + std::u16string(url.resourceSpecifier().view()));
  if (!url.isOpaque()) {
    require(whole.view().ends_with(nimbo::pathWithParamsAndQueryAndFragment(url).view()));
    require(url.path() && nimbo::fullPath(url));
  }
  const NSURL standard = url.standardizedURL();
  require(standard && standard.standardizedURL() == standard && standard.host() == url.host());
}

/// All that is made of a URL is one, or nil, and says what it should.
void checkMaking(const NSURL &url, const NSString &other) {
  const NSURL anchored = nimbo::URLWithAnchor(url, other);
  require(!url.scheme() || (anchored && !nimbo::URLWithoutAnchor(anchored).fragment()));
  const NSURL appended = nimbo::URLByAppendingPathComponent(url, other);
  require(!url.host() || (appended && appended.host() == url.host()));
  const NSURL withUser = nimbo::URLForUser(url, other, other);
  require(!url.host() || (withUser && withUser.host() == url.host() && withUser.user() == withUser.password()));
  const NSURL folder = nimbo::URLByDeletingLastPathComponent(url);
  require(!url.host() || (folder && nimbo::isBaseDirectory(folder)));
}

void checkExtensions(const NSURL &url, const NSURL &other, const NSString &name) {
  require(!nimbo::isRemoteWebKitURL(url) || nimbo::WebKitURL(url));
  require(nimbo::isHostEqualTo(url, other) == nimbo::isHostEqualTo(other, url));
  for (std::uint32_t mode = 1; mode < 4; ++mode)
    require(!nimbo::shouldFollowLink(url, mode, 1, other) || nimbo::isHostEqualTo(url, other));
  nimbo::isSearchEngine(url);
  nimbo::isMultimediaType(nimbo::pathExtension(url), true, true, true);
  nimbo::invertedHost(url);
  if (const auto params = nimbo::queryParams(url)) require(params.count() <= nimbo::numberOfQueryParams(url));
  if (nimbo::queryParamNamed(url, name)) require(nimbo::containsQueryParamNamed(url, name));
  nimbo::simplifiedStringURL(url);
  nimbo::absoluteStringWithoutUserAndPassword(url);
  nimbo::fileSystemPathHFSStyle(url);
  nimbo::pathRelativeToDirectory(url, name, true, name);
  const NSString inside = nimbo::invertedPathRelativeToDirectory(url, u"/d"_ns, true, u"html"_ns, 8, 40, false);
  if (inside) require(inside.view().starts_with(u"/d") && inside.view().find(u"/../") == inside.view().npos);
}

}  // namespace

/// The first byte says at how many 256ths of the rest the link ends and the base begins; a byte above 0x7F is a
/// unit of many.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0 || size > 1 << 14) return 0;
  std::u16string units;
  std::transform(data + 1, data + size, std::back_inserter(units), [](std::uint8_t byte) {
    return static_cast<char16_t>(byte < 0x80   ? byte
                                 : byte < 0xf0 ? byte + 0x80
                                               : 0xd000 + (byte - 0xec) * 0x200);
  });
  const std::size_t split = units.size() * data[0] / 256;
  const NSString link = NSString::stringWithCharacters(std::u16string_view(units).substr(0, split));
  const NSString base = NSString::stringWithCharacters(std::u16string_view(units).substr(split));

  const NSURL baseURL = nimbo::URLWithNormalizedStringURL(base, nimbo::NSShiftJISStringEncoding);
  const NSURL plain = NSURL::URLWithString(link);
  const NSURL relative = NSURL::URLWithString(link, baseURL);
  const NSURL resolved = nimbo::URLRelativeTo(link, baseURL, false, nimbo::NSISOLatin1StringEncoding, true);
  require(!resolved || resolved.scheme());
  for (const NSURL &url : {baseURL, plain, relative, resolved}) {
    if (!url) continue;
    checkParts(url);
    checkMaking(url, link);
    checkExtensions(url, baseURL, base);
  }
  const NSString repaired = nimbo::repairedStringURL(link);
  require(nimbo::repairedStringURL(repaired).length() <= repaired.length());
  const NSString ascii = nimbo::ASCIIStringURL(link, nimbo::NSUTF8StringEncoding);
  if (ascii) require(nimbo::ASCIIStringURL(ascii, nimbo::NSUTF8StringEncoding) == ascii);
  return 0;
}
