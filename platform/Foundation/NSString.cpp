// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSString.hpp"

#include <unicode/ustring.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {
namespace {

constexpr UChar32 kReplacementCharacter = 0xfffd;

/// Decodes with ICU; `replacement` below 0 means that invalid input gives nil.
NSString decodeUTF8(std::string_view bytes, UChar32 replacement) {
  if (bytes.empty()) return NSString::string();
  if (bytes.size() > NSNotFound) return NSString();
  NSMutableString units;
  units.setLength(static_cast<std::uint32_t>(bytes.size()));
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(units.mutableCharacters(), static_cast<std::int32_t>(units.length()), &length,
                       bytes.data(), static_cast<std::int32_t>(bytes.size()), replacement, nullptr, &status);
  if (U_FAILURE(status)) return NSString();
  units.setLength(static_cast<std::uint32_t>(length));
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
  return decodeUTF8(bytes, -1);
}

NSString NSString::stringWithLossyUTF8String(std::string_view bytes) {
  return decodeUTF8(bytes, kReplacementCharacter);
}

NSString NSString::stringWithFileSystemRepresentation(std::string_view bytes) {
  if (NSString valid = stringWithUTF8String(bytes)) return valid;
  NSMutableString result;
  for (std::size_t position = 0; position < bytes.size();) {
    const std::size_t sequence = utf8SequenceLength(bytes.substr(position));
    if (sequence == 0) {
      result.appendCharacter(static_cast<unichar>(0xdc00 + static_cast<unsigned char>(bytes[position++])));
    } else {
      result.appendString(stringWithUTF8String(bytes.substr(position, sequence)));
      position += sequence;
    }
  }
  return std::move(result).string();
}

NSString NSString::substringWithRange(NSRange range) const {
  const std::uint32_t size = length();
  if (range.location == 0 && range.length >= size) return *this;
  if (range.location >= size) return string();
  return stringWithCharacters(characters() + range.location, std::min(range.length, size - range.location));
}

std::string NSString::UTF8String() const {
  std::string bytes;
  bytes.resize(3 * static_cast<std::size_t>(length()));
  std::size_t written = 0;
  const std::u16string_view units = view();
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t character = units[i];
    if (isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1]))
      character = 0x10000 + ((character - 0xd800) << 10) + (units[++i] - 0xdc00);
    else if (isSurrogate(units[i]))
      character = kReplacementCharacter;
    written += putUTF8(character, bytes.data() + written);
  }
  bytes.resize(written);
  return bytes;
}

std::optional<std::string> NSString::fileSystemRepresentation() const {
  if (length() == 0) return std::nullopt;
  std::string bytes;
  const std::u16string_view units = view();
  for (std::size_t i = 0; i < units.size(); ++i) {
    char sequence[4];
    if (units[i] == 0) return std::nullopt;
    if (isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
      const char32_t character = 0x10000 + ((units[i] - 0xd800u) << 10) + (units[i + 1] - 0xdc00u);
      bytes.append(sequence, putUTF8(character, sequence));
      ++i;
    } else if (units[i] >= 0xdc80 && units[i] <= 0xdcff) {
      bytes.push_back(static_cast<char>(units[i] - 0xdc00));
    } else if (isSurrogate(units[i])) {
      return std::nullopt;
    } else {
      bytes.append(sequence, putUTF8(units[i], sequence));
    }
  }
  return bytes;
}

}  // namespace nimbo
