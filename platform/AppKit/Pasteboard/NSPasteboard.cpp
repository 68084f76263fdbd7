// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/NSPasteboard.hpp"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

#include "platform/AppKit/Pasteboard/PasteboardServer.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"

namespace nimbo {

template <>
void destroyShared<detail::PasteboardServer>(ReferenceCounted *server) noexcept {
  delete static_cast<detail::PasteboardServer *>(server);
}

detail::PasteboardServer &NSPasteboard::server() const {
  return server_ ? *server_ : detail::nilPasteboard();
}

NSPasteboard NSPasteboard::generalPasteboard() {
  return NSPasteboard(detail::desktopPasteboard());
}

NSPasteboard NSPasteboard::pasteboardWithName(const NSString &name) {
  return NSPasteboard(detail::privatePasteboard(name));
}

NSPasteboard NSPasteboard::pasteboardWithUniqueName() {
  static std::atomic<std::uint64_t> count = 0;
  return NSPasteboard(
      detail::newPrivatePasteboard(NSString::stringWithUTF8String("pasteboard " + std::to_string(++count))));
}

NSString NSPasteboard::name() const {
  return server().name();
}

bool NSPasteboard::isAvailable(NSError *error) const {
  return server().isAvailable(error);
}

std::int64_t NSPasteboard::changeCount() const {
  return server().changeCount();
}

std::vector<NSString> NSPasteboard::types(NSError *error) const {
  return server().types(error);
}

NSString NSPasteboard::availableTypeFromArray(std::span<const NSString> wanted, NSError *error) const {
  NSError failure;
  const std::vector<NSString> available = types(&failure);
  const auto found = std::ranges::find_first_of(wanted, available);
  if (found != wanted.end()) return *found;
  if (!failure) setError(&failure, ErrorCode::incomplete, "the pasteboard holds nothing of these types");
  if (error) *error = failure;
  return {};
}

bool NSPasteboard::declareTypes(std::span<const NSString> types, NSError *error) const {
  return server().declareTypes(types, error);
}

bool NSPasteboard::declareTypes(std::initializer_list<NSString> types, NSError *error) const {
  return declareTypes(std::span(types.begin(), types.size()), error);
}

bool NSPasteboard::setData(const NSData &data, const NSString &type, NSError *error) const {
  if (data || !server_) return server().setData(data, type, error);
  setError(error, ErrorCode::incomplete, "there is no data to write");
  return false;
}

bool NSPasteboard::setString(const NSString &string, const NSString &type, NSError *error) const {
  const std::string bytes = string.UTF8String();
  return setData(string ? NSData::dataWithBytes(bytes.data(), bytes.size()) : NSData(), type, error);
}

bool NSPasteboard::setPropertyList(const id &list, const NSString &type, NSError *error) const {
  const NSData data = NSPropertyListSerialization::dataWithPropertyList(list, NSPropertyListFormat::xml, error);
  return data && setData(data, type, error);
}

NSData NSPasteboard::dataForType(const NSString &type, NSError *error) const {
  return server().dataForType(type, error);
}

NSString NSPasteboard::stringForType(const NSString &type, NSError *error) const {
  const NSData data = dataForType(type, error);
  return data ? NSString::stringWithLossyUTF8String(data.view()) : NSString();
}

id NSPasteboard::propertyListForType(const NSString &type, NSError *error) const {
  const NSData data = dataForType(type, error);
  return data ? NSPropertyListSerialization::propertyListFromData(data, nullptr, error) : id();
}

void NSPasteboard::setDeadline(const Deadline &deadline) const {
  server().setDeadline(deadline);
}

}  // namespace nimbo
