// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo::detail {

/// Hears nothing of the characters of a page; shows what may be heard.
struct PDFTextIgnorer {
  /// A line begins.
  void beginLine(const fz_stext_line &) {}
  /// The units at `index` and behind it stand for the character, up to those of the next one.
  void put(const fz_stext_char &, std::uint32_t /*index*/) {}
  /// The line ends before `index`, where its line feed stands.
  void endLine(std::uint32_t /*index*/) {}
  /// What has been put at `index` and behind it does not count.
  void takeBack(std::uint32_t /*index*/) {}
};

/// Writes the text that MuPDF found on a page, and tells `Listener` where each character stands in it.
template <class Listener>
class PDFTextWalk {
 public:
  explicit PDFTextWalk(Listener &listener) : listener_(listener) {}

  /// The text; nil when the page has none.
  NSString stringOfPage(const fz_stext_page &page);

 private:
  static std::uint32_t maximumLengthInCodeUnits(const fz_stext_page &page);
  unichar *putLine(const fz_stext_line &line, unichar *start);
  std::uint32_t indexOf(const unichar *place) const { return static_cast<std::uint32_t>(place - text_); }

  Listener &listener_;
  unichar *text_ = nullptr;
};

/// Whether a character is neither a control nor what stands for a glyph of unknown meaning.
inline bool isReadablePDFCharacter(int character) {
  return character > ' ' && !(character >= 0x7f && character <= 0x9f) && character != 0xfffd &&
         character <= 0x10ffff && !(character >= 0xd800 && character <= 0xdfff);
}

/// Above `NSNotFound` when it would be too long for a string.
template <class Listener>
std::uint32_t PDFTextWalk<Listener>::maximumLengthInCodeUnits(const fz_stext_page &page) {
  std::uint64_t length = 0;
  for (const fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    for (const fz_stext_line *line = block->u.t.first_line; line; line = line->next) {
      for (const fz_stext_char *character = line->first_char; character; character = character->next)
        length += character->c > 0xffff ? 2 : 1;
      length += 2;
    }
  }
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(length, NSNotFound + std::uint64_t{1}));
}

/// Writes the line and a line feed, nothing when it has no readable character; answers the new end.
template <class Listener>
unichar *PDFTextWalk<Listener>::putLine(const fz_stext_line &line, unichar *const start) {
  unichar *out = start;
  bool hasText = false;
  bool afterUnknown = false;
  listener_.beginLine(line);
  for (const fz_stext_char *character = line.first_char; character; character = character->next) {
    const int c = character->c;
    const bool unknown = c != ' ' && !isReadablePDFCharacter(c);
    // Many unknown glyphs in a row are one blank.
    if (std::exchange(afterUnknown, unknown) && unknown) continue;
    listener_.put(*character, indexOf(out));
    if (unknown || c == ' ') {
      *out++ = u' ';
      continue;
    }
    hasText = true;
    out += putUTF16(static_cast<char32_t>(c), out);
  }
  if (!hasText) {
    listener_.takeBack(indexOf(start));
    return start;
  }
  listener_.endLine(indexOf(out));
  *out++ = u'\n';
  return out;
}

template <class Listener>
NSString PDFTextWalk<Listener>::stringOfPage(const fz_stext_page &page) {
  NSMutableString string;
  string.setLength(maximumLengthInCodeUnits(page));
  text_ = string.mutableCharacters();
  unichar *out = text_;
  for (const fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    // The empty line before all blocks but the first.
    unichar *const first = out == text_ ? out : out + 1;
    unichar *end = first;
    for (const fz_stext_line *line = block->u.t.first_line; line; line = line->next) end = putLine(*line, end);
    if (end == first) continue;
    if (first != out) *out = u'\n';
    out = end;
  }
  if (out == text_) return {};
  string.setLength(indexOf(out));
  return std::move(string).string();
}

}  // namespace nimbo::detail
