// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/CSS/CSSArena.hpp"
#include "platform/CSS/CSSCustomProperties.hpp"
#include "platform/CSS/CSSDeclaration.hpp"

namespace nimbo::detail {

/// The declarations of texts that elements bring along, each text read once: "style" attributes, values of
/// properties, values whose variables have been replaced. What is answered lives as long as this, and equal
/// texts have one answer. The texts must outlive it.
class DeclarationTexts {
 public:
  /// For a page of the mode.
  explicit DeclarationTexts(CSSMode mode) : mode_(mode) {}
  DeclarationTexts(const DeclarationTexts &) = delete;
  DeclarationTexts &operator=(const DeclarationTexts &) = delete;

  /// The declarations of a "style" attribute.
  std::span<const CSSDeclaration> ofStyle(std::u16string_view text);
  /// What the value of a property, which may be a shorthand, declares; nothing when it is invalid.
  std::span<const CSSDeclaration> ofValue(CSSProperty property, std::u16string_view text, CSSMode mode);
  /// What a value with variables declares for an element with the custom properties, which may be null.
  std::span<const CSSDeclaration> ofTokens(CSSProperty property, std::u16string_view tokens,
                                           const SharedPointer<CSSCustomProperties> &properties);

  /// What is left for replacing variables.
  CSSVariableBudget &budget() NIMBO_LIFETIMEBOUND { return budget_; }
  /// The mode of the page.
  CSSMode mode() const { return mode_; }

 private:
  /// A text, and what it is read as: `kUnknown` stands for declarations.
  struct Key {
    std::u16string_view text;
    CSSProperty property;
    CSSMode mode;
    bool operator==(const Key &) const = default;
  };
  /// Tokens by where they stand.
  struct TokensKey {
    const char16_t *tokens;
    const CSSCustomProperties *properties;
    CSSProperty property;
    bool operator==(const TokensKey &) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key &key) const;
    std::size_t operator()(const TokensKey &key) const;
  };
  struct Replaced {
    std::span<const CSSDeclaration> declarations;
    /// Holds the properties, so that no others come to stand in their place.
    SharedPointer<CSSCustomProperties> properties;
  };

  /// A lasting copy of what was read last.
  std::span<const CSSDeclaration> store() { return arena_.copy(std::span<const CSSDeclaration>(scratch_)); }

  CSSMode mode_;
  CSSArena arena_;
  CSSVariableBudget budget_;
  std::vector<CSSDeclaration> scratch_;
  std::unordered_map<Key, std::span<const CSSDeclaration>, Hash> read_;
  std::unordered_map<TokensKey, Replaced, Hash> replaced_;
};

}  // namespace nimbo::detail
