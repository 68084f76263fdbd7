// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFActualText.hpp"

#include <utility>

#include "platform/PDFKit/PDFBudget.hpp"
#include "platform/PDFKit/PDFLosses.hpp"
#include "platform/PDFKit/PDFTextBlanks.hpp"
#include "platform/PDFKit/PDFTextLine.hpp"

namespace nimbo::detail {
namespace {

/// Stands for the first glyph of such content, behind which its text follows, and for the others.
constexpr int kGivenText = 0x110000;
constexpr int kCovered = 0x110001;
/// Of forms, and elements of the structure, within each other.
constexpr int kMaximumDepth = 64;

float along(const fz_stext_line &line, fz_point place) {
  return line.dir.x * place.x + line.dir.y * place.y;
}

/// Gives the first letter of each text the place of all the glyphs that it stands for, and puts the others
/// behind it.
void placeText(fz_stext_line &line) {
  for (fz_stext_char *glyph = line.first_char; glyph; glyph = glyph->next) {
    fz_stext_char *const first = glyph->next;
    if (glyph->c != kGivenText || !first || first->c == kGivenText || first->c == kCovered) continue;
    fz_point origin = glyph->origin;
    fz_quad place = glyph->quad;
    const fz_stext_char *end = first->next;
    // They have no width of their own.
    while (end && end->c != kCovered && isSamePoint(end->quad.ll, end->quad.lr) &&
           isSamePoint(end->origin, first->origin))
      end = end->next;
    for (const fz_stext_char *next = end; next && (next->c == kCovered || next->c == ' '); next = next->next) {
      if (next->c != kCovered) continue;
      if (along(line, next->origin) < along(line, origin)) {
        origin = next->origin;
        place.ll = next->quad.ll;
        place.ul = next->quad.ul;
      }
      if (along(line, next->quad.lr) > along(line, place.lr)) {
        place.lr = next->quad.lr;
        place.ur = next->quad.ur;
      }
    }
    const fz_point offset = {place.lr.x - place.ll.x, place.lr.y - place.ll.y};
    first->origin = origin;
    first->quad = place;
    for (fz_stext_char *letter = first->next; letter != end; letter = letter->next) {
      letter->origin = {origin.x + offset.x, origin.y + offset.y};
      letter->quad = {place.ur, place.ul, place.lr, place.lr};
    }
  }
}

}  // namespace

void PDFActualText::beginPage(fz_context *context, pdf_document *document, pdf_obj *page, std::uint32_t index) {
  endPage(context);
  hasCovered_ = false;
  place_ = {.page = index, .reading = place_.reading + 1};
  parentTree_ = pdf_keep_obj(
      context, pdf_dict_getp(context, pdf_trailer(context, document), "Root/StructTreeRoot/ParentTree"));
  parentsOfPage_ = pdf_keep_obj(context, parentsOf(context, page));
}

void PDFActualText::endPage(fz_context *context) {
  pdf_drop_obj(context, std::exchange(parentTree_, nullptr));
  pdf_drop_obj(context, std::exchange(parentsOfPage_, nullptr));
}

void PDFActualText::beginContents() {
  outerContents_.push_back(std::exchange(contents_, {.stream = {.parents = parentsOfPage_}}));
}

void PDFActualText::endContents(fz_context *context) {
  pdf_drop_obj(context, contents_.owner);
  contents_ = outerContents_.back();
  outerContents_.pop_back();
}

pdf_obj *PDFActualText::parentsOf(fz_context *context, pdf_obj *object) const {
  if (!parentTree_) return nullptr;
  pdf_obj *const number = pdf_dict_get(context, object, PDF_NAME(StructParents));
  return pdf_is_int(context, number) ? pdf_lookup_number(context, parentTree_, pdf_to_int(context, number))
                                     : nullptr;
}

PDFActualText::Stream PDFActualText::beginStream(const Stream &stream) {
  return std::exchange(contents_.stream, stream);
}

void PDFActualText::endStream(const Stream &before) {
  if (contents_.stream.depthOfText > 0) contents_.text = nullptr;
  contents_.stream = before;
}

PDFActualText::Stream PDFActualText::streamOfForm(fz_context *context, pdf_obj *form) const {
  return {.parents = parentsOf(context, form), .level = contents_.stream.level + 1};
}

void PDFActualText::beginContent(fz_context *context, pdf_obj *properties) {
  ++contents_.stream.depth;
  // What encloses it says what it means.
  if (isActive() || !properties) return;
  pdf_obj *text = pdf_dict_get(context, properties, PDF_NAME(ActualText));
  contents_.element = 0;
  if (pdf_obj *const content = pdf_dict_get(context, properties, PDF_NAME(MCID)); !text && content)
    text = textOfElement(context, pdf_to_int(context, content), &contents_.element);
  if (!pdf_is_string(context, text)) return;
  pdf_drop_obj(context, std::exchange(contents_.owner, pdf_keep_obj(context, text)));
  contents_.text = pdf_to_text_string(context, text);
  contents_.isPut = false;
  contents_.stream.depthOfText = contents_.stream.depth;
  contents_.stream.isTextOfTextObject = contents_.stream.isInTextObject;
}

/// The text of the outermost element of the structure that has one and to which the marked content belongs, and
/// the element's number. Null when there is none.
pdf_obj *PDFActualText::textOfElement(fz_context *context, int content, int *element) const {
  pdf_obj *found = nullptr;
  pdf_obj *next = pdf_array_get(context, contents_.stream.parents, content);
  for (int depth = 0; next && depth < kMaximumDepth; ++depth, next = pdf_dict_get(context, next, PDF_NAME(P))) {
    pdf_obj *const text = pdf_dict_get(context, next, PDF_NAME(ActualText));
    if (!pdf_is_string(context, text)) continue;
    found = text;
    *element = pdf_to_num(context, next);
  }
  return found;
}

void PDFActualText::endContent() {
  if (contents_.stream.depth == 0) return;
  if (contents_.stream.depth-- != contents_.stream.depthOfText) return;
  contents_.stream.depthOfText = 0;
  contents_.text = nullptr;
}

void PDFActualText::endTextObject() {
  contents_.stream.isInTextObject = false;
  if (contents_.stream.depthOfText == 0 || !contents_.stream.isTextOfTextObject) return;
  contents_.stream.depthOfText = 0;
  contents_.text = nullptr;
}

const char *PDFActualText::takeText() {
  hasCovered_ = true;
  if (std::exchange(contents_.isPut, true)) return nullptr;
  if (contents_.element == 0) return contents_.text;
  const auto [put, isFirst] = places_.try_emplace(contents_.element, place_);
  if (!isFirst && (put->second.page != place_.page || put->second.reading == place_.reading)) return "";
  put->second = place_;
  return contents_.text;
}

void PDFActualText::dropCovered(fz_context *context, fz_stext_page &page) const {
  if (!hasCovered_) return;
  for (fz_stext_block *block = page.first_block; block; block = block->next) {
    if (block->type != FZ_STEXT_BLOCK_TEXT) continue;
    for (fz_stext_line *line = block->u.t.first_line; line; line = line->next) {
      placeText(*line);
      dropCharacters(context, *line, [](const fz_stext_char &character) {
        return character.c == kGivenText || character.c == kCovered ||
               (character.c == ' ' && character.next && character.next->c == kCovered);
      });
    }
  }
}

extern "C" {

// The linker fixes these names. NOLINTBEGIN(bugprone-reserved-identifier)
decltype(pdf_new_run_processor) __real_pdf_new_run_processor, __wrap_pdf_new_run_processor;
decltype(fz_show_glyph) __real_fz_show_glyph, __wrap_fz_show_glyph;

// Only the operators between which text stands, and those that mark it.
pdf_processor *__wrap_pdf_new_run_processor(fz_context *context, fz_device *device, fz_matrix matrix,
                                            const char *usage, pdf_gstate *state,
                                            fz_default_colorspaces *colors, fz_cookie *cookie) {
  pdf_processor *const processor =
      __real_pdf_new_run_processor(context, device, matrix, usage, state, colors, cookie);
  PDFBudget *const budget = PDFBudget::ofContext(context);
  if (!budget || budget->draws()) return processor;
  budget->actualText().beginContents();
  static const pdf_processor run = *processor;
  processor->drop_processor = [](fz_context *c, pdf_processor *self) {
    PDFBudget::ofContext(c)->actualText().endContents(c);
    run.drop_processor(c, self);
  };
  processor->op_BT = [](fz_context *c, pdf_processor *self) {
    PDFBudget::ofContext(c)->actualText().beginTextObject();
    run.op_BT(c, self);
  };
  processor->op_ET = [](fz_context *c, pdf_processor *self) {
    PDFBudget::ofContext(c)->actualText().endTextObject();
    run.op_ET(c, self);
  };
  processor->op_BMC = [](fz_context *c, pdf_processor *self, const char *tag) {
    PDFBudget::ofContext(c)->actualText().beginContent(c, nullptr);
    run.op_BMC(c, self, tag);
  };
  processor->op_BDC = [](fz_context *c, pdf_processor *self, const char *tag, pdf_obj *raw, pdf_obj *cooked) {
    PDFBudget::ofContext(c)->actualText().beginContent(c, cooked);
    run.op_BDC(c, self, tag, raw, cooked);
  };
  processor->op_EMC = [](fz_context *c, pdf_processor *self) {
    PDFBudget::ofContext(c)->actualText().endContent();
    run.op_EMC(c, self);
  };
  processor->op_Do_form = [](fz_context *c, pdf_processor *self, const char *name, pdf_obj *form,
                             pdf_obj *resources) {
    PDFActualText &text = PDFBudget::ofContext(c)->actualText();
    const PDFActualText::Stream stream = text.streamOfForm(c, form);
    if (stream.level > kMaximumDepth) {
      if (PDFLosses *const losses = PDFLosses::ofContext(c))
        losses->add("its forms are too deep within each other");
      return;
    }
    const PDFActualText::Stream before = text.beginStream(stream);
    // MuPDF's errors can be caught at few levels, and one that gets out of a form ends the page mostly.
    run.op_Do_form(c, self, name, form, resources);
    text.endStream(before);
  };
  return processor;
}

void __wrap_fz_show_glyph(fz_context *context, fz_text *text, fz_font *font, fz_matrix place, int glyph,
                          int character, int isVertical, int level, fz_bidi_direction direction,
                          fz_text_language language) {
  PDFBudget *const budget = PDFBudget::ofContext(context);
  const bool isRead = budget && !budget->draws();
  const auto show = [&](int shownGlyph, int shown) {
    const int c = isRead ? markedPDFCharacter(shown) : shown;
    __real_fz_show_glyph(context, text, font, place, shownGlyph, c, isVertical, level, direction, language);
  };
  if (!isRead || !budget->actualText().isActive()) return show(glyph, character);
  // What else the glyph means by itself.
  if (glyph < 0) return;
  PDFActualText &actual = budget->actualText();
  const char *given = actual.takeText();
  show(glyph, given ? kGivenText : kCovered);
  while (given && *given) {
    int letter = 0;
    given += fz_chartorune(&letter, given);
    if (!budget->spend(1)) fz_throw(context, FZ_ERROR_ABORT, "over the limits");
    show(-1, letter);
  }
}
// NOLINTEND(bugprone-reserved-identifier)

}  // extern "C"

}  // namespace nimbo::detail
