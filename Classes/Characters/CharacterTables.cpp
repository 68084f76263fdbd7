// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/CharacterTables.hpp"

#include <array>

#include "platform/Foundation/NSCharacterSet.hpp"
#include "platform/Foundation/Unicode/UnicharMapping.hpp"

namespace nimbo {
namespace detail {

constinit std::atomic<const unichar *> umlautsCharsTable{nullptr};
constinit std::atomic<const unichar *> upperCharsTable{nullptr};
constinit std::atomic<const unichar *> lowerCharsTable{nullptr};
constinit std::atomic<const unichar *> upperUmlautsCharsTable{nullptr};
constinit std::atomic<const unichar *> lowerUmlautsCharsTable{nullptr};

namespace {

/// The storage of a table, which costs no memory before it is filled.
class CharsTable {
 public:
  /// Fills each entry with `fold` of its unit. `Fold` takes and answers a unit.
  template <typename Fold>
  explicit CharsTable(Fold fold) {
    for (std::uint32_t c = 0; c < kCharsTableEntries; ++c) entries_[c] = fold(static_cast<unichar>(c));
  }

  /// Shows the table to those who look it up without coming here.
  const unichar *publish(std::atomic<const unichar *> &table) const {
    table.store(entries_.data(), std::memory_order_release);
    return entries_.data();
  }

 private:
  std::array<unichar, kCharsTableEntries> entries_;
};

}  // namespace

const unichar *makeUmlautsCharsTable() {
  static const CharsTable table([letters = NSCharacterSet::letterCharacterSet()](unichar c) {
    return letters.characterIsMember(c) ? unicharByFoldingDiacritics(c) : c;
  });
  return table.publish(umlautsCharsTable);
}

const unichar *makeUpperCharsTable() {
  static const CharsTable table([letters = NSCharacterSet::lowercaseLetterCharacterSet()](unichar c) {
    return letters.characterIsMember(c) ? uppercaseUnichar(c) : c;
  });
  return table.publish(upperCharsTable);
}

const unichar *makeLowerCharsTable() {
  static const CharsTable table([letters = NSCharacterSet::uppercaseLetterCharacterSet()](unichar c) {
    return letters.characterIsMember(c) && !isTitlecaseUnichar(c) ? lowercaseUnichar(c) : c;
  });
  return table.publish(lowerCharsTable);
}

const unichar *makeUpperUmlautsCharsTable() {
  static const CharsTable table([upper = initUpperCharsTable(), umlauts = initUmlautsCharsTable()](unichar c) {
    return upper[umlauts[c]];
  });
  return table.publish(upperUmlautsCharsTable);
}

const unichar *makeLowerUmlautsCharsTable() {
  static const CharsTable table([lower = initLowerCharsTable(), umlauts = initUmlautsCharsTable()](unichar c) {
    return lower[umlauts[c]];
  });
  return table.publish(lowerUmlautsCharsTable);
}

}  // namespace detail
}  // namespace nimbo
