// SPDX-License-Identifier: Apache-2.0
#include "Classes/MetaData/NSString+NSStringNimboPathExtensions+Types.hpp"

#include <algorithm>

#include "Classes/Paths/NSString+NSStringNimboPathExtensions/Extensions.hpp"
#include "platform/CoreServices/ContentTypes.hpp"

namespace nimbo {
namespace {

bool hasTypeOf(const NSString &path, std::span<const NSString> entries) {
  const auto isType = [](const NSString &entry) {
    return entry.view().find(u'.') != std::u16string_view::npos;
  };
  if (std::none_of(entries.begin(), entries.end(), isType)) return false;
  const NSString type = LSCopyItemContentType(path);
  return type && std::find(entries.begin(), entries.end(), type) != entries.end();
}

}  // namespace

inline namespace NSStringNimboPathExtensions {

NSString pathMatchingExtensionsOrTypes(const NSString &path, std::span<const NSString> extensionsOrTypes) {
  if (path.length() > 0 && hasTypeOf(path, extensionsOrTypes)) return path;
  return pathMatchingExtensions(path, extensionsOrTypes);
}

}  // namespace NSStringNimboPathExtensions
}  // namespace nimbo
