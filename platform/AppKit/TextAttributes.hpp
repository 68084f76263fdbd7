// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

#include "platform/AppKit/Interned.hpp"
#include "platform/AppKit/NSColor.hpp"
#include "platform/AppKit/NSFont.hpp"
#include "platform/AppKit/NSParagraphStyle.hpp"
#include "platform/AppKit/NSTextAttachment.hpp"

namespace NIMBO_PUBLIC nimbo {

/// The line below text.
enum class NSUnderlineStyle : std::uint8_t {
  none,
  single,
  thick,
  doubled,
  dotted,
  dashed,
  dashDot,
  dashDotDot,
  wavy,
  byWord,  ///< A single line that leaves out blanks.
};

/// The line through text.
enum class NSStrikethroughStyle : std::uint8_t { none, single, doubled };

/// How characters look, and what they are: a plain value. Numbers are finite.
///
///     TextAttributes attributes;
///     attributes.font = {u"Courier"_ns, 10};
///     attributes.foregroundColor = NSColor{255, 0, 0};
///     builder.append(u"error", attributes);
struct TextAttributes {
  /// The font.
  NSFont font;
  /// The colour; nothing for the reader's own.
  std::optional<NSColor> foregroundColor;
  /// What is behind the characters; nothing for what is behind the text.
  std::optional<NSColor> backgroundColor;
  /// The line below.
  NSUnderlineStyle underlineStyle = NSUnderlineStyle::none;
  /// The colour of the line below; nothing for that of the text.
  std::optional<NSColor> underlineColor;
  /// The line through.
  NSStrikethroughStyle strikethroughStyle = NSStrikethroughStyle::none;
  /// How often raised as superscript; subscript is negative.
  std::int8_t superscript = 0;
  /// By how many points the characters stand above the line, whatever `superscript` does.
  double baselineOffset = 0;
  /// By how many points the characters stand farther apart than the font has them.
  double kern = 0;
  /// What the text leads to, mostly a URL as text; nil when nothing.
  NSString link;
  /// What all characters of a paragraph have in common, its line feed included.
  Interned<NSParagraphStyle> paragraphStyle;
  /// The file that stands here, of characters `NSAttachmentCharacter`; nil elsewhere.
  NSTextAttachment attachment;

  /// Whether all are equal.
  friend bool operator==(const TextAttributes &, const TextAttributes &) = default;
};

/// The names of characters' attributes, for visitors.
namespace TextAttribute {
struct FontFamily {};
struct FontSize {};
struct FontWeight {};
struct FontItalic {};
struct FontSmallCaps {};
struct ForegroundColor {};
struct BackgroundColor {};
struct UnderlineStyle {};
struct UnderlineColor {};
struct StrikethroughStyle {};
struct Superscript {};
struct BaselineOffset {};
struct Kern {};
struct Link {};
struct ParagraphStyle {};
struct Attachment {};
}  // namespace TextAttribute

/// Calls `visitor(name, value)` with every attribute. A visitor that is a class with a function for each name
/// does not compile when it lacks one.
template <class Visitor>
void visitAttributes(const TextAttributes &attributes, Visitor &&visitor) {
  const auto &[font, foreground, background, underline, underlineColor, strikethrough, superscript, offset,
               kern, link, paragraph, attachment] = attributes;
  const auto &[family, size, weight, isItalic, isSmallCaps] = font;
  visitor(TextAttribute::FontFamily(), family);
  visitor(TextAttribute::FontSize(), size);
  visitor(TextAttribute::FontWeight(), weight);
  visitor(TextAttribute::FontItalic(), isItalic);
  visitor(TextAttribute::FontSmallCaps(), isSmallCaps);
  visitor(TextAttribute::ForegroundColor(), foreground);
  visitor(TextAttribute::BackgroundColor(), background);
  visitor(TextAttribute::UnderlineStyle(), underline);
  visitor(TextAttribute::UnderlineColor(), underlineColor);
  visitor(TextAttribute::StrikethroughStyle(), strikethrough);
  visitor(TextAttribute::Superscript(), superscript);
  visitor(TextAttribute::BaselineOffset(), offset);
  visitor(TextAttribute::Kern(), kern);
  visitor(TextAttribute::Link(), link);
  visitor(TextAttribute::ParagraphStyle(), paragraph);
  visitor(TextAttribute::Attachment(), attachment);
}

}  // namespace nimbo
