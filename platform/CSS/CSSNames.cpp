// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSNames.hpp"

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

namespace {

constexpr std::size_t kFirstSlots = 64;

/// Chosen anew by each process, so that no sheet can be made of names that collide.
std::uint64_t hashSeed() {
  static const std::uint64_t seed = [] {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random() | 1;
  }();
  return seed;
}

std::uint64_t mixed(std::uint64_t a, std::uint64_t b) {
  __extension__ typedef unsigned __int128 Product;
  const Product product = static_cast<Product>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t hashOf(std::u16string_view text) {
  constexpr std::uint64_t kMixer = 0x9e3779b97f4a7c15;
  constexpr std::size_t kUnits = sizeof(std::uint64_t) / sizeof(unichar);
  std::uint64_t hash = hashSeed() ^ text.size();
  const auto add = [&](std::u16string_view units) {
    std::uint64_t word = 0;
    std::memcpy(&word, units.data(), units.size() * sizeof(unichar));
    hash = mixed(hash ^ word, hashSeed() ^ kMixer);
  };
  for (; text.size() > kUnits; text.remove_prefix(kUnits)) add(text.substr(0, kUnits));
  add(text);
  return mixed(hash, kMixer);
}

}  // namespace

CSSNames::CSSNames(const CSSNames *base) : base_(base), baseSize_(base ? base->size() : 0) {}

CSSName CSSNames::find(std::u16string_view name, std::uint64_t hash) const {
  if (base_) {
    if (const CSSName found = base_->find(name, hash)) return found;
  }
  if (slots_.empty()) return kNoCSSName;
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask; slots_[slot] != 0; slot = (slot + 1) & mask) {
    const Entry &entry = names_[slots_[slot] - 1];
    if (entry.hash == hash && entry.text == name) return static_cast<CSSName>(baseSize_ + slots_[slot]);
  }
  return kNoCSSName;
}

CSSName CSSNames::find(std::u16string_view name) const {
  return name.empty() ? kNoCSSName : find(name, hashOf(name));
}

CSSName CSSNames::intern(std::u16string_view name) {
  if (name.empty()) return kNoCSSName;
  const std::uint64_t hash = hashOf(name);
  if (const CSSName found = find(name, hash)) return found;
  if (2 * (names_.size() + 1) > slots_.size()) grow();
  names_.push_back({arena_.copy(name), hash});
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash & mask;
  while (slots_[slot] != 0) slot = (slot + 1) & mask;
  slots_[slot] = static_cast<std::uint32_t>(names_.size());
  return static_cast<CSSName>(size());
}

CSSName CSSNames::internLowercase(std::u16string_view name) {
  if (std::ranges::none_of(name, isASCIIUppercase<unichar>)) return intern(name);
  std::u16string lower(name);
  for (unichar &c : lower) c = toASCIILower(c);
  return intern(lower);
}

std::u16string_view CSSNames::text(CSSName name) const {
  if (name == kNoCSSName) return {};
  return name <= baseSize_ ? base_->text(name) : names_[name - baseSize_ - 1].text;
}

void CSSNames::grow() {
  std::vector<std::uint32_t> slots(std::max(kFirstSlots, 2 * slots_.size()));
  const std::size_t mask = slots.size() - 1;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    std::size_t slot = names_[i].hash & mask;
    while (slots[slot] != 0) slot = (slot + 1) & mask;
    slots[slot] = static_cast<std::uint32_t>(i + 1);
  }
  slots_.swap(slots);
}

}  // namespace nimbo
