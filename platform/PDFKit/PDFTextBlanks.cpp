// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFTextBlanks.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <vector>

#include "platform/PDFKit/PDFTextLine.hpp"

namespace nimbo::detail {
namespace {

/// Stands for a character that is about to be dropped.
constexpr int kDropped = 0x110003;

// Distances are shares of the size of the characters.

/// Narrower gaps between letters come from kerning.
constexpr float kMinimumSpacing = 0.1F;
/// A gap between words is wider than those between letters by more; kerning makes less of a difference.
constexpr float kMinimumBlank = 0.12F;
/// Where the document has no blanks, fewer letters may stand alone.
constexpr std::size_t kMinimumLetters = 4;
/// Letters with wider gaps stand alone.
constexpr float kMaximumSpacing = 0.45F;
/// Digits belong together when they are as far apart as the letters of the line's first spaced word, within
/// this.
constexpr float kSameSpacing = 0.02F;

/// Finds spaced words in one line after the other.
class SpacedWords {
 public:
  /// Makes MuPDF's blanks within such words characters that are dropped.
  void findInLine(fz_stext_line &line);

 private:
  struct Gap {
    float width;
    /// MuPDF's blank in it; null when there is none.
    fz_stext_char *blank;
  };

  /// The characters between two blanks of the document.
  struct Segment {
    std::size_t firstGap = 0;
    std::size_t lastGap = 0;
    std::size_t characters = 0;
    std::size_t letters = 0;
    /// Whether the document's blank stands off the character before.
    bool isSpaced = false;
    /// Between most characters; 0 when they are not spaced.
    float spacing = 0;

    bool isWord() const {
      return spacing > 0 && 2 * letters >= characters && (isSpaced || letters >= kMinimumLetters);
    }
  };

  void endSegment(bool isSpaced);
  void joinWords();

  std::vector<Gap> gaps_;
  std::vector<Segment> segments_;
  Segment segment_;
  std::vector<float> widths_;
};

void SpacedWords::findInLine(fz_stext_line &line) {
  const auto along = [&line](fz_point place) { return line.dir.x * place.x + line.dir.y * place.y; };
  fz_stext_char *blank = nullptr;
  const fz_stext_char *last = nullptr;
  float end = 0;
  // Whether the document's last blank stands off the character before.
  bool isSpaced = false;
  for (fz_stext_char *character = line.first_char; character; character = character->next) {
    if (character->c == ' ') {
      blank = character;
      continue;
    }
    const float start = along(character->origin);
    const float width =
        along({character->quad.lr.x - character->quad.ll.x, character->quad.lr.y - character->quad.ll.y});
    const float gap = last && character->size > 0 ? (start - end) / character->size : 0;
    if (character->c == kOwnPDFBlank) {
      if (last) endSegment(isSpaced = gap >= kMinimumSpacing);
      last = nullptr;
    } else if (!last || width > 0) {
      // Other letters of a glyph, and marks, have no width.
      if (last) gaps_.push_back({gap, blank});
      ++segment_.characters;
      segment_.letters += isPDFLetter(character->c);
      last = character;
      end = start + width;
    }
    blank = nullptr;
  }
  endSegment(isSpaced);
  joinWords();
}

void SpacedWords::endSegment(bool isSpaced) {
  segment_.lastGap = gaps_.size();
  segment_.isSpaced = isSpaced;
  widths_.clear();
  for (std::size_t i = segment_.firstGap; i < segment_.lastGap; ++i) widths_.push_back(gaps_[i].width);
  std::sort(widths_.begin(), widths_.end());
  if (!widths_.empty() && widths_.front() >= kMinimumSpacing) {
    const float spacing = widths_[(widths_.size() - 1) / 2];
    if (spacing <= kMaximumSpacing) segment_.spacing = spacing;
  }
  segments_.push_back(segment_);
  segment_ = {.firstGap = gaps_.size()};
}

void SpacedWords::joinWords() {
  const auto word = std::find_if(segments_.begin(), segments_.end(), std::mem_fn(&Segment::isWord));
  for (const Segment &segment : segments_) {
    const bool isLikeWord =
        word != segments_.end() && std::abs(word->spacing - segment.spacing) <= kSameSpacing;
    if (!segment.isWord() && !isLikeWord) continue;
    for (std::size_t i = segment.firstGap; i < segment.lastGap; ++i)
      if (gaps_[i].blank && gaps_[i].width <= segment.spacing + kMinimumBlank) gaps_[i].blank->c = kDropped;
  }
  gaps_.clear();
  segments_.clear();
  segment_ = {};
}

}  // namespace

int markedPDFCharacter(int character) {
  switch (character) {
    // What MuPDF takes for blanks.
    case '\t':
    case ' ':
    case 0xa0:
    case 0x1680:
    case 0x180e:
    case 0x202f:
    case 0x205f:
    case 0x3000:
      return kOwnPDFBlank;
    default:
      return character >= 0x2000 && character <= 0x200a ? kOwnPDFBlank : character;
  }
}

void settleBlanks(fz_context *context, fz_stext_page &page) {
  SpacedWords words;
  for (fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    for (fz_stext_line *line = block->u.t.first_line; line; line = line->next) {
      bool hasGap = false;
      for (const fz_stext_char *character = line->first_char; character; character = character->next)
        hasGap |= character->c == ' ';
      if (hasGap && line->wmode == 0) words.findInLine(*line);
      bool isAfterBlank = false;
      const auto isUnwanted = [&isAfterBlank](const fz_stext_char &character) {
        const bool isBesideBlank =
            character.c == ' ' && (isAfterBlank || (character.next && character.next->c == kOwnPDFBlank));
        isAfterBlank = character.c == kOwnPDFBlank;
        return isBesideBlank || character.c == kDropped;
      };
      if (hasGap) dropCharacters(context, *line, isUnwanted);
      for (fz_stext_char *character = line->first_char; character; character = character->next)
        if (character->c == kOwnPDFBlank) character->c = ' ';
    }
  }
}

}  // namespace nimbo::detail
