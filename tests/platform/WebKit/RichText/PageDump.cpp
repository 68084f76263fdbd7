// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/WebKit/RichText/PageDump.hpp"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <vector>

namespace nimbo::detail {

namespace {

std::string readable(std::u16string_view units) {
  std::u16string text(units);
  for (char16_t &c : text) {
    if (c == u'\n') c = u'|';
    if (c == 0x2028) c = u'/';
    if (c == u'\t') c = u'^';
    if (c == NSAttachmentCharacter) c = u'*';
  }
  return NSString::stringWithCharacters(text).UTF8String();
}

std::string hex(const NSColor &color) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), color.alpha == 255 ? "%02x%02x%02x" : "%02x%02x%02x%02x", color.red,
                color.green, color.blue, color.alpha);
  return text.data();
}

/// Words in brackets; nothing without words.
class Words {
 public:
  template <class... Parts>
  void add(bool isSaid, const Parts &...parts) {
    if (!isSaid) return;
    if (words_.tellp() > 0) words_ << ' ';
    (words_ << ... << parts);
  }
  std::string in(char open, char close) const {
    return words_.str().empty() ? "" : open + words_.str() + close;
  }

 private:
  std::ostringstream words_;
};

std::string wordsOf(const TextAttributes &attributes) {
  Words words;
  const std::string family = attributes.font.familyName.UTF8String();
  words.add(family != "Times New Roman", family);
  words.add(attributes.font.pointSize != 12, attributes.font.pointSize);
  words.add(attributes.font.weight == kBoldFontWeight, "b");
  words.add(attributes.font.weight != kBoldFontWeight && attributes.font.weight != kRegularFontWeight,
            "weight=", attributes.font.weight);
  words.add(attributes.font.isItalic, "i");
  words.add(attributes.font.isSmallCaps, "caps");
  if (attributes.foregroundColor) words.add(true, "#", hex(*attributes.foregroundColor));
  if (attributes.backgroundColor) words.add(true, "on#", hex(*attributes.backgroundColor));
  constexpr std::array kUnderlines = {"",         "u", "u-thick", "u-double", "u-dotted",
                                      "u-dashed", "",  "",        "u-wavy",   ""};
  words.add(attributes.underlineStyle != NSUnderlineStyle::none,
            kUnderlines[static_cast<std::size_t>(attributes.underlineStyle)]);
  if (attributes.underlineColor) words.add(true, "u#", hex(*attributes.underlineColor));
  words.add(attributes.strikethroughStyle != NSStrikethroughStyle::none,
            attributes.strikethroughStyle == NSStrikethroughStyle::doubled ? "s-double" : "s");
  words.add(attributes.superscript != 0, "super=", int{attributes.superscript});
  words.add(attributes.baselineOffset != 0, "up=", attributes.baselineOffset);
  words.add(attributes.kern != 0, "kern=", attributes.kern);
  words.add(static_cast<bool>(attributes.link), "->", attributes.link.UTF8String());
  return words.in('{', '}');
}

std::string widthOf(const NSTextBlockWidth &width) {
  if (width.unit == NSTextBlockWidth::Unit::automatic) return "";
  std::ostringstream text;
  text << " w" << width.value << (width.unit == NSTextBlockWidth::Unit::percent ? "%" : "");
  return text.str();
}

std::string wordsOf(const NSTextTableBlock &cell) {
  std::ostringstream text;
  text << cell.table->identifier << ':' << cell.startingRow << ',' << cell.startingColumn;
  if (cell.rowSpan != 1 || cell.columnSpan != 1) text << '+' << cell.rowSpan << 'x' << cell.columnSpan;
  text << '/' << cell.table->numberOfColumns << widthOf(cell.width);
  if (cell.backgroundColor) text << " #" << hex(*cell.backgroundColor);
  if (cell.borderWidths[NSTopEdge] > 0)
    text << " border=" << cell.borderWidths[NSTopEdge] << '#' << hex(*cell.borderColors[NSTopEdge]);
  if (cell.padding[NSTopEdge] > 0.75) text << " padding=" << cell.padding[NSTopEdge];
  return text.str();
}

