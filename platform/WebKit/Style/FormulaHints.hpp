// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/PresentationalHints.hpp"

namespace nimbo::detail {

/// Appends the size of an element of a formula that is a script or part of a fraction, and what its attributes
/// declare.
void appendFormulaHints(const HTMLDocument &document, HTMLNodeIndex element, DeclarationTexts &texts,
                        HintList &hints);

}  // namespace nimbo::detail
