// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSRuleIndex.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <tuple>

namespace nimbo {

namespace {

/// How many entries are passed over in the time that a look at an element takes.
constexpr std::size_t kEntriesOfLook = 4;
/// How many looks at an element take the time that a rule that holds for it costs, until it is in its style.
constexpr std::size_t kLooksOfMatch = 12;

}  // namespace

void CSSRuleIndex::Bucket::fill(std::span<const Entry> added, CSSSelector::Key key) {
  CSSName last = kNoCSSName;
  for (const Entry &entry : added)
    if (entry.selector->key == key) last = std::max(last, entry.selector->keyName);
  starts.assign(last + std::size_t{2}, 0);
  for (const Entry &entry : added)
    if (entry.selector->key == key) ++starts[entry.selector->keyName + std::size_t{1}];
  std::partial_sum(starts.begin(), starts.end(), starts.begin());
  entries.resize(starts.back());
  std::vector<std::uint32_t> next = starts;
  for (const Entry &entry : added)
    if (entry.selector->key == key) entries[next[entry.selector->keyName]++] = entry;
}

std::span<const CSSRuleIndex::Entry> CSSRuleIndex::Bucket::of(CSSName name) const {
  if (name + std::size_t{1} >= starts.size()) return {};
  return std::span(entries).subspan(starts[name], starts[name + 1] - starts[name]);
}

void CSSRuleIndex::addLayers(const CSSStyleSheet &sheet, std::size_t count, Layer around) {
  if (count == 0) return;
  LayersOfSheet &added = layersOfSheets_[{&sheet, around}];
  const std::span<const CSSLayer> layers = sheet.layers();
  for (std::size_t i = added.size(); i < std::min(count, layers.size()); ++i) {
    const Layer parent = layers[i].parent == kNoCSSLayer ? around : added[layers[i].parent];
    auto layer = static_cast<Layer>(layersAround_.size());
    if (!layers[i].name.empty())
      layer = namedLayers_.try_emplace({parent, layers[i].name}, layer).first->second;
    if (layer == layersAround_.size()) layersAround_.push_back(parent);
    added.push_back(layer);
  }
}

CSSRuleIndex::Layer CSSRuleIndex::addedLayer(const CSSStyleSheet &sheet, CSSLayerIndex layer, Layer around) {
  if (layer == kNoCSSLayer) return around;
  addLayers(sheet, layer + std::size_t{1}, around);
  return layersOfSheets_[{&sheet, around}][layer];
}

void CSSRuleIndex::add(const CSSStyleSheet &sheet, Layer around) {
  addLayers(sheet, sheet.layers().size(), around);
  for (const CSSStyleRule &rule : sheet.rules()) {
    const Layer layer = addedLayer(sheet, rule.layer, around);
    const std::uint32_t order = order_++;
    for (const CSSSelector &selector : sheet.selectors(rule))
      added_.push_back({&selector, sheet.declarations(rule), order, layer});
  }
}

/// The place of each layer: one behind those inside it, and behind its earlier siblings. The layer around all
/// is the last.
std::vector<std::uint32_t> CSSRuleIndex::rankedLayers() const {
  const std::size_t count = layersAround_.size();
  // A layer has a greater number than the one around it, so that sizes and places come without recursion.
  std::vector<std::uint32_t> sizes(count, 1), next(count, 0), ranks(count, 0);
  for (std::size_t i = count; i-- > 1;) sizes[layersAround_[i]] += sizes[i];
  ranks[0] = sizes[0] - 1;
  for (std::size_t i = 1; i < count; ++i) {
    const Layer around = layersAround_[i];
    const std::uint32_t first = next[around];
    next[i] = first;
    next[around] = first + sizes[i];
    ranks[i] = first + sizes[i] - 1;
  }
  return ranks;
}

void CSSRuleIndex::finish() {
  const std::vector<std::uint32_t> ranks = rankedLayers();
  for (Entry &entry : added_) entry.layer = ranks[entry.layer];
  byId_.fill(added_, CSSSelector::Key::kId);
  byClass_.fill(added_, CSSSelector::Key::kClass);
  byType_.fill(added_, CSSSelector::Key::kType);
  others_.fill(added_, CSSSelector::Key::kAny);
  added_ = {};
}

void CSSRuleIndex::matchEntries(std::span<const Entry> entries, CSSSelectorMatcher &matcher,
                                CSSElementIndex element, std::vector<CSSMatch> &matches) const {
  if (entries.empty() || !matcher.spend(entries.size() / kEntriesOfLook)) return;
  for (const Entry &entry : entries) {
    const CSSSelector &selector = *entry.selector;
    if (matcher.matches(selector, element) && matcher.spend(kLooksOfMatch))
      matches.push_back(
          {entry.declarations, selector.specificity, entry.layer, entry.order, selector.pseudoElement});
  }
}

void CSSRuleIndex::match(CSSSelectorMatcher &matcher, CSSElementIndex index,
                         std::vector<CSSMatch> &matches) const {
  const CSSElements &elements = matcher.elements();
  const CSSElements::Element &element = elements[index];
  const std::size_t before = matches.size();
  if (element.id != kNoCSSName) matchEntries(byId_.of(element.id), matcher, index, matches);
  for (const CSSName name : elements.classes(element)) matchEntries(byClass_.of(name), matcher, index, matches);
  matchEntries(byType_.of(element.type), matcher, index, matches);
  matchEntries(others_.of(kNoCSSName), matcher, index, matches);
  const auto first = matches.begin() + static_cast<std::ptrdiff_t>(before);
  if (matches.end() - first < 2) return;
  // Of several selectors of a rule the most specific one counts.
  // What comes from one list is in order, mostly.
  const auto isEarlier = [](const CSSMatch &a, const CSSMatch &b) {
    return std::tie(a.order, a.pseudoElement, b.specificity) <
           std::tie(b.order, b.pseudoElement, a.specificity);
  };
  if (!std::is_sorted(first, matches.end(), isEarlier)) std::sort(first, matches.end(), isEarlier);
  const auto isSame = [](const CSSMatch &a, const CSSMatch &b) {
    return a.order == b.order && a.pseudoElement == b.pseudoElement;
  };
  matches.erase(std::unique(first, matches.end(), isSame), matches.end());
  const auto isWeaker = [](const CSSMatch &a, const CSSMatch &b) {
    return std::tie(a.layerRank, a.specificity, a.order) < std::tie(b.layerRank, b.specificity, b.order);
  };
  if (!std::is_sorted(first, matches.end(), isWeaker)) std::stable_sort(first, matches.end(), isWeaker);
}

}  // namespace nimbo
