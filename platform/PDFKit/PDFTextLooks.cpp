// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFTextLooks.hpp"

#include <cmath>
#include <string_view>
#include <utility>

#include "platform/PDFKit/PDFTextWalk.hpp"

namespace nimbo::detail {
namespace {

/// Characters off the line have no more than this share of its size.
constexpr float kMaximumSizeOffLine = 0.85F;
/// They are moved by more than this share of it.
constexpr float kMinimumShift = 0.075F;
constexpr double kSizesPerPoint = 10;
/// Sizes that differ by less are one size, in points.
constexpr float kSizeTolerance = 0.02F;
/// A font whose characters are lower, in ems, does not say how high they are.
constexpr float kMinimumHeight = 0.1F;
/// Links that lead to more are made to do harm: each run of attributes repeats what it leads to.
constexpr std::size_t kMaximumTargetBytes = 4096;
constexpr float kMinimumPointSize = 0.1F;
constexpr float kMaximumPointSize = 10'000;

/// Whether it may be said to stand on the line, as symbols, which are as large as they like, do not.
bool isLetterOrDigit(int character) {
  if (character < 0x80)
    return (character >= '0' && character <= '9') || ((character | 0x20) >= 'a' && (character | 0x20) <= 'z');
  return character >= 0xc0 && !(character >= 0x2000 && character < 0x2c00) &&
         !(character >= 0xe000 && character < 0xf900) && isReadablePDFCharacter(character);
}

/// Whether it leads out of the document, and not to a file.
bool isExternal(fz_context *context, const fz_link &link) {
  if (!link.uri || !fz_is_external_link(context, link.uri)) return false;
  const std::string_view target = link.uri;
  return target.size() <= kMaximumTargetBytes && !target.starts_with("file:");
}

bool meet(const fz_rect &a, const fz_rect &b) {
  return a.x0 <= b.x1 && b.x0 <= a.x1 && a.y0 <= b.y1 && b.y0 <= a.y1;
}

/// In points, of a character that stands upright on its line, however wide it is made.
float sizeOfCharacter(fz_context *context, const fz_stext_char &character) {
  const float height = fz_font_ascender(context, character.font) - fz_font_descender(context, character.font);
  if (!(height > kMinimumHeight)) return character.size;
  return std::hypot(character.quad.ul.x - character.quad.ll.x, character.quad.ul.y - character.quad.ll.y) /
         height;
}

}  // namespace

PDFTextLooks::PDFTextLooks(fz_context *context, const fz_link *links, const PDFLimits &limits)
    : context_(context), limits_(limits) {
  for (const fz_link *link = links; link; link = link->next)
    if (isExternal(context, *link))
      links_.push_back({link->rect, NSString::stringWithLossyUTF8String(link->uri)});
}

void PDFTextLooks::beginLine(const fz_stext_line &line) {
  linksOfLine_.clear();
  for (const Link &link : links_) {
    if (!mayCompare()) break;
    if (meet(link.place, line.bbox)) linksOfLine_.push_back(&link);
  }
  up_ = {line.dir.y, -line.dir.x};
  base_ = nullptr;
  isVertical_ = line.wmode != 0;
  if (isVertical_) return;
  for (const fz_stext_char *character = line.first_char; character; character = character->next)
    if ((!base_ || character->size > base_->size) && isLetterOrDigit(character->c)) base_ = character;
}

void PDFTextLooks::put(const fz_stext_char &character, std::uint32_t index) {
  const Link *const link = linkAt(character);
  // What a blank looks like is not seen.
  if (!marks_.empty() && marks_.back().look.link == link && !isReadablePDFCharacter(character.c)) return;
  mark(index, {.font = character.font,
               .size = roundedSize(character),
               .color = character.color,
               .superscript = superscriptOf(character),
               .link = link});
}

std::uint32_t PDFTextLooks::roundedSize(const fz_stext_char &character) {
  const float size = isVertical_ ? character.size : sizeOfCharacter(context_, character);
  if (!(size >= kMinimumPointSize && size <= kMaximumPointSize)) return 0;
  if (std::abs(size - lastSize_) > kSizeTolerance) lastSize_ = size;
  return static_cast<std::uint32_t>(std::lround(lastSize_ * kSizesPerPoint));
}

void PDFTextLooks::endLine(std::uint32_t index) {
  Look look = marks_.back().look;
  look.link = nullptr;
  look.superscript = 0;
  mark(index, look);
}

void PDFTextLooks::takeBack(std::uint32_t index) {
  while (!marks_.empty() && marks_.back().start >= index) marks_.pop_back();
}

void PDFTextLooks::mark(std::uint32_t index, const Look &look) {
  if (!marks_.empty() && marks_.back().look == look) return;
  if (marks_.empty() || marks_.size() < limits_.attributeRuns)
    marks_.push_back({index, look});
  else
    loss_ = "the text of a page changes its looks too often";
}

bool PDFTextLooks::mayCompare() {
  if (comparisons_ < limits_.linkComparisons) return ++comparisons_ > 0;
  loss_ = "a page has too many links";
  return false;
}

const PDFTextLooks::Link *PDFTextLooks::linkAt(const fz_stext_char &character) {
  const fz_quad &quad = character.quad;
  const fz_point middle = {(quad.ul.x + quad.lr.x) / 2, (quad.ul.y + quad.lr.y) / 2};
  for (const Link *link : linksOfLine_) {
    if (!mayCompare()) break;
    if (fz_is_point_inside_rect(middle, link->place)) return link;
  }
  return nullptr;
}

std::int8_t PDFTextLooks::superscriptOf(const fz_stext_char &character) const {
  if (!base_ || character.size > base_->size * kMaximumSizeOffLine) return 0;
  const float shift =
      ((character.origin.x - base_->origin.x) * up_.x + (character.origin.y - base_->origin.y) * up_.y) /
      base_->size;
  if (shift > kMinimumShift) return 1;
  if (shift < -kMinimumShift) return -1;
  return 0;
}

NSAttributedString PDFTextLooks::attributedString(const NSString &text, const PDFFonts &fonts) const {
  NSMutableAttributedString string;
  string.reserve(text.length(), marks_.size());
  for (std::size_t i = 0; i < marks_.size(); ++i) {
    const auto &[start, look] = marks_[i];
    TextAttributes attributes;
    attributes.font = fonts.fontForFont(look.font);
    if (look.size > 0) attributes.font.pointSize = look.size / kSizesPerPoint;
    if (look.color != 0)
      attributes.foregroundColor =
          NSColor{static_cast<std::uint8_t>(look.color >> 16), static_cast<std::uint8_t>(look.color >> 8),
                  static_cast<std::uint8_t>(look.color)};
    attributes.superscript = look.superscript;
    if (look.link) attributes.link = look.link->target;
    const std::uint32_t end = i + 1 < marks_.size() ? marks_[i + 1].start : text.length();
    string.append(text.view().substr(start, end - start), attributes);
  }
  return text ? std::move(string).attributedString() : NSAttributedString();
}

}  // namespace nimbo::detail
