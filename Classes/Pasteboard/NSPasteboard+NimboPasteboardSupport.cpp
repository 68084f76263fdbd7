// SPDX-License-Identifier: Apache-2.0
#include "Classes/Pasteboard/NSPasteboard+NimboPasteboardSupport.hpp"

#include <algorithm>

#include "Classes/Pasteboard/MorePasteboardTypes.hpp"

namespace nimbo {
inline namespace NimboPasteboardSupport {

namespace {

/// The type of a URL that who wrote the pasteboard likes best; nil when there is none.
NSString typeOfURL(const NSPasteboard &pasteboard, NSError *error) {
  const NSString wanted[] = {NSURLPboardType, URLFlavorPboardType, AppleURLPboardType, PublicURLPboardType};
  NSError failure;
  const std::vector<NSString> types = pasteboard.types(&failure);
  const auto found = std::ranges::find_first_of(types, wanted);
  if (found != types.end()) return *found;
  if (!failure) setError(&failure, ErrorCode::incomplete, "the pasteboard holds no URL");
  if (error) *error = failure;
  return {};
}

NSString typeOfURLName(const NSPasteboard &pasteboard, NSError *error) {
  const NSString wanted[] = {URLNameFlavorPboardType, PublicURLNamePboardType};
  return pasteboard.availableTypeFromArray(wanted, error);
}

NSString stringOfType(const NSPasteboard &pasteboard, const NSString &type, NSError *error) {
  return type ? pasteboard.stringForType(type, error) : NSString();
}

}  // namespace

NSString URL(const NSPasteboard &pasteboard, NSError *error) {
  return stringOfType(pasteboard, typeOfURL(pasteboard, error), error);
}

bool containsURL(const NSPasteboard &pasteboard, NSError *error) {
  return static_cast<bool>(typeOfURL(pasteboard, error));
}

NSString URLName(const NSPasteboard &pasteboard, NSError *error) {
  return stringOfType(pasteboard, typeOfURLName(pasteboard, error), error);
}

bool containsURLName(const NSPasteboard &pasteboard, NSError *error) {
  return static_cast<bool>(typeOfURLName(pasteboard, error));
}

}  // namespace NimboPasteboardSupport
}  // namespace nimbo
