// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSDeclaration.hpp"

#include <algorithm>

#include "platform/CSS/CSSComponents.hpp"
#include "platform/CSS/CSSDeclarationReader.hpp"
#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo {

namespace {

using detail::cssTokens;

constexpr std::uint32_t kBadTokens = cssTokens(CSSTokenType::kBadString, CSSTokenType::kBadURL);
constexpr std::uint32_t kUnmatched =
    cssTokens(CSSTokenType::kRightParenthesis, CSSTokenType::kRightSquare, CSSTokenType::kRightBrace);

bool isVariable(const CSSTokenizer &tokenizer, const CSSToken &token) {
  return token.type == CSSTokenType::kFunction && !token.hasEscapes &&
         equalsOneOfASCIINoCase(tokenizer.rawText(token), {"var", "env"});
}

/// Takes the "!important" off the end of the tokens, of which the first is no white space, and white space with
/// it.
bool takeImportant(const CSSTokenizer &tokenizer, std::vector<CSSToken> &tokens) {
  const auto trim = [&] {
    while (!tokens.empty() && tokens.back().type == CSSTokenType::kWhiteSpace) tokens.pop_back();
  };
  trim();
  if (tokens.size() < 2 || tokens.back().type != CSSTokenType::kIdent) return false;
  const CSSToken &word = tokens.back();
  const bool isImportant =
      word.hasEscapes
          ? equalsASCIINoCase(std::u16string_view(unescapedCSS(tokenizer.rawText(word))), "important")
          : equalsASCIINoCase(tokenizer.rawText(word), "important");
  if (!isImportant) return false;
  std::size_t mark = tokens.size() - 1;
  while (tokens[mark - 1].type == CSSTokenType::kWhiteSpace) --mark;
  if (!tokenizer.isDelimiter(tokens[mark - 1], u'!')) return false;
  tokens.resize(mark - 1);
  trim();
  return true;
}

CSSToken skipAtRule(CSSTokenizer &tokenizer, std::uint32_t ends) {
  const CSSToken end =
      detail::skipComponents(tokenizer, ends | cssTokens(CSSTokenType::kSemicolon, CSSTokenType::kLeftBrace));
  if (end.type == CSSTokenType::kLeftBrace)
    detail::skipComponents(tokenizer, cssTokens(CSSTokenType::kRightBrace));
  return end;
}

}  // namespace

namespace detail {

CSSDeclarationReader::Outcome CSSDeclarationReader::read(CSSTokenizer &tokenizer, const CSSToken &name,
                                                         std::uint32_t ends) {
  const CSSTokenizer start = tokenizer;
  if (nextBesideSpace(tokenizer).type != CSSTokenType::kColon) {
    tokenizer = start;
    return Outcome::kRule;
  }
  const CSSProperty property =
      propertyNamed(name.hasEscapes ? tokenizer.text(name, *arena_) : tokenizer.rawText(name));
  tokens_.clear();
  bool hasVariables = false, isBad = false, isTooLong = false;
  ends |= cssTokens(CSSTokenType::kSemicolon);
  // What has a block in it is a rule, "a:hover {}", unless its name begins with "--".
  if (property != CSSProperty::kCustom) ends |= cssTokens(CSSTokenType::kLeftBrace);
  CSSBrackets brackets;
  CSSToken token;
  std::uint32_t location = tokenizer.location();
  for (;; location = tokenizer.location()) {
    token = tokenizer.next();
    if (token.type == CSSTokenType::kEnd || (brackets.isEmpty() && isOneOf(ends, token.type))) break;
    const bool isMatched = brackets.follow(token.type);
    if (property == CSSProperty::kUnknown) continue;
    isBad = isBad || !isMatched || isOneOf(kBadTokens, token.type);
    hasVariables = hasVariables || isVariable(tokenizer, token);
    if (tokens_.size() >= kMaximumValueTokens)
      isTooLong = true;
    else if (!tokens_.empty() || token.type != CSSTokenType::kWhiteSpace)
      tokens_.push_back(token);
  }
  if (token.type == CSSTokenType::kLeftBrace) {
    tokenizer = start;
    return Outcome::kRule;
  }
  if (token.type != CSSTokenType::kSemicolon) tokenizer.setLocation(location);
  if (property == CSSProperty::kUnknown || isBad || isTooLong) return Outcome::kDeclaration;
  const bool isImportant = takeImportant(tokenizer, tokens_);
  if (hasVariables && property != CSSProperty::kCustom) {
    const std::u16string_view text =
        tokenizer.source().substr(tokens_.front().location, tokens_.back().end - tokens_.front().location);
    declarations_->push_back({property, isImportant, CSSValue::text(CSSValueKind::kTokens, text), {}});
    return Outcome::kDeclaration;
  }
  declare(tokenizer, property, name, isImportant);
  return Outcome::kDeclaration;
}

bool CSSDeclarationReader::declare(const CSSTokenizer &tokenizer, CSSProperty property, const CSSToken &name,
                                   bool isImportant) {
  if (property == CSSProperty::kCustom) {
    CSSDeclaration declaration{property, isImportant, {}, tokenizer.text(name, *arena_)};
    std::u16string_view text;
    if (!tokens_.empty())
      text = tokenizer.source().substr(tokens_.front().location, tokens_.back().end - tokens_.front().location);
    const CSSKeyword wide = tokens_.size() == 1 ? keywordNamed(text) : CSSKeyword::kUnknown;
    declaration.value = isCSSWideKeyword(wide) ? CSSValue(wide) : CSSValue::text(CSSValueKind::kTokens, text);
    declarations_->push_back(declaration);
    return true;
  }
  CSSValueReader reader(tokenizer, tokens_, mode_, *arena_);
  const std::size_t before = declarations_->size();
  if (readPropertyValue(property, {reader, isImportant, *declarations_})) return true;
  declarations_->resize(before);
  return false;
}

bool CSSDeclarationReader::readWhole(CSSProperty property, std::u16string_view text) {
  if (property == CSSProperty::kUnknown || property == CSSProperty::kCustom) return false;
  CSSTokenizer tokenizer(text);
  tokens_.clear();
  CSSBrackets brackets;
  for (CSSToken token = tokenizer.next(); token.type != CSSTokenType::kEnd; token = tokenizer.next()) {
    const bool isMatched = brackets.follow(token.type);
    if (!isMatched || isOneOf(kBadTokens, token.type) || tokens_.size() >= kMaximumValueTokens) return false;
    tokens_.push_back(token);
  }
  return declare(tokenizer, property, {}, false);
}

}  // namespace detail

