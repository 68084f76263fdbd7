// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/WebKit/Style/Cascade.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"
#include "platform/WebKit/Style/StyleContext.hpp"

namespace nimbo::detail {

/// Gives the style its font: family, size, weight, slant, capitals and the height of its lines, which other
/// lengths depend on. The style has what it inherits from `parent`.
void applyFontProperties(const Cascade &cascade, const InheritedStyle &parent, StyleContext &context,
                         InheritedStyle &style);

}  // namespace nimbo::detail
