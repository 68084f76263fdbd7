// SPDX-License-Identifier: Apache-2.0
//
// What is written is read again as the same text: many made documents of all attributes.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "tests/platform/AppKit/RichTextDescription.hpp"

namespace nimbo {
namespace {

/// Makes documents. Numbers are such as RTF has: half points, twips and thousandths.
class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  NSAttributedString document() {
    for (std::uint32_t blocks = below(6) + 1; blocks > 0; --blocks) addBlock({}, 0);
    return std::move(builder_).attributedString();
  }

  DocumentAttributes attributes() {
    DocumentAttributes attributes;
    attributes.documentType = u"NSRTF"_ns;
    if (coin()) attributes.title = text(u"Title {x} \\ \u00e4");
    if (coin()) attributes.author = text(u"\u4e2d\u6587");
    if (coin()) attributes.subject = text(u"S");
    if (coin()) attributes.keywords = {u"a b"_ns, u"c"_ns};
    if (coin()) attributes.company = text(u"C;o");
    if (coin()) attributes.copyright = text(u"\u00a9 1");
    if (coin()) attributes.comment = text(u"none");
    if (coin()) attributes.creationTime = NSDate::dateWithUTC(1904, 2, 29, 1, 2, 3);
    if (coin()) attributes.modificationTime = NSDate::dateWithUTC(2031, 12, 31, 23, 59, 59);
    if (coin()) attributes.paperSize = NSSize{612, 792};
    if (coin()) attributes.leftMargin = 72.5;
    if (coin()) attributes.rightMargin = 0;
    if (coin()) attributes.topMargin = 90;
    if (coin()) attributes.bottomMargin = 36.05;
    return attributes;
  }

 private:
  using Blocks = std::vector<Interned<NSTextTableBlock>>;

  std::uint32_t below(std::uint32_t end) {
    return std::uniform_int_distribution<std::uint32_t>(0, end - 1)(random_);
  }
  bool coin() { return below(2) == 0; }
  bool rarely() { return below(6) == 0; }
  static NSString text(std::u16string_view units) { return NSString::stringWithCharacters(units); }
  double twips(std::uint32_t end, int first = 0) { return (static_cast<int>(below(end)) + first) / 20.0; }
  NSColor color() {
    return {static_cast<std::uint8_t>(below(4) * 85), static_cast<std::uint8_t>(below(2) * 255), 7,
            static_cast<std::uint8_t>(rarely() ? below(256) : 255)};
  }
  std::optional<NSColor> maybeColor() { return rarely() ? std::optional(color()) : std::nullopt; }
  NSTextBlockWidth width() {
    switch (below(3)) {
      case 0:
        return {};
      case 1:
        return {twips(2000, 400), NSTextBlockWidth::Unit::points};
      default:
        return {below(5000) / 50.0, NSTextBlockWidth::Unit::percent};
    }
  }

  void addBlock(const Blocks &blocks, std::uint32_t depth) {
    if (depth < 3 && below(3) == 0)
      addTable(blocks, depth);
    else
      for (std::uint32_t count = below(3) + 1; count > 0; --count) addParagraph(blocks);
  }

  void addTable(const Blocks &outer, std::uint32_t depth) {
    const NSTextTable table{++tables_, below(4) + 1, coin(), rarely() ? width() : NSTextBlockWidth()};
    const Interned<NSTextTable> interned(table);
    const std::uint32_t rows = below(3) + 1;
    std::set<std::pair<std::uint32_t, std::uint32_t>> taken;
    for (std::uint32_t r = 0; r < rows; ++r) {
      bool hasCell = false;
      for (std::uint32_t c = 0; c < table.numberOfColumns; ++c) {
        if (taken.contains({r, c})) continue;
        // The first row goes to the last column, so that the table is as wide as it says, and every row has a
        // cell.
        bool isNeeded = !hasCell || r == 0;
        for (std::uint32_t later = c + 1; later < table.numberOfColumns; ++later)
          if (!taken.contains({r, later})) isNeeded = false;
        if (!isNeeded && rarely()) continue;
        NSTextTableBlock block;
        block.table = interned;
        block.startingRow = r;
        block.startingColumn = c;
        while (c + block.columnSpan < table.numberOfColumns && !taken.contains({r, c + block.columnSpan}) &&
               rarely())
          ++block.columnSpan;
        // Cells that reach down leave a column to the others.
        if (c > 0 && rarely()) block.rowSpan = below(rows - r) + 1;
        for (std::uint32_t i = 0; i < block.rowSpan; ++i)
          for (std::uint32_t j = 0; j < block.columnSpan; ++j) taken.insert({r + i, c + j});
        decorate(&block);
        Blocks blocks = outer;
        blocks.push_back(Interned(block));
        hasCell = true;
        for (std::uint32_t count = below(2) + 1; count > 0; --count) addBlock(blocks, depth + 1);
      }
    }
  }

