// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/WebKit/Style/Cascade.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"
#include "platform/WebKit/Style/StyleContext.hpp"

namespace nimbo::detail {

/// What of an element other than declarations makes its style.
enum class StyledElement : std::uint8_t {
  kOther,
  kRoot,
  kHTMLTable,
  /// Cells of a header are centred where nobody has aligned anything.
  kHTMLHeaderCell,
  /// The text that a ruby text annotates is not underlined with it.
  kRubyText,
};

/// The style that declarations give to an element. The cascade has been begun; the parent of the root is a
/// default-made style.
ComputedStyle makeStyle(Cascade &cascade, const ComputedStyle &parent, StyledElement element,
                        StyleContext &context);

/// Whether the style depends on more of the parent than what `ComputedStyle::inheritanceNumber` stands for.
bool dependsOnParentBox(Cascade &cascade);

}  // namespace nimbo::detail
