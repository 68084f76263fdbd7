// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/RTF/RTFTokens.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>

#include "platform/AppKit/RTF/RTFRowPlan.hpp"
#include "platform/AppKit/RTF/RTFUnits.hpp"

namespace nimbo {

namespace {

constexpr std::int32_t kSingleLine = 240;
constexpr std::int32_t kMillisOfHalfPoint = 500;
/// The alpha of a colour is counted in so many parts.
constexpr std::int32_t kAlphaParts = 100'000;
/// The longest text of a list's level, whose length is a byte.
constexpr std::size_t kMaximumLevelText = 200;

std::string_view wordOf(NSUnderlineStyle style) {
  switch (style) {
    case NSUnderlineStyle::none:
      return "";
    case NSUnderlineStyle::single:
      return "\\ul";
    case NSUnderlineStyle::thick:
      return "\\ulth";
    case NSUnderlineStyle::doubled:
      return "\\uldb";
    case NSUnderlineStyle::dotted:
      return "\\uld";
    case NSUnderlineStyle::dashed:
      return "\\uldash";
    case NSUnderlineStyle::dashDot:
      return "\\uldashd";
    case NSUnderlineStyle::dashDotDot:
      return "\\uldashdd";
    case NSUnderlineStyle::wavy:
      return "\\ulwave";
    case NSUnderlineStyle::byWord:
      return "\\ulw";
  }
  return "";
}

/// The units that stand for themselves.
constexpr auto kPlain = [] {
  std::array<bool, 128> plain{};
  for (std::size_t c = 0x20; c < 0x7f; ++c) plain[c] = c != '\\' && c != '{' && c != '}';
  return plain;
}();

bool isPlain(char16_t unit) {
  return unit < kPlain.size() && kPlain[unit];
}

/// The words of characters, an attribute each.
struct CharacterTokens {
  const RTFTokens &tables;
  std::string &output;

  void operator()(TextAttribute::FontFamily, const NSString &family) {
    appendWord(&output, "\\f", static_cast<std::int64_t>(tables.fontNumber(family)));
  }
  void operator()(TextAttribute::FontSize, double size) {
    const std::int32_t millis = std::max(unitsOfPoints(size, 1000), 0);
    appendWord(&output, "\\fs", (millis + kMillisOfHalfPoint / 2) / kMillisOfHalfPoint);
    if (millis % kMillisOfHalfPoint) appendWord(&output, "\\fsmilli", millis);
  }
  void operator()(TextAttribute::FontWeight, std::uint16_t weight) {
    if (weight >= 600) output += "\\b";
    if (weight != kRegularFontWeight && weight != kBoldFontWeight) appendWord(&output, "\\fweight", weight);
  }
  void operator()(TextAttribute::FontItalic, bool isItalic) {
    if (isItalic) output += "\\i";
  }
  void operator()(TextAttribute::FontSmallCaps, bool isSmallCaps) {
    if (isSmallCaps) output += "\\scaps";
  }
  void operator()(TextAttribute::ForegroundColor, const std::optional<NSColor> &color) {
    if (color) appendColor("\\cf", color);
  }
  void operator()(TextAttribute::BackgroundColor, const std::optional<NSColor> &color) {
    if (!color) return;
    appendColor("\\chcbpat", color);
    appendColor("\\cb", color);
  }
  void operator()(TextAttribute::UnderlineStyle, NSUnderlineStyle style) { output += wordOf(style); }
  void operator()(TextAttribute::UnderlineColor, const std::optional<NSColor> &color) {
    if (color) appendColor("\\ulc", color);
  }
  void operator()(TextAttribute::StrikethroughStyle, NSStrikethroughStyle style) {
    if (style == NSStrikethroughStyle::single) output += "\\strike";
    if (style == NSStrikethroughStyle::doubled) output += "\\striked1";
  }
  void operator()(TextAttribute::Superscript, std::int8_t level) {
    if (level == 0) return;
    const int times = std::abs(level);
    output += level > 0 ? "\\super" : "\\sub";
    if (times > 1) output += std::to_string(times);
  }
  void operator()(TextAttribute::BaselineOffset, double points) {
    const std::int32_t halves = unitsOfPoints(points, 2);
    if (halves) appendWord(&output, halves > 0 ? "\\up" : "\\dn", std::abs(halves));
  }
  void operator()(TextAttribute::Kern, double points) {
    if (const std::int32_t twips = twipsOfPoints(points)) appendWord(&output, "\\expndtw", twips);
  }
  // These are groups around the text, and the words of paragraphs.
  void operator()(TextAttribute::Link, const NSString &) {}
  void operator()(TextAttribute::ParagraphStyle, const Interned<NSParagraphStyle> &) {}
  void operator()(TextAttribute::Attachment, const NSTextAttachment &) {}

