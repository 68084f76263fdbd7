// SPDX-License-Identifier: Apache-2.0
#include "Classes/Markup/TagNames.hpp"

#include <algorithm>
#include <array>

namespace nimbo {

namespace {

/// The packed names in the order of the enumeration; 0 for `kUnknown`.
constexpr std::array<std::uint64_t, kTagNames> kPackedNames = {0,
#define NIMBO_TAG_NAME(name) packedTagName(u"" #name),
                                                               NIMBO_TAG_NAMES(NIMBO_TAG_NAME)
#undef NIMBO_TAG_NAME
};
static_assert(std::count(kPackedNames.begin(), kPackedNames.end(), 0u) == 1, "a name that cannot be packed");

constexpr unsigned kSlotBits = 11;
using Slots = std::array<TagName, std::size_t{1} << kSlotBits>;

constexpr std::size_t slotOf(std::uint64_t packedName, std::uint64_t multiplier) {
  return static_cast<std::size_t>(packedName * multiplier >> (64 - kSlotBits));
}

/// The names in their slots; `kUnknown` in all of them when two names have the same one.
constexpr Slots slotsOfNames(std::uint64_t multiplier) {
  Slots slots{};
  for (std::size_t name = 1; name < kTagNames; ++name) {
    TagName &slot = slots[slotOf(kPackedNames[name], multiplier)];
    if (slot != TagName::kUnknown) return {};
    slot = static_cast<TagName>(name);
  }
  return slots;
}

/// Gives each name a slot of its own.
constexpr std::uint64_t kMultiplier = [] {
  std::uint64_t multiplier = 0x9e3779b97f4a7c15;
  while (slotsOfNames(multiplier) == Slots{}) multiplier += 0x6a09e667f3bcc908;
  return multiplier;
}();
constexpr Slots kSlots = slotsOfNames(kMultiplier);

}  // namespace

TagName tagNamed(std::uint64_t packedName) {
  const TagName name = kSlots[slotOf(packedName, kMultiplier)];
  return kPackedNames[static_cast<std::size_t>(name)] == packedName ? name : TagName::kUnknown;
}

}  // namespace nimbo
