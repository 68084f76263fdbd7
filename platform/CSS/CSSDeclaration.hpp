// SPDX-License-Identifier: Apache-2.0
//
// Declarations and their values.
//
// The values of a property are, beside the keywords of its definition and those that every property has:
//
//     margins, paddings, sizes, offsets, spacings    length, percentage or expression
//     border widths                                  length or expression; "thin" and the like are lengths
//     colours                                        colour, or the keyword "currentcolor"
//     background-image                               URL, or the keyword "gradient", of the first layer with
//     one border-spacing                                 list of two lengths clip, clip-path function "rect"
//     (lengths, "auto") or "inset" (lengths) content                                        list of strings,
//     URLs, quote keywords and functions counter-reset, -increment, -set                list of pairs:
//     identifier, number display                                        the one keyword that two of them mean
//     font-family                                    list of strings and generic keywords
//     font-size                                      length, percentage, expression
//     font-weight                                    number; "normal" and "bold" are numbers
//     font-stretch                                   percentage; keywords are percentages
//     line-height, tab-size                          number, length, percentage
//     list-style-type                                string, or identifier of an unknown style
//     list-style-image                               URL
//     opacity                                        number from 0 to 1
//     quotes                                         list of pairs of strings
//     text-decoration-line                           list of keywords
//     text-indent, vertical-align                    length, percentage, expression
//
// The functions of "content" are attr(identifier), counter(identifier, style) and
// counters(identifier, string, style).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/CSS/CSSArena.hpp"
#include "platform/CSS/CSSProperty.hpp"
#include "platform/CSS/CSSTokenizer.hpp"
#include "platform/CSS/CSSValue.hpp"

namespace NIMBO_PUBLIC nimbo {

/// How a document without a modern type declaration is read.
enum class CSSMode : std::uint8_t {
  kStandard,
  kQuirks,  ///< Lengths may lack "px" and colours "#"; classes and ids are compared in any case.
};

/// A declaration. A shorthand is taken apart; it stands here itself, with tokens as its value, when it has
/// "var()" in it, and when it is "all", whose value is a keyword.
struct CSSDeclaration {
  /// What is declared.
  CSSProperty property = CSSProperty::kUnknown;
  /// Whether "!important" follows.
  bool isImportant = false;
  /// Never none.
  CSSValue value;
  /// Of a custom property, "--" included. Its value is tokens, or a keyword that every property may have.
  std::u16string_view customName;
};

/// Reads declarations, such as the value of a "style" attribute, and appends the valid ones in their order.
/// Values may point into the text and into the arena. Raises `std::bad_alloc`.
void readDeclarations(std::u16string_view text, CSSMode mode, CSSArena &arena,
                      std::vector<CSSDeclaration> &declarations);

/// Reads the value of one property, such as tokens in which the variables have been replaced, and appends what
/// it declares: a shorthand, all its longhands. False, with nothing appended, when the value is invalid.
bool readValue(CSSProperty property, std::u16string_view text, CSSMode mode, CSSArena &arena,
               std::vector<CSSDeclaration> &declarations);

/// The colour of a value such as "#fff" or "rgb(0 0 0)"; nothing for another value, "currentcolor" among them.
std::optional<CSSColor> readColor(std::u16string_view text, CSSMode mode);

/// A declaration as it stands in the text, before anybody knows whether it is valid.
struct CSSRawDeclaration {
  /// As it is written, with escapes.
  std::u16string_view name;
  /// Without white space around it, and without "!important".
  std::u16string_view value;
  /// Whether "!important" follows.
  bool isImportant = false;
};

/// Takes declarations apart without reading their values and without allocating.
///
///     CSSRawDeclarations declarations(style);
///     while (const std::optional<CSSRawDeclaration> declaration = declarations.next()) use(*declaration);
class CSSRawDeclarations {
 public:
  /// The text must outlive it.
  explicit CSSRawDeclarations(std::u16string_view text) : tokenizer_(text) {}
  /// The next declaration; nothing at the end. What is none is passed over, as are rules.
  std::optional<CSSRawDeclaration> next();

 private:
  CSSTokenizer tokenizer_;
};

}  // namespace nimbo
