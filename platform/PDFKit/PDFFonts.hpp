// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <unordered_map>

#include "platform/AppKit/NSFont.hpp"

namespace nimbo::detail {

/// The fonts of a page, by what the document says of them: MuPDF's own names are cut, and it forgets the rest.
/// The linker sends calls between MuPDF's parts here (--wrap) while the object lives.
class PDFFonts {
 public:
  explicit PDFFonts(fz_context *context);
  ~PDFFonts();
  PDFFonts(const PDFFonts &) = delete;
  PDFFonts &operator=(const PDFFonts &) = delete;

  /// Those that the context's fonts are added to; null when there are none.
  static PDFFonts *ofContext(const fz_context *context) { return static_cast<PDFFonts *>(context->user); }

  /// Adds a font that was loaded from `dictionary`. Throws as MuPDF does, and nothing else.
  void add(pdf_obj *dictionary, const pdf_font_desc &description);
  /// What the document asks for, in the usual size.
  NSFont fontForFont(fz_font *font) const;

 private:
  fz_context *const context_;
  /// Each is kept, so that no other one gets its address.
  std::unordered_map<fz_font *, NSFont> fonts_;
};

}  // namespace nimbo::detail
