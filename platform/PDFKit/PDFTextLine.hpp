// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/ucdn.h>

#include <cstdint>

namespace nimbo::detail {

inline bool isSamePoint(fz_point a, fz_point b) {
  return a.x == b.x && a.y == b.y;
}

inline bool isPDFLetter(int c) {
  const int category = ucdn_get_general_category(static_cast<std::uint32_t>(c));
  return category >= UCDN_GENERAL_CATEGORY_LL && category <= UCDN_GENERAL_CATEGORY_LU;
}

/// Whether it has been put behind another letter since both stand for one glyph: it is as high as that one,
/// goes back above the whole of it, and is of no width below.
inline bool isOfGlyphBefore(const fz_stext_char &character) {
  return isSamePoint(character.quad.ll, character.quad.lr) &&
         !isSamePoint(character.quad.ul, character.quad.ur);
}

/// Takes the characters from the line for which `isUnwanted` answers true; it is asked for one after the other.
template <class Predicate>
void dropCharacters(fz_context *context, fz_stext_line &line, const Predicate &isUnwanted) {
  fz_stext_char **next = &line.first_char;
  line.last_char = nullptr;
  while (fz_stext_char *const character = *next) {
    if (isUnwanted(*character)) {
      *next = character->next;
      fz_drop_font(context, character->font);
    } else {
      line.last_char = character;
      next = &character->next;
    }
  }
}

/// Puts the characters of the next line at the end of this one, which has some.
inline void appendLine(fz_stext_line &line, fz_stext_line &next) {
  line.last_char->next = next.first_char;
  line.last_char = next.last_char;
  line.bbox = fz_union_rect(line.bbox, next.bbox);
  next.first_char = next.last_char = nullptr;
}

}  // namespace nimbo::detail
