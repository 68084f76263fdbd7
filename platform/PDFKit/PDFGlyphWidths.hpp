// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <unordered_map>

namespace nimbo::detail {

/// How wide a document says that glyphs are whose fonts make them narrower, as fonts do that stand in for
/// others. Text is placed by the former, and MuPDF looks for blanks by the latter: it finds one behind each
/// letter. The linker sends calls between MuPDF's parts here (--wrap).
class PDFGlyphWidths {
 public:
  PDFGlyphWidths() = default;
  PDFGlyphWidths(const PDFGlyphWidths &) = delete;
  PDFGlyphWidths &operator=(const PDFGlyphWidths &) = delete;

  /// Says that a font is being loaded, and not found among those that were.
  void fontIsNew(const pdf_font_desc &font) { newFont_ = &font; }
  /// Takes the widths of a font if it is new, in place of those of one before it at the same address. Throws as
  /// MuPDF does, and nothing else.
  void add(fz_context *context, pdf_font_desc &font);
  /// The width of a glyph, in ems, whose font makes it `own` wide.
  float widthOfGlyph(const fz_font *font, int glyph, float own);

 private:
  using Widths = std::unordered_map<int, float>;

  const pdf_font_desc *newFont_ = nullptr;
  std::unordered_map<const fz_font *, Widths> fonts_;
  /// The font that was asked for last, and its widths; null when it has none.
  const fz_font *last_ = nullptr;
  const Widths *widthsOfLast_ = nullptr;
};

}  // namespace nimbo::detail
