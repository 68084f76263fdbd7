// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
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
class DataStorage {
 public:
  DataStorage(const std::uint8_t *first, std::uint32_t count) : bytes(first), length(count) {}
  DataStorage(const DataStorage &) = delete;
  DataStorage &operator=(const DataStorage &) = delete;
  virtual ~DataStorage();

  std::atomic<std::uint32_t> references = 1;
  const std::uint8_t *const bytes;
  const std::uint32_t length;
};

}  // namespace detail

/// Immutable bytes: a handle, one pointer wide, to shared storage. A default-made one is nil: it tests false,
/// has length 0 and equals only nil. Reference counts are atomic.
class NSData {
 public:
  constexpr NSData() noexcept = default;
  NSData(const NSData &other) noexcept : storage_(other.storage_) {
    if (storage_) storage_->references.fetch_add(1, std::memory_order_relaxed);
  }
  NSData(NSData &&other) noexcept : storage_(std::exchange(other.storage_, nullptr)) {}
  NSData &operator=(NSData other) noexcept {
    std::swap(storage_, other.storage_);
    return *this;
  }
  ~NSData() {
    // The analyzer does not see that the last reference is the last.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete)
    if (storage_ && storage_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete storage_;
  }

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

  std::uint32_t length() const noexcept { return storage_ ? storage_->length : 0; }
  /// Borrowed from this object. Null when nil.
  const std::uint8_t *bytes() const noexcept { return storage_ ? storage_->bytes : nullptr; }
  std::span<const std::uint8_t> span() const noexcept { return {bytes(), length()}; }
  std::string_view view() const noexcept { return {reinterpret_cast<const char *>(bytes()), length()}; }

  /// The bytes of `range`, cut to this object's bounds; they share this object's storage.
  NSData subdataWithRange(NSRange range) const;

  explicit operator bool() const noexcept { return storage_ != nullptr; }
  bool identicalTo(const NSData &other) const noexcept { return storage_ == other.storage_; }
  std::size_t hash() const noexcept { return std::hash<std::string_view>()(view()); }
  std::size_t identityHash() const noexcept { return std::hash<const void *>()(storage_); }
  /// Equal bytes; nil equals only nil.
  friend bool operator==(const NSData &a, const NSData &b) noexcept {
    return a.storage_ == b.storage_ || (a.storage_ && b.storage_ && a.view() == b.view());
  }

 private:
  explicit NSData(detail::DataStorage *storage) noexcept : storage_(storage) {}

  detail::DataStorage *storage_ = nullptr;
};

}  // namespace nimbo
