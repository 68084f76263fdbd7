// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFLosses.hpp"

#include <mupdf/pdf.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/PDFKit/PDFBudget.hpp"
#include "platform/PDFKit/PDFFonts.hpp"

namespace nimbo::detail {
namespace {

void saysNothing(void *, const char *) {}

/// What MuPDF says where it goes on without the rest of a stream.
constexpr std::string_view kEndsOfStreams[] = {"premature end", "read error", "ignoring zlib error"};
/// Nothing is left of such a stream but its checksum.
constexpr std::string_view kWholeStream = "ignoring zlib error: incorrect data check";
/// The one message about content itself behind which there is more of it.
constexpr std::string_view kRestOfPage = "too many syntax errors";

int nextOfContent(fz_context *context, fz_stream *stream, std::size_t maximum) {
  auto *const source = static_cast<fz_stream *>(stream->state);
  PDFLosses *const losses = PDFLosses::ofContext(context);
  const bool before = losses->setDecodesContent(true);
  std::size_t count = 0;
  fz_var(count);
  fz_try(context) count = fz_available(context, source, maximum);
  fz_always(context) losses->setDecodesContent(before);
  fz_catch(context) fz_rethrow(context);
  if (count == 0) return EOF;
  stream->rp = source->rp;
  stream->wp = source->rp = source->wp;
  stream->pos += static_cast<std::int64_t>(count);
  return *stream->rp++;
}

void dropContent(fz_context *context, void *source) {
  fz_drop_stream(context, static_cast<fz_stream *>(source));
}

/// Whether the content names a part that is not there. What is null was left out on purpose.
bool lacksStream(fz_context *context, pdf_obj *content) {
  if (!pdf_is_array(context, content))
    return pdf_is_indirect(context, content) && !pdf_is_stream(context, content);
  const int count = pdf_array_len(context, content);
  for (int i = 0; i < count; ++i) {
    pdf_obj *const part = pdf_array_get(context, content, i);
    if (pdf_is_indirect(context, part) && !pdf_is_stream(context, part)) return true;
  }
  return false;
}

}  // namespace

void PDFLosses::watch(fz_context *context) {
  fz_set_warning_callback(context, hear, this);
  fz_set_error_callback(context, saysNothing, nullptr);
}

PDFLosses *PDFLosses::ofContext(const fz_context *context) {
  void *self = nullptr;
  // MuPDF changes nothing here.
  const bool watched = fz_warning_callback(const_cast<fz_context *>(context), &self) == hear;
  return watched ? static_cast<PDFLosses *>(self) : nullptr;
}

void PDFLosses::beginStep(fz_context *context) {
  // MuPDF passes over a message that equals the one before.
  fz_flush_warnings(context);
  reason_[0] = '\0';
  decodesContent_ = false;
}

void PDFLosses::add(const char *reason) {
  if (!reason_[0]) fz_strlcpy(reason_.data(), reason, reason_.size());
}

bool PDFLosses::setDecodesContent(bool decodes) {
  return std::exchange(decodesContent_, decodes);
}

void PDFLosses::hear(void *self, const char *message) {
  auto &losses = *static_cast<PDFLosses *>(self);
  const std::string_view said = message;
  const auto begins = [said](std::string_view start) { return said.starts_with(start); };
  const bool ends = losses.decodesContent_ && said != kWholeStream &&
                    std::any_of(std::begin(kEndsOfStreams), std::end(kEndsOfStreams), begins);
  if (ends || begins(kRestOfPage)) losses.add(message);
}

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
decltype(pdf_open_contents_stream) __real_pdf_open_contents_stream, __wrap_pdf_open_contents_stream;
decltype(pdf_load_font) __real_pdf_load_font, __wrap_pdf_load_font;

fz_stream *__wrap_pdf_open_contents_stream(fz_context *context, pdf_document *document, pdf_obj *content) {
  PDFLosses *const losses = PDFLosses::ofContext(context);
  if (losses && lacksStream(context, content)) losses->add("a part of the content is missing");
  fz_stream *const stream = __real_pdf_open_contents_stream(context, document, content);
  return losses ? fz_new_stream(context, stream, nextOfContent, dropContent) : stream;
}

// MuPDF takes another font in place of one that cannot be read. The codes of most have the same meaning there,
// but not those of a composite font.
pdf_font_desc *__wrap_pdf_load_font(fz_context *context, pdf_document *document, pdf_obj *resources,
                                    pdf_obj *dictionary) {
  pdf_font_desc *font = nullptr;
  fz_var(font);
  fz_try(context) font = __real_pdf_load_font(context, document, resources, dictionary);
  fz_catch(context) {
    PDFLosses *const losses = PDFLosses::ofContext(context);
    if (losses && pdf_name_eq(context, pdf_dict_get(context, dictionary, PDF_NAME(Subtype)), PDF_NAME(Type0)))
      losses->add("a font cannot be read");
    fz_rethrow(context);
  }
  if (PDFBudget *const budget = PDFBudget::ofContext(context)) budget->glyphWidths().add(context, *font);
  if (PDFFonts *const fonts = PDFFonts::ofContext(context)) fonts->add(dictionary, *font);
  return font;
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

}  // namespace nimbo::detail
