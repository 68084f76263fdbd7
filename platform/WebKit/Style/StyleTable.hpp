// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <utility>
#include <vector>

#include "platform/Foundation/Attributes.hpp"

namespace nimbo::detail {

/// The hash of the words of a key. It differs from process to process, so that no page can be made of keys that
/// collide.
std::uint64_t hashOfWords(std::span<const std::uint64_t> words);

/// Things by keys of words, as many as fit; when it is full it forgets all of them. The keys stand one behind
/// the other, so that a search touches few lines of memory.
template <class T>
class StyleTable {
 public:
  /// How many things, and how many words of keys, it holds at most.
  static constexpr std::size_t kCapacity = std::size_t{1} << 14;
  static constexpr std::size_t kCapacityOfKeys = std::size_t{1} << 20;

  /// The thing of the key; null when there is none. It is borrowed until something is added.
  T *find(std::span<const std::uint64_t> key) NIMBO_LIFETIMEBOUND {
    const Slot &slot = slotOf(key, static_cast<std::uint32_t>(hashOfWords(key)));
    return slot.place != 0 ? &things_[keys_[slot.place]] : nullptr;
  }

  /// Whether the next thing that is added is the only one.
  bool isFull() const { return things_.size() >= kCapacity || keys_.size() >= kCapacityOfKeys; }

  /// Adds a thing for a key that has none.
  T &add(std::span<const std::uint64_t> key, T thing) NIMBO_LIFETIMEBOUND {
    if (isFull()) *this = StyleTable();
    const auto hash = static_cast<std::uint32_t>(hashOfWords(key));
    slotOf(key, hash) = {hash, static_cast<std::uint32_t>(keys_.size())};
    keys_.push_back(things_.size());
    keys_.push_back(key.size());
    keys_.insert(keys_.end(), key.begin(), key.end());
    things_.push_back(std::move(thing));
    return things_.back();
  }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    /// Where the number of the thing, the length of the key and the key stand; 0 for a slot that is free.
    std::uint32_t place = 0;
  };

  Slot &slotOf(std::span<const std::uint64_t> key, std::uint32_t hash) {
    std::size_t slot = hash % slots_.size();
    while (slots_[slot].place != 0 && !(slots_[slot].hash == hash && hasKey(slots_[slot], key)))
      slot = (slot + 1) % slots_.size();
    return slots_[slot];
  }
  bool hasKey(const Slot &slot, std::span<const std::uint64_t> key) const {
    return keys_[slot.place + 1] == key.size() &&
           std::equal(key.begin(), key.end(), keys_.begin() + slot.place + 2);
  }

  std::vector<Slot> slots_ = std::vector<Slot>(2 * kCapacity);
  std::vector<std::uint64_t> keys_ = {0};
  std::deque<T> things_;
};

}  // namespace nimbo::detail
