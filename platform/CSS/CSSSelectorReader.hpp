// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/CSS/CSSSelectorPart.hpp"
#include "platform/CSS/CSSTokenizer.hpp"

namespace nimbo::detail {

/// How deep selectors may stand in ":is()" and its relatives; deeper ones are invalid.
inline constexpr int kMaximumSelectorNesting = 32;
/// The most compounds of a complex selector; one with more is valid and matches nothing.
inline constexpr std::size_t kMaximumCompounds = 256;

/// What "&" stands for in the rules that are nested in another.
struct CSSNesting {
  CSSSelectorPart part;
  CSSSpecificity specificity = 0;
};

/// Reads selectors off a tokenizer.
class CSSSelectorReader {
 public:
  /// `parent` is null outside rules.
  CSSSelectorReader(CSSTokenizer &tokenizer, const CSSSelectorReading &reading, CSSArena &arena,
                    const CSSNesting *parent);

  /// Reads a list up to a "{" or the end, which is read, too, and appends the selectors that can match. False
  /// when the list is invalid; the tokenizer stands anywhere in it then.
  bool read(std::vector<CSSSelector> &selectors);

  /// Whether the list that was read ended with a "{".
  bool hasEndedAtBlock() const { return token_.type == CSSTokenType::kLeftBrace; }

  /// For the rules that are nested in one with these selectors.
  static CSSNesting nesting(std::span<const CSSSelector> selectors, CSSArena &arena);

 private:
  enum class ListKind : std::uint8_t { kForgiving, kStrict, kRelative };
  struct List {
    std::span<const CSSSelector> selectors;
    CSSSpecificity specificity = 0;
  };
  struct Compound {
    std::size_t firstPart;
    CSSCombinator combinator;
  };
  struct Complex {
    std::vector<CSSSelectorPart> parts;
    std::vector<Compound> compounds;
    CSSSpecificity specificity = 0;
    CSSPseudoElement pseudoElement = CSSPseudoElement::kNone;
    bool hasPseudoElement = false;
    bool neverMatches = false;
  };

  void next();
  void skipSpace();
  bool isListEnd() const;
  bool isClosing() const;
  std::u16string_view text() const { return tokenizer_.text(token_, arena_); }
  bool isDelimiter(unichar c) const { return tokenizer_.isDelimiter(token_, c); }
  CSSName name(std::u16string_view text, bool isLowercase);

  std::optional<CSSSelector> readComplex(bool isRelative, bool &canMatch);
  CSSCombinator takeCombinator();
  bool readCompound(Complex &complex);
  bool readType(Complex &complex);
  bool readName(Complex &complex, CSSSelectorPartKind kind, CSSSpecificity specificity);
  bool readAttribute(Complex &complex);
  bool readAttributeValue(CSSSelectorPart &part);
  bool readPseudo(Complex &complex);
  bool readPseudoElement(Complex &complex, std::u16string_view name, bool isFunction);
  bool readPseudoClass(Complex &complex, std::u16string_view name);
  bool readFunction(Complex &complex, std::u16string_view name);
  bool readNested(Complex &complex, CSSSelectorPartKind kind, ListKind listKind, bool hasSpecificity);
  bool readNth(Complex &complex, CSSSelectorPartKind kind);
  bool readLanguages(Complex &complex);
  bool readDirection(Complex &complex);
  std::optional<List> readList(ListKind kind);
  void addContext(Complex &complex);
  void addNesting(Complex &complex);
  void add(Complex &complex, const CSSSelectorPart &part, CSSSpecificity specificity);
  CSSSelector finished(const Complex &complex);

  CSSTokenizer &tokenizer_;
  const CSSSelectorReading &reading_;
  CSSArena &arena_;
  const CSSNesting *parent_;
  CSSToken token_;
  int depth_ = 0;
  bool isInHas_ = false;
  bool hasNesting_ = false;
};

/// The places "an+b" that a text says, "odd" and "even" among them.
struct NthPlaces {
  std::int32_t step = 0, offset = 0;
};
std::optional<NthPlaces> nthPlaces(std::u16string_view text);

}  // namespace nimbo::detail
