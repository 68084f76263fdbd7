// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/CSS/CSSTokenizer.hpp"

namespace nimbo::detail {

/// The brackets that are open, without a bound. The outer ones need no memory of the heap.
class CSSBrackets {
 public:
  bool isEmpty() const { return depth_ == 0; }

  /// Follows a token. False for one that closes what is not open, which changes nothing.
  bool follow(CSSTokenType type) {
    switch (type) {
      case CSSTokenType::kFunction:
      case CSSTokenType::kLeftParenthesis:
        push(CSSTokenType::kRightParenthesis);
        return true;
      case CSSTokenType::kLeftSquare:
        push(CSSTokenType::kRightSquare);
        return true;
      case CSSTokenType::kLeftBrace:
        push(CSSTokenType::kRightBrace);
        return true;
      case CSSTokenType::kRightParenthesis:
      case CSSTokenType::kRightSquare:
      case CSSTokenType::kRightBrace:
        if (depth_ == 0 || top() != type) return false;
        --depth_;
        if (depth_ >= kInner) outer_.pop_back();
        return true;
      default:
        return true;
    }
  }

 private:
  static constexpr std::size_t kInner = 64;

  CSSTokenType top() const { return depth_ <= kInner ? inner_[depth_ - 1] : outer_.back(); }
  void push(CSSTokenType closing) {
    if (depth_ < kInner)
      inner_[depth_] = closing;
    else
      outer_.push_back(closing);
    ++depth_;
  }

  std::size_t depth_ = 0;
  std::array<CSSTokenType, kInner> inner_;
  std::vector<CSSTokenType> outer_;
};

/// A set of kinds of tokens.
template <class... Types>
constexpr std::uint32_t cssTokens(Types... types) {
  return ((1u << static_cast<unsigned>(types)) | ... | 0u);
}

constexpr bool isOneOf(std::uint32_t set, CSSTokenType type) {
  return set >> static_cast<unsigned>(type) & 1;
}

/// Reads tokens, with `visit` for each, up to one of the ends that stands in no brackets, which is read, too,
/// and answered; `kEnd` at the end of the text.
template <class Visit>
CSSToken walkComponents(CSSTokenizer &tokenizer, std::uint32_t ends, Visit visit) {
  CSSBrackets brackets;
  for (;;) {
    const CSSToken token = tokenizer.next();
    if (token.type == CSSTokenType::kEnd) return token;
    if (brackets.isEmpty() && isOneOf(ends, token.type)) return token;
    brackets.follow(token.type);
    visit(token);
  }
}

inline CSSToken skipComponents(CSSTokenizer &tokenizer, std::uint32_t ends) {
  return walkComponents(tokenizer, ends, [](const CSSToken &) {});
}

inline CSSToken nextBesideSpace(CSSTokenizer &tokenizer) {
  CSSToken token = tokenizer.next();
  while (token.type == CSSTokenType::kWhiteSpace) token = tokenizer.next();
  return token;
}

}  // namespace nimbo::detail
