// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSURL+NimboPasteboardSupport.hpp"

#include "Classes/Pasteboard/MorePasteboardTypes.hpp"
#include "Classes/Paths/NSString+NSStringNimboPathExtensions/FileNames.hpp"
#include "Classes/URLs/NSURL+NSURLNimboExtensions/Strings.hpp"
#include "platform/Foundation/NSArray.hpp"

namespace nimbo {
inline namespace NimboPasteboardSupport {

namespace {

/// Declares types for a URL. False, with `*error` set, when there is none or the pasteboard is unavailable.
bool declareTypesOfURL(const NSURL &url, const NSPasteboard &pasteboard, std::initializer_list<NSString> types,
                       NSError *error) {
  if (url) return pasteboard.declareTypes(types, error);
  setError(error, ErrorCode::incomplete, "there is no URL to copy");
  return false;
}

bool writeToPasteboard(const NSURL &url, const NSPasteboard &pasteboard, NSError *error) {
  return pasteboard.setString(url.absoluteString(), NSURLPboardType, error);
}

}  // namespace

bool copyToPasteboard(const NSURL &url, const NSPasteboard &pasteboard, NSError *error) {
  return declareTypesOfURL(url, pasteboard, {NSURLPboardType, NSStringPboardType}, error) &&
         pasteboard.setString(absoluteStringOrPath(url), NSStringPboardType, error) &&
         writeToPasteboard(url, pasteboard, error);
}

bool copyToPasteboardWithTitle(const NSURL &url, const NSPasteboard &pasteboard, const NSString &title,
                               NSError *error) {
  const NSString address = url.absoluteString();
  const NSString shownTitle = title.length() > 0 ? title : address;
  const NSArray titledURLs = {NSArray{address}, NSArray{shownTitle}};
  const NSString name = stringByTrimmingInvalidFilenameCharacters(shownTitle);
  const auto types = {NSStringPboardType, NSURLPboardType, URLFlavorPboardType, URLNameFlavorPboardType,
                      URLsWithTitlesPboardType};
  return declareTypesOfURL(url, pasteboard, types, error) && writeToPasteboard(url, pasteboard, error) &&
         pasteboard.setString(address, URLFlavorPboardType, error) &&
         pasteboard.setString(name, URLNameFlavorPboardType, error) &&
         pasteboard.setPropertyList(titledURLs, URLsWithTitlesPboardType, error) &&
         pasteboard.setString(address, NSStringPboardType, error);
}

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
