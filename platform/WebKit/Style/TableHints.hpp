// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/PresentationalHints.hpp"

namespace nimbo::detail {

/// Whether it is the name of a cell, of a row or of a group of rows.
bool isTablePart(HTMLAtom name);

/// Appends what attributes declare that only tables have: borders, paddings and vertical alignments of a table,
/// row or cell. A cell has some of them from its table.
void appendTableHints(const HTMLDocument &document, HTMLNodeIndex element, HintList &hints);

}  // namespace nimbo::detail
