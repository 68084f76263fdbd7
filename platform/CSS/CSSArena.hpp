// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// Memory that grows and goes as a whole: what values and selectors point to. It holds only what needs no
/// destructor. Moving it leaves what it holds in place. One arena is used by one thread.
class CSSArena {
 public:
  /// An empty arena.
  CSSArena() = default;
  /// Takes over what the other holds; the other is empty.
  CSSArena(CSSArena &&other) noexcept { swap(other); }
  /// Takes over what the other holds, in place of its own; the other is empty.
  CSSArena &operator=(CSSArena &&other) noexcept {
    CSSArena(std::move(other)).swap(*this);
    return *this;
  }

  /// A copy of the elements; empty for none. Raises `std::bad_alloc`.
  template <class T>
  requires std::is_trivially_copyable_v<T> std::span<const T> copy(std::span<const T> elements)
  NIMBO_LIFETIMEBOUND {
    if (elements.empty()) return {};
    T *const place = static_cast<T *>(allocate(elements.size_bytes(), alignof(T)));
    std::memcpy(static_cast<void *>(place), elements.data(), elements.size_bytes());
    return {place, elements.size()};
  }
  /// A copy of the units. Raises `std::bad_alloc`.
  std::u16string_view copy(std::u16string_view text) NIMBO_LIFETIMEBOUND {
    const std::span<const char16_t> units = copy(std::span<const char16_t>(text));
    return {units.data(), units.size()};
  }

 private:
  void swap(CSSArena &other) noexcept {
    blocks_.swap(other.blocks_);
    std::swap(blockSize_, other.blockSize_);
    std::swap(next_, other.next_);
    std::swap(end_, other.end_);
  }
  void *allocate(std::size_t size, std::size_t alignment);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::size_t blockSize_ = 0;
  std::byte *next_ = nullptr;
  std::byte *end_ = nullptr;
};

}  // namespace nimbo
