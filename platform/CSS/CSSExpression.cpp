// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/CSS/CSSValue.hpp"

namespace nimbo {

namespace {

/// Nothing where a percentage has no base.
using Result = std::optional<double>;

Result resolved(double number, CSSUnit unit, const CSSLengthContext &context) {
  constexpr double kCapHeight = 0.7;  // Of a font size, as in most fonts.
  switch (unit) {
    case CSSUnit::kNone:
    case CSSUnit::kPixels:
      return number;
    case CSSUnit::kPercent:
      if (!context.percentageBase) return std::nullopt;
      return number * *context.percentageBase / 100;
    case CSSUnit::kEm:
    case CSSUnit::kIc:
      return number * context.fontSize;
    case CSSUnit::kEx:
      return number * context.xHeight;
    case CSSUnit::kCap:
      return number * context.fontSize * kCapHeight;
    case CSSUnit::kCh:
      return number * context.chWidth;
    case CSSUnit::kRem:
      return number * context.rootFontSize;
    case CSSUnit::kRex:
    case CSSUnit::kRch:
      return number * context.rootFontSize / 2;
    case CSSUnit::kLh:
      return number * context.lineHeight;
    case CSSUnit::kRlh:
      return number * context.rootLineHeight;
    case CSSUnit::kVw:
      return number * context.viewportWidth / 100;
    case CSSUnit::kVh:
      return number * context.viewportHeight / 100;
    case CSSUnit::kVmin:
      return number * std::min(context.viewportWidth, context.viewportHeight) / 100;
    case CSSUnit::kVmax:
      return number * std::max(context.viewportWidth, context.viewportHeight) / 100;
  }
  return std::nullopt;
}

double roundedTo(double value, double step, CSSOperation operation) {
  step = std::abs(step);
  const double steps = value / step;
  switch (operation) {
    case CSSOperation::kFloor:
      return std::floor(steps) * step;
    case CSSOperation::kCeiling:
      return std::ceil(steps) * step;
    case CSSOperation::kTruncation:
      return std::trunc(steps) * step;
    default:
      return std::floor(steps + 0.5) * step;
  }
}

/// What comes of the first part alone, or with all parts so far and the next one.
double combined(CSSOperation operation, double so, double next) {
  switch (operation) {
    case CSSOperation::kSum:
      return so + next;
    case CSSOperation::kProduct:
      return so * next;
    case CSSOperation::kMinimum:
      return std::isnan(so) || std::isnan(next) ? std::numeric_limits<double>::quiet_NaN() : std::min(so, next);
    case CSSOperation::kMaximum:
      return std::isnan(so) || std::isnan(next) ? std::numeric_limits<double>::quiet_NaN() : std::max(so, next);
    case CSSOperation::kModulo:
      return so - std::floor(so / next) * next;
    case CSSOperation::kRemainder:
      return std::fmod(so, next);
    case CSSOperation::kPower:
      return std::pow(so, next);
    case CSSOperation::kHypotenuse:
      return std::hypot(so, next);
    case CSSOperation::kLogarithm:
      return std::log(so) / std::log(next);
    default:
      return roundedTo(so, next, operation);
  }
}

double ofOne(CSSOperation operation, double value) {
  switch (operation) {
    case CSSOperation::kNegation:
      return -value;
    case CSSOperation::kReciprocal:
      return 1 / value;
    case CSSOperation::kAbsolute:
    case CSSOperation::kHypotenuse:
      return std::abs(value);
    case CSSOperation::kSign:
      return value > 0 ? 1 : value < 0 ? -1 : value;
    case CSSOperation::kSquareRoot:
      return std::sqrt(value);
    case CSSOperation::kExponential:
      return std::exp(value);
    case CSSOperation::kLogarithm:
      return std::log(value);
    case CSSOperation::kRound:
    case CSSOperation::kFloor:
    case CSSOperation::kCeiling:
    case CSSOperation::kTruncation:
      return roundedTo(value, 1, operation);
    default:
      return value;
  }
}

/// Its depth is that of the value, which is bounded.
Result evaluated(const CSSExpression &expression, const CSSLengthContext &context) {
  if (expression.operation == CSSOperation::kValue)
    return resolved(expression.number, expression.unit, context);
  if (expression.operation == CSSOperation::kClamp) {
    const Result least = evaluated(expression.parts[0], context);
    const Result value = evaluated(expression.parts[1], context);
    const Result most = evaluated(expression.parts[2], context);
    if (!least || !value || !most) return std::nullopt;
    return std::max(*least, std::min(*value, *most));
  }
  Result result = evaluated(expression.parts[0], context);
  if (expression.parts.size() == 1 && result) return ofOne(expression.operation, *result);
  for (const CSSExpression &part : expression.parts.subspan(1)) {
    const Result next = evaluated(part, context);
    if (!result || !next) return std::nullopt;
    result = combined(expression.operation, *result, *next);
  }
  return result;
}

double finite(double value) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  return std::isnan(value) ? 0 : std::clamp(value, -kLargest, kLargest);
}

}  // namespace

std::optional<double> resolvedNumber(const CSSValue &value, const CSSLengthContext &context) {
  Result result;
  switch (value.kind()) {
    case CSSValueKind::kNumber:
    case CSSValueKind::kPercentage:
    case CSSValueKind::kLength:
      result = resolved(value.number(), value.unit(), context);
      break;
    case CSSValueKind::kExpression:
      result = evaluated(value.expression(), context);
      break;
    default:
      break;
  }
  return result ? Result(finite(*result)) : std::nullopt;
}

}  // namespace nimbo
