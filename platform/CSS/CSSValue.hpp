// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/CSS/CSSColor.hpp"
#include "platform/CSS/CSSKeyword.hpp"
#include "platform/Foundation/Attributes.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The units of lengths. Absolute ones become pixels when they are read.
enum class CSSUnit : std::uint8_t {
  kNone,  ///< Of a number.
  kPixels,
  kPercent,
  kEm,
  kEx,
  kCap,
  kCh,
  kIc,
  kRem,
  kRex,
  kRch,
  kLh,
  kRlh,
  kVw,
  kVh,
  kVmin,
  kVmax,
};

/// What a mathematical expression does with its parts.
enum class CSSOperation : std::uint8_t {
  kValue,  ///< It is a number, length or percentage.
  kSum,
  kProduct,
  kNegation,
  kReciprocal,
  kMinimum,
  kMaximum,
  kClamp,
  kAbsolute,
  kSign,
  kRound,
  kFloor,
  kCeiling,
  kTruncation,
  kModulo,
  kRemainder,
  kPower,
  kSquareRoot,
  kHypotenuse,
  kExponential,
  kLogarithm,
};

/// A part of an expression such as "calc(1em + 2%)". What it points to lives in the arena of the value.
struct CSSExpression {
  /// What is done with the parts.
  CSSOperation operation = CSSOperation::kValue;
  /// Of a value: its unit.
  CSSUnit unit = CSSUnit::kNone;
  /// Of a value: the number in front of the unit.
  double number = 0;
  /// Of an operation: what it is done with, borrowed from the arena.
  std::span<const CSSExpression> parts;
};

/// What a value is.
enum class CSSValueKind : std::uint8_t {
  kNone,  ///< No value at all.
  kKeyword,
  kNumber,
  kPercentage,
  kLength,
  kExpression,
  kColor,
  kString,
  kIdentifier,  ///< A name of the author's own: of a counter, or of a style of counters.
  kURL,
  kFunction,  ///< A keyword as its name, and the list of its arguments.
  kList,
  kTokens,  ///< Text with "var()" in it, or of a custom property, to be read when the variables are known.
};

/// A value, two words wide. Its texts, lists and expressions lie in the sheet's text and in the arena that was
/// handed to the reader; a copy points to the same ones. Each reader of a part is for values of its kind.
class CSSValue {
 public:
  constexpr CSSValue() noexcept : number_(0) {}
  /// A keyword.
  constexpr CSSValue(CSSKeyword keyword) noexcept
      : kind_(CSSValueKind::kKeyword), keyword_(keyword), number_(0) {}
  /// A number, percentage or length.
  static constexpr CSSValue number(double number, CSSUnit unit = CSSUnit::kNone) noexcept {
    CSSValue value;
    value.kind_ = unit == CSSUnit::kNone      ? CSSValueKind::kNumber
                  : unit == CSSUnit::kPercent ? CSSValueKind::kPercentage
                                              : CSSValueKind::kLength;
    value.unit_ = unit;
    value.number_ = number;
    return value;
  }
  /// An expression; the unit is `kNone` for numbers, `kPercent` for percentages alone, else `kPixels`.
  static CSSValue expression(const CSSExpression &expression, CSSUnit type) noexcept {
    CSSValue value(CSSValueKind::kExpression, 0);
    value.unit_ = type;
    value.expression_ = &expression;
    return value;
  }
  /// A colour.
  static CSSValue color(CSSColor color) noexcept {
    CSSValue value(CSSValueKind::kColor, 0);
    value.color_ = color;
    return value;
  }
  /// A string, identifier, URL or tokens.
  static CSSValue text(CSSValueKind kind, std::u16string_view text) noexcept {
    CSSValue value(kind, static_cast<std::uint32_t>(text.size()));
    value.text_ = text.data();
    return value;
  }
  /// A list.
  static CSSValue list(std::span<const CSSValue> values) noexcept {
    CSSValue value(CSSValueKind::kList, static_cast<std::uint32_t>(values.size()));
    value.values_ = values.data();
    return value;
  }
  /// A function with its arguments.
  static CSSValue function(CSSKeyword name, std::span<const CSSValue> arguments) noexcept {
    CSSValue value = list(arguments);
    value.kind_ = CSSValueKind::kFunction;
    value.keyword_ = name;
    return value;
  }

  /// What it is.
  CSSValueKind kind() const { return kind_; }
  /// Whether there is a value.
  explicit operator bool() const { return kind_ != CSSValueKind::kNone; }
  /// The keyword, or the name of a function; `kUnknown` for other kinds.
  CSSKeyword keyword() const { return keyword_; }
  /// Whether it is this keyword.
  bool is(CSSKeyword keyword) const { return kind_ == CSSValueKind::kKeyword && keyword_ == keyword; }
  /// Of a number, length or percentage: the number in front of the unit.
  double number() const { return number_; }
  /// Of a number, length or percentage its unit; of an expression what it gives.
  CSSUnit unit() const { return unit_; }
  /// The expression.
  const CSSExpression &expression() const { return *expression_; }
  /// The colour.
  CSSColor color() const { return color_; }
  /// Of strings, identifiers, URLs and tokens. URLs are as they stand in the sheet, relative ones too.
  std::u16string_view text() const { return {text_, count_}; }
  /// The values of a list, or the arguments of a function.
  std::span<const CSSValue> values() const { return {values_, count_}; }

 private:
  CSSValue(CSSValueKind kind, std::uint32_t count) noexcept : kind_(kind), count_(count), number_(0) {}

  CSSValueKind kind_ = CSSValueKind::kNone;
  CSSUnit unit_ = CSSUnit::kNone;
  CSSKeyword keyword_ = CSSKeyword::kUnknown;
  std::uint32_t count_ = 0;
  union {
    double number_;
    const CSSExpression *expression_;
    CSSColor color_;
    const char16_t *text_;
    const CSSValue *values_;
  };
};

/// What lengths are relative to, in pixels.
struct CSSLengthContext {
  /// Of the element; of its parent for the size of the font itself.
  double fontSize = 16;
  /// Of the root.
  double rootFontSize = 16;
  /// As a rule about half a font size.
  double xHeight = 8;
  /// The width of "0", as a rule about half a font size.
  double chWidth = 8;
  /// Of the element.
  double lineHeight = 19.2;
  /// Of the root.
  double rootLineHeight = 19.2;
  /// As `CSSMedium` has it.
  double viewportWidth = 1280;
  /// As `CSSMedium` has it.
  double viewportHeight = 720;
  /// What 100 % are; nothing when that is not known.
  std::optional<double> percentageBase;
};

/// The pixels of a length, a percentage or an expression of them, and the value of a number or an expression of
/// numbers. Nothing for other kinds, and for percentages without a base. The result is finite.
std::optional<double> resolvedNumber(const CSSValue &value, const CSSLengthContext &context);

}  // namespace nimbo
