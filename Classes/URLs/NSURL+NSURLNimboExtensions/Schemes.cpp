// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Schemes.hpp"

#include <initializer_list>
#include <string_view>

#include "Classes/Strings/NSString+NSStringNimboExtensions.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/FileSystem.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"
#include "Classes/URLs/SearchEngines.hpp"
#include "Classes/URLs/URLStringParts.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

bool hasScheme(const NSURL &url, std::initializer_list<std::string_view> schemes) {
  return equalsOneOfASCIINoCase(url.scheme().view(), schemes);
}

/// The URL of the same resource under "http". What follows "feed:" may be a whole HTTP URL.
NSURL HTTPURLOfFeed(const NSURL &url) {
  const NSString specifier = url.resourceSpecifier();
  return hasPrefixNoCase(specifier, u"http:"_ns) ? NSURL::URLWithString(specifier)
                                                 : URLWithFormat(u"%@:%@"_ns, {u"http"_ns, specifier});
}

}  // namespace

bool isHTTPURL(const NSURL &url) {
  return hasScheme(url, {"http", "https"});
}

bool isFTPURL(const NSURL &url) {
  return isFTPScheme(url.scheme().view());
}

bool isFeedURL(const NSURL &url) {
  return hasScheme(url, {"feed"});
}

bool isMailURL(const NSURL &url) {
  return hasScheme(url, {"mailto"});
}

bool isNewsURL(const NSURL &url) {
  return hasScheme(url, {"news", "nttp"});
}

bool isJavaScriptURL(const NSURL &url) {
  return hasScheme(url, {"javascript"});
}

bool isAppleScriptURL(const NSURL &url) {
  return hasScheme(url, {"applescript"});
}

bool isDownloadableURL(const NSURL &url) {
  return isHTTPURL(url) || isFTPURL(url);
}

bool isLoadableURL(const NSURL &url) {
  if (!url.isFileURL()) return isDownloadableURL(url) || isFeedURL(url);
  bool isDirectory = false;
  return NSFileManager::fileExistsAtPath(fileSystemPathPOSIXStyle(url), &isDirectory) && !isDirectory;
}

bool isRemoteWebKitURL(const NSURL &url) {
  const NSString host = url.host();
  return (isHTTPURL(url) || isFeedURL(url)) && containsAlphaNumCharacter(host) &&
         host.view().find(u"...") == std::u16string_view::npos;
}

bool isWebKitURL(const NSURL &url) {
  return url.isFileURL() || isRemoteWebKitURL(url);
}

bool isHostEqualTo(const NSURL &url, const NSURL &other) {
  if (!url.scheme() || !other.scheme()) return false;
  if (url.isFileURL() || other.isFileURL()) return url.isFileURL() && other.isFileURL();
  return isEqualToStringNoCase(url.host(), other.host());
}

bool isSearchEngine(const NSURL &url) {
  return isHTTPURL(url) && isSearchEngineHostAndPath(url.host(), url.escapedPath());
}

NSURL baseURLForWebKit(const NSURL &url) {
  if (url.isFileURL()) return NSFileManager::fileExistsAtPath(fileSystemPathPOSIXStyle(url)) ? url : NSURL();
  if (isFeedURL(url)) return HTTPURLOfFeed(url);
  return isHTTPURL(url) ? url : NSURL();
}

NSURL baseURLForWebKitUsingAnchor(const NSURL &url, const NSString &anchor) {
  return URLWithAnchor(baseURLForWebKit(url), anchor);
}

NSURL WebKitURL(const NSURL &url) {
  if (!isWebKitURL(url)) return NSURL();
  return isFeedURL(url) ? HTTPURLOfFeed(url) : url;
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
