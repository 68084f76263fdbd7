// SPDX-License-Identifier: Apache-2.0
#include "Classes/Characters/FoldCandidates.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "Classes/Characters/CharacterTables.hpp"

namespace nimbo::detail {

namespace {

struct LowercaseForm {
  unichar upper, lower;
};

/// The entries of `upperCharsTable` that are not their unit, by uppercase unit.
const std::vector<LowercaseForm> &lowercaseForms() {
  static const std::vector<LowercaseForm> forms = [] {
    const unichar *const upper = initUpperCharsTable();
    std::vector<LowercaseForm> found;
    for (std::uint32_t c = 0; c < kCharsTableEntries; ++c) {
      if (upper[c] != c) found.push_back({upper[c], static_cast<unichar>(c)});
    }
    std::ranges::stable_sort(found, {}, &LowercaseForm::upper);
    return found;
  }();
  return forms;
}

UnicharChoice makeCandidates(unichar upper) {
  if (toUpper(upper) != upper) return {};
  UnicharChoice choice = UnicharChoice::only(upper);
  const std::vector<LowercaseForm> &forms = lowercaseForms();
  for (auto form = std::ranges::lower_bound(forms, upper, {}, &LowercaseForm::upper);
       form != forms.end() && form->upper == upper; ++form) {
    if (choice.count == UnicharChoice::kMaxCount) throw std::length_error("foldCandidates");
    choice.units[choice.count++] = form->lower;
  }
  return choice;
}

/// Those of the units that most searches are for.
using AsciiCandidates = std::array<UnicharChoice, 0x80>;

}  // namespace

UnicharChoice foldCandidates(unichar upper) {
  static const AsciiCandidates ascii = [] {
    AsciiCandidates made;
    for (std::size_t c = 0; c < made.size(); ++c) made[c] = makeCandidates(static_cast<unichar>(c));
    return made;
  }();
  return upper < ascii.size() ? ascii[upper] : makeCandidates(upper);
}

}  // namespace nimbo::detail
