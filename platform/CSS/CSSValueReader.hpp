// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/CSS/CSSDeclaration.hpp"

namespace nimbo::detail {

/// How deep functions and parentheses of a value may stand in each other.
inline constexpr int kMaximumValueNesting = 32;

/// Which numbers a reader takes.
struct CSSNumericRange {
  bool takesNumbers = false;
  bool takesLengths = false;
  bool takesPercentages = false;
  bool isNonNegative = false;
  /// Whether a number other than 0 stands for pixels in quirks mode.
  bool mayLackUnit = false;
};

/// Reads parts of a value off its tokens, from left to right. Each reader passes over what it has read and the
/// white space behind it; one that finds nothing of its kind answers no value and stays where it is.
class CSSValueReader {
 public:
  CSSValueReader(const CSSTokenizer &tokenizer, std::span<const CSSToken> tokens, CSSMode mode,
                 CSSArena &arena);

  bool isAtEnd() const { return position_ == tokens_.size(); }
  std::size_t position() const { return position_; }
  void setPosition(std::size_t position) { position_ = position; }
  /// Takes no quirks from here on.
  void setStandardMode() { mode_ = CSSMode::kStandard; }
  CSSArena &arena() { return *arena_; }
  /// The token that comes next; `kEnd` at the end.
  const CSSToken &peek() const;
  void advance();
  /// Passes over the token if it is of the kind.
  bool take(CSSTokenType type);
  bool takeDelimiter(unichar c);
  std::u16string_view text(const CSSToken &token) { return tokenizer_->text(token, *arena_); }

  /// The keyword that comes next, without passing over it; `kUnknown` for something else.
  CSSKeyword peekKeyword();
  /// A keyword, if it is one of these.
  CSSValue keyword(std::span<const CSSKeyword> allowed);
  bool takeKeyword(CSSKeyword keyword);
  CSSValue numeric(const CSSNumericRange &range);
  CSSValue number() { return numeric({.takesNumbers = true}); }
  CSSValue integer();
  CSSValue string();
  CSSValue url();
  CSSValue identifier();
  /// `mayLackHash` says whether quirks mode takes digits alone.
  CSSValue color(bool mayLackHash);
  /// The degrees of an angle, of which a number is one of degrees.
  std::optional<double> angle();

  /// The number of a dimension, which must come next.
  double takeDimension();
  /// The text of all its tokens.
  std::u16string_view source() const;

  /// The reader of what stands in the brackets that come next, or of a function's arguments.
  std::optional<CSSValueReader> block();
  /// The reader of the arguments, when a function of the name comes next, which is passed over.
  std::optional<CSSValueReader> function(std::string_view lowerCaseName);
  /// The reader of the arguments of any function; `name` becomes its name.
  std::optional<CSSValueReader> anyFunction(std::u16string_view &name);

 private:
  friend class CSSMathReader;

  void skipSpace();
  CSSValue dimension(const CSSToken &token, const CSSNumericRange &range);
  CSSValue colorFunction();

  const CSSTokenizer *tokenizer_;
  std::span<const CSSToken> tokens_;
  std::size_t position_ = 0;
  CSSMode mode_;
  CSSArena *arena_;
  int depth_ = 0;
};

std::vector<CSSToken> tokensOf(CSSTokenizer tokenizer);

/// The pixels of an absolute unit, or the relative unit with a factor of 1; nothing for another name.
struct CSSUnitMeaning {
  CSSUnit unit;
  double factor;
};
std::optional<CSSUnitMeaning> unitNamed(std::u16string_view name);

/// The value of a mathematical function that comes next, which is passed over; no value when it is none or is
/// not of the range.
CSSValue readMath(CSSValueReader &reader, const CSSNumericRange &range);

}  // namespace nimbo::detail
