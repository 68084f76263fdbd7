// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

class id;

/// An ordered list of property-list values: a handle whose copies share their storage until one of them is
/// changed. A default-made one is nil: it tests false, has no elements and equals only nil; the first change
/// makes it an array.
class NSArray {
 public:
  NSArray() noexcept = default;
  NSArray(std::initializer_list<id> elements);
  explicit NSArray(std::vector<id> elements);
  /// An empty array, which is not nil.
  static NSArray array();

  std::uint32_t count() const noexcept;
  /// `index` must be below the count.
  const id &operator[](std::uint32_t index) const noexcept;
  const id *begin() const noexcept;
  const id *end() const noexcept;

  void addObject(id object);
  /// `index` may be the count; `objects` must not point into this array.
  void insertObjectsAtIndex(std::span<const id> objects, std::uint32_t index);
  void removeObjectAtIndex(std::uint32_t index);
  /// Shortens the array, or lengthens it by nil.
  void setCount(std::uint32_t count);
  void reserve(std::uint32_t count);
  /// The elements, to be changed in place; no copy of this handle sees the changes. Borrowed until the array is
  /// copied or changed otherwise.
  std::span<id> mutableObjects();

  explicit operator bool() const noexcept { return elements_ != nullptr; }
  /// Whether both are the same storage (or both nil).
  bool identicalTo(const NSArray &other) const noexcept { return elements_ == other.elements_; }
  std::size_t identityHash() const noexcept { return std::hash<const void *>()(elements_.get()); }
  /// Of the elements and their order.
  std::size_t hash() const noexcept;
  /// Equal elements in the same order; nil equals only nil.
  bool operator==(const NSArray &other) const;

 private:
  std::vector<id> &own();

  std::shared_ptr<std::vector<id>> elements_;
};

}  // namespace nimbo