void readDeclarations(std::u16string_view text, CSSMode mode, CSSArena &arena,
                      std::vector<CSSDeclaration> &declarations) {
  CSSTokenizer tokenizer(text);
  detail::CSSDeclarationReader reader(mode, arena, declarations);
  for (CSSToken token = detail::nextBesideSpace(tokenizer); token.type != CSSTokenType::kEnd;
       token = detail::nextBesideSpace(tokenizer)) {
    if (token.type == CSSTokenType::kSemicolon) continue;
    if (token.type == CSSTokenType::kIdent &&
        reader.read(tokenizer, token, 0) == detail::CSSDeclarationReader::Outcome::kDeclaration)
      continue;
    tokenizer.setLocation(token.location);
    skipAtRule(tokenizer, 0);
  }
}

bool readValue(CSSProperty property, std::u16string_view text, CSSMode mode, CSSArena &arena,
               std::vector<CSSDeclaration> &declarations) {
  return detail::CSSDeclarationReader(mode, arena, declarations).readWhole(property, text);
}

std::optional<CSSColor> readColor(std::u16string_view text, CSSMode mode) {
  CSSTokenizer tokenizer(text);
  const CSSToken first = detail::nextBesideSpace(tokenizer);
  // Most colours are a single token, which needs no memory of the heap.
  std::vector<CSSToken> tokens;
  if (detail::nextBesideSpace(tokenizer).type != CSSTokenType::kEnd)
    tokens = detail::tokensOf(CSSTokenizer(text));
  CSSArena arena;
  detail::CSSValueReader reader(tokenizer, tokens.empty() ? std::span<const CSSToken>(&first, 1) : tokens, mode,
                                arena);
  const CSSValue color = reader.color(true);
  return color.kind() == CSSValueKind::kColor && reader.isAtEnd() ? std::optional(color.color()) : std::nullopt;
}

std::optional<CSSRawDeclaration> CSSRawDeclarations::next() {
  for (;;) {
    const CSSToken name = detail::nextBesideSpace(tokenizer_);
    if (name.type == CSSTokenType::kEnd) return std::nullopt;
    if (name.type == CSSTokenType::kSemicolon) continue;
    const std::uint32_t behindName = tokenizer_.location();
    if (name.type != CSSTokenType::kIdent || detail::nextBesideSpace(tokenizer_).type != CSSTokenType::kColon) {
      tokenizer_.setLocation(name.type == CSSTokenType::kIdent ? behindName : name.location);
      skipAtRule(tokenizer_, 0);
      continue;
    }
    // The value ends in front of an "!" that "important" follows, and of white space there.
    std::uint32_t first = 0, end = 0, mark = 0;
    bool isMarked = false, isImportant = false;
    const std::uint32_t ends = detail::cssTokens(CSSTokenType::kSemicolon, CSSTokenType::kLeftBrace);
    const CSSToken last = detail::walkComponents(tokenizer_, ends, [&](const CSSToken &token) {
      if (token.type == CSSTokenType::kWhiteSpace) return;
      isImportant = isMarked && token.type == CSSTokenType::kIdent &&
                    equalsASCIINoCase(tokenizer_.rawText(token), "important");
      isMarked = tokenizer_.isDelimiter(token, u'!');
      if (isMarked) mark = end;
      if (end == 0) first = token.location;
      end = token.end;
    });
    if (last.type == CSSTokenType::kLeftBrace) {
      detail::skipComponents(tokenizer_, detail::cssTokens(CSSTokenType::kRightBrace));
      continue;
    }
    if (isImportant) end = std::max(mark, first);
    return CSSRawDeclaration{tokenizer_.rawText(name), tokenizer_.source().substr(first, end - first),
                             isImportant};
  }
}

}  // namespace nimbo
