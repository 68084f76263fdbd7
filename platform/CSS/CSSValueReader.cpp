// SPDX-License-Identifier: Apache-2.0
#include "platform/CSS/CSSValueReader.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "platform/CSS/CSSComponents.hpp"
#include "platform/CSS/CSSNameLookup.hpp"

namespace nimbo::detail {

namespace {

constexpr CSSToken kNoToken;

constexpr CSSNameLookup kUnits(std::to_array<CSSNamedValue<CSSUnitMeaning>>({
    {"px", {CSSUnit::kPixels, 1}},
    {"pt", {CSSUnit::kPixels, 96.0 / 72}},
    {"pc", {CSSUnit::kPixels, 16}},
    {"in", {CSSUnit::kPixels, 96}},
    {"cm", {CSSUnit::kPixels, 96 / 2.54}},
    {"mm", {CSSUnit::kPixels, 9.6 / 2.54}},
    {"q", {CSSUnit::kPixels, 2.4 / 2.54}},
    {"em", {CSSUnit::kEm, 1}},
    {"ex", {CSSUnit::kEx, 1}},
    {"cap", {CSSUnit::kCap, 1}},
    {"ch", {CSSUnit::kCh, 1}},
    {"ic", {CSSUnit::kIc, 1}},
    {"rem", {CSSUnit::kRem, 1}},
    {"rex", {CSSUnit::kRex, 1}},
    {"rch", {CSSUnit::kRch, 1}},
    {"lh", {CSSUnit::kLh, 1}},
    {"rlh", {CSSUnit::kRlh, 1}},
    {"vw", {CSSUnit::kVw, 1}},
    {"vi", {CSSUnit::kVw, 1}},
    {"svw", {CSSUnit::kVw, 1}},
    {"lvw", {CSSUnit::kVw, 1}},
    {"dvw", {CSSUnit::kVw, 1}},
    {"vh", {CSSUnit::kVh, 1}},
    {"vb", {CSSUnit::kVh, 1}},
    {"svh", {CSSUnit::kVh, 1}},
    {"lvh", {CSSUnit::kVh, 1}},
    {"dvh", {CSSUnit::kVh, 1}},
    {"vmin", {CSSUnit::kVmin, 1}},
    {"svmin", {CSSUnit::kVmin, 1}},
    {"lvmin", {CSSUnit::kVmin, 1}},
    {"dvmin", {CSSUnit::kVmin, 1}},
    {"vmax", {CSSUnit::kVmax, 1}},
    {"svmax", {CSSUnit::kVmax, 1}},
    {"lvmax", {CSSUnit::kVmax, 1}},
    {"dvmax", {CSSUnit::kVmax, 1}},
}));

constexpr CSSNameLookup kDegrees(std::to_array<CSSNamedValue<double>>({
    {"deg", 1},
    {"grad", 0.9},
    {"rad", 180 / std::numbers::pi},
    {"turn", 360},
}));

}  // namespace

std::optional<CSSUnitMeaning> unitNamed(std::u16string_view name) {
  const CSSUnitMeaning *const meaning = kUnits.find(name);
  return meaning ? std::optional(*meaning) : std::nullopt;
}

CSSValueReader::CSSValueReader(const CSSTokenizer &tokenizer, std::span<const CSSToken> tokens, CSSMode mode,
                               CSSArena &arena)
    : tokenizer_(&tokenizer), tokens_(tokens), mode_(mode), arena_(&arena) {
  skipSpace();
}

const CSSToken &CSSValueReader::peek() const {
  return isAtEnd() ? kNoToken : tokens_[position_];
}

void CSSValueReader::skipSpace() {
  while (!isAtEnd() && tokens_[position_].type == CSSTokenType::kWhiteSpace) ++position_;
}

void CSSValueReader::advance() {
  if (isAtEnd()) return;
  ++position_;
  skipSpace();
}

bool CSSValueReader::take(CSSTokenType type) {
  if (isAtEnd() || peek().type != type) return false;
  advance();
  return true;
}

bool CSSValueReader::takeDelimiter(unichar c) {
  if (!tokenizer_->isDelimiter(peek(), c)) return false;
  advance();
  return true;
}

CSSKeyword CSSValueReader::peekKeyword() {
  const CSSToken &token = peek();
  return token.type == CSSTokenType::kIdent ? keywordNamed(text(token)) : CSSKeyword::kUnknown;
}

CSSValue CSSValueReader::keyword(std::span<const CSSKeyword> allowed) {
  const CSSKeyword found = peekKeyword();
  if (std::ranges::find(allowed, found) == allowed.end()) return {};
  advance();
  return found;
}

bool CSSValueReader::takeKeyword(CSSKeyword keyword) {
  if (peekKeyword() != keyword) return false;
  advance();
  return true;
}

CSSValue CSSValueReader::dimension(const CSSToken &token, const CSSNumericRange &range) {
  if (!range.takesLengths) return {};
  const std::optional<CSSUnitMeaning> meaning = unitNamed(text(token));
  if (!meaning) return {};
  return CSSValue::number(tokenizer_->number(token) * meaning->factor, meaning->unit);
}

CSSValue CSSValueReader::numeric(const CSSNumericRange &range) {
  const CSSToken &token = peek();
  CSSValue value;
  switch (token.type) {
    case CSSTokenType::kNumber: {
      const double number = tokenizer_->number(token);
      if (range.takesNumbers)
        value = CSSValue::number(number);
      else if (range.takesLengths && (number == 0 || (range.mayLackUnit && mode_ == CSSMode::kQuirks)))
        value = CSSValue::number(number, CSSUnit::kPixels);
      break;
    }
    case CSSTokenType::kPercentage:
      if (range.takesPercentages) value = CSSValue::number(tokenizer_->number(token), CSSUnit::kPercent);
      break;
    case CSSTokenType::kDimension:
      value = dimension(token, range);
      break;
    case CSSTokenType::kFunction:
      return readMath(*this, range);
    default:
      break;
  }
  if (!value || (range.isNonNegative && value.number() < 0)) return {};
  advance();
  return value;
}

CSSValue CSSValueReader::integer() {
  const CSSToken &token = peek();
  if (token.type == CSSTokenType::kNumber && !token.flag) return {};
  const CSSValue value = number();
  return value.kind() == CSSValueKind::kNumber ? CSSValue::number(std::round(value.number())) : CSSValue();
}

CSSValue CSSValueReader::string() {
  const CSSToken &token = peek();
  if (token.type != CSSTokenType::kString) return {};
  const CSSValue value = CSSValue::text(CSSValueKind::kString, text(token));
  advance();
  return value;
}

CSSValue CSSValueReader::url() {
  if (peek().type == CSSTokenType::kURL) {
    const CSSValue value = CSSValue::text(CSSValueKind::kURL, text(peek()));
    advance();
    return value;
  }
  const std::size_t start = position_;
  if (std::optional<CSSValueReader> arguments = function("url")) {
    if (const CSSValue address = arguments->string()) return CSSValue::text(CSSValueKind::kURL, address.text());
  }
  position_ = start;
  return {};
}

CSSValue CSSValueReader::identifier() {
  const CSSToken &token = peek();
  if (token.type != CSSTokenType::kIdent) return {};
  const std::u16string_view name = text(token);
  if (isCSSWideKeyword(keywordNamed(name)) || equalsASCIINoCase(name, "default")) return {};
  advance();
  return CSSValue::text(CSSValueKind::kIdentifier, name);
}

std::optional<double> CSSValueReader::angle() {
  const CSSToken &token = peek();
  if (token.type == CSSTokenType::kDimension) {
    const double *const degrees = kDegrees.find(text(token));
    if (!degrees) return std::nullopt;
    const double value = tokenizer_->number(token) * *degrees;
    advance();
    return value;
  }
  const CSSValue value = number();
  return value.kind() == CSSValueKind::kNumber ? std::optional(value.number()) : std::nullopt;
}

double CSSValueReader::takeDimension() {
  const double number = tokenizer_->number(peek());
  advance();
  return number;
}

std::u16string_view CSSValueReader::source() const {
  if (tokens_.empty()) return {};
  const std::uint32_t start = tokens_.front().location;
  return tokenizer_->source().substr(start, tokens_.back().end - start);
}

std::vector<CSSToken> tokensOf(CSSTokenizer tokenizer) {
  std::vector<CSSToken> tokens;
  for (CSSToken token = tokenizer.next(); token.type != CSSTokenType::kEnd; token = tokenizer.next())
    tokens.push_back(token);
  return tokens;
}

std::optional<CSSValueReader> CSSValueReader::block() {
  constexpr std::uint32_t kOpening = cssTokens(CSSTokenType::kFunction, CSSTokenType::kLeftParenthesis,
                                               CSSTokenType::kLeftSquare, CSSTokenType::kLeftBrace);
  if (depth_ >= kMaximumValueNesting || !isOneOf(kOpening, peek().type)) return std::nullopt;
  CSSBrackets brackets;
  std::size_t end = position_;
  do {
    brackets.follow(tokens_[end].type);
    ++end;
  } while (end < tokens_.size() && !brackets.isEmpty());
  // What the text's end leaves open is closed there.
  const std::size_t contentEnd = brackets.isEmpty() ? end - 1 : end;
  CSSValueReader content(*tokenizer_, tokens_.subspan(position_ + 1, contentEnd - position_ - 1), mode_,
                         *arena_);
  content.depth_ = depth_ + 1;
  position_ = end;
  skipSpace();
  return content;
}

std::optional<CSSValueReader> CSSValueReader::function(std::string_view lowerCaseName) {
  if (peek().type != CSSTokenType::kFunction || !equalsASCIINoCase(text(peek()), lowerCaseName))
    return std::nullopt;
  return block();
}

std::optional<CSSValueReader> CSSValueReader::anyFunction(std::u16string_view &name) {
  if (peek().type != CSSTokenType::kFunction) return std::nullopt;
  name = text(peek());
  return block();
}

}  // namespace nimbo::detail
