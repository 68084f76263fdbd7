// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/SharedPointer.hpp"

namespace NIMBO_PUBLIC nimbo {

namespace detail {

/// The head of a string's storage; the units follow it directly.
struct StringStorage : ReferenceCounted {
  constexpr StringStorage() noexcept = default;
  constexpr StringStorage(Immortal immortal, std::uint32_t count) noexcept
      : ReferenceCounted(immortal), length(count) {}
  StringStorage(const StringStorage &) = delete;

  std::uint32_t length = 0;

  unichar *units() { return reinterpret_cast<unichar *>(this + 1); }
};

template <std::size_t N>
struct StringLiteral {
  char16_t units[N];
  consteval StringLiteral(const char16_t (&text)[N]) {
    for (std::size_t i = 0; i < N; ++i) units[i] = text[i];
  }
};

template <std::size_t N>
struct LiteralStorage {
  StringStorage head;
  char16_t units[N];
};

template <StringLiteral Text>
inline constinit LiteralStorage<sizeof(Text.units) / sizeof(char16_t)> literalStorage = [] {
  constexpr std::size_t count = sizeof(Text.units) / sizeof(char16_t);
  return [&]<std::size_t... I>(std::index_sequence<I...>) {
    return LiteralStorage<count>{{StringStorage::Immortal(), count - 1}, {Text.units[I]...}};
  }
  (std::make_index_sequence<count>());
}();

}  // namespace detail

/// Ends the storage of a string.
template <>
NIMBO_PUBLIC void destroyShared<detail::StringStorage>(ReferenceCounted *storage) noexcept;

/// An immutable UTF-16 string: a handle, one pointer wide, to shared storage. A default-made one is nil: it
/// tests false, has length 0 and equals only nil. Nil, empty and "the same storage" (`identicalTo`) can be told
/// apart.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     const NSString name = NSString::stringWithUTF8String("caf\xc3\xa9");
///     name.length();  // 4
///     name.substringWithRange({0, 3});  // "caf"
///     const std::string bytes = name.UTF8String();
class NSString {
 public:
  constexpr NSString() noexcept = default;

  /// The shared empty string.
  static NSString string() noexcept;
  /// A copy of `length` units; the shared empty string for length 0.
  static NSString stringWithCharacters(const unichar *units, std::uint32_t length);
  /// A copy of the units; the shared empty string for none.
  static NSString stringWithCharacters(std::u16string_view units);
  /// Text in UTF-8; nil when the bytes are not valid UTF-8 or more than `NSNotFound`.
  static NSString stringWithUTF8String(std::string_view bytes);
  /// Text in UTF-8, where each invalid sequence becomes U+FFFD.
  static NSString stringWithLossyUTF8String(std::string_view bytes);
  /// A file name as the system gives it. Each byte that is not part of valid UTF-8 becomes the lone surrogate
  /// U+DC00 + byte, which `fileSystemRepresentation` turns back, so that every name survives.
  static NSString stringWithFileSystemRepresentation(std::string_view bytes);

  /// How many units there are; 0 when nil.
  std::uint32_t length() const noexcept { return storage_ ? storage_->length : 0; }
  /// The units, `length()` of them, not terminated; borrowed from this string. Null when nil.
  const unichar *characters() const noexcept NIMBO_LIFETIMEBOUND {
    return storage_ ? storage_->units() : nullptr;
  }
  /// The units as a view, which is borrowed from this string.
  std::u16string_view view() const noexcept NIMBO_LIFETIMEBOUND { return {characters(), length()}; }
  /// The unit at `index`, which must be below the length.
  unichar characterAtIndex(std::uint32_t index) const noexcept { return storage_->units()[index]; }

  /// The units of `range`, which is cut to the string's bounds; the receiver itself when it is the whole
  /// string.
  NSString substringWithRange(NSRange range) const;

  /// The text in UTF-8; lone surrogates become U+FFFD. Empty when nil.
  std::string UTF8String() const;
  /// The bytes for the system's file calls: the reverse of `stringWithFileSystemRepresentation`. Nothing when
  /// nil, empty, when it holds U+0000 or a lone surrogate that stands for no byte.
  std::optional<std::string> fileSystemRepresentation() const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSString &other) const noexcept { return storage_ == other.storage_; }
  /// Whether the units are equal; nil equals only nil.
  friend bool operator==(const NSString &a, const NSString &b) noexcept {
    return a.storage_ == b.storage_ || (a.storage_ && b.storage_ && a.view() == b.view());
  }
  /// A hash of the units.
  std::size_t hash() const noexcept { return std::hash<std::u16string_view>()(view()); }
  /// A hash of the storage, equal where `identicalTo` holds.
  std::size_t identityHash() const noexcept { return storage_.hash(); }

  /// Swaps two handles.
  void swap(NSString &other) noexcept { storage_.swap(other.storage_); }

 private:
  friend class NSMutableString;
  friend class id;
  template <detail::StringLiteral Text>
  friend NSString operator""_ns();

  using Storage = detail::StringStorage;

  explicit NSString(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}

  SharedPointer<Storage> storage_;
};

/// A literal's storage is made at compile time: `u"text"_ns` neither allocates nor counts.
template <detail::StringLiteral Text>
NSString operator""_ns() {
  return NSString(SharedPointer<detail::StringStorage>::adopt(&detail::literalStorage<Text>.head));
}

/// The hash of a string in the standard library's containers.
struct NSStringHash {
  /// The hash, equal for equal strings.
  std::size_t operator()(const NSString &string) const noexcept { return string.hash(); }
};

}  // namespace nimbo
