// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Owned UTF-16 units that grow and are edited in place; never nil. Moving it into an `NSString`, or one that
/// shares its storage with no other into it, hands the storage over without a copy. A length above `NSNotFound`
/// raises `std::length_error`. One thread uses it at a time.
///
///     NSMutableString path(std::move(folder));
///     path.append(u"/");
///     path.appendString(name);
///     NSString whole = std::move(path).string();
class NSMutableString {
 public:
  /// An empty string.
  NSMutableString() noexcept = default;
  /// A copy of the units.
  explicit NSMutableString(const NSString &string) { appendString(string); }
  /// The units, without a copy where nobody else shares them.
  explicit NSMutableString(NSString &&string);
  NSMutableString(const NSMutableString &) = delete;
  NSMutableString &operator=(const NSMutableString &) = delete;
  /// Takes the units; the other is empty.
  NSMutableString(NSMutableString &&other) noexcept { swap(other); }
  /// Exchanges the units.
  NSMutableString &operator=(NSMutableString &&other) noexcept {
    swap(other);
    return *this;
  }
  ~NSMutableString() { destroy(storage_); }

  /// How many units there are.
  std::uint32_t length() const noexcept { return storage_ ? storage_->length : 0; }
  /// The units, not terminated; borrowed until the string is changed. Null when there are none.
  const unichar *characters() const noexcept NIMBO_LIFETIMEBOUND {
    return storage_ ? storage_->units() : nullptr;
  }
  /// The units, to be changed in place; borrowed until the length changes. Null when there are none.
  unichar *mutableCharacters() noexcept NIMBO_LIFETIMEBOUND { return storage_ ? storage_->units() : nullptr; }
  /// The units as a view, which is borrowed until the string is changed.
  std::u16string_view view() const noexcept NIMBO_LIFETIMEBOUND { return {characters(), length()}; }

  /// Makes room for `capacity` units in all.
  void reserve(std::size_t capacity);
  /// Cuts the string, or lengthens it by units whose values are whatever the caller then writes.
  void setLength(std::uint32_t length);

  /// Appends one unit.
  void appendCharacter(unichar unit) { *extend(1) = unit; }
  /// Appends units; `units` may point into this string.
  void appendCharacters(const unichar *units, std::uint32_t length);
  /// Appends units, which may be some of this string.
  void append(std::u16string_view units);
  /// Appends ASCII, or any UTF-8; what is none becomes U+FFFD, as `stringWithLossyUTF8String` has it.
  void append(std::string_view text);
  /// Appends the units of a string; nil has none.
  void appendString(const NSString &string) { appendCharacters(string.characters(), string.length()); }
  /// Puts units in the place of others. `range` is cut to the string's bounds; `units` must not point into
  /// this string.
  void replaceCharactersInRange(NSRange range, std::u16string_view units);
  /// Removes the units of `range`, which is cut to the string's bounds.
  void deleteCharactersInRange(NSRange range) { replaceCharactersInRange(range, {}); }

  /// The units as an immutable string, without a copy; this object is empty afterwards. An empty one gives the
  /// shared empty string. Unused capacity of more than half is given back.
  NSString string() &&;

  /// Swaps two strings.
  void swap(NSMutableString &other) noexcept {
    std::swap(storage_, other.storage_);
    std::swap(capacity_, other.capacity_);
  }

 private:
  friend void destroyShared<detail::StringStorage>(ReferenceCounted *storage) noexcept;

  static void destroy(detail::StringStorage *storage) noexcept;
  unichar *extend(std::uint32_t count);
  void reallocate(std::uint32_t capacity);

  detail::StringStorage *storage_ = nullptr;
  std::uint32_t capacity_ = 0;
};

}  // namespace nimbo
