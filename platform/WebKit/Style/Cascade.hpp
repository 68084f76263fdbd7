// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/CSS/CSSCustomProperties.hpp"
#include "platform/CSS/CSSDeclaration.hpp"
#include "platform/CSS/CSSRuleIndex.hpp"
#include "platform/WebKit/Style/DeclarationTexts.hpp"

namespace nimbo::detail {

/// What declares something for an element, each part in its order.
struct CascadeInput {
  std::span<const CSSMatch> userAgentRules;
  /// Of presentational attributes.
  std::span<const CSSDeclaration> hints;
  std::span<const CSSMatch> authorRules;
  /// Of the "style" attribute.
  std::span<const CSSDeclaration> style;
  /// Rules for others are passed over.
  CSSPseudoElement pseudoElement = CSSPseudoElement::kNone;
};

/// Which of the declarations for an element hold. One is used for one element after the other.
class Cascade {
 public:
  /// For a page whose texts with variables are read into `texts`, which must outlive it.
  explicit Cascade(DeclarationTexts &texts) : texts_(&texts) {}

  /// Begins anew with the declarations, which must live as long as they are asked for, for an element that
  /// inherits these custom properties.
  void begin(const CascadeInput &input, const SharedPointer<CSSCustomProperties> &inherited);
  /// The custom properties of the element.
  const SharedPointer<CSSCustomProperties> &customProperties() const NIMBO_LIFETIMEBOUND {
    return customProperties_;
  }
  /// Says what inline sides are. All but "direction" is asked for afterwards.
  void setRightToLeft(bool isRightToLeft) { isRightToLeft_ = isRightToLeft; }

  /// The value that holds for a property that is no inline side: one of its own, "inherit" or "initial". No
  /// value when nothing is declared, or nothing that is valid.
  CSSValue value(CSSProperty property) const;
  /// The properties that have been declared, inline sides as the sides that they are.
  std::span<const CSSProperty> declaredProperties();

 private:
  /// Where a declaration comes from, in rising order.
  enum class Level : std::uint8_t { kUserAgent, kHint, kAuthor, kStyle };
  struct Candidate {
    const CSSDeclaration *declaration;
    std::uint32_t layerRank;
    Level level;
  };

  void addRules(std::span<const CSSMatch> rules, Level level, const CascadeInput &input);
  void addImportantRules(std::span<const CSSMatch> rules, Level level, const CascadeInput &input);
  void add(std::span<const CSSDeclaration> declarations, bool areImportant, Level level,
           std::uint32_t layerRank);
  void setWinner(CSSProperty property, std::uint32_t candidate);
  CSSValue valueOf(const Candidate &candidate, CSSProperty property) const;
  std::uint32_t winnerBelow(std::uint32_t candidate, CSSProperty property) const;
  CSSProperty inlineSideOf(CSSProperty side) const;
  bool declares(const CSSDeclaration &declaration, CSSProperty property) const;

  DeclarationTexts *texts_;
  /// From the weakest to the strongest.
  std::vector<Candidate> candidates_;
  std::vector<CSSDeclaration> customDeclarations_;
  SharedPointer<CSSCustomProperties> customProperties_;
  /// By property, the place of the candidate that holds, counted from 1; 0 for none.
  std::array<std::uint32_t, kCSSLonghands> winners_{};
  std::vector<CSSProperty> declared_, physical_;
  bool hasImportant_ = false;
  bool isRightToLeft_ = false;
};

}  // namespace nimbo::detail
