// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>
#include <vector>

#include "platform/Foundation/SharedPointer.hpp"

namespace NIMBO_PUBLIC nimbo {

class id;

namespace detail {
struct ArrayStorage;
}
template <>
NIMBO_PUBLIC void destroyShared<detail::ArrayStorage>(ReferenceCounted *storage) noexcept;

/// An ordered list of property-list values: a handle whose copies share their storage until one of them is
/// changed. A default-made one is nil: it tests false, has no elements and equals only nil; the first change
/// makes it an array.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
class NSArray {
 public:
  NSArray() noexcept = default;
  NSArray(std::initializer_list<id> elements);
  explicit NSArray(std::vector<id> elements);
  /// An empty array, which is not nil.
  static NSArray array();

  std::uint32_t count() const noexcept;
  /// `index` must be below the count.
  const id &operator[](std::uint32_t index) const noexcept NIMBO_LIFETIMEBOUND;
  const id *begin() const noexcept NIMBO_LIFETIMEBOUND;
  const id *end() const noexcept NIMBO_LIFETIMEBOUND;

  void addObject(id object);
  /// `index` may be the count; `objects` must not point into this array.
  void insertObjectsAtIndex(std::span<const id> objects, std::uint32_t index);
  void removeObjectAtIndex(std::uint32_t index);
  /// Shortens the array, or lengthens it by nil.
  void setCount(std::uint32_t count);
  void reserve(std::uint32_t count);
  /// The elements, to be changed in place; no copy of this handle sees the changes. Borrowed until the array is
  /// copied or changed otherwise.
  std::span<id> mutableObjects() NIMBO_LIFETIMEBOUND;

  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSArray &other) const noexcept { return storage_ == other.storage_; }
  std::size_t identityHash() const noexcept { return storage_.hash(); }
  /// Of the elements and their order.
  std::size_t hash() const noexcept;
  /// Equal elements in the same order; nil equals only nil.
  bool operator==(const NSArray &other) const;

 private:
  friend class id;

  using Storage = detail::ArrayStorage;

  explicit NSArray(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}
  std::vector<id> &own();

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
