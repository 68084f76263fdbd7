// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/CSS/CSSKeyword.hpp"
#include "platform/WebKit/RichText/MarginStrut.hpp"
#include "platform/WebKit/RichText/PageText.hpp"

namespace nimbo::detail {

/// What a block does to the paragraphs in it. Lengths are points.
struct BlockStyle {
  NSTextAlignment alignment = NSTextAlignment::natural;
  bool isRightToLeft = false;
  /// From the sides of the block around it to the text.
  double leftInset = 0, rightInset = 0;
  /// What the block's first line is indented by, over the inset.
  double textIndent = 0;
  /// What its lines are at least high, or the multiple of their natural height; 0 for that itself.
  double minimumLineHeight = 0, lineHeightMultiple = 0;
  double marginTop = 0, marginBottom = 0;
  /// Borders and paddings.
  double edgeTop = 0, edgeBottom = 0;
  /// 1 to 6 for a heading.
  std::uint8_t headerLevel = 0;
  /// Whether its lines end with U+2028 when its paragraphs do not.
  bool usesLineSeparators = false;
};

/// Makes paragraphs out of what a page has in lines and blocks, in the order of the page. White space is dealt
/// with as style sheets ask for: what collapses is one blank for all elements that it is in, and none at the
/// ends of lines. Attributes are those of characters; their paragraph style is set here.
class ParagraphMaker {
 public:
  /// How many lists a paragraph is in at most; those further inside are part of the last one. No page comes
  /// near, and without a limit the lists of all paragraphs grow with the square of the page.
  static constexpr std::size_t kMaximumLists = 32;

  using Attributes = Interned<TextAttributes>;

  /// A block begins; a paragraph that is under way ends.
  void openBlock(const BlockStyle &style);
  /// The innermost block ends.
  void closeBlock();
  /// A cell begins, from whose sides insets are counted anew.
  void openCell(const Interned<NSTextTableBlock> &cell, const BlockStyle &style);
  /// The innermost cell ends. An empty one gets a paragraph with the attributes.
  void closeCell(const Attributes &attributes);
  /// The innermost block, which has just begun, is an item of the list. The marker, unless it is empty, stands
  /// in front of its first paragraph.
  void beginItem(const NSTextList &list, std::u16string_view marker, const Attributes &attributes);
  /// The paragraph that is under way ends.
  void endParagraph();

  /// Text in a line, with the value of "white-space".
  void addText(std::u16string_view text, CSSKeyword whiteSpace, const Attributes &attributes);
  /// A "br".
  void breakLine(const Attributes &attributes);
  /// A blank that collapses with others.
  void addBlank(const Attributes &attributes);
  /// An image, whose index is set.
  void addImage(PageImage image, const Attributes &attributes);
  /// An inline block begins: blanks at its start are dropped, those in front of it are not.
  void openInlineBlock();
  /// The innermost inline block ends.
  void closeInlineBlock();

  /// How many cells are around.
  std::size_t cellDepth() const { return cells_.size(); }
  /// The last unit in the line, or a line feed at its beginning; a blank that may still be dropped counts.
  unichar lastUnit() const { return hasBlank_ ? u' ' : isOpen_ ? current_.text.back() : u'\n'; }

  /// All of the text; the object is done with.
  PageText finish() &&;

 private:
  struct Block {
    BlockStyle style;
    std::size_t listCount = 0;
    bool hasContent = false;
  };
  struct Cell {
    std::size_t outerListBase;
    std::uint32_t paragraphCount;
  };
  struct InlineBlock {
    std::uint64_t contentCount;
    bool droppedBlanks;
    bool hadBlank;
  };
  struct Run {
    std::uint32_t end;
    Attributes attributes;
  };
  struct Paragraph {
    std::u16string text;
    std::vector<Run> runs;
    NSParagraphStyle style;
    std::vector<PageImage> images;

    void append(std::u16string_view units, const Attributes &attributes);
    void clear();
  };
  struct Marker {
    std::u16string text;
    Attributes attributes;
    /// How many blocks are open, that of the item the last one.
    std::size_t depth;
  };
  /// Attributes, and what they are in a paragraph of the style.
  struct Known {
    Attributes attributes;
    Interned<NSParagraphStyle> style;
    Attributes complete;
  };
  /// How many of them are kept, of those that were lately asked for.
  static constexpr std::size_t kKnownAttributes = 64;

  void beginParagraph();
  void placeMarker();
  void endItem();
  void append(std::u16string_view units, const Attributes &attributes);
  void breakParagraph(const Attributes &attributes);
  void completeParagraph();
  void noteDistanceBelow();
  void flush(double spacingAfter);
  const Attributes &inParagraph(const Attributes &attributes, const Interned<NSParagraphStyle> &style);

  NSMutableAttributedString output_;
  std::vector<PageImage> images_;
  std::vector<Block> blocks_ = {Block()};
  std::vector<Cell> cells_;
  std::vector<Interned<NSTextTableBlock>> textBlocks_;
  std::vector<NSTextList> lists_;
  /// Where the lists in the innermost cell begin.
  std::size_t listBase_ = 0;
  std::vector<InlineBlock> inlineBlocks_;
  /// The marker that the next paragraph begins with.
  std::optional<Marker> marker_;

  /// The paragraph under way, and the one before it, whose distance to what follows is not known yet.
  Paragraph current_, completed_;
  bool isOpen_ = false;
  bool hasCompleted_ = false;
  std::uint32_t paragraphCount_ = 0;

  /// Whether blanks that collapse are dropped here, and whether one is still to be written.
  bool dropsBlanks_ = true;
  bool hasBlank_ = false;
  Attributes blankAttributes_;
  /// Grows with all that is shown.
  std::uint64_t contentCount_ = 0;

  MarginStrut strut_;
  /// The distance below the last paragraph, when a block has begun since.
  std::optional<double> distanceBelow_;

  Interned<NSParagraphStyle> lastStyle_;
  std::vector<Known> known_ = std::vector<Known>(kKnownAttributes);
};

}  // namespace nimbo::detail
