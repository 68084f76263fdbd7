// SPDX-License-Identifier: Apache-2.0
#include "Classes/Files/NSFileManager+NimboFileManagerExtensions/ExtendedAttributes.hpp"

#include <string_view>
#include <utility>

#include "Classes/Files/AttributeFailures.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/System/ExtendedAttributes.hpp"

namespace nimbo {
inline namespace NimboFileManagerExtensions {

std::vector<NSString> extendedAttributesAtPath(const NSString &path) {
  NSError error;
  auto names = extendedAttributeNames(path, true, &error);
  if (!names) logAttributeFailure(u"extendedAttributesAtPath:"_ns, u"*"_ns, path, error);
  return names ? *std::move(names) : std::vector<NSString>();
}

NSData extendedAttributeNamed(const NSString &name, const NSString &path) {
  NSError error;
  NSData data = extendedAttribute(path, name, true, &error);
  const bool isMissing = error.errorCode() == ErrorCode::noSuchFile && NSFileManager::fileExistsAtPath(path);
  if (!data && !isMissing) logAttributeFailure(u"extendedAttributeNamed:atPath:"_ns, name, path, error);
  return data;
}

bool setExtendedAttributeNamed(const NSData &data, const NSString &name, const NSString &path) {
  NSError error;
  return setExtendedAttribute(path, name, data, true, &error) ||
         logAttributeFailure(u"setExtendedAttribute:named:atPath:"_ns, name, path, error);
}

NSString createStringWithExtendedAttribute(const NSString &name, const NSString &path) {
  const NSData data = extendedAttributeNamed(name, path);
  if (!data) return NSString();
  std::string_view text = data.view();
  if (text.ends_with('\0')) text.remove_suffix(1);
  return NSString::stringWithUTF8String(text);
}

}  // namespace NimboFileManagerExtensions
}  // namespace nimbo
