// SPDX-License-Identifier: Apache-2.0
//
// The names of SVG and MathML that have capital letters, and the tags of HTML that end both. Any thread may
// ask.
//
//     attributeNameInSVG("viewbox"_atom);  // "viewBox"_atom
#pragma once

#include "platform/WebKit/HTMLAtoms.hpp"

namespace nimbo {

/// The name of an element as SVG writes it, for one in small letters.
HTMLAtom elementNameInSVG(HTMLAtom name);
/// The name of an attribute as SVG writes it, for one in small letters.
HTMLAtom attributeNameInSVG(HTMLAtom name);
/// The name of an attribute as MathML writes it, for one in small letters.
HTMLAtom attributeNameInMathML(HTMLAtom name);
/// Whether a start tag of this name is always one of HTML.
bool endsForeignContent(HTMLAtom name);

}  // namespace nimbo
