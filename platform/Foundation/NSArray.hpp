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
/// Ends the storage of an array.
template <>
NIMBO_PUBLIC void destroyShared<detail::ArrayStorage>(ReferenceCounted *storage) noexcept;

/// An ordered list of property-list values: a handle whose copies share their storage until one of them is
/// changed. A default-made one is nil: it tests false, has no elements and equals only nil; the first change
/// makes it an array.
///
/// A handle may be copied and read from any thread; one handle is changed by one.
///
///     NSArray list = {u"one"_ns, 2};
///     list.addObject(3.5);
///     for (const id &element : list) NSLog(stringValue(element));
class NSArray {
 public:
  NSArray() noexcept = default;
  /// An array of these elements, nil ones included.
  NSArray(std::initializer_list<id> elements);
  /// An array that takes these elements over.
  explicit NSArray(std::vector<id> elements);
  /// An empty array, which is not nil.
  static NSArray array();

  /// How many elements there are; 0 when nil.
  std::uint32_t count() const noexcept;
  /// The element at `index`, which must be below the count; borrowed until the array is changed.
  const id &operator[](std::uint32_t index) const noexcept NIMBO_LIFETIMEBOUND;
  /// The first element; borrowed until the array is changed.
  const id *begin() const noexcept NIMBO_LIFETIMEBOUND;
  /// The end behind the last element.
  const id *end() const noexcept NIMBO_LIFETIMEBOUND;

  /// Appends an element.
  void addObject(id object);
  /// Inserts elements in front of the one at `index`, which may be the count; `objects` must not point into
  /// this array.
  void insertObjectsAtIndex(std::span<const id> objects, std::uint32_t index);
  /// Removes the element at `index`, which must be below the count.
  void removeObjectAtIndex(std::uint32_t index);
  /// Shortens the array, or lengthens it by nil.
  void setCount(std::uint32_t count);
  /// Makes room for `count` elements in all.
  void reserve(std::uint32_t count);
  /// The elements, to be changed in place; no copy of this handle sees the changes. Borrowed until the array is
  /// copied or changed otherwise.
  std::span<id> mutableObjects() NIMBO_LIFETIMEBOUND;

  /// Whether this is not nil.
  explicit operator bool() const noexcept { return static_cast<bool>(storage_); }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSArray &other) const noexcept { return storage_ == other.storage_; }
  /// A hash of the storage, equal where `identicalTo` holds.
  std::size_t identityHash() const noexcept { return storage_.hash(); }
  /// A hash of the elements and their order.
  std::size_t hash() const noexcept;
  /// Whether the elements and their order are equal; nil equals only nil.
  bool operator==(const NSArray &other) const;

 private:
  friend class id;

  using Storage = detail::ArrayStorage;

  explicit NSArray(SharedPointer<Storage> storage) noexcept : storage_(std::move(storage)) {}
  std::vector<id> &own();

  SharedPointer<Storage> storage_;
};

}  // namespace nimbo
