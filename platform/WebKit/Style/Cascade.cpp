// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/Cascade.hpp"

#include <algorithm>

namespace nimbo::detail {

namespace {

constexpr std::size_t placeOf(CSSProperty property) {
  return static_cast<std::size_t>(property);
}

constexpr CSSProperty kFirstLonghand = CSSProperty::kBackgroundColor;

/// Whether "all" stands for it, too.
bool isPartOfAll(CSSProperty property) {
  return property != CSSProperty::kDirection && property != CSSProperty::kUnicodeBidi;
}

/// By direction and side, the inline side that is there.
using InlineSides = std::array<std::array<CSSProperty, kCSSLonghands>, 2>;

const InlineSides &inlineSides() {
  static const InlineSides sides = [] {
    InlineSides made{};
    for (std::size_t place = placeOf(kFirstLonghand); place < kCSSLonghands; ++place) {
      const auto property = static_cast<CSSProperty>(place);
      for (const bool isRightToLeft : {false, true}) {
        const CSSProperty side = physicalCSSProperty(property, isRightToLeft);
        if (side != property) made[isRightToLeft][placeOf(side)] = property;
      }
    }
    return made;
  }();
  return sides;
}

}  // namespace

void Cascade::begin(const CascadeInput &input, const SharedPointer<CSSCustomProperties> &inherited) {
  candidates_.clear();
  customDeclarations_.clear();
  for (const CSSProperty property : declared_) winners_[placeOf(property)] = 0;
  declared_.clear();
  hasImportant_ = false;
  isRightToLeft_ = false;

  addRules(input.userAgentRules, Level::kUserAgent, input);
  add(input.hints, false, Level::kHint, 0);
  addRules(input.authorRules, Level::kAuthor, input);
  add(input.style, false, Level::kStyle, 0);
  if (hasImportant_) {
    addImportantRules(input.authorRules, Level::kAuthor, input);
    add(input.style, true, Level::kStyle, 0);
    addImportantRules(input.userAgentRules, Level::kUserAgent, input);
  }
  customProperties_ = customDeclarations_.empty()
                          ? inherited
                          : CSSCustomProperties::make(inherited, customDeclarations_, texts_->budget());
}

void Cascade::addRules(std::span<const CSSMatch> rules, Level level, const CascadeInput &input) {
  for (const CSSMatch &rule : rules) {
    if (rule.pseudoElement == input.pseudoElement) add(rule.declarations, false, level, rule.layerRank);
  }
}

void Cascade::addImportantRules(std::span<const CSSMatch> rules, Level level, const CascadeInput &input) {
  // What is important is stronger in the earlier layer.
  while (!rules.empty()) {
    const std::uint32_t rank = rules.back().layerRank;
    std::size_t first = rules.size();
    while (first > 0 && rules[first - 1].layerRank == rank) --first;
    for (const CSSMatch &rule : rules.subspan(first)) {
      if (rule.pseudoElement == input.pseudoElement) add(rule.declarations, true, level, rank);
    }
    rules = rules.first(first);
  }
}

void Cascade::add(std::span<const CSSDeclaration> declarations, bool areImportant, Level level,
                  std::uint32_t layerRank) {
  for (const CSSDeclaration &declaration : declarations) {
    if (declaration.isImportant != areImportant) {
      hasImportant_ = true;
      continue;
    }
    if (declaration.property == CSSProperty::kCustom) {
      customDeclarations_.push_back(declaration);
      continue;
    }
    candidates_.push_back({&declaration, layerRank, level});
    const auto candidate = static_cast<std::uint32_t>(candidates_.size());
    if (declaration.property == CSSProperty::kAll) {
      for (std::size_t place = placeOf(kFirstLonghand); place < kCSSLonghands; ++place) {
        if (isPartOfAll(static_cast<CSSProperty>(place))) setWinner(static_cast<CSSProperty>(place), candidate);
      }
    } else if (isCSSShorthand(declaration.property)) {
      for (const CSSProperty property : longhandsOfCSSProperty(declaration.property))
        setWinner(property, candidate);
    } else {
      setWinner(declaration.property, candidate);
    }
  }
}

void Cascade::setWinner(CSSProperty property, std::uint32_t candidate) {
  std::uint32_t &winner = winners_[placeOf(property)];
  if (winner == 0) declared_.push_back(property);
  winner = candidate;
}

CSSProperty Cascade::inlineSideOf(CSSProperty side) const {
  return inlineSides()[isRightToLeft_][placeOf(side)];
}

bool Cascade::declares(const CSSDeclaration &declaration, CSSProperty property) const {
  if (declaration.property == CSSProperty::kAll) return isPartOfAll(property);
  if (!isCSSShorthand(declaration.property))
    return declaration.property == property || declaration.property == inlineSideOf(property);
  return std::ranges::any_of(longhandsOfCSSProperty(declaration.property), [&](CSSProperty longhand) {
    return longhand == property || longhand == inlineSideOf(property);
  });
}

CSSValue Cascade::valueOf(const Candidate &candidate, CSSProperty property) const {
  const CSSDeclaration &declaration = *candidate.declaration;
  if (declaration.value.kind() != CSSValueKind::kTokens) return declaration.value;
  CSSValue found;
  for (const CSSDeclaration &replaced :
       texts_->ofTokens(declaration.property, declaration.value.text(), customProperties_)) {
    if (declares(replaced, property)) found = replaced.value;
  }
  return found;
}

/// The strongest candidate for the property that "revert" or "revert-layer" of another one leaves.
std::uint32_t Cascade::winnerBelow(std::uint32_t candidate, CSSProperty property) const {
  const Candidate &from = candidates_[candidate - 1];
  const bool isLayer = valueOf(from, property).is(CSSKeyword::kRevertLayer);
  for (std::uint32_t below = candidate - 1; below > 0; --below) {
    const Candidate &other = candidates_[below - 1];
    const bool isLeft =
        isLayer ? other.level < from.level || (other.level == from.level && other.layerRank < from.layerRank)
                : other.level == Level::kUserAgent && from.level != Level::kUserAgent;
    if (isLeft && declares(*other.declaration, property)) return below;
  }
  return 0;
}

CSSValue Cascade::value(CSSProperty property) const {
  std::uint32_t winner = winners_[placeOf(property)];
  if (const CSSProperty side = inlineSideOf(property); side != CSSProperty::kUnknown)
    winner = std::max(winner, winners_[placeOf(side)]);
  while (winner != 0) {
    const CSSValue value = valueOf(candidates_[winner - 1], property);
    if (value.is(CSSKeyword::kUnset)) return {};
    if (!value.is(CSSKeyword::kRevert) && !value.is(CSSKeyword::kRevertLayer)) return value;
    winner = winnerBelow(winner, property);
  }
  return {};
}

std::span<const CSSProperty> Cascade::declaredProperties() {
  physical_.clear();
  for (const CSSProperty property : declared_) {
    const CSSProperty side = physicalCSSProperty(property, isRightToLeft_);
    if (side == property || winners_[placeOf(side)] == 0) physical_.push_back(side);
  }
  return physical_;
}

}  // namespace nimbo::detail