  void decorate(NSTextTableBlock *block) {
    block->backgroundColor = maybeColor();
    for (std::size_t edge = 0; edge < kRectEdges; ++edge) {
      if (coin()) block->borderWidths[edge] = twips(60);
      block->borderColors[edge] = maybeColor();
      if (coin()) block->padding[edge] = twips(200);
    }
    block->width = width();
    block->verticalAlignment = static_cast<NSTextBlockVerticalAlignment>(below(3));
  }

  void addParagraph(const Blocks &blocks) {
    NSParagraphStyle style;
    style.textBlocks = blocks;
    if (coin()) style.alignment = static_cast<NSTextAlignment>(below(5));
    if (rarely()) style.baseWritingDirection = static_cast<NSWritingDirection>(below(3));
    if (rarely()) style.headerLevel = static_cast<std::uint8_t>(below(7));
    if (coin()) style.headIndent = twips(900);
    if (coin()) style.firstLineHeadIndent = twips(900);
    if (rarely()) style.tailIndent = -twips(900);
    if (rarely()) style.lineSpacing = twips(300);
    if (rarely()) style.lineHeightMultiple = (below(600) + 241) / 240.0;
    if (rarely()) style.minimumLineHeight = twips(300);
    if (rarely()) style.maximumLineHeight = coin() ? style.minimumLineHeight : twips(300);
    if (rarely()) style.paragraphSpacing = twips(300);
    if (rarely()) style.paragraphSpacingBefore = twips(300);
    if (rarely()) style.defaultTabInterval = twips(1000);
    if (rarely())
      for (std::uint32_t i = below(4); i > 0; --i)
        style.tabStops.push_back({static_cast<NSTextTabType>(below(4)), twips(5000)});
    std::u16string marker;
    if (rarely()) {
      for (std::uint32_t i = below(3) + 1; i > 0; --i) style.textLists.push_back(list());
      if (coin()) marker = u"\t" + std::u16string(style.textLists.back().markerForItemNumber(4).view()) + u"\t";
    }
    const Interned<NSParagraphStyle> paragraph(style);
    TextAttributes markerAttributes = *characters(paragraph);
    markerAttributes.attachment = NSTextAttachment();
    builder_.append(marker, markerAttributes);
    for (std::uint32_t runs = below(4); runs > 0; --runs) {
      const Interned<TextAttributes> attributes = characters(paragraph);
      builder_.append(attributes->attachment ? std::u16string(1 + below(2), NSAttachmentCharacter) : words(),
                      attributes);
    }
    TextAttributes end = *characters(paragraph);
    end.link = NSString();
    end.superscript = 0;
    end.attachment = NSTextAttachment();
    builder_.append(u"\n", end);
  }

  NSTextList list() {
    constexpr std::u16string_view kFormats[] = {
        u"{disc}", u"{decimal}.", u"({lower-alpha})", u"{upper-roman}", u"{square}", u"*", u"{octal}:"};
    const std::uint32_t number = below(7);
    return {text(kFormats[number]), static_cast<std::int32_t>(number % 3),
            number + (rarely() ? 0x80000000 : 10)};
  }

