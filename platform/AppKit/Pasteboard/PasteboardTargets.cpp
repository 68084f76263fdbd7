// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/Pasteboard/PasteboardTargets.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <string_view>

#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo::detail {
namespace {

enum class Use : std::uint8_t { both, read, write };

struct Row {
  TargetForm form;
  Use use;
  std::u16string_view type, target;
};

constexpr auto kRows = [] {
  using enum TargetForm;
  using enum Use;
  return std::to_array<Row>({
#include "PasteboardTargets.inc"
  });
}();

/// All rows of a type but those of a use; its own name when the table does not know it.
std::vector<PasteboardTarget> targetsOfType(const NSString &type, Use unwanted) {
  std::vector<PasteboardTarget> targets;
  bool isKnown = false;
  for (const Row &row : kRows) {
    if (row.type != type.view()) continue;
    isKnown = true;
    if (row.use != unwanted)
      targets.push_back({type, NSString::stringWithCharacters(row.target), row.form, targets.size()});
  }
  if (!isKnown) targets.push_back({type, type, TargetForm::data});
  return targets;
}

bool isCostly(const PasteboardTarget &target) {
  return target.form == TargetForm::picture || target.form == TargetForm::plainRTF;
}

/// The name of a media type as all write it who mean the same.
std::u16string canonicalName(std::u16string_view name) {
  std::u16string canonical(name);
  if (name.find(u'/') == std::u16string_view::npos) return canonical;
  std::erase_if(canonical, [](unichar c) { return c == ' ' || c == '"'; });
  std::ranges::transform(canonical, canonical.begin(), toASCIILower<unichar>);
  return canonical;
}

}  // namespace

std::vector<PasteboardOffer> offersOfTypes(std::span<const NSString> types) {
  std::vector<PasteboardOffer> offers;
  std::map<std::u16string, std::vector<PasteboardTarget>> sources;
  for (const NSString &type : types)
    for (const PasteboardTarget &source : targetsOfType(type, Use::read)) {
      sources[canonicalName(source.target.view())].push_back(source);
      if (std::ranges::find(offers, source.target, &PasteboardOffer::target) == offers.end())
        offers.push_back({source.target, {}});
    }
  for (PasteboardOffer &offer : offers) {
    offer.sources = sources[canonicalName(offer.target.view())];
    std::ranges::stable_sort(offer.sources, {}, &PasteboardTarget::place);
    if (offer.sources.front().form == TargetForm::data) std::erase_if(offer.sources, isCostly);
  }
  return offers;
}

std::vector<PasteboardTarget> targetsToRead(const NSString &type) {
  return targetsOfType(type, Use::write);
}

std::vector<NSString> typesOfTargets(std::span<const NSString> targets) {
  std::vector<NSString> types;
  const auto add = [&types](const NSString &type) {
    if (std::ranges::find(types, type) == types.end()) types.push_back(type);
  };
  for (const NSString &target : targets) {
    const std::u16string name = canonicalName(target.view());
    bool isKnown = false;
    for (const Row &row : kRows)
      if (row.use != Use::write && row.target == name) {
        isKnown = true;
        add(NSString::stringWithCharacters(row.type));
      }
    if (!isKnown) add(target);
  }
  return types;
}

}  // namespace nimbo::detail
