// SPDX-License-Identifier: Apache-2.0
//
// Mathematical functions: "calc()" and its relatives, as trees that are evaluated when the lengths are known
// that they are relative to.
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "platform/CSS/CSSNameLookup.hpp"
#include "platform/CSS/CSSValueReader.hpp"

namespace nimbo::detail {

namespace {

/// The arguments of "round()" say how to round.
struct MathFunction {
  CSSOperation operation;
  std::size_t leastArguments, mostArguments;
  /// Whether arguments and result are numbers; else all are of one type.
  bool isOfNumbers;
  /// Whether the result is a number.
  bool givesNumber;
};

constexpr std::size_t kMany = std::numeric_limits<std::size_t>::max();

constexpr CSSNameLookup kFunctions(std::to_array<CSSNamedValue<MathFunction>>({
    {"calc", {CSSOperation::kSum, 1, 1, false, false}},
    {"-webkit-calc", {CSSOperation::kSum, 1, 1, false, false}},
    {"min", {CSSOperation::kMinimum, 1, kMany, false, false}},
    {"max", {CSSOperation::kMaximum, 1, kMany, false, false}},
    {"clamp", {CSSOperation::kClamp, 3, 3, false, false}},
    {"abs", {CSSOperation::kAbsolute, 1, 1, false, false}},
    {"sign", {CSSOperation::kSign, 1, 1, false, true}},
    {"round", {CSSOperation::kRound, 1, 2, false, false}},
    {"mod", {CSSOperation::kModulo, 2, 2, false, false}},
    {"rem", {CSSOperation::kRemainder, 2, 2, false, false}},
    {"pow", {CSSOperation::kPower, 2, 2, true, true}},
    {"sqrt", {CSSOperation::kSquareRoot, 1, 1, true, true}},
    {"hypot", {CSSOperation::kHypotenuse, 1, kMany, false, false}},
    {"exp", {CSSOperation::kExponential, 1, 1, true, true}},
    {"log", {CSSOperation::kLogarithm, 1, 2, true, true}},
}));

constexpr CSSNameLookup kConstants(std::to_array<CSSNamedValue<double>>({
    {"e", std::numbers::e},
    {"pi", std::numbers::pi},
    {"infinity", std::numeric_limits<double>::infinity()},
    {"-infinity", -std::numeric_limits<double>::infinity()},
    {"nan", std::numeric_limits<double>::quiet_NaN()},
}));

constexpr CSSNameLookup kRoundings(std::to_array<CSSNamedValue<CSSOperation>>({
    {"nearest", CSSOperation::kRound},
    {"up", CSSOperation::kCeiling},
    {"down", CSSOperation::kFloor},
    {"to-zero", CSSOperation::kTruncation},
}));

/// What an expression is, and what it has in it.
struct TypedExpression {
  CSSExpression expression;
  /// `kNone` for a number, `kPixels` for a length, `kPercent` for a percentage.
  CSSUnit type = CSSUnit::kNone;
  bool hasPercentages = false;
  /// Whether it can be evaluated at once.
  bool isAbsolute = true;
};

using Typed = std::optional<TypedExpression>;

/// Makes `to` of the type of both, if they can be added.
bool addType(TypedExpression &to, const TypedExpression &other) {
  if ((to.type == CSSUnit::kNone) != (other.type == CSSUnit::kNone)) return false;
  if (to.type != other.type) to.type = CSSUnit::kPixels;
  to.hasPercentages = to.hasPercentages || other.hasPercentages;
  to.isAbsolute = to.isAbsolute && other.isAbsolute;
  return true;
}

}  // namespace

class CSSMathReader {
 public:
  explicit CSSMathReader(CSSValueReader &reader) : reader_(reader) {}

  Typed function() {
    const MathFunction *const found = kFunctions.find(reader_.text(reader_.peek()));
    if (!found) return std::nullopt;
    std::optional<CSSValueReader> arguments = reader_.block();
    if (!arguments) return std::nullopt;
    return CSSMathReader(*arguments).arguments(*found);
  }

 private:
  CSSExpression combined(CSSOperation operation, const std::vector<CSSExpression> &parts) {
    CSSExpression expression;
    expression.operation = operation;
    expression.parts = reader_.arena().copy(std::span<const CSSExpression>(parts));
    return expression;
  }

  Typed arguments(const MathFunction &function) {
    CSSOperation operation = function.operation;
    if (operation == CSSOperation::kRound && reader_.peek().type == CSSTokenType::kIdent) {
      const CSSOperation *const rounding = kRoundings.find(reader_.text(reader_.peek()));
      if (rounding) {
        operation = *rounding;
        reader_.advance();
        if (!reader_.take(CSSTokenType::kComma)) return std::nullopt;
      }
    }
    std::vector<CSSExpression> parts;
    TypedExpression result;
    do {
      const Typed part = sum();
      if (!part || (function.isOfNumbers && part->type != CSSUnit::kNone)) return std::nullopt;
      if (parts.empty())
        result = *part;
      else if (!addType(result, *part))
        return std::nullopt;
      parts.push_back(part->expression);
    } while (reader_.take(CSSTokenType::kComma));
    if (!reader_.isAtEnd() || parts.size() < function.leastArguments || parts.size() > function.mostArguments)
      return std::nullopt;
    if (function.operation == CSSOperation::kRound && parts.size() == 1 && result.type != CSSUnit::kNone)
      return std::nullopt;
    if (operation == CSSOperation::kSum) return result;
    result.expression = combined(operation, parts);
    if (function.givesNumber) result.type = CSSUnit::kNone;
    return result;
  }

