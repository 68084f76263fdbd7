// SPDX-License-Identifier: Apache-2.0
#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <algorithm>

#include "platform/PDFKit/PDFBudget.hpp"
#include "platform/PDFKit/PDFMeanings.hpp"

// MuPDF looks at its abort flag between the operators of a page alone, and asks for memory less often still.
// The linker sends calls between its parts here (--wrap), where they are counted: whatever a document makes
// MuPDF do without end goes through one of them.

namespace nimbo::detail {
namespace {

/// Of what a stream expands to.
constexpr std::size_t kBytesPerWork = 32;
/// Of codes that are gone through one by one.
constexpr std::uint64_t kCodesPerWork = 16;
/// A colour may be computed by a long program.
constexpr std::uint64_t kColorWork = 16;
/// Looking up a value of a sampled function takes two steps for its first input, and for each other one twice
/// as many as for the one before.
constexpr int kMaximumInputsOfFunction = 12;

bool maySpend(fz_context *context, std::uint64_t work) {
  PDFBudget *const budget = PDFBudget::ofContext(context);
  return !budget || budget->spend(work);
}

void spend(fz_context *context, std::uint64_t work) {
  if (!maySpend(context, work)) fz_throw(context, FZ_ERROR_ABORT, "over the limits");
}

bool drawsPictures(const fz_context *context) {
  const PDFBudget *const budget = PDFBudget::ofContext(context);
  return !budget || budget->draws();
}

/// Counts a token, or ends the stream: what goes on after errors ends there.
void spendToken(fz_context *context, fz_stream *stream) {
  if (maySpend(context, 1)) return;
  stream->rp = stream->wp;
  stream->eof = 1;
  fz_throw(context, FZ_ERROR_ABORT, "over the limits");
}

int nextMetered(fz_context *context, fz_stream *stream, std::size_t maximum) {
  auto *const source = static_cast<fz_stream *>(stream->state);
  const std::size_t count = fz_available(context, source, maximum);
  if (count == 0) return EOF;
  spend(context, 1 + count / kBytesPerWork);
  stream->rp = source->rp;
  stream->wp = source->rp = source->wp;
  stream->pos += static_cast<std::int64_t>(count);
  return *stream->rp++;
}

void dropMetered(fz_context *context, void *source) {
  fz_drop_stream(context, static_cast<fz_stream *>(source));
}

std::uint64_t codesOfCMap(const pdf_cmap *map) {
  std::uint64_t codes = 0;
  for (; map; map = map->usecmap) {
    for (int i = 0; i < map->rlen; ++i) codes += map->ranges[i].high - map->ranges[i].low;
    for (int i = 0; i < map->xlen; ++i) codes += map->xranges[i].high - map->xranges[i].low;
  }
  return codes;
}

}  // namespace

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
decltype(pdf_lex) __real_pdf_lex, __wrap_pdf_lex;
decltype(pdf_lex_no_string) __real_pdf_lex_no_string, __wrap_pdf_lex_no_string;
decltype(pdf_array_get) __real_pdf_array_get, __wrap_pdf_array_get;
decltype(pdf_dict_get) __real_pdf_dict_get, __wrap_pdf_dict_get;
decltype(fz_advance_glyph) __real_fz_advance_glyph, __wrap_fz_advance_glyph;
decltype(fz_convert_color) __real_fz_convert_color, __wrap_fz_convert_color;
decltype(fz_open_image_decomp_stream) __real_fz_open_image_decomp_stream, __wrap_fz_open_image_decomp_stream;
decltype(pdf_load_image) __real_pdf_load_image, __wrap_pdf_load_image;
decltype(pdf_load_shading) __real_pdf_load_shading, __wrap_pdf_load_shading;
decltype(pdf_load_function) __real_pdf_load_function, __wrap_pdf_load_function;
decltype(pdf_add_hmtx) __real_pdf_add_hmtx, __wrap_pdf_add_hmtx;
decltype(pdf_load_to_unicode) __real_pdf_load_to_unicode, __wrap_pdf_load_to_unicode;
decltype(pdf_lookup_dest) __wrap_pdf_lookup_dest;
decltype(pdf_lookup_page_number) __wrap_pdf_lookup_page_number;
decltype(pdf_lookup_page_obj) __wrap_pdf_lookup_page_obj;

pdf_token __wrap_pdf_lex(fz_context *context, fz_stream *stream, pdf_lexbuf *buffer) {
  spendToken(context, stream);
  return __real_pdf_lex(context, stream, buffer);
}

pdf_token __wrap_pdf_lex_no_string(fz_context *context, fz_stream *stream, pdf_lexbuf *buffer) {
  spendToken(context, stream);
  return __real_pdf_lex_no_string(context, stream, buffer);
}

// Over the limits, arrays and dictionaries are empty: that is what MuPDF is ready for everywhere.

pdf_obj *__wrap_pdf_array_get(fz_context *context, pdf_obj *array, int index) {
  return maySpend(context, 1) ? __real_pdf_array_get(context, array, index) : nullptr;
}

pdf_obj *__wrap_pdf_dict_get(fz_context *context, pdf_obj *dictionary, pdf_obj *key) {
  return maySpend(context, 1) ? __real_pdf_dict_get(context, dictionary, key) : nullptr;
}

float __wrap_fz_advance_glyph(fz_context *context, fz_font *font, int glyph, int vertical) {
  spend(context, 1);
  const float own = __real_fz_advance_glyph(context, font, glyph, vertical);
  PDFBudget *const budget = PDFBudget::ofContext(context);
  return !budget || vertical ? own : budget->glyphWidths().widthOfGlyph(font, glyph, own);
}

void __wrap_fz_convert_color(fz_context *context, fz_colorspace *source, const float *color,
                             fz_colorspace *target, float *converted, fz_colorspace *proof,
                             fz_color_params parameters) {
  spend(context, kColorWork);
  __real_fz_convert_color(context, source, color, target, converted, proof, parameters);
}

fz_stream *__wrap_fz_open_image_decomp_stream(fz_context *context, fz_stream *source,
                                              fz_compression_params *parameters, int *reduction) {
  // Whole pictures are decoded at once; nothing that is read for the text is one.
  if (!drawsPictures(context) && (parameters->type == FZ_IMAGE_JBIG2 || parameters->type == FZ_IMAGE_JPX))
    fz_throw(context, FZ_ERROR_GENERIC, "pictures are not read");
  fz_stream *const decoded = __real_fz_open_image_decomp_stream(context, source, parameters, reduction);
  return decoded == source ? decoded : fz_new_stream(context, decoded, nextMetered, dropMetered);
}

// The text needs no pictures. A minor error costs the operator that draws one.
fz_image *__wrap_pdf_load_image(fz_context *context, pdf_document *document, pdf_obj *dictionary) {
  if (drawsPictures(context)) return __real_pdf_load_image(context, document, dictionary);
  fz_throw(context, FZ_ERROR_MINOR, "pictures are not read");
}

// Nor the colours of a shading, which are computed point by point. But text may be filled with one.
fz_shade *__wrap_pdf_load_shading(fz_context *context, pdf_document *document, pdf_obj *dictionary) {
  if (drawsPictures(context)) return __real_pdf_load_shading(context, document, dictionary);
  fz_shade *const shade = fz_malloc_struct(context, fz_shade);
  FZ_INIT_STORABLE(shade, 1, fz_drop_shade_imp);
  shade->type = FZ_LINEAR;
  shade->matrix = fz_identity;
  shade->bbox = fz_infinite_rect;
  return shade;
}

// Nor where links within the document lead, which MuPDF looks for in all of it. An error costs the link alone.
pdf_obj *__wrap_pdf_lookup_dest(fz_context *context, pdf_document *, pdf_obj *) {
  fz_throw(context, FZ_ERROR_GENERIC, "links to names are not followed");
}

int __wrap_pdf_lookup_page_number(fz_context *context, pdf_document *, pdf_obj *) {
  fz_throw(context, FZ_ERROR_GENERIC, "links to pages are not followed");
}

pdf_obj *__wrap_pdf_lookup_page_obj(fz_context *context, pdf_document *, int) {
  fz_throw(context, FZ_ERROR_GENERIC, "links to numbers of pages are not followed");
}

pdf_function *__wrap_pdf_load_function(fz_context *context, pdf_obj *dictionary, int inputs, int outputs) {
  if (inputs > kMaximumInputsOfFunction && pdf_dict_get_int(context, dictionary, PDF_NAME(FunctionType)) == 0)
    fz_throw(context, FZ_ERROR_MINOR, "a function has too many inputs");
  return __real_pdf_load_function(context, dictionary, inputs, outputs);
}

// Each glyph of the range is given its width, however many ranges name it.
void __wrap_pdf_add_hmtx(fz_context *context, pdf_font_desc *font, int first, int last, int width) {
  if (last > first) spend(context, static_cast<std::uint64_t>(last - first) / kCodesPerWork);
  __real_pdf_add_hmtx(context, font, first, last, width);
}

// The map of meanings gets an entry for each code that the font's encoding has.
void __wrap_pdf_load_to_unicode(fz_context *context, pdf_document *document, pdf_font_desc *font,
                                const char **names, char *collection, pdf_obj *map) {
  spend(context, codesOfCMap(font->encoding) / kCodesPerWork);
  if (PDFBudget *const budget = PDFBudget::ofContext(context)) budget->glyphWidths().fontIsNew(*font);
  __real_pdf_load_to_unicode(context, document, font, names, collection, map);
  addMeaningsOfNames(context, font, names);
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

}  // namespace nimbo::detail
