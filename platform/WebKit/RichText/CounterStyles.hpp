// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/AppKit/NSParagraphStyle.hpp"
#include "platform/CSS/CSSValue.hpp"

namespace nimbo::detail {

/// A number in a style of counters, as "counter()" has it: a keyword, the identifier of another style or a
/// string, which stands for all numbers. Styles that are not known count in decimal digits.
std::u16string textOfCounter(std::int32_t number, const CSSValue &style);

/// The marker of an item whose "list-style-type" is the style, without the blank behind it: "4." or a bullet.
/// Empty for none, and for the triangles of what opens and closes.
std::u16string markerOfItem(std::int32_t number, const CSSValue &style);

/// The format of such markers for an `NSTextList`; nil where `markerOfItem` is empty.
NSString markerFormatOf(const CSSValue &style);

}  // namespace nimbo::detail