  /// Terms with "+" and "-" between them, which have white space on both sides.
  Typed sum() {
    Typed result = product();
    if (!result) return std::nullopt;
    std::vector<CSSExpression> parts;
    while (!reader_.isAtEnd()) {
      const std::size_t start = reader_.position();
      const bool hasSpaceBefore = reader_.tokens_[start - 1].type == CSSTokenType::kWhiteSpace;
      const bool isMinus = reader_.takeDelimiter(u'-');
      if (!isMinus && !reader_.takeDelimiter(u'+')) break;
      if (!hasSpaceBefore || reader_.position() == start + 1) return std::nullopt;
      const Typed term = product();
      if (!term || !addType(*result, *term)) return std::nullopt;
      if (parts.empty()) parts.push_back(result->expression);
      parts.push_back(isMinus ? combined(CSSOperation::kNegation, {term->expression}) : term->expression);
    }
    if (!parts.empty()) result->expression = combined(CSSOperation::kSum, parts);
    return result;
  }

  Typed product() {
    Typed result = value();
    if (!result) return std::nullopt;
    std::vector<CSSExpression> parts;
    for (;;) {
      const bool isDivision = reader_.takeDelimiter(u'/');
      if (!isDivision && !reader_.takeDelimiter(u'*')) break;
      const Typed factor = value();
      if (!factor || (factor->type != CSSUnit::kNone && (isDivision || result->type != CSSUnit::kNone)))
        return std::nullopt;
      if (parts.empty()) parts.push_back(result->expression);
      parts.push_back(isDivision ? combined(CSSOperation::kReciprocal, {factor->expression})
                                 : factor->expression);
      if (factor->type != CSSUnit::kNone) result->type = factor->type;
      result->hasPercentages = result->hasPercentages || factor->hasPercentages;
      result->isAbsolute = result->isAbsolute && factor->isAbsolute;
    }
    if (!parts.empty()) result->expression = combined(CSSOperation::kProduct, parts);
    return result;
  }

  Typed value() {
    const CSSToken &token = reader_.peek();
    TypedExpression result;
    switch (token.type) {
      case CSSTokenType::kNumber:
        result.expression.number = reader_.tokenizer_->number(token);
        break;
      case CSSTokenType::kPercentage:
        result.expression.number = reader_.tokenizer_->number(token);
        result.expression.unit = result.type = CSSUnit::kPercent;
        result.hasPercentages = true;
        result.isAbsolute = false;
        break;
      case CSSTokenType::kDimension: {
        const std::optional<CSSUnitMeaning> meaning = unitNamed(reader_.text(token));
        if (!meaning) return std::nullopt;
        result.expression.number = reader_.tokenizer_->number(token) * meaning->factor;
        result.expression.unit = meaning->unit;
        result.type = CSSUnit::kPixels;
        result.isAbsolute = meaning->unit == CSSUnit::kPixels;
        break;
      }
      case CSSTokenType::kIdent: {
        const double *const constant = kConstants.find(reader_.text(token));
        if (!constant) return std::nullopt;
        result.expression.number = *constant;
        break;
      }
      case CSSTokenType::kFunction:
        return function();
      case CSSTokenType::kLeftParenthesis: {
        std::optional<CSSValueReader> content = reader_.block();
        if (!content) return std::nullopt;
        CSSMathReader inner(*content);
        Typed found = inner.sum();
        return content->isAtEnd() ? found : std::nullopt;
      }
      default:
        return std::nullopt;
    }
    reader_.advance();
    return result;
  }

  CSSValueReader &reader_;
};

CSSValue readMath(CSSValueReader &reader, const CSSNumericRange &range) {
  const std::size_t start = reader.position();
  const Typed found = CSSMathReader(reader).function();
  const bool isOfRange = found &&
                         (found->type == CSSUnit::kNone      ? range.takesNumbers
                          : found->type == CSSUnit::kPercent ? range.takesPercentages
                                                             : range.takesLengths) &&
                         (range.takesPercentages || !found->hasPercentages);
  if (!isOfRange) {
    reader.setPosition(start);
    return {};
  }
  const std::span<const CSSExpression> expression =
      reader.arena().copy(std::span<const CSSExpression>(&found->expression, 1));
  const CSSValue value = CSSValue::expression(expression[0], found->type);
  if (!found->isAbsolute) return value;
  // An expression that is out of the range is not invalid but its nearest value.
  double number = resolvedNumber(value, {}).value_or(0);
  if (range.isNonNegative && number < 0) number = 0;
  return CSSValue::number(number, found->type);
}

}  // namespace nimbo::detail