  Interned<TextAttributes> characters(const Interned<NSParagraphStyle> &paragraph) {
    TextAttributes attributes;
    attributes.paragraphStyle = paragraph;
    constexpr std::u16string_view kFamilies[] = {u"Helvetica", u"Times New Roman", u"\u30d2\u30e9\u30ae\u30ce"};
    if (!rarely()) attributes.font.familyName = text(kFamilies[below(3)]);
    if (coin()) attributes.font.pointSize = rarely() ? below(40'000) / 1000.0 : below(80) / 2.0;
    if (rarely()) attributes.font.weight = static_cast<std::uint16_t>(100 * (below(9) + 1));
    attributes.font.isItalic = rarely();
    attributes.font.isSmallCaps = rarely();
    attributes.foregroundColor = maybeColor();
    attributes.backgroundColor = maybeColor();
    if (rarely()) attributes.underlineStyle = static_cast<NSUnderlineStyle>(below(10));
    attributes.underlineColor = maybeColor();
    if (rarely()) attributes.strikethroughStyle = static_cast<NSStrikethroughStyle>(below(3));
    if (rarely()) attributes.superscript = static_cast<std::int8_t>(static_cast<int>(below(7)) - 3);
    if (rarely()) attributes.baselineOffset = static_cast<int>(below(40)) / 2.0 - 10;
    if (rarely()) attributes.kern = twips(100, -40);
    if (rarely()) attributes.link = text(coin() ? u"http://a/b?c=\"d\\e{f}\u00e4#g" : u"mailto:a@b");
    if (rarely()) attributes.attachment = attachment();
    return Interned(attributes);
  }

  NSTextAttachment attachment() {
    std::string bytes(coin() ? "\x89PNG\r\n\x1a\n{}\\" : "\xff\xd8\xff\xe0");
    bytes += static_cast<char>('a' + below(3));
    const std::string name =
        "caf\u00e9 {" + std::string(1, bytes.back()) + (bytes[0] == '\xff' ? "}.jpg" : "}.png");
    const NSFileWrapper file = NSFileWrapper::regularFileWithContents(
        NSData::dataWithBytes(bytes.data(), bytes.size()), NSString::stringWithUTF8String(name));
    return NSTextAttachment(file, coin() ? std::optional(NSSize{twips(900, 20), twips(900, 20)}) : std::nullopt,
                            coin() ? u"A {picture}"_ns : NSString());
  }

  std::u16string words() {
    constexpr std::u16string_view kWords[] = {
        u"plain ", u"\\{}",   u"\u00e4\u4e2d\U0001f600", u"\t",     u"\u2028", u"\f",
        u"9-",     u"\u00a0", u"\u0001\r\x7f",           u"\xd800", u" ",      u"longer text of letters"};
    std::u16string text;
    for (std::uint32_t i = below(4) + 1; i > 0; --i) text += kWords[below(std::size(kWords))];
    return text;
  }

  std::mt19937 random_;
  NSMutableAttributedString builder_;
  std::uint32_t tables_ = 0;
};

TEST(RTFRoundTrip, DatesHaveYearsOfFourDigits) {
  const NSAttributedString text = initWithRTF(NSData::dataWithBytes("{\\rtf1 a}", 9));
  for (const auto &[year, isWritten] : {std::pair(0, false), {1, true}, {9999, true}, {10000, false}}) {
    DocumentAttributes attributes, again;
    attributes.creationTime = NSDate::dateWithUTC(year, 6, 1, 0, 0, 0);
    initWithRTF(RTFFromRange(text, {0, 1}, attributes), &again);
    EXPECT_EQ(again.creationTime.has_value(), isWritten) << year;
  }
}

TEST(RTFRoundTrip, RaisedParagraphsEndOnTheLine) {
  TextAttributes attributes;
  attributes.superscript = 1;
  NSMutableAttributedString builder;
  builder.append(u"a\nb\n", Interned(attributes));
  const std::string rtf(RTFFromRange(std::move(builder).attributedString(), {0, 4}).view());
  std::size_t depth = 0;
  std::vector<std::size_t> raisedSince;
  for (std::size_t at = 0; at < rtf.size(); ++at) {
    if (rtf[at] == '{') ++depth;
    if (rtf[at] == '}' && --depth < (raisedSince.empty() ? 0 : raisedSince.back())) raisedSince.pop_back();
    if (rtf.compare(at, 6, "\\super") == 0) raisedSince.push_back(depth);
    if (rtf.compare(at, 5, "\\par\n") == 0) {
      EXPECT_TRUE(raisedSince.empty()) << rtf;
    }
  }
  EXPECT_EQ(describe(initWithRTF(NSData::dataWithBytes(rtf.data(), rtf.size()))),
            "[a] superscript=1\n[\\n]\n[b] superscript=1\n[\\n]\n");
}

TEST(RTFRoundTrip, TextsStayThemselves) {
  for (unsigned seed = 0; seed < 150; ++seed) {
    Generator generator(seed);
    const NSAttributedString text = generator.document();
    const DocumentAttributes attributes = generator.attributes();
    const NSRange all{0, text.length()};
    const NSData rtf = RTFFromRange(text, all, attributes);
    DocumentAttributes again;
    ASSERT_EQ(describe(initWithRTF(rtf, &again)), describe(text)) << seed << "\n" << rtf.view();
    ASSERT_EQ(initWithRTF(rtf), text) << seed;
    EXPECT_EQ(again, attributes) << seed << "\n" << rtf.view();
    const NSData rtfd = RTFDFromRange(text, all, attributes);
    ASSERT_EQ(describe(initWithRTFD(rtfd)), describe(text)) << seed;
    ASSERT_EQ(initWithRTFD(rtfd), text) << seed;
    // A part is written as what it is, too, but for a cell that it ends in: that has a line feed.
    const NSAttributedString part = text.attributedSubstringFromRange({all.length / 3, all.length / 3});
    const NSAttributedString once = initWithRTF(RTFFromRange(part, {0, part.length()}));
    EXPECT_EQ(initWithRTF(RTFFromRange(once, {0, once.length()})), once) << seed;
  }
}

}  // namespace
}  // namespace nimbo
