// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/DeclarationTexts.hpp"

#include <functional>
#include <optional>
#include <string>

namespace nimbo::detail {

namespace {

/// How many replaced values are remembered; then they are read anew.
constexpr std::size_t kMaximumReplaced = 1 << 16;

std::size_t combined(std::size_t a, std::size_t b) {
  return (a ^ b) * 0x9e3779b97f4a7c15;
}

}  // namespace

std::size_t DeclarationTexts::Hash::operator()(const Key &key) const {
  return combined(std::hash<std::u16string_view>()(key.text), static_cast<std::size_t>(key.property));
}

std::size_t DeclarationTexts::Hash::operator()(const TokensKey &key) const {
  const std::hash<const void *> hash;
  return combined(combined(hash(key.tokens), hash(key.properties)), static_cast<std::size_t>(key.property));
}

std::span<const CSSDeclaration> DeclarationTexts::ofStyle(std::u16string_view text) {
  const auto [found, isNew] = read_.try_emplace({text, CSSProperty::kUnknown, mode_});
  if (isNew) {
    scratch_.clear();
    readDeclarations(text, mode_, arena_, scratch_);
    found->second = store();
  }
  return found->second;
}

std::span<const CSSDeclaration> DeclarationTexts::ofValue(CSSProperty property, std::u16string_view text,
                                                          CSSMode mode) {
  const auto [found, isNew] = read_.try_emplace({text, property, mode});
  if (isNew) {
    scratch_.clear();
    readValue(property, text, mode, arena_, scratch_);
    found->second = store();
  }
  return found->second;
}

std::span<const CSSDeclaration> DeclarationTexts::ofTokens(
    CSSProperty property, std::u16string_view tokens, const SharedPointer<CSSCustomProperties> &properties) {
  const TokensKey key = {tokens.data(), properties.get(), property};
  if (const auto found = replaced_.find(key); found != replaced_.end()) return found->second.declarations;
  scratch_.clear();
  if (const std::optional<std::u16string> text = replacedVariables(tokens, properties.get(), budget_))
    readValue(property, arena_.copy(std::u16string_view(*text)), mode_, arena_, scratch_);
  if (replaced_.size() >= kMaximumReplaced) replaced_.clear();
  return replaced_.emplace(key, Replaced{store(), properties}).first->second.declarations;
}

}  // namespace nimbo::detail
