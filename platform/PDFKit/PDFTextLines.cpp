// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFTextLines.hpp"

#include <cmath>
#include <cstddef>
#include <vector>

#include "platform/PDFKit/PDFTextLine.hpp"

namespace nimbo::detail {
namespace {

// Distances are shares of the size of the characters.

/// Characters that are farther off the column stand beside it.
constexpr float kMaximumOffColumn = 0.3F;
/// From one character to the next one below. Some are set with the space around them halved.
constexpr float kMinimumStep = 0.4F;
constexpr float kMaximumStep = 1.6F;
/// Fewer characters that are written horizontally are a column within this step alone: they may be lines of a
/// character each.
constexpr std::size_t kMinimumColumn = 4;
constexpr float kMaximumStepOfFew = 1.15F;
/// The cosine of the angle between lines of one direction.
constexpr float kSameDirection = 0.999F;

/// Whether it is of a script that is written vertically, too.
bool isVerticalScript(int c) {
  return (c >= 0x2e80 && c <= 0xa4cf) || (c >= 0xac00 && c <= 0xd7af) || (c >= 0xf900 && c <= 0xfaff) ||
         (c >= 0xfe30 && c <= 0xfe4f) || (c >= 0xff00 && c <= 0xffef) || (c >= 0x20000 && c <= 0x3ffff);
}

/// Whether it may be part of a column: vertical by itself, or a single character.
bool isOfColumn(const fz_stext_line &line) {
  if (!isVerticalScript(line.first_char->c) || !isVerticalScript(line.last_char->c)) return false;
  return line.wmode != 0 || (line.first_char == line.last_char && line.dir.x > kSameDirection);
}

fz_point middle(const fz_stext_char &character) {
  const fz_quad &quad = character.quad;
  return {(quad.ul.x + quad.lr.x) / 2, (quad.ul.y + quad.lr.y) / 2};
}

float stepTo(const fz_stext_char &next, const fz_stext_char &last) {
  return (middle(next).y - middle(last).y) / last.size;
}

bool isBelow(const fz_stext_char &next, const fz_stext_char &last) {
  const float step = stepTo(next, last);
  return std::abs(middle(next).x - middle(last).x) <= kMaximumOffColumn * last.size && step >= kMinimumStep &&
         step <= kMaximumStep;
}

/// Whether the character is the last one of a horizontal paragraph that the line is of, too, which may be
/// indented.
bool endsParagraph(const fz_stext_line &character, const fz_stext_line &line) {
  if (character.wmode != 0 || line.wmode != 0 || line.first_char == line.last_char ||
      !isVerticalScript(line.first_char->c))
    return false;
  const fz_stext_char &last = *character.first_char;
  const float step = stepTo(last, *line.first_char);
  const float x = middle(last).x;
  return step >= kMinimumStep && step <= kMaximumStep && x > line.bbox.x0 - 2 * last.size && x < line.bbox.x1;
}

/// Lines that stand below each other.
class Column {
 public:
  /// Whether the line goes on with it.
  bool isContinuedBy(const fz_stext_line &line) const {
    return !lines_.empty() && isBelow(*line.first_char, *lines_.back()->last_char);
  }
  void append(fz_stext_line &line) {
    if (!lines_.empty() && line.wmode == 0)
      isWide_ |= stepTo(*line.first_char, *lines_.back()->last_char) > kMaximumStepOfFew;
    lines_.push_back(&line);
  }
  /// Makes it one line, unless it is rather some of a character each, and begins the next one.
  void end() {
    if (!isWide_ || lines_.size() >= kMinimumColumn)
      for (std::size_t i = 1; i < lines_.size(); ++i) {
        appendLine(*lines_[0], *lines_[i]);
        lines_[0]->wmode = 1;
      }
    lines_.clear();
    isWide_ = false;
  }

