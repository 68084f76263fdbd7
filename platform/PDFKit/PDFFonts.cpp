// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFFonts.hpp"

#include <exception>
#include <utility>

#include "platform/PDFKit/PDFFontName.hpp"

namespace nimbo::detail {
namespace {

/// The part of a composite font that has its name, or the font itself.
pdf_obj *namedFont(fz_context *context, pdf_obj *dictionary) {
  pdf_obj *const descendant =
      pdf_array_get(context, pdf_dict_get(context, dictionary, PDF_NAME(DescendantFonts)), 0);
  return descendant ? descendant : dictionary;
}

/// The weight that a font's descriptor names; 0 when it names none.
int weightOfFont(fz_context *context, pdf_obj *dictionary) {
  pdf_obj *const descriptor = pdf_dict_get(context, dictionary, PDF_NAME(FontDescriptor));
  const int weight = pdf_to_int(context, pdf_dict_gets(context, descriptor, "FontWeight"));
  return weight >= 100 && weight <= 900 ? weight : 0;
}

}  // namespace

PDFFonts::PDFFonts(fz_context *context) : context_(context) {
  fz_set_user_context(context, this);
}

PDFFonts::~PDFFonts() {
  fz_set_user_context(context_, nullptr);
  for (const auto &[font, facts] : fonts_) fz_drop_font(context_, font);
}

void PDFFonts::add(pdf_obj *dictionary, const pdf_font_desc &description) {
  if (!description.font || fonts_.contains(description.font)) return;
  pdf_obj *const named = namedFont(context_, dictionary);
  const char *const name = pdf_to_name(context_, pdf_dict_get(context_, named, PDF_NAME(BaseFont)));
  const int weight = weightOfFont(context_, named);
  const bool isBold =
      fz_font_is_bold(context_, description.font) || (description.flags & PDF_FD_FORCE_BOLD) != 0;
  const bool isItalic = fz_font_is_italic(context_, description.font) || description.italic_angle != 0 ||
                        (description.flags & PDF_FD_ITALIC) != 0;
  // Nothing that throws as MuPDF does comes from here on.
  try {
    NSFont font = fontWithPDFFontName(name);
    // The name says more than the rest.
    if (font.weight == kRegularFontWeight && weight > 0) font.weight = static_cast<std::uint16_t>(weight);
    if (font.weight == kRegularFontWeight && isBold) font.weight = kBoldFontWeight;
    font.isItalic = font.isItalic || isItalic;
    if (fonts_.emplace(description.font, std::move(font)).second) fz_keep_font(context_, description.font);
  } catch (const std::exception &) {
    // MuPDF's name is left.
  }
}

NSFont PDFFonts::fontForFont(fz_font *font) const {
  const auto found = fonts_.find(font);
  return found != fonts_.end() ? found->second : fontWithPDFFontName(fz_font_name(context_, font));
}

}  // namespace nimbo::detail
