// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFTextOrder.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "platform/Foundation/NSStringNormalization.hpp"
#include "platform/PDFKit/PDFTextLine.hpp"

namespace nimbo::detail {
namespace {

// Distances are shares of the size of the characters.

/// Characters that are farther off the line stand on another one.
constexpr float kMaximumOffLine = 0.5F;
/// Parts of a line that are farther from each other are not of the same line, as in tables.
constexpr float kMaximumGap = 0.8F;
/// As far may they overlap.
constexpr float kMaximumOverlap = 0.3F;
/// A larger gap between letters is a blank.
constexpr float kMinimumBlank = 0.15F;
/// Where a glyph begins and the one before ends is the same place within this.
constexpr float kSamePlace = 0.01F;
/// The cosine of the angle between lines of one direction.
constexpr float kSameDirection = 0.999F;

float along(fz_point direction, fz_point place) {
  return direction.x * place.x + direction.y * place.y;
}

float across(fz_point direction, fz_point place) {
  return direction.x * place.y - direction.y * place.x;
}

float widthAlong(fz_point direction, const fz_stext_char &character) {
  return along(direction,
               {character.quad.lr.x - character.quad.ll.x, character.quad.lr.y - character.quad.ll.y});
}

/// From the left of the characters to their right; MuPDF's own direction is that of writing, which is the other
/// one where they are drawn mirrored.
fz_point directionOfLine(const fz_stext_line &line) {
  const fz_quad &quad = line.first_char->quad;
  const bool isMirrored = across(line.dir, {quad.ul.x - quad.ll.x, quad.ul.y - quad.ll.y}) > 0;
  return isMirrored ? fz_point{-line.dir.x, -line.dir.y} : line.dir;
}

BidiRole roleOf(const fz_stext_char &character) {
  return bidiRole(static_cast<char32_t>(character.c));
}

bool isRightToLeft(const fz_stext_block &block) {
  for (const fz_stext_line *line = block.u.t.first_line; line; line = line->next)
    for (const fz_stext_char *character = line->first_char; character; character = character->next)
      if (character->c > 0 && isInRightToLeftBlock(static_cast<char32_t>(character->c))) return true;
  return false;
}

/// Whether most letters that run from right to left follow those to the right of them: they are drawn in the
/// order in which they are read.
bool isDrawnAsRead(const std::vector<fz_stext_char *> &characters, fz_point direction) {
  constexpr float kMaximumStep = 3;
  int balance = 0;
  const fz_stext_char *last = nullptr;
  for (const fz_stext_char *character : characters) {
    const BidiRole role = roleOf(*character);
    if (role == BidiRole::mark) continue;
    if (last && role == BidiRole::rightToLeft) {
      const float step = along(direction, character->origin) - along(direction, last->origin);
      if (std::abs(step) < kMaximumStep * character->size) balance += step < 0 ? 1 : -1;
    }
    last = role == BidiRole::rightToLeft ? character : nullptr;
  }
  return balance > 0;
}

/// The letters that a form of letters stands for; nothing for what is no such form.
std::u16string lettersOfForm(int c) {
  const bool isForm = (c >= 0xfb1d && c <= 0xfdff) || (c >= 0xfe70 && c <= 0xfeff);
  if (!isForm) return {};
  NSMutableString letters;
  letters.appendCharacter(static_cast<unichar>(c));
  CFStringNormalize(letters, kCFStringNormalizationFormKC);
  std::u16string units(std::move(letters).string().view());
  // A mark alone stands on a blank there.
  if (units.size() > 1 && units[0] == u' ') units.erase(0, 1);
  return units;
}

}  // namespace

void PDFTextOrder::putInLogicalOrder(fz_stext_page &page) {
  for (fz_stext_block *block = page.first_block; block; block = block->next)
    if (block->type == FZ_STEXT_BLOCK_TEXT && nimbo::detail::isRightToLeft(*block))
      putBlockInLogicalOrder(*block);
}

void PDFTextOrder::putBlockInLogicalOrder(fz_stext_block &block) {
  pieces_.clear();
  isBlockRightToLeft_.reset();
  for (fz_stext_line *line = block.u.t.first_line; line; line = line->next) {
    bool isNew = true;
    for (fz_stext_char *character = line->first_char; character; character = character->next) {
      const fz_point direction = isNew ? directionOfLine(*line) : pieces_.back().direction;
      const float baseline = across(direction, character->origin);
      const float start = along(direction, character->origin);
      const float end = start + widthAlong(direction, *character);
      const bool isMark = roleOf(*character) == BidiRole::mark;
      // Words that a line's end divides have been joined.
      if (isNew || (!isMark && line->wmode == 0 &&
                    std::abs(baseline - pieces_.back().baseline) > kMaximumOffLine * character->size))
        pieces_.push_back({line, direction, baseline, character->size, start, start, {}});
      isNew = false;
      Piece &piece = pieces_.back();
      piece.characters.push_back(character);
      if (line->wmode == 0 && isInRightToLeftBlock(static_cast<char32_t>(character->c)))
        piece.isRightToLeft = true;
      // Where MuPDF puts a blank of its own says nothing.
      if (character->c == ' ') continue;
      piece.start = std::min({piece.start, start, end});
      piece.end = std::max({piece.end, start, end});
    }
    line->first_char = line->last_char = nullptr;
  }
  for (auto piece = pieces_.begin(); piece != pieces_.end();) {
    float start = piece->start;
    float end = piece->end;
    const auto continues = [&](const Piece &next) {
      const float size = std::max(piece->size, next.size);
      const float gap = std::max(next.start - end, start - next.end);
      return piece->line->wmode == 0 && next.line->wmode == 0 &&
             along(piece->direction, next.direction) > kSameDirection &&
             std::abs(next.baseline - piece->baseline) <= kMaximumOffLine * size && gap <= kMaximumGap * size &&
             gap >= -kMaximumOverlap * size;
    };
    auto last = piece + 1;
    bool isAny = piece->isRightToLeft;
    for (; last != pieces_.end() && continues(*last); ++last) {
      start = std::min(start, last->start);
      end = std::max(end, last->end);
      isAny |= last->isRightToLeft;
    }
    if (isAny)
      putPieces(&*piece, &*piece + (last - piece));
    else
      for (auto one = piece; one != last; ++one)
        for (fz_stext_char *character : one->characters) append(*one->line, character);
    piece = last;
  }
}

void PDFTextOrder::putPieces(Piece *first, Piece *end) {
  std::vector<Cluster> clusters = clustersOf(*first);
  fz_stext_line &line = *first->line;
  for (const Piece *piece = first + 1; piece != end; ++piece) {
    line.bbox = fz_union_rect(line.bbox, piece->line->bbox);
    for (Cluster &cluster : clustersOf(*piece)) clusters.push_back(std::move(cluster));
  }
  sortAsSeen(clusters);
  std::u32string seen(clusters.size(), U' ');
  std::transform(clusters.begin(), clusters.end(), seen.begin(),
                 [](const Cluster &cluster) { return static_cast<char32_t>(cluster.base().c); });
  const std::vector<BidiPlace> order = logicalOrderOfVisualLine(seen, isRightToLeft(seen));
  findMirrored(clusters, order, false);
  findMirrored(clusters, order, true);
  for (const BidiPlace &place : order) {
    const Cluster &cluster = clusters[place.index];
    if (isMirrored_[place.isRightToLeft])
      cluster.base().c = static_cast<int>(mirroredCharacter(seen[place.index]));
    for (fz_stext_char *character : cluster.characters) append(line, character);
  }
}

std::vector<PDFTextOrder::Cluster> PDFTextOrder::clustersOf(const Piece &piece) {
  const bool asRead = isDrawnAsRead(piece.characters, piece.direction);
  std::vector<Cluster> clusters;
  // Marks that are drawn before what they stand with, the last one first.
  std::vector<fz_stext_char *> marks;
  float lastEnd = 0;
  for (fz_stext_char *character : piece.characters) {
    const float start = along(piece.direction, character->origin);
    const float end = start + widthAlong(piece.direction, *character);
    const BidiRole role = roleOf(*character);
    const float same = kSamePlace * character->size;
    const bool isOfLastGlyph = !clusters.empty() && marks.empty() && character->c != ' ' &&
                               std::abs(end - start) <= same && std::abs(start - lastEnd) <= same;
    lastEnd = end;
    if (!clusters.empty() && isOfGlyphBefore(*character)) {
      clusters.back().characters.push_back(character);
      continue;
    }
    if (role == BidiRole::mark) {
      if (asRead && !clusters.empty())
        clusters.back().characters.push_back(character);
      else
        marks.insert(marks.begin(), character);
      continue;
    }
    if (isOfLastGlyph) {
      clusters.back().characters.push_back(character);
      continue;
    }
    if (role != BidiRole::rightToLeft && !clusters.empty()) {
      auto &before = clusters.back().characters;
      before.insert(before.end(), marks.rbegin(), marks.rend());
      marks.clear();
    }
    clusters.push_back(
        {{character}, std::min(start, end), std::max(start, end), widthAlong(piece.line->dir, *character)});
    clusters.back().characters.insert(clusters.back().characters.end(), marks.begin(), marks.end());
    marks.clear();
  }
  for (fz_stext_char *mark : marks) {
    if (clusters.empty()) clusters.push_back({});
    clusters.back().characters.push_back(mark);
  }
  return clusters;
}

/// Sorts them from left to right, with blanks where there is room for one.
void PDFTextOrder::sortAsSeen(std::vector<Cluster> &clusters) {
  // MuPDF's own blanks go from where the last glyph ended to where the next one begins, far away or backwards.
  std::erase_if(clusters, [this](const Cluster &cluster) {
    const bool isJump = cluster.isBlank() && !(cluster.advance > 0 && cluster.advance <= cluster.base().size);
    if (isJump)
      for (fz_stext_char *character : cluster.characters) fz_drop_font(context_, character->font);
    return isJump;
  });
  std::stable_sort(clusters.begin(), clusters.end(),
                   [](const Cluster &a, const Cluster &b) { return a.start + a.end < b.start + b.end; });
  std::vector<Cluster> seen;
  seen.reserve(clusters.size());
  for (Cluster &cluster : clusters) {
    if (!seen.empty() && !seen.back().isBlank() && !cluster.isBlank()) {
      const float end = seen.back().end;
      if (cluster.start - end > kMinimumBlank * cluster.base().size)
        seen.push_back({{newCharacter(seen.back().base(), ' ')}, end, cluster.start, cluster.start - end});
    }
    seen.push_back(std::move(cluster));
  }
  clusters = std::move(seen);
}

bool PDFTextOrder::isRightToLeft(std::u32string_view seen) {
  if (const std::optional<bool> shown = isVisualLineRightToLeft(seen)) return *shown;
  if (!isBlockRightToLeft_) {
    std::ptrdiff_t balance = 0;
    for (const Piece &piece : pieces_)
      for (const fz_stext_char *character : piece.characters) {
        const BidiRole role = roleOf(*character);
        balance += role == BidiRole::rightToLeft ? 1 : role == BidiRole::leftToRight ? -1 : 0;
      }
    isBlockRightToLeft_ = balance > 0;
  }
  return *isBlockRightToLeft_;
}

/// Some programs name the characters that are seen, some those that are read, and some the first of the two for
/// a glyph wherever it stands: brackets pair in one of the two ways. A line where they do not tell is like
/// those before it.
void PDFTextOrder::findMirrored(const std::vector<Cluster> &clusters, const std::vector<BidiPlace> &order,
                                bool isRightToLeft) {
  int open = 0, closed = 0, pairs = 0, turnedPairs = 0;
  for (const BidiPlace &place : order) {
    if (place.isRightToLeft != isRightToLeft) continue;
    const int c = clusters[place.index].base().c;
    if (c == '(' || c == '[') {
      ++open;
      if (closed > 0) --closed, ++turnedPairs;
    } else if (c == ')' || c == ']') {
      ++closed;
      if (open > 0) --open, ++pairs;
    }
  }
  if (pairs != turnedPairs) isMirrored_[isRightToLeft] = turnedPairs > pairs;
}

/// Puts the character, or the letters that it stands for, at the end of the line.
void PDFTextOrder::append(fz_stext_line &line, fz_stext_char *character) {
  const std::u16string letters = lettersOfForm(character->c);
  const auto link = [&line](fz_stext_char *one) {
    (line.last_char ? line.last_char->next : line.first_char) = one;
    line.last_char = one;
    one->next = nullptr;
  };
  if (!letters.empty()) character->c = letters[0];
  link(character);
  for (std::size_t i = 1; i < letters.size(); ++i) link(newCharacter(*character, letters[i]));
}

fz_stext_char *PDFTextOrder::newCharacter(const fz_stext_char &like, int c) {
  fz_stext_char &character = own_.emplace_back(like);
  character.c = c;
  // The page drops it.
  fz_keep_font(context_, character.font);
  return &character;
}

}  // namespace nimbo::detail
