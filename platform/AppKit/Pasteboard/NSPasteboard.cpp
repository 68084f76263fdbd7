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

namespace {

/// Why nothing comes of a nil pasteboard.
void setErrorOfNil(NSError *error) {
  setError(error, ErrorCode::other, "there is no pasteboard");
}

}  // namespace

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
  return server_ ? server_->name() : NSString();
}

bool NSPasteboard::isAvailable(NSError *error) const {
  if (server_) return server_->isAvailable(error);
  setErrorOfNil(error);
  return false;
}

std::int64_t NSPasteboard::changeCount() const {
  return server_ ? server_->changeCount() : 0;
}

std::vector<NSString> NSPasteboard::types(NSError *error) const {
  if (server_) return server_->types(error);
  setErrorOfNil(error);
  return {};
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
  if (server_) return server_->declareTypes(types, error);
  setErrorOfNil(error);
  return false;
}

bool NSPasteboard::declareTypes(std::initializer_list<NSString> types, NSError *error) const {
  return declareTypes(std::span(types.begin(), types.size()), error);
}

bool NSPasteboard::setData(const NSData &data, const NSString &type, NSError *error) const {
  if (server_ && data) return server_->setData(data, type, error);
  if (server_)
    setError(error, ErrorCode::incomplete, "there is no data to write");
  else
    setErrorOfNil(error);
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
  if (server_) return server_->dataForType(type, error);
  setErrorOfNil(error);
  return NSData();
}

NSString NSPasteboard::stringForType(const NSString &type, NSError *error) const {
  const NSData data = dataForType(type, error);
  return data ? NSString::stringWithLossyUTF8String(data.view()) : NSString();
}

id NSPasteboard::propertyListForType(const NSString &type, NSError *error) const {
  const NSData data = dataForType(type, error);
  return data ? NSPropertyListSerialization::propertyListFromData(data, nullptr, error) : id();
}

}  // namespace nimbo
