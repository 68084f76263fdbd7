// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <sstream>
#include <string>

#include "platform/AppKit/NSAttributedString.hpp"

namespace nimbo {

/// Writes the attributes that are set, a word each.
class AttributeDescriber {
 public:
  explicit AttributeDescriber(std::ostream &stream) : stream_(stream) {}

  void operator()(TextAttribute::FontFamily, const NSString &family) { write("font", family); }
  void operator()(TextAttribute::FontSize, double size) { write("size", size - 12); }
  void operator()(TextAttribute::FontWeight, std::uint16_t weight) {
    write("weight", weight - kRegularFontWeight);
  }
  void operator()(TextAttribute::FontItalic, bool isItalic) { write("italic", isItalic); }
  void operator()(TextAttribute::FontSmallCaps, bool isSmallCaps) { write("smallcaps", isSmallCaps); }
  void operator()(TextAttribute::ForegroundColor, const std::optional<NSColor> &color) {
    write("color", color);
  }
  void operator()(TextAttribute::BackgroundColor, const std::optional<NSColor> &color) {
    write("background", color);
  }
  void operator()(TextAttribute::UnderlineStyle, NSUnderlineStyle style) {
    write("underline", static_cast<int>(style));
  }
  void operator()(TextAttribute::UnderlineColor, const std::optional<NSColor> &color) {
    write("underlinecolor", color);
  }
  void operator()(TextAttribute::StrikethroughStyle, NSStrikethroughStyle style) {
    write("strike", static_cast<int>(style));
  }
  void operator()(TextAttribute::Superscript, std::int8_t level) {
    write("superscript", static_cast<int>(level));
  }
  void operator()(TextAttribute::BaselineOffset, double offset) { write("offset", offset); }
  void operator()(TextAttribute::Kern, double kern) { write("kern", kern); }
  void operator()(TextAttribute::Link, const NSString &link) { write("link", link); }
  void operator()(TextAttribute::ParagraphStyle, const Interned<NSParagraphStyle> &style) {
    visitAttributes(*style, *this);
  }
  void operator()(TextAttribute::Attachment, const NSTextAttachment &attachment) {
    if (!attachment) return;
    write("file", attachment.fileWrapper().preferredFilename());
    write("bytes", attachment.fileWrapper().regularFileContents().length());
    if (const auto size = attachment.sizeInPoints()) stream_ << " shown=" << size->width << 'x' << size->height;
    write("alt", attachment.alternativeText());
  }

  void operator()(ParagraphAttribute::Alignment, NSTextAlignment alignment) {
    write("align", static_cast<int>(alignment));
  }
  void operator()(ParagraphAttribute::BaseWritingDirection, NSWritingDirection direction) {
    write("direction", static_cast<int>(direction));
  }
  void operator()(ParagraphAttribute::HeaderLevel, std::uint8_t level) {
    write("header", static_cast<int>(level));
  }
  void operator()(ParagraphAttribute::FirstLineHeadIndent, double points) { write("first", points); }
  void operator()(ParagraphAttribute::HeadIndent, double points) { write("head", points); }
  void operator()(ParagraphAttribute::TailIndent, double points) { write("tail", points); }
  void operator()(ParagraphAttribute::LineSpacing, double points) { write("spacing", points); }
  void operator()(ParagraphAttribute::LineHeightMultiple, double factor) { write("multiple", factor); }
  void operator()(ParagraphAttribute::MinimumLineHeight, double points) { write("minimum", points); }
  void operator()(ParagraphAttribute::MaximumLineHeight, double points) { write("maximum", points); }
  void operator()(ParagraphAttribute::ParagraphSpacing, double points) { write("after", points); }
  void operator()(ParagraphAttribute::ParagraphSpacingBefore, double points) { write("before", points); }
  void operator()(ParagraphAttribute::DefaultTabInterval, double points) { write("interval", points); }
  void operator()(ParagraphAttribute::TabStops, const std::vector<NSTextTab> &tabs) {
    for (const NSTextTab &tab : tabs) stream_ << " tab=" << static_cast<int>(tab.type) << ':' << tab.location;
  }
  void operator()(ParagraphAttribute::TextLists, const std::vector<NSTextList> &lists) {
    for (const NSTextList &list : lists)
      stream_ << " list=" << list.identifier << ':' << list.markerFormat.UTF8String() << ':'
              << list.startingItemNumber;
  }
  void operator()(ParagraphAttribute::TextBlocks, const std::vector<Interned<NSTextTableBlock>> &blocks) {
    for (const auto &block : blocks) {
      stream_ << " cell=" << block->table->identifier << '/' << block->table->numberOfColumns << ':'
              << block->startingRow << '+' << block->rowSpan << ',' << block->startingColumn << '+'
              << block->columnSpan;
      if (block->table->collapsesBorders) stream_ << " collapsed";
      write("tablewidth", block->table->width);
      write("fill", block->backgroundColor);
      for (std::size_t edge = 0; edge < kRectEdges; ++edge) {
        write("border", block->borderWidths[edge]);
        write("bordercolor", block->borderColors[edge]);
        write("padding", block->padding[edge]);
      }
      write("width", block->width);
      write("valign", static_cast<int>(block->verticalAlignment));
    }
  }

 private:
  void write(const char *name, const NSString &text) {
    if (text) stream_ << ' ' << name << '=' << text.UTF8String();
  }
  void write(const char *name, const std::optional<NSColor> &color) {
    if (!color) return;
    stream_ << ' ' << name << '=' << int{color->red} << '.' << int{color->green} << '.' << int{color->blue};
    if (color->alpha != 255) stream_ << '.' << int{color->alpha};
  }
  void write(const char *name, const NSTextBlockWidth &width) {
    if (width.unit == NSTextBlockWidth::Unit::automatic) return;
    stream_ << ' ' << name << '=' << width.value
            << (width.unit == NSTextBlockWidth::Unit::percent ? "%" : "pt");
  }
  template <class Number>
  requires std::is_arithmetic_v<Number>
  void write(const char *name, Number number) {
    if (number != 0) stream_ << ' ' << name << '=' << number;
  }

  std::ostream &stream_;
};

/// A text as lines: of each run the characters in brackets and the attributes that are not the default ones.
inline std::string describe(const NSAttributedString &text) {
  if (!text) return "nil";
  std::ostringstream stream;
  std::uint32_t start = 0;
  for (const AttributeRun &run : text.runs()) {
    stream << '[';
    for (const char c : text.string().substringWithRange({start, run.end - start}).UTF8String()) {
      if (c == '\n')
        stream << "\\n";
      else if (c == '\t')
        stream << "\\t";
      else
        stream << c;
    }
    stream << ']';
    visitAttributes(*run.attributes, AttributeDescriber(stream));
    stream << '\n';
    start = run.end;
  }
  return stream.str();
}

}  // namespace nimbo
