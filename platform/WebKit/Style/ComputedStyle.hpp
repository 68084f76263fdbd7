// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/CSS/CSSColor.hpp"
#include "platform/CSS/CSSCustomProperties.hpp"
#include "platform/CSS/CSSKeyword.hpp"
#include "platform/CSS/CSSValue.hpp"
#include "platform/Foundation/NSString.hpp"
#include "platform/Foundation/SharedPointer.hpp"

namespace nimbo::detail {

/// The sides of a box, as indices.
enum BoxSide : std::uint8_t { kTopSide, kRightSide, kBottomSide, kLeftSide };
/// How many sides a box has.
inline constexpr std::size_t kBoxSides = 4;

/// A size that may depend on what contains the box, or be left to it.
struct BoxLength {
  enum class Kind : std::uint8_t { automatic, pixels, percent };
  Kind kind = Kind::automatic;
  double value = 0;

  friend bool operator==(const BoxLength &, const BoxLength &) = default;
};

/// A line of a decoration. Those of an element hold for all that is in it, in the colour that it has.
struct DecorationLine {
  /// `kNone` where there is no line; else `kSolid`, `kDouble`, `kDotted`, `kDashed` or `kWavy`.
  CSSKeyword style = CSSKeyword::kNone;
  CSSColor color = {};

  friend bool operator==(const DecorationLine &, const DecorationLine &) = default;
};

/// What an element inherits when nothing is declared. Lengths are pixels of CSS, 96 to the inch.
struct InheritedStyle {
  /// The first family that is no generic one; nil when there is none.
  NSString fontFamily;
  /// The first generic family: `kSerif`, `kSansSerif`, `kMonospace` ...
  CSSKeyword genericFamily = CSSKeyword::kSerif;
  double fontSize = 16;
  /// What relative sizes in it refer to: the size as it was declared, which is less when it is too small to
  /// read.
  double declaredFontSize = 16;
  /// The keyword that the size comes from, which means another size for the family "monospace" alone;
  /// `kUnknown` for none.
  CSSKeyword fontSizeKeyword = CSSKeyword::kMedium;
  /// Whether the size comes from one in pixels, so that the family has no part in it.
  bool hasAbsoluteFontSize = false;
  /// Whether the only family is "monospace".
  bool isMonospaceAlone = false;
  std::uint16_t fontWeight = 400;
  bool isItalic = false;
  bool isSmallCaps = false;
  CSSColor color = {};
  CSSKeyword visibility = CSSKeyword::kVisible;
  CSSKeyword textAlign = CSSKeyword::kStart;
  CSSKeyword textTransform = CSSKeyword::kNone;
  CSSKeyword whiteSpace = CSSKeyword::kNormal;
  CSSKeyword direction = CSSKeyword::kLtr;
  /// A keyword, a string, or the identifier of an unknown style.
  CSSValue listStyleType = CSSKeyword::kDisc;
  CSSKeyword listStylePosition = CSSKeyword::kOutside;
  CSSKeyword borderCollapse = CSSKeyword::kSeparate;
  CSSKeyword captionSide = CSSKeyword::kTop;
  double letterSpacing = 0;
  double textIndent = 0;
  /// The height of a line; nothing for the font's own.
  std::optional<double> lineHeight;
  /// Whether it was given as a number, to be multiplied with the font size of whoever inherits it.
  std::optional<double> lineHeightMultiple;
  /// What quotation marks are at each depth; no value for those of the language.
  CSSValue quotes;
  SharedPointer<CSSCustomProperties> customProperties;
};

/// The style of an element or of one of its pseudo-elements, as far as it shows in text. The values in it live
/// as long as the resolver that made it.
struct ComputedStyle {
  InheritedStyle inherited;

  /// The element's own display, as a box among boxes: `kNone`, `kContents`, `kBlock`, `kInline`, `kListItem`
  /// ... Floats and what is placed absolutely are blocks.
  CSSKeyword display = CSSKeyword::kInline;
  CSSKeyword floating = CSSKeyword::kNone;
  CSSKeyword position = CSSKeyword::kStatic;
  /// Whether what is in the element, its texts above all, has no box though the element has one: in a closed
  /// "details", in a menu of "option" elements, in what "content-visibility" hides. What is laid out but not
  /// painted where somebody could see it (of no opacity, clipped, off the page) is text of the page, which
  /// scripts and readers aloud bring up, and is not unseen. Text of a font size of 0 is for who makes the text.
  bool isUnseen = false;
  /// Whether an element in what is unseen may be seen, as is the "summary" of a closed "details" or the option
  /// that a menu shows; its own style says so.
  bool mayHoldSeenElement = false;

  /// Of the element itself; transparent where it has none.
  CSSColor backgroundColor = {0, 0, 0, 0};
  /// Lines that hold for the text in the element, those of the elements around it included.
  DecorationLine underline, overline, lineThrough;
  /// `kBaseline`, `kSub`, `kSuper`, `kMiddle` ..., or a length in pixels.
  CSSValue verticalAlign = CSSKeyword::kBaseline;

  /// By `BoxSide`.
  std::array<BoxLength, kBoxSides> margin{};
  std::array<BoxLength, kBoxSides> padding{};
  std::array<double, kBoxSides> borderWidth{};
  std::array<CSSColor, kBoxSides> borderColor{};
  BoxLength width, height;

  /// The values of "content", "counter-reset", "counter-increment" and "counter-set"; no value for "normal" and
  /// "none".
  CSSValue content, counterReset, counterIncrement, counterSet;

  /// The number of what children and pseudo-elements take from this style; equal numbers of one resolver stand
  /// for equal things. A copy that is changed may not be anybody's parent.
  std::uint32_t inheritanceNumber = 0;
};

}  // namespace nimbo::detail