std::string wordsOf(const NSParagraphStyle &style) {
  constexpr std::array kAlignments = {"", "left", "center", "right", "justified"};
  constexpr std::array kDirections = {"", "ltr", "rtl"};
  Words words;
  words.add(style.headerLevel > 0, "h", int{style.headerLevel});
  words.add(style.alignment != NSTextAlignment::natural,
            kAlignments[static_cast<std::size_t>(style.alignment)]);
  words.add(style.baseWritingDirection != NSWritingDirection::natural,
            kDirections[static_cast<std::size_t>(style.baseWritingDirection)]);
  words.add(style.firstLineHeadIndent != style.headIndent, "first=", style.firstLineHeadIndent);
  words.add(style.headIndent != 0, "head=", style.headIndent);
  words.add(style.tailIndent != 0, "tail=", style.tailIndent);
  words.add(style.lineHeightMultiple != 0, "lines=", style.lineHeightMultiple);
  words.add(style.minimumLineHeight != 0, "high=", style.minimumLineHeight);
  words.add(style.paragraphSpacingBefore != 0, "before=", style.paragraphSpacingBefore);
  words.add(style.paragraphSpacing != 0, "after=", style.paragraphSpacing);
  for (const NSTextList &list : style.textLists)
    words.add(true, "list", list.identifier, '=', list.markerFormat.UTF8String(), list.startingItemNumber);
  for (const auto &block : style.textBlocks) words.add(true, "cell ", wordsOf(*block));
  return words.in('<', '>');
}

void expectDumps(std::initializer_list<ExpectedDump> pages, std::string (*dumpOf)(std::u16string_view)) {
  for (const auto &[html, dump] : pages)
    EXPECT_EQ(dumpOf(html), dump) << NSString::stringWithCharacters(html).UTF8String();
}

}  // namespace

PageText textOfHTML(std::u16string_view html, const PageTextOptions &options) {
  HTMLDocument document = HTMLDocument::documentWithText(html);
  std::vector<AuthorSheet> sheets;
  for (HTMLNodeIndex i = HTMLDocument::kRoot; i != kNoHTMLNode; i = document.nextInTree(i))
    if (const HTMLNode &node = document.node(i); node.isHTML("style"_atom) && node.firstChild != kNoHTMLNode)
      sheets.push_back({NSString::stringWithCharacters(document.text(document.node(node.firstChild))), {}, {}});
  StyleResolver styles(document, sheets);
  return textOfPage(document, styles, options);
}

std::string plainDump(const NSAttributedString &text) {
  return readable(text.string().view());
}

std::string plainDump(std::u16string_view html) {
  return plainDump(textOfHTML(html).text);
}

std::string runDump(std::u16string_view html) {
  const NSAttributedString text = textOfHTML(html).text;
  const NSString units = text.string();
  std::string dump, last;
  std::uint32_t start = 0;
  for (const AttributeRun &run : text.runs()) {
    const std::u16string_view part = units.view().substr(start, run.end - start);
    const std::string words = wordsOf(*run.attributes);
    if (dump.empty() || dump.ends_with('|')) last.clear();
    if (part != u"\n" && words != last) dump += words.empty() ? "{}" : words;
    last = words;
    dump += readable(part);
    start = run.end;
  }
  return dump;
}

std::string paragraphDump(const NSAttributedString &text) {
  constexpr std::size_t kShown = 12;
  const NSString units = text.string();
  std::string dump;
  for (std::uint32_t start = 0; start < text.length();) {
    const auto end = static_cast<std::uint32_t>(units.view().find(u'\n', start)) + 1;
    dump += wordsOf(*text.attributesAtIndex(start)->paragraphStyle);
    dump += readable(units.view().substr(start, std::min<std::size_t>(end - start, kShown)));
    start = end;
  }
  return dump;
}

std::string paragraphDump(std::u16string_view html) {
  return paragraphDump(textOfHTML(html).text);
}

void expectText(std::initializer_list<ExpectedDump> pages) {
  expectDumps(pages, plainDump);
}

void expectRuns(std::initializer_list<ExpectedDump> pages) {
  expectDumps(pages, runDump);
}

void expectParagraphs(std::initializer_list<ExpectedDump> pages) {
  expectDumps(pages, paragraphDump);
}

}  // namespace nimbo::detail
