// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSDictionary+NimboFileAttributesExtensions.hpp"

#include "platform/Foundation/NSFileAttributes.hpp"
#include "platform/Foundation/NSHFSFileTypes.hpp"

namespace nimbo {
inline namespace NimboFileAttributesExtensions {

namespace {

/// Four question marks.
constexpr OSType kUnknownType = 0x3f3f3f3f;

}  // namespace

NSString fileTypeForWorkspace(const NSDictionary &attributes) {
  const NSString type = attributes.objectForKey(NSFileType()).string();
  if (type == NSFileTypeDirectory()) return u"'fldr'"_ns;
  auto code = static_cast<OSType>(attributes.objectForKey(NSFileHFSTypeCode()).integer().value_or(0));
  if (code == 0 && type == NSFileTypeRegular()) code = kUnknownType;
  return NSFileTypeForHFSTypeCode(code);
}

}  // namespace NimboFileAttributesExtensions
}  // namespace nimbo
