// SPDX-License-Identifier: Apache-2.0
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Strings.hpp"

#include <algorithm>
#include <string_view>

#include "Classes/Paths/NSString+NSStringNimboPathExtensions.hpp"
#include "Classes/URLs/NSString+URLUtilities.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/FileSystem.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Making.hpp"

namespace nimbo {
inline namespace NSURLNimboExtensions {

namespace {

NSString forwarded(const NSURL &url, NSString (*function)(const NSString &)) {
  return url.isFileURL() ? standardizedPath(fileSystemPathPOSIXStyle(url)) : function(url.absoluteString());
}

}  // namespace

NSString simplifiedStringURL(const NSURL &url) {
  return forwarded(url, URLUtilities::simplifiedStringURL);
}

NSString simplifiedStringURLByRemovingSessionIDs(const NSURL &url, Flag sessionIDs, Flag analytics,
                                                 Flag indexPages, Flag emptyParams, Flag anchors) {
  return url.isFileURL() ? standardizedPath(fileSystemPathPOSIXStyle(url))
                         : simplifiedStringURLByRemovingSessionIDs(url.absoluteString(), sessionIDs, analytics,
                                                                   indexPages, emptyParams, anchors);
}

NSString stringURLByRemovingSessionIDs(const NSURL &url) {
  return forwarded(url, URLUtilities::stringURLByRemovingSessionIDs);
}

NSString stringURLByRemovingAnalytics(const NSURL &url) {
  return forwarded(url, URLUtilities::stringURLByRemovingAnalytics);
}

NSString stringURLByRemovingEmptyParams(const NSURL &url) {
  return forwarded(url, URLUtilities::stringURLByRemovingEmptyParams);
}

NSString stringURLByRemovingIndexPages(const NSURL &url) {
  return forwarded(url, URLUtilities::stringURLByRemovingIndexPages);
}

NSString stringURLWithoutAnchor(const NSURL &url) {
  return stringURLWithoutAnchor(url.absoluteString());
}

NSString standardizedStringURL(const NSURL &url) {
  return url.standardizedURL().absoluteString();
}

NSString absoluteStringOrPath(const NSURL &url) {
  return url.isFileURL() ? fileSystemPathPOSIXStyle(url) : url.absoluteString();
}

NSString absoluteStringWithoutUserAndPassword(const NSURL &url) {
  return url.user() ? URLForUser(url, NSString(), NSString()).absoluteString() : url.absoluteString();
}

NSString absoluteStringWithHostAndPath(const NSURL &url) {
  NSString whole = absoluteStringWithoutUserAndPassword(url);
  if (!whole) return whole;
  const std::size_t pathEnd = std::min(whole.view().find_first_of(u"?#"), whole.view().size());
  const std::size_t path = pathEnd - url.escapedPath().length();
  return NSString::stringWithCharacters(
      whole.view().substr(0, std::min(whole.view().find(u';', path), pathEnd)));
}

}  // namespace NSURLNimboExtensions
}  // namespace nimbo
