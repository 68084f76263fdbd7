// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"
#include "platform/PDFKit/PDFEngine.hpp"

namespace nimbo {

namespace {

/// What a page without a media box gets: US letter, in points.
constexpr fz_rect kDefaultMediaBox = {0, 0, 612, 792};

/// The text that MuPDF found on a page; drops it.
struct FoundText {
  fz_context *context;
  fz_stext_page *page = nullptr;

  ~FoundText() { fz_drop_stext_page(context, page); }
};

/// Neither a control nor what stands for a glyph of unknown meaning.
bool isReadable(int character) {
  return character > ' ' && !(character >= 0x7f && character <= 0x9f) && character != 0xfffd &&
         character <= 0x10ffff && !(character >= 0xd800 && character <= 0xdfff);
}

/// Above `NSNotFound` when it would be too long for a string.
std::uint32_t maximumLengthInCodeUnits(const fz_stext_page &page) {
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
unichar *putLine(const fz_stext_line &line, unichar *const start) {
  unichar *out = start;
  bool hasText = false;
  bool afterUnknown = false;
  for (const fz_stext_char *character = line.first_char; character; character = character->next) {
    const int c = character->c;
    const bool unknown = c != ' ' && !isReadable(c);
    // Many unknown glyphs in a row are one blank.
    if (std::exchange(afterUnknown, unknown) && unknown) continue;
    if (unknown || c == ' ') {
      *out++ = u' ';
      continue;
    }
    hasText = true;
    out += putUTF16(static_cast<char32_t>(c), out);
  }
  if (!hasText) return start;
  *out++ = u'\n';
  return out;
}

NSString stringOfPage(const fz_stext_page &page) {
  NSMutableString string;
  string.setLength(maximumLengthInCodeUnits(page));
  unichar *const start = string.mutableCharacters();
  unichar *out = start;
  for (const fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    // The empty line before all blocks but the first.
    unichar *const first = out == start ? out : out + 1;
    unichar *end = first;
    for (const fz_stext_line *line = block->u.t.first_line; line; line = line->next) end = putLine(*line, end);
    if (end == first) continue;
    if (first != out) *out = u'\n';
    out = end;
  }
  if (out == start) return {};
  string.setLength(static_cast<std::uint32_t>(out - start));
  return std::move(string).string();
}

bool isUsable(const fz_rect &box) {
  return std::isfinite(box.x0) && std::isfinite(box.y0) && std::isfinite(box.x1) && std::isfinite(box.y1) &&
         box.x0 < box.x1 && box.y0 < box.y1;
}

}  // namespace

NSString PDFPage::string(NSError *error) const {
  if (!engine_->triesPages()) {
    setError(error, ErrorCode::damaged, "too many pages before this one cannot be read");
    return {};
  }
  FoundText text{engine_->context()};
  bool read = false;
  bool isMissing = false;
  try {
    engine_->run([&](fz_context *context) {
      pdf_page *page = pdf_load_page(context, engine_->document(), static_cast<int>(index_));
      fz_device *device = nullptr;
      fz_var(device);
      fz_try(context) {
        fz_stext_options options = {};
        options.flags = FZ_STEXT_DEHYPHENATE;
        isMissing = !pdf_is_dict(context, page->obj);
        text.page = fz_new_stext_page(context, pdf_bound_page(context, page));
        device = fz_new_stext_device(context, text.page, &options);
        // What annotations and filled forms show is text, too.
        pdf_run_page(context, page, device, fz_identity, nullptr);
        fz_close_device(context, device);
      }
      fz_always(context) {
        fz_drop_device(context, device);
        fz_drop_page(context, &page->super);
      }
      fz_catch(context) fz_rethrow(context);
    });
    read = true;
    if (isMissing)
      setError(error, ErrorCode::damaged, "the PDF is damaged: the page is missing");
    else if (const NSError loss = engine_->loss(); loss && error)
      *error = loss;
  } catch (const detail::PDFFailure &failure) {
    if (error) *error = failure.error;
    // What MuPDF has found by then is whole: it puts one character after the other behind the last one.
  }
  NSString string = text.page ? stringOfPage(*text.page) : NSString();
  engine_->pageWasRead(read || string);
  return string;
}

NSRect PDFPage::boundsForBox(PDFDisplayBox box) const {
  fz_rect bounds = kDefaultMediaBox;
  double pointsPerUnit = 1;
  try {
    engine_->run([&](fz_context *context) {
      pdf_obj *page = pdf_lookup_page_obj(context, engine_->document(), static_cast<int>(index_));
      const fz_rect media = pdf_to_rect(context, pdf_dict_get_inheritable(context, page, PDF_NAME(MediaBox)));
      if (isUsable(media)) bounds = media;
      if (box == PDFDisplayBox::cropBox) {
        const fz_rect crop = pdf_to_rect(context, pdf_dict_get_inheritable(context, page, PDF_NAME(CropBox)));
        if (isUsable(crop) && isUsable(fz_intersect_rect(crop, bounds)))
          bounds = fz_intersect_rect(crop, bounds);
      }
      const double unit = pdf_to_real(context, pdf_dict_get(context, page, PDF_NAME(UserUnit)));
      if (std::isfinite(unit) && unit > 0) pointsPerUnit = unit;
    });
  } catch (const detail::PDFFailure &) {
    bounds = kDefaultMediaBox;
  }
  return {{bounds.x0 * pointsPerUnit, bounds.y0 * pointsPerUnit},
          {(double{bounds.x1} - bounds.x0) * pointsPerUnit, (double{bounds.y1} - bounds.y0) * pointsPerUnit}};
}

int PDFPage::rotation() const {
  int degrees = 0;
  try {
    engine_->run([&](fz_context *context) {
      pdf_obj *page = pdf_lookup_page_obj(context, engine_->document(), static_cast<int>(index_));
      degrees = pdf_to_int(context, pdf_dict_get_inheritable(context, page, PDF_NAME(Rotate)));
    });
  } catch (const detail::PDFFailure &) {
    return 0;
  }
  // Damaged files name any angle: to the next quarter turn.
  const int turns = static_cast<int>(std::lround(degrees / 90.0)) % 4;
  return (turns < 0 ? turns + 4 : turns) * 90;
}

}  // namespace nimbo
