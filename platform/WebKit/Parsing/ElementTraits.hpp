// SPDX-License-Identifier: Apache-2.0
//
// What the parser has to know of elements. Any thread may ask.
//
//     (traitsOf("td"_atom, HTMLNamespace::html) & kIsSpecial) != 0;  // true
#pragma once

#include <cstdint>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo {

using ElementTraits = std::uint16_t;

/// End tags of elements below it do not reach over it.
inline constexpr ElementTraits kIsSpecial = 1;
/// It ends every scope that elements are looked for in.
inline constexpr ElementTraits kBoundsScope = 2;
/// Its end may be left out, as that of a paragraph.
inline constexpr ElementTraits kEndsByItself = 4;
/// It decides what the parser expects in it.
inline constexpr ElementTraits kHasMode = 8;
/// It is special, but a new list item or definition inside it ends the one that it is in.
inline constexpr ElementTraits kHoldsListItems = 16;
/// It is text of MathML, in which HTML stands.
inline constexpr ElementTraits kIsMathText = 32;
/// It is a place of SVG or MathML that HTML stands in.
inline constexpr ElementTraits kHoldsHTML = 64;
/// What stands right in it and is no part of a table goes in front of the table.
inline constexpr ElementTraits kFostersParents = 128;
/// It is an annotation of MathML.
inline constexpr ElementTraits kIsAnnotation = 256;

/// The traits of an element by its name and namespace.
ElementTraits traitsOf(HTMLAtom name, HTMLNamespace nameSpace);

}  // namespace nimbo
