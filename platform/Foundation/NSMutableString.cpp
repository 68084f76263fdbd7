// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/NSMutableString.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <utility>

#include "platform/Foundation/Unicode/UTF8Conversion.hpp"

namespace nimbo {

void NSMutableString::destroy(detail::StringStorage *storage) noexcept {
  std::free(storage);
}

NSMutableString::NSMutableString(NSString &&string) {
  if (string && string.storage_.isUnique()) {
    capacity_ = string.length();
    storage_ = string.storage_.detach();
  } else {
    appendString(std::exchange(string, NSString()));
  }
}

void NSMutableString::reallocate(std::uint32_t capacity) {
  const std::size_t size = sizeof(detail::StringStorage) + sizeof(unichar) * static_cast<std::size_t>(capacity);
  void *memory = std::realloc(static_cast<void *>(storage_), size);
  if (!memory) throw std::bad_alloc();
  if (storage_)
    storage_ = static_cast<detail::StringStorage *>(memory);
  else
    storage_ = new (memory) detail::StringStorage();
  capacity_ = capacity;
}

void NSMutableString::reserve(std::size_t capacity) {
  if (capacity > NSNotFound) throw std::length_error("string too long");
  if (capacity > capacity_) reallocate(static_cast<std::uint32_t>(capacity));
}

unichar *NSMutableString::extend(std::uint32_t count) {
  const std::uint32_t old = length();
  if (count > NSNotFound - old) throw std::length_error("string too long");
  if (const std::uint32_t needed = old + count; needed > capacity_)
    reallocate(std::min(NSNotFound, std::max(needed, capacity_ + capacity_ / 2 + 16)));
  storage_->length = old + count;
  return storage_->units() + old;
}

void NSMutableString::setLength(std::uint32_t length) {
  if (length > this->length())
    extend(length - this->length());
  else if (storage_)
    storage_->length = length;
}

void NSMutableString::appendCharacters(const unichar *units, std::uint32_t length) {
  if (length == 0) return;
  const unichar *begin = characters();
  const bool inside = begin && !std::less<>()(units, begin) && std::less<>()(units, begin + this->length());
  const std::size_t offset = inside ? static_cast<std::size_t>(units - begin) : 0;
  unichar *end = extend(length);
  std::memcpy(end, inside ? characters() + offset : units, length * sizeof(unichar));
}

void NSMutableString::append(std::u16string_view units) {
  if (units.size() > NSNotFound) throw std::length_error("string too long");
  appendCharacters(units.data(), static_cast<std::uint32_t>(units.size()));
}

void NSMutableString::append(std::string_view text) {
  if (text.empty()) return;
  if (text.size() > NSNotFound) throw std::length_error("string too long");
  const std::uint32_t old = length();
  unichar *const end = extend(static_cast<std::uint32_t>(text.size()));
  setLength(old + static_cast<std::uint32_t>(*decodeUTF8(text, end, InvalidInput::replaced)));
}

void NSMutableString::replaceCharactersInRange(NSRange range, std::u16string_view units) {
  const std::uint32_t old = length();
  range.location = std::min(range.location, old);
  range.length = std::min(range.length, old - range.location);
  if (units.size() > NSNotFound) throw std::length_error("string too long");
  const auto inserted = static_cast<std::uint32_t>(units.size());
  const std::uint32_t tail = old - range.location - range.length;
  if (inserted > range.length) extend(inserted - range.length);
  if (!storage_) return;
  unichar *at = storage_->units() + range.location;
  std::memmove(at + inserted, at + range.length, tail * sizeof(unichar));
  if (inserted) std::memcpy(at, units.data(), inserted * sizeof(unichar));
  storage_->length = range.location + inserted + tail;
}

NSString NSMutableString::string() && {
  if (length() == 0) return NSString::string();
  if (capacity_ / 2 > length()) reallocate(length());
  capacity_ = 0;
  return NSString(SharedPointer<detail::StringStorage>::adopt(std::exchange(storage_, nullptr)));
}

}  // namespace nimbo
