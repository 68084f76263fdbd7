// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/CSS/CSSPropertyReader.hpp"

namespace nimbo::detail {

/// The most tokens of a value; a declaration with more is invalid.
inline constexpr std::size_t kMaximumValueTokens = 1 << 16;

/// Reads declarations of a block one by one.
class CSSDeclarationReader {
 public:
  CSSDeclarationReader(CSSMode mode, CSSArena &arena, std::vector<CSSDeclaration> &declarations)
      : mode_(mode), arena_(&arena), declarations_(&declarations) {}

  /// What a name is followed by.
  enum class Outcome : std::uint8_t {
    kDeclaration,  ///< Read, valid or not, with the ";" behind it; a "}" behind it is next.
    kRule,         ///< None; the tokenizer is as it was.
  };

  /// Reads the declaration whose name is `name`, the last token that was read; `ends` are the tokens that end
  /// its block.
  Outcome read(CSSTokenizer &tokenizer, const CSSToken &name, std::uint32_t ends);

  /// Reads a whole text as the value of a property. False when it is invalid.
  bool readWhole(CSSProperty property, std::u16string_view text);

 private:
  bool declare(const CSSTokenizer &tokenizer, CSSProperty property, const CSSToken &name, bool isImportant);

  CSSMode mode_;
  CSSArena *arena_;
  std::vector<CSSDeclaration> *declarations_;
  std::vector<CSSToken> tokens_;
};

}  // namespace nimbo::detail