 private:
  void appendColor(std::string_view word, const std::optional<NSColor> &color) {
    appendWord(&output, word, static_cast<std::int64_t>(tables.colorNumber(color)));
  }
};

}  // namespace

/// The words of a paragraph, an attribute each; those of lengths that are told together come with the last of
/// them.
struct ParagraphTokens {
  const RTFTokens &tables;
  std::string &output;
  std::int32_t firstLine = 0, multiple = 0, minimum = 0;

  void operator()(ParagraphAttribute::Alignment, NSTextAlignment alignment) {
    constexpr std::string_view kWords[] = {"", "\\ql", "\\qc", "\\qr", "\\qj"};
    output += kWords[static_cast<std::size_t>(alignment)];
  }
  void operator()(ParagraphAttribute::BaseWritingDirection, NSWritingDirection direction) {
    constexpr std::string_view kWords[] = {"", "\\ltrpar", "\\rtlpar"};
    output += kWords[static_cast<std::size_t>(direction)];
  }
  void operator()(ParagraphAttribute::HeaderLevel, std::uint8_t level) {
    if (level) appendWord(&output, "\\outlinelevel", level - 1);
  }
  void operator()(ParagraphAttribute::FirstLineHeadIndent, double points) { firstLine = twipsOfPoints(points); }
  void operator()(ParagraphAttribute::HeadIndent, double points) {
    const std::int32_t head = twipsOfPoints(points);
    append("\\fi", firstLine - head);
    append("\\li", head);
  }
  void operator()(ParagraphAttribute::TailIndent, double points) { append("\\ri", twipsOfPoints(points)); }
  void operator()(ParagraphAttribute::LineSpacing, double points) {
    append("\\slleading", twipsOfPoints(points));
  }
  void operator()(ParagraphAttribute::LineHeightMultiple, double factor) {
    multiple = unitsOfPoints(factor, kSingleLine);
  }
  void operator()(ParagraphAttribute::MinimumLineHeight, double points) { minimum = twipsOfPoints(points); }
  void operator()(ParagraphAttribute::MaximumLineHeight, double points) {
    const std::int32_t maximum = twipsOfPoints(points);
    if (multiple > 0) {
      appendWord(&output, "\\sl", multiple);
      output += "\\slmult1";
    } else if (minimum > 0 && (maximum == 0 || maximum == minimum)) {
      appendWord(&output, "\\sl", maximum ? -minimum : minimum);
      output += "\\slmult0";
      return;
    }
    append("\\slminimum", minimum);
    append("\\slmaximum", maximum);
  }
  void operator()(ParagraphAttribute::ParagraphSpacing, double points) {
    append("\\sa", twipsOfPoints(points));
  }
  void operator()(ParagraphAttribute::ParagraphSpacingBefore, double points) {
    append("\\sb", twipsOfPoints(points));
  }
  void operator()(ParagraphAttribute::DefaultTabInterval, double points) {
    append("\\pardeftab", twipsOfPoints(points));
  }
  void operator()(ParagraphAttribute::TabStops, const std::vector<NSTextTab> &tabs) {
    constexpr std::string_view kWords[] = {"", "\\tqc", "\\tqr", "\\tqdec"};
    for (const NSTextTab &tab : tabs) {
      output += kWords[static_cast<std::size_t>(tab.type)];
      appendWord(&output, "\\tx", twipsOfPoints(tab.location));
    }
  }
  void operator()(ParagraphAttribute::TextLists, const std::vector<NSTextList> &lists) {
    if (lists.empty()) return;
    const std::size_t count = std::min(lists.size(), RTFTokens::kMaximumLevels);
    const auto found = tables.listsByLevels_.find(RTFTokens::keyOf(lists, count));
    appendWord(&output, "\\ls", static_cast<std::int64_t>(found->second + 1));
    appendWord(&output, "\\ilvl", static_cast<std::int64_t>(count - 1));
  }
  void operator()(ParagraphAttribute::TextBlocks, const std::vector<Interned<NSTextTableBlock>> &blocks) {
    const std::size_t depth = std::min(blocks.size(), RTFRowPlans::kMaximumDepth);
    if (depth > 0) appendWord(&output, "\\intbl\\itap", static_cast<std::int64_t>(depth));
  }