 private:
  std::vector<fz_stext_line *> lines_;
  bool isWide_ = false;
};

/// From one line to the next one.
constexpr float kMaximumLineSpacing = 2;

/// The rest of a word is of the same size within this.
constexpr float kSameSize = 0.1F;
/// That a hyphen parts from the rest of a word.
constexpr int kMinimumLetters = 2;

bool isHyphen(int c) {
  return c == '-' || c == 0xad || c == 0x2010;
}

int categoryOf(int c) {
  return ucdn_get_general_category(static_cast<std::uint32_t>(c));
}

/// Whether it is a letter or a mark on one.
bool isOfWord(int c) {
  return isPDFLetter(c) ||
         (categoryOf(c) >= UCDN_GENERAL_CATEGORY_MC && categoryOf(c) <= UCDN_GENERAL_CATEGORY_MN);
}

/// Many scripts have no case.
bool mayContinueWord(int c) {
  return categoryOf(c) == UCDN_GENERAL_CATEGORY_LL ||
         (categoryOf(c) == UCDN_GENERAL_CATEGORY_LO && !isVerticalScript(c));
}

/// The letter before the hyphen that ends the line, but for blanks; null when there is none, or when it stands
/// alone as in grades and names of variables.
fz_stext_char *dividedWord(const fz_stext_line &line) {
  if (!line.first_char || !(line.last_char->c == ' ' || isHyphen(line.last_char->c))) return nullptr;
  fz_stext_char *letter = nullptr;
  fz_stext_char *last = nullptr;
  int letters = 0;
  for (fz_stext_char *character = line.first_char; character; character = character->next) {
    if (character->c == ' ') {
      letters = 0;
      continue;
    }
    letter = isHyphen(character->c) && letters >= kMinimumLetters ? last : nullptr;
    letters = isOfWord(character->c) ? letters + 1 : 0;
    last = character;
  }
  return letter;
}

/// Takes what stands behind the character from the line's end.
void cutBehind(fz_context *context, fz_stext_line &line, fz_stext_char &character) {
  for (const fz_stext_char *next = character.next; next; next = next->next) fz_drop_font(context, next->font);
  character.next = nullptr;
  line.last_char = &character;
}

/// Whether the line goes on with a word that was begun on the one before, right above.
bool continuesWord(const fz_stext_line &line, const fz_stext_line &before, const fz_stext_char &letter) {
  const fz_stext_char &first = *line.first_char;
  const auto along = [&line](fz_point place) { return line.dir.x * place.x + line.dir.y * place.y; };
  const auto below = [&line](fz_point place) { return line.dir.x * place.y - line.dir.y * place.x; };
  if (line.wmode != 0 || before.wmode != 0 ||
      line.dir.x * before.dir.x + line.dir.y * before.dir.y <= kSameDirection || !mayContinueWord(first.c))
    return false;
  if (std::abs(first.size - letter.size) > kSameSize * letter.size) return false;
  const float step = (below(first.origin) - below(letter.origin)) / letter.size;
  return step >= kMinimumStep && step <= kMaximumLineSpacing && along(first.origin) < along(letter.origin) &&
         along(line.last_char->quad.lr) > along(before.first_char->origin);
}

}  // namespace

void joinDividedWords(fz_context *context, fz_stext_page &page) {
  fz_stext_line *before = nullptr;
  fz_stext_char *letter = nullptr;
  for (fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    for (fz_stext_line *line = block->u.t.first_line; line; line = line->next) {
      if (!line->first_char) continue;
      fz_stext_char *const next = dividedWord(*line);
      if (letter && continuesWord(*line, *before, *letter)) {
        cutBehind(context, *before, *letter);
        appendLine(*before, *line);
      } else {
        before = line;
      }
      letter = next;
    }
  }
}

void joinColumns(fz_stext_page &page) {
  Column column;
  const fz_stext_line *before = nullptr;
  for (fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    for (fz_stext_line *line = block->u.t.first_line; line; line = line->next) {
      if (!line->first_char) continue;
      const bool isPart = isOfColumn(*line) && !(before && endsParagraph(*line, *before));
      if (!isPart || !column.isContinuedBy(*line)) column.end();
      if (isPart) column.append(*line);
      before = line;
    }
  }
  column.end();
}

}  // namespace nimbo::detail
