// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSString.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

namespace nimbo {
namespace {

/// Bytes that are decoded on the stack, so that their string needs no more room than it takes.
constexpr std::size_t kShortLength = 256;

NSString decode(std::string_view bytes, InvalidInput invalid) {
  if (bytes.size() > NSNotFound) return NSString();
  if (bytes.size() <= kShortLength) {
    unichar units[kShortLength];
    const auto length = decodeUTF8(bytes, units, invalid);
    return length ? NSString::stringWithCharacters({units, *length}) : NSString();
  }
  NSMutableString units;
  units.setLength(static_cast<std::uint32_t>(bytes.size()));
  const auto length = decodeUTF8(bytes, units.mutableCharacters(), invalid);
  if (!length) return NSString();
  units.setLength(static_cast<std::uint32_t>(*length));
  return std::move(units).string();
}

}  // namespace

template <>
void destroyShared<detail::StringStorage>(ReferenceCounted *storage) noexcept {
  NSMutableString::destroy(static_cast<detail::StringStorage *>(storage));
}

NSString NSString::string() noexcept {
  return u""_ns;
}

NSString NSString::stringWithCharacters(const unichar *units, std::uint32_t length) {
  if (length == 0) return string();
  if (length > NSNotFound) throw std::length_error("string too long");
  const std::size_t bytes = length * sizeof(unichar);
  void *const memory = std::malloc(sizeof(Storage) + bytes);
  if (!memory) throw std::bad_alloc();
  auto *const storage = new (memory) Storage();
  storage->length = length;
  std::memcpy(storage->units(), units, bytes);
  return NSString(SharedPointer<Storage>::adopt(storage));
}

NSString NSString::stringWithCharacters(std::u16string_view units) {
  return units.size() > NSNotFound
             ? NSString()
             : stringWithCharacters(units.data(), static_cast<std::uint32_t>(units.size()));
}

NSString NSString::stringWithUTF8String(std::string_view bytes) {
  return decode(bytes, InvalidInput::refused);
}

NSString NSString::stringWithLossyUTF8String(std::string_view bytes) {
  return decode(bytes, InvalidInput::replaced);
}

NSString NSString::stringWithFileSystemRepresentation(std::string_view bytes) {
  return decode(bytes, InvalidInput::escaped);
}

NSString NSString::substringWithRange(NSRange range) const {
  const std::uint32_t size = length();
  if (range.location == 0 && range.length >= size) return *this;
  if (range.location >= size) return string();
  return stringWithCharacters(characters() + range.location, std::min(range.length, size - range.location));
}

std::string NSString::UTF8String() const {
  return *encodeUTF8(view(), InvalidInput::replaced);
}

std::optional<std::string> NSString::fileSystemRepresentation() const {
  if (length() == 0 || view().find(u'\0') != view().npos) return std::nullopt;
  return encodeUTF8(view(), InvalidInput::escaped);
}

}  // namespace nimbo