 private:
  void append(std::string_view word, std::int32_t twips) {
    if (twips) appendWord(&output, word, twips);
  }
};

void appendWord(std::string *output, std::string_view word, std::int64_t number) {
  std::array<char, 20> digits;
  const char *const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  *output += word;
  output->append(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

void appendText(std::string *output, std::u16string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (end < text.size() && isPlain(text[end])) ++end;
    if (end > i) {
      const std::size_t start = output->size();
      output->resize(start + end - i);
      for (char *to = output->data() + start; i < end; ++i) *to++ = static_cast<char>(text[i]);
      continue;
    }
    switch (const char16_t unit = text[i++]) {
      case u'\\':
      case u'{':
      case u'}':
        *output += '\\';
        *output += static_cast<char>(unit);
        break;
      case u'\t':
        *output += "\\tab ";
        break;
      case u'\f':
        *output += "\\page ";
        break;
      case u'\u2028':
        *output += "\\line ";
        break;
      case u'\u00a0':
        *output += "\\~";
        break;
      default:
        appendWord(output, "\\u", static_cast<std::int16_t>(unit));
        *output += ' ';
    }
  }
}

void RTFTokens::collect(const TextAttributes &attributes) {
  if (fontNumbers_.try_emplace(attributes.font.familyName, fonts_.size()).second)
    fonts_.push_back(attributes.font.familyName);
  collectColor(attributes.foregroundColor);
  collectColor(attributes.backgroundColor);
  collectColor(attributes.underlineColor);
  if (collectedStyles_.insert(attributes.paragraphStyle.hash()).second)
    collectParagraph(*attributes.paragraphStyle);
}

void RTFTokens::collectParagraph(const NSParagraphStyle &style) {
  collectList(style.textLists);
  for (const Interned<NSTextTableBlock> &block : style.textBlocks) {
    collectColor(block->backgroundColor);
    for (const auto &color : block->borderColors) collectColor(color);
  }
}

void RTFTokens::collectColor(const std::optional<NSColor> &color) {
  if (color && colorNumbers_.try_emplace(std::bit_cast<std::uint32_t>(*color), colors_.size() + 1).second)
    colors_.push_back(*color);
}

std::string RTFTokens::keyOf(const std::vector<NSTextList> &chain, std::size_t count) {
  std::string key;
  for (std::size_t i = 0; i < count; ++i) {
    const NSTextList &list = chain[i];
    key += std::to_string(list.identifier) + ' ' + std::to_string(list.startingItemNumber) + ' ' +
           std::to_string(list.markerFormat.length()) + ' ' + list.markerFormat.UTF8String();
  }
  return key;
}

/// A list of RTF has all the levels of a paragraph's lists: it is one that has them already, one that ends in
/// the middle of them and goes on now, or a new one.
void RTFTokens::collectList(const std::vector<NSTextList> &chain) {
  const std::size_t count = std::min(chain.size(), kMaximumLevels);
  if (count == 0 || listsByLevels_.contains(keyOf(chain, count))) return;
  std::size_t number = lists_.size();
  for (std::size_t length = count - 1; length > 0; --length) {
    const auto found = listsByLevels_.find(keyOf(chain, length));
    if (found == listsByLevels_.end() || lists_[found->second].levels.size() != length) continue;
    number = found->second;
    break;
  }
  if (number == lists_.size()) lists_.emplace_back();
  std::vector<NSTextList> &levels = lists_[number].levels;
  levels.assign(chain.begin(), chain.begin() + static_cast<std::ptrdiff_t>(count));
  for (std::size_t length = 1; length <= count; ++length)
    listsByLevels_.try_emplace(keyOf(chain, length), number);
}

std::size_t RTFTokens::fontNumber(const NSString &family) const {
  return fontNumbers_.find(family)->second;
}

std::size_t RTFTokens::colorNumber(const std::optional<NSColor> &color) const {
  return color ? colorNumbers_.find(std::bit_cast<std::uint32_t>(*color))->second : 0;
}

const std::string &RTFTokens::characterWords(const Interned<TextAttributes> &attributes) {
  std::string &words = characterWords_[attributes.hash()];
  if (words.empty()) {
    words = "\\plain";
    visitAttributes(*attributes, CharacterTokens{*this, words});
    words += ' ';
  }
  return words;
}

const std::string &RTFTokens::paragraphWords(const Interned<NSParagraphStyle> &style) {
  std::string &words = paragraphWords_[style.hash()];
  if (words.empty()) {
    words = "\\pard";
    visitAttributes(*style, ParagraphTokens{*this, words});
    words += ' ';
  }
  return words;
}

void RTFTokens::appendTables(std::string *output) {
  *output += "{\\fonttbl";
  for (std::size_t i = 0; i < fonts_.size(); ++i) {
    std::u16string name(fonts_[i].view());
    std::replace(name.begin(), name.end(), u';', u' ');
    appendWord(output, "{\\f", static_cast<std::int64_t>(i));
    *output += "\\fnil\\fcharset0 ";
    appendText(output, name);
    *output += ";}";
  }
  *output += "}\n{\\colortbl;";
  for (const NSColor &color : colors_) {
    appendWord(output, "\\red", color.red);
    appendWord(output, "\\green", color.green);
    appendWord(output, "\\blue", color.blue);
    *output += ';';
  }
  *output += "}\n";
  if (std::any_of(colors_.begin(), colors_.end(), [](const NSColor &color) { return color.alpha != 255; })) {
    *output += "{\\*\\expandedcolortbl;";
    for (const NSColor &color : colors_) {
      const auto part = [](int component) { return (component * kAlphaParts + 127) / 255; };
      appendWord(output, "\\cssrgb\\c", part(color.red));
      appendWord(output, "\\c", part(color.green));
      appendWord(output, "\\c", part(color.blue));
      if (color.alpha != 255) appendWord(output, "\\alpha", part(color.alpha));
      *output += ';';
    }
    *output += "}\n";
  }
  if (!lists_.empty()) appendLists(output);
}

void RTFTokens::appendLists(std::string *output) const {
  constexpr std::pair<std::u16string_view, int> kKinds[] = {
      {u"{upper-roman}", 1}, {u"{lower-roman}", 2}, {u"{upper-alpha}", 3},
      {u"{lower-alpha}", 4}, {u"{upper-latin}", 3}, {u"{lower-latin}", 4},
  };
  constexpr int kBullet = 23, kIndentTwips = 360;
  const auto appendByte = [&](std::size_t byte) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    *output += "\\'";
    *output += kDigits[byte >> 4];
    *output += kDigits[byte & 15];
  };
  *output += "{\\*\\listtable";
  for (std::size_t i = 0; i < lists_.size(); ++i) {
    appendWord(output, "\n{\\list\\listtemplateid", static_cast<std::int64_t>(i + 1));
    *output += "\\listhybrid";
    for (std::size_t l = 0; l < lists_[i].levels.size(); ++l) {
      const NSTextList &list = lists_[i].levels[l];
      const std::u16string_view format = list.markerFormat.view();
      int kind = list.isOrdered() ? 0 : kBullet;
      for (const auto &[name, number] : kKinds)
        if (format.find(name) != format.npos) kind = number;
      appendWord(output, "{\\listlevel\\levelnfc", kind);
      appendWord(output, "\\levelnfcn", kind);
      appendWord(output, "\\leveljc0\\leveljcn0\\levelfollow0\\levelstartat", list.startingItemNumber);
      *output += "\\levelspace360\\levelindent0{\\*\\levelmarker ";
      appendText(output, format);
      appendWord(output, "}{\\leveltext\\leveltemplateid", static_cast<std::int32_t>(list.identifier));
      std::size_t place = 0;
      if (kind == kBullet) {
        const NSString marker = list.markerForItemNumber(1);
        const std::u16string_view text = marker.view().substr(0, kMaximumLevelText);
        appendByte(text.size());
        appendText(output, text);
      } else {
        const std::size_t start = format.find(u'{');
        const std::u16string_view before = format.substr(0, std::min(start, kMaximumLevelText / 2));
        const std::u16string_view behind = format.substr(format.find(u'}') + 1, kMaximumLevelText / 2);
        appendByte(before.size() + 1 + behind.size());
        appendText(output, before);
        appendByte(l);
        appendText(output, behind);
        place = before.size() + 1;
      }
      *output += ";}{\\levelnumbers";
      if (place) appendByte(place);
      const auto indent = static_cast<std::int64_t>(l + 1) * 2 * kIndentTwips;
      appendWord(output, ";}\\fi-", kIndentTwips);
      appendWord(output, "\\li", indent);
      *output += '}';
    }
    appendWord(output, "{\\listname ;}\\listid", static_cast<std::int64_t>(i + 1));
    *output += '}';
  }
  *output += "}\n{\\*\\listoverridetable";
  for (std::size_t i = 0; i < lists_.size(); ++i) {
    appendWord(output, "{\\listoverride\\listid", static_cast<std::int64_t>(i + 1));
    appendWord(output, "\\listoverridecount0\\ls", static_cast<std::int64_t>(i + 1));
    *output += '}';
  }
  *output += "}\n";
}

}  // namespace nimbo
