// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSArena.hpp"

#include <algorithm>
#include <utility>

namespace nimbo {

namespace {

constexpr std::size_t kFirstBlockSize = 1024;
constexpr std::size_t kLargestBlockSize = 1 << 20;

}  // namespace

void *CSSArena::allocate(std::size_t size, std::size_t alignment) {
  void *place = next_;
  std::size_t room = static_cast<std::size_t>(end_ - next_);
  if (!next_ || !std::align(alignment, size, place, room)) {
    blockSize_ = std::clamp(2 * blockSize_, kFirstBlockSize, kLargestBlockSize);
    const std::size_t blockSize = std::max(blockSize_, size);
    blocks_.push_back(std::make_unique_for_overwrite<std::byte[]>(blockSize));
    place = blocks_.back().get();
    // A large piece has a block of its own, and the rest of the last block is still used.
    if (size > blockSize_ / 2 && next_) return place;
    end_ = static_cast<std::byte *>(place) + blockSize;
  }
  next_ = static_cast<std::byte *>(place) + size;
  return place;
}

}  // namespace nimbo
