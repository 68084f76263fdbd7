// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "platform/Foundation/NSString.hpp"

namespace NIMBO_PUBLIC nimbo {

struct NSError;

namespace detail {

/// What a data object stands on: heap bytes, or a part of another data object.
class DataStorage : public ReferenceCounted {
 public:
  DataStorage(const std::uint8_t *first, std::uint32_t count) : bytes(first), length(count) {}
  DataStorage(const DataStorage &) = delete;
  virtual ~DataStorage();

  /// The first of the bytes; they belong to whoever derives from this.
  const std::uint8_t *const bytes;
  const std::uint32_t length;
};

}  // namespace detail

/// Immutable bytes: a handle, one pointer wide, to shared storage. A default-made one is nil: it tests false,
/// has length 0 and equals only nil.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     NSError error;
///     const NSData data = NSData::dataWithContentsOfFile(path, &error);
///     const bool isPDF = data.view().starts_with("%PDF-");
///     const NSData head = data.subdataWithRange({0, 1024});
class NSData {
 public:
  constexpr NSData() noexcept = default;

  /// An empty data object.
  static NSData data();
  /// A copy of the bytes; nil when there are more than `NSNotFound`.
  static NSData dataWithBytes(const void *bytes, std::size_t length);
  /// Takes over bytes that came from `malloc`; they are freed with the last handle, or at once when the answer
  /// is nil because there are more than `NSNotFound`.
  static NSData dataWithMallocedBytes(void *bytes, std::size_t length);
  /// The whole content of a regular file, copied: what becomes of the file does not matter any more. Nil when
  /// it cannot be read or is larger than `NSNotFound`; `*error` says why.
  static NSData dataWithContentsOfFile(const NSString &path, NSError *error = nullptr);

  /// How many bytes there are; 0 when nil.
  std::uint32_t length() const noexcept { return storage_ ? storage_->length : 0; }
  /// The first byte; borrowed from this object. Null when nil.
  const std::uint8_t *bytes() const noexcept NIMBO_LIFETIMEBOUND {
    return storage_ ? storage_->bytes : nullptr;
  }
  /// The bytes as a span, which is borrowed.
  std::span<const std::uint8_t> span() const noexcept NIMBO_LIFETIMEBOUND { return {bytes(), length()}; }
  /// The bytes as text, which is borrowed.
  std::string_view view() const noexcept NIMBO_LIFETIMEBOUND {
    return {reinterpret_cast<const char *>(bytes()), length()};
  }

  /// The bytes of `range`, cut to this object's bounds; they share this object's storage.
  NSData subdataWithRange(NSRange range) const;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSData &other) const noexcept { return storage_ == other.storage_; }
  /// A hash of the bytes.
  std::size_t hash() const noexcept { return std::hash<std::string_view>()(view()); }
  /// A hash of the storage, equal where `identicalTo` holds.
  std::size_t identityHash() const noexcept { return storage_.hash(); }
  /// Equal bytes; nil equals only nil.
  friend bool operator==(const NSData &a, const NSData &b) noexcept {
    return a.storage_ == b.storage_ || (a.storage_ && b.storage_ && a.view() == b.view());
  }

 private:
  friend class id;

  using Storage = detail::DataStorage;

  explicit NSData(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
