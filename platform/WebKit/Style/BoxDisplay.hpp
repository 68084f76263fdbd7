// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// Makes of the declared values of "display", "float" and "position" those that hold: floats, what is placed
/// absolutely, items of flex and grid boxes and the root are blocks; sides follow the direction.
void adjustDisplay(const ComputedStyle &parent, bool isRoot, ComputedStyle &style);

/// Whether the lines of the elements around do not go on in the element, which was declared to float or not.
bool breaksDecorations(const ComputedStyle &style, bool isDeclaredFloat);

/// Whether the children of an element of the display are items of a flex or grid box.
bool makesItems(CSSKeyword display);

}  // namespace nimbo::detail
