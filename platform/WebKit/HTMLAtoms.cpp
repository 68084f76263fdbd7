// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/HTMLAtoms.hpp"

#include <array>
#include <random>

namespace nimbo {
namespace {

using detail::kHTMLNames;

constexpr std::size_t kKnownUnits = [] {
  std::size_t length = 0;
  for (const std::string_view name : kHTMLNames) length += name.size();
  return length;
}();

constexpr auto kKnownStarts = [] {
  std::array<std::uint16_t, kKnownHTMLAtoms + 1> starts{};
  for (std::size_t i = 0; i < kKnownHTMLAtoms; ++i)
    starts[i + 1] = static_cast<std::uint16_t>(starts[i] + kHTMLNames[i].size());
  return starts;
}();

constexpr auto kKnownText = [] {
  std::array<unichar, kKnownUnits> units{};
  auto end = units.begin();
  for (const std::string_view name : kHTMLNames)
    end = std::ranges::transform(name, end, [](char c) { return static_cast<unichar>(c); }).out;
  return units;
}();

constexpr std::u16string_view knownText(std::uint32_t index) {
  return {kKnownText.data() + kKnownStarts[index],
          static_cast<std::size_t>(kKnownStarts[index + 1] - kKnownStarts[index])};
}

template <bool IsFolded>
constexpr unichar unitOf(unichar c) {
  return IsFolded ? foldedNameUnit(c) : c;
}

template <bool IsFolded>
constexpr bool isEqual(std::u16string_view text, std::u16string_view other) {
  if (text.size() != other.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (unitOf<IsFolded>(text[i]) != other[i]) return false;
  return true;
}

constexpr std::size_t kKnownSlots = 2048;

/// The slot that the search for a known name starts at. The names are few and fixed: three units part them
/// well.
template <bool IsFolded>
constexpr std::size_t knownSlot(std::u16string_view text) {
  const std::size_t first = unitOf<IsFolded>(text.front()), middle = unitOf<IsFolded>(text[text.size() / 2]),
                    last = unitOf<IsFolded>(text.back());
  return (text.size() * 291 + first * 37 + middle * 7 + last * 131) % kKnownSlots;
}

constexpr auto kKnownTable = [] {
  std::array<std::uint16_t, kKnownSlots> slots{};
  for (std::uint32_t i = 1; i < kKnownHTMLAtoms; ++i) {
    std::size_t slot = knownSlot<false>(knownText(i));
    while (slots[slot] != 0) slot = (slot + 1) % kKnownSlots;
    slots[slot] = static_cast<std::uint16_t>(i);
  }
  return slots;
}();

template <bool IsFolded>
HTMLAtom knownAtom(std::u16string_view text) {
  for (std::size_t slot = knownSlot<IsFolded>(text); kKnownTable[slot] != 0; slot = (slot + 1) % kKnownSlots)
    if (isEqual<IsFolded>(text, knownText(kKnownTable[slot]))) return static_cast<HTMLAtom>(kKnownTable[slot]);
  return kNoHTMLAtom;
}

/// A page must not be able to choose names that all fall into one slot.
std::uint64_t hashSeed() {
  static const std::uint64_t seed = [] {
    std::random_device device;
    return std::uint64_t{device()} << 32 | device();
  }();
  return seed;
}

__extension__ typedef unsigned __int128 Product;

template <bool IsFolded>
std::uint64_t hashOf(std::u16string_view text) {
  constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15;
  std::uint64_t hash = hashSeed() ^ text.size();
  for (const unichar c : text) {
    const Product product = Product{hash ^ unitOf<IsFolded>(c)} * kFactor;
    hash = static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
  }
  return hash;
}

}  // namespace

template <bool IsFolded>
std::size_t HTMLAtoms::slotOf(std::u16string_view text, std::uint64_t hash) const {
  std::size_t slot = hash & (slots_.size() - 1);
  for (; slots_[slot] != 0; slot = (slot + 1) & (slots_.size() - 1)) {
    const Own &own = own_[slots_[slot] - 1];
    if (own.hash == hash && isEqual<IsFolded>(text, {units_.data() + own.start, own.length})) break;
  }
  return slot;
}

void HTMLAtoms::grow() {
  constexpr std::size_t kFirstSlots = 64;
  slots_.assign(std::max(kFirstSlots, slots_.size() * 2), 0);
  for (std::uint32_t i = 0; i < own_.size(); ++i) {
    std::size_t slot = own_[i].hash & (slots_.size() - 1);
    while (slots_[slot] != 0) slot = (slot + 1) & (slots_.size() - 1);
    slots_[slot] = i + 1;
  }
}

template <bool IsFolded>
HTMLAtom HTMLAtoms::insert(std::u16string_view text) {
  if (text.empty()) return kNoHTMLAtom;
  if (const HTMLAtom known = knownAtom<IsFolded>(text); known != kNoHTMLAtom) return known;
  if (own_.size() * 2 >= slots_.size()) grow();
  const std::uint64_t hash = hashOf<IsFolded>(text);
  const std::size_t slot = slotOf<IsFolded>(text, hash);
  if (slots_[slot] == 0) {
    own_.push_back({hash, static_cast<std::uint32_t>(units_.size()), static_cast<std::uint32_t>(text.size())});
    for (const unichar c : text) units_ += unitOf<IsFolded>(c);
    slots_[slot] = static_cast<std::uint32_t>(own_.size());
  }
  return static_cast<HTMLAtom>(kKnownHTMLAtoms + slots_[slot] - 1);
}

template HTMLAtom HTMLAtoms::insert<false>(std::u16string_view);
template HTMLAtom HTMLAtoms::insert<true>(std::u16string_view);

HTMLAtom HTMLAtoms::existingAtomOf(std::u16string_view text) const {
  if (text.empty()) return kNoHTMLAtom;
  if (const HTMLAtom known = knownAtom<false>(text); known != kNoHTMLAtom || slots_.empty()) return known;
  const std::uint32_t own = slots_[slotOf<false>(text, hashOf<false>(text))];
  return own != 0 ? static_cast<HTMLAtom>(kKnownHTMLAtoms + own - 1) : kNoHTMLAtom;
}

std::u16string_view HTMLAtoms::text(HTMLAtom atom) const {
  const auto number = static_cast<std::uint32_t>(atom);
  if (number < kKnownHTMLAtoms) return knownText(number);
  const Own &own = own_[number - kKnownHTMLAtoms];
  return {units_.data() + own.start, own.length};
}

}  // namespace nimbo
