// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFTextArea.hpp"

#include "platform/PDFKit/PDFTextLine.hpp"

namespace nimbo::detail {
namespace {

/// In points; a page that is smaller is a mistake, and so are all of its bounds.
constexpr float kSmallestPage = 2;

/// Written so that a place that is no number is inside.
bool isOutside(const fz_rect &place, const fz_rect &page) {
  return place.x1 < page.x0 || place.x0 > page.x1 || place.y1 < page.y0 || place.y0 > page.y1;
}

bool isInside(const fz_rect &place, const fz_rect &page) {
  return place.x0 >= page.x0 && place.x1 <= page.x1 && place.y0 >= page.y0 && place.y1 <= page.y1;
}

}  // namespace

void dropTextOutside(fz_context *context, fz_stext_page &page) {
  const fz_rect &bounds = page.mediabox;
  if (!(bounds.x1 - bounds.x0 >= kSmallestPage && bounds.y1 - bounds.y0 >= kSmallestPage)) return;
  for (fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT || isInside(block->bbox, bounds)) continue;
    for (fz_stext_line *line = block->u.t.first_line; line; line = line->next)
      if (!isInside(line->bbox, bounds))
        dropCharacters(context, *line, [&bounds](const fz_stext_char &character) {
          return isOutside(fz_rect_from_quad(character.quad), bounds);
        });
  }
}

}  // namespace nimbo::detail
