// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/AppKit/TextAttributes.hpp"
#include "platform/WebKit/RichText/ParagraphMaker.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// What the elements around text say of it that it does not inherit.
struct InlineContext {
  /// What the text leads to; nil for nothing.
  NSString link;
  /// The sum of what "sub" and "super" say.
  std::int8_t superscript = 0;
  /// The sum of the raises that are lengths, in points.
  double baselineOffset = 0;
  /// The background of the innermost element in lines that has one.
  std::optional<NSColor> background;
  /// The background of the innermost block that has one, or of the page.
  std::optional<NSColor> blockBackground;
  /// The value of the innermost "lang".
  std::u16string_view language;
};

/// What holds for the text in an element of this style, when `outer` holds around it. Its link and language are
/// those of `outer`.
InlineContext contextInElement(const ComputedStyle &style, const InlineContext &outer);

/// The attributes of text in an element; all but the paragraph's.
TextAttributes attributesOfText(const ComputedStyle &style, const InlineContext &context);

/// What an element that is a block does to its paragraphs. Percentages are of the width of the page.
BlockStyle blockStyleOf(const ComputedStyle &style);

}  // namespace nimbo::detail
