// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/ParagraphMaker.hpp"

#include <algorithm>
#include <utility>

#include "platform/Foundation/id.hpp"

namespace nimbo::detail {

namespace {

constexpr unichar kLineSeparator = 0x2028;

/// How far a marker stands in front of the text of its item, and where that begins at least, in points.
constexpr double kMarkerRoom = 20;
constexpr double kLeastItemIndent = 24;

bool isCollapsible(unichar c) {
  return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r';
}

/// Whether the text has letters of a script that is written from right to left.
bool hasRightToLeftLetters(std::u16string_view text) {
  return std::ranges::any_of(text, [](unichar c) {
    return c >= 0x590 && (c < 0x900 || (c >= 0xfb1d && c < 0xfe00) || (c >= 0xfe70 && c < 0xff00) ||
                          c == 0xd802 || c == 0xd803 || c == 0xd83a || c == 0xd83b);
  });
}

/// What the end of a paragraph has of its last character's attributes: nothing that would show.
ParagraphMaker::Attributes withoutDecoration(const ParagraphMaker::Attributes &attributes) {
  const TextAttributes &last = *attributes;
  if (!last.link && !last.backgroundColor && last.underlineStyle == NSUnderlineStyle::none &&
      last.strikethroughStyle == NSStrikethroughStyle::none && last.superscript == 0)
    return attributes;
  TextAttributes plain;
  plain.font = last.font;
  plain.foregroundColor = last.foregroundColor;
  return Interned(std::move(plain));
}

}  // namespace

void ParagraphMaker::Paragraph::append(std::u16string_view units, const Attributes &attributes) {
  text += units;
  const auto end = static_cast<std::uint32_t>(text.size());
  if (!runs.empty() && runs.back().attributes == attributes)
    runs.back().end = end;
  else
    runs.push_back({end, attributes});
}

void ParagraphMaker::Paragraph::clear() {
  text.clear();
  runs.clear();
  images.clear();
  style = {};
}

void ParagraphMaker::openBlock(const BlockStyle &style) {
  endParagraph();
  noteDistanceBelow();
  strut_.addMargin(style.marginTop);
  strut_.addEdge(style.edgeTop);
  Block block{style, lists_.size()};
  const BlockStyle &outer = blocks_.back().style;
  block.style.leftInset += outer.leftInset;
  block.style.rightInset += outer.rightInset;
  if (block.style.headerLevel == 0) block.style.headerLevel = outer.headerLevel;
  blocks_.back().hasContent = true;
  blocks_.push_back(block);
}

void ParagraphMaker::closeBlock() {
  endItem();
  strut_.addEdge(blocks_.back().style.edgeBottom);
  strut_.addMargin(blocks_.back().style.marginBottom);
  blocks_.pop_back();
}

void ParagraphMaker::openCell(const Interned<NSTextTableBlock> &cell, const BlockStyle &style) {
  endParagraph();
  if (marker_) breakParagraph(marker_->attributes);
  flush(strut_.total());
  strut_ = {};
  cells_.push_back({listBase_, paragraphCount_});
  listBase_ = lists_.size();
  textBlocks_.push_back(cell);
  blocks_.back().hasContent = true;
  blocks_.push_back({style, lists_.size()});
}

void ParagraphMaker::closeCell(const Attributes &attributes) {
  endItem();
  if (cells_.back().paragraphCount == paragraphCount_) breakParagraph(attributes);
  flush(strut_.total());
  strut_ = {};
  blocks_.pop_back();
  textBlocks_.pop_back();
  listBase_ = cells_.back().outerListBase;
  cells_.pop_back();
}

void ParagraphMaker::beginItem(const NSTextList &list, std::u16string_view marker,
                               const Attributes &attributes) {
  // The item around it begins with this one and has a line for its own marker.
  if (marker_) breakParagraph(marker_->attributes);
  if (lists_.size() - listBase_ < kMaximumLists) lists_.push_back(list);
  if (marker.empty()) return;
  double &inset = blocks_.back().style.leftInset;
  inset = std::max(inset, kLeastItemIndent);
  marker_ = Marker{std::u16string(marker), attributes, blocks_.size()};
}

/// Ends the paragraph, and the item if the innermost block is one; it has its marker even if it has no text.
void ParagraphMaker::endItem() {
  endParagraph();
  if (marker_ && marker_->depth == blocks_.size()) breakParagraph(marker_->attributes);
  lists_.resize(blocks_.back().listCount);
}

/// Remembers what of the distance to the next paragraph belongs to the last one.
void ParagraphMaker::noteDistanceBelow() {
  if (!distanceBelow_) distanceBelow_ = strut_.total();
}

void ParagraphMaker::beginParagraph() {
  Block &block = blocks_.back();
  noteDistanceBelow();
  const double distance = strut_.total();
  const double below = hasCompleted_ ? std::min(*distanceBelow_, distance) : 0;
  flush(below);
  isOpen_ = true;
  ++paragraphCount_;

  NSParagraphStyle &style = current_.style;
  style.paragraphSpacingBefore = distance - below;
  style.alignment = block.style.alignment;
  style.baseWritingDirection =
      block.style.isRightToLeft ? NSWritingDirection::rightToLeft : NSWritingDirection::natural;
  style.headerLevel = block.style.headerLevel;
  style.headIndent = std::max(0.0, block.style.leftInset);
  style.tailIndent = std::max(0.0, block.style.rightInset);
  style.firstLineHeadIndent = std::max(0.0, style.headIndent + (block.hasContent ? 0 : block.style.textIndent));
  style.minimumLineHeight = block.style.minimumLineHeight;
  style.lineHeightMultiple = block.style.lineHeightMultiple;
  style.textLists.assign(lists_.begin() + static_cast<std::ptrdiff_t>(listBase_), lists_.end());
  style.textBlocks = textBlocks_;
  block.hasContent = true;
  strut_ = {};
  distanceBelow_.reset();
  if (marker_) placeMarker();
}

void ParagraphMaker::placeMarker() {
  const Marker marker = std::move(*marker_);
  marker_.reset();
  NSParagraphStyle &style = current_.style;
  const double indent = std::max(style.headIndent, kLeastItemIndent);
  style.firstLineHeadIndent = 0;
  style.tabStops = {{NSTextTabType::left, indent - kMarkerRoom}, {NSTextTabType::left, indent}};
  current_.append(u"\t" + marker.text + u"\t", marker.attributes);
}

void ParagraphMaker::append(std::u16string_view units, const Attributes &attributes) {
  if (!isOpen_) beginParagraph();
  if (hasBlank_) {
    hasBlank_ = false;
    current_.append(u" ", blankAttributes_);
  }
  current_.append(units, attributes);
  dropsBlanks_ = false;
  ++contentCount_;
}

void ParagraphMaker::addBlank(const Attributes &attributes) {
  if (dropsBlanks_ || hasBlank_) return;
  hasBlank_ = true;
  blankAttributes_ = attributes;
}

void ParagraphMaker::addText(std::u16string_view text, CSSKeyword whiteSpace, const Attributes &attributes) {
  const bool keepsBlanks = whiteSpace == CSSKeyword::kPre || whiteSpace == CSSKeyword::kPreWrap ||
                           whiteSpace == CSSKeyword::kBreakSpaces;
  const bool keepsLines = keepsBlanks || whiteSpace == CSSKeyword::kPreLine;
  const auto isShown = [=](unichar c) { return !isCollapsible(c) || (keepsBlanks && c != u'\n'); };
  for (std::size_t i = 0; i < text.size();) {
    // A word ends at its first blank; it is written with the next word while single blanks stand between them.
    const std::size_t start = i;
    while (i < text.size() &&
           (isShown(text[i]) || (text[i] == u' ' && i > start && i + 1 < text.size() && isShown(text[i + 1]))))
      ++i;
    if (i > start) append(text.substr(start, i - start), attributes);
    for (; i < text.size() && !isShown(text[i]); ++i)
      if (keepsLines && text[i] == u'\n')
        breakLine(attributes);
      else
        addBlank(attributes);
  }
}

void ParagraphMaker::breakLine(const Attributes &attributes) {
  if (!blocks_.back().style.usesLineSeparators) return breakParagraph(attributes);
  hasBlank_ = false;
  append({&kLineSeparator, 1}, attributes);
  dropsBlanks_ = true;
}

/// Ends the paragraph under way, or writes one without text.
void ParagraphMaker::breakParagraph(const Attributes &attributes) {
  if (!isOpen_) beginParagraph();
  if (current_.runs.empty()) current_.runs.push_back({0, attributes});
  ++contentCount_;
  completeParagraph();
}

void ParagraphMaker::addImage(PageImage image, const Attributes &attributes) {
  append({&NSAttachmentCharacter, 1}, attributes);
  image.index = static_cast<std::uint32_t>(current_.text.size()) - 1;
  current_.images.push_back(std::move(image));
}

void ParagraphMaker::openInlineBlock() {
  inlineBlocks_.push_back({contentCount_, dropsBlanks_, hasBlank_});
  dropsBlanks_ = true;
}

void ParagraphMaker::closeInlineBlock() {
  const InlineBlock state = inlineBlocks_.back();
  inlineBlocks_.pop_back();
  const bool isEmpty = contentCount_ == state.contentCount;
  hasBlank_ = isEmpty && isOpen_ && state.hadBlank;
  dropsBlanks_ = !isOpen_ || (isEmpty && state.droppedBlanks);
}

void ParagraphMaker::endParagraph() {
  hasBlank_ = false;
  dropsBlanks_ = true;
  if (isOpen_) completeParagraph();
}

void ParagraphMaker::completeParagraph() {
  hasBlank_ = false;
  dropsBlanks_ = true;
  isOpen_ = false;
  std::u16string &text = current_.text;
  std::vector<Run> &runs = current_.runs;
  // A line break at the end of a block makes no line.
  if (text.ends_with(kLineSeparator)) {
    text.pop_back();
    if (runs.size() > 1 && runs[runs.size() - 2].end == text.size()) runs.pop_back();
  }
  if (current_.style.baseWritingDirection == NSWritingDirection::natural && hasRightToLeftLetters(text))
    current_.style.baseWritingDirection = NSWritingDirection::leftToRight;
  const auto end = static_cast<std::uint32_t>(text.size());
  text += u'\n';
  Attributes attributes = withoutDecoration(runs.back().attributes);
  runs.back().end = end;
  if (end == 0 || attributes == runs.back().attributes)
    runs.back() = {end + 1, std::move(attributes)};
  else
    runs.push_back({end + 1, std::move(attributes)});
  std::swap(current_, completed_);
  current_.clear();
  hasCompleted_ = true;
}

/// Writes the last paragraph.
void ParagraphMaker::flush(double spacingAfter) {
  distanceBelow_.reset();
  if (!hasCompleted_) return;
  hasCompleted_ = false;
  completed_.style.paragraphSpacing = spacingAfter;
  if (*lastStyle_ != completed_.style) lastStyle_ = Interned(std::move(completed_.style));
  const std::uint32_t offset = output_.length();
  const std::u16string_view text = completed_.text;
  std::uint32_t start = 0;
  for (const Run &run : completed_.runs) {
    output_.append(text.substr(start, run.end - start), inParagraph(run.attributes, lastStyle_));
    start = run.end;
  }
  for (PageImage &image : completed_.images) {
    image.index += offset;
    images_.push_back(std::move(image));
  }
  completed_.clear();
}

const ParagraphMaker::Attributes &ParagraphMaker::inParagraph(const Attributes &attributes,
                                                              const Interned<NSParagraphStyle> &style) {
  const std::size_t hash = combinedHash(attributes.hash() >> 4, style.hash() >> 4);
  Known &known = known_[(hash ^ (hash >> 15)) % kKnownAttributes];
  if (known.attributes != attributes || known.style != style) {
    TextAttributes complete = *attributes;
    complete.paragraphStyle = style;
    known = {attributes, style, Interned(std::move(complete))};
  }
  return known.complete;
}

PageText ParagraphMaker::finish() && {
  endParagraph();
  flush(strut_.total());
  NSAttributedString text = std::move(output_).attributedString();
  if (!text) text = NSAttributedString(NSString::string());
  return {std::move(text), std::move(images_)};
}

}  // namespace nimbo::detail
