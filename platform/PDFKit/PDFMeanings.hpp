// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

namespace nimbo::detail {

/// Gives the codes of a simple font whose glyphs stand for many letters ("f_f_i", "uni00660069") these as their
/// meaning, unless the font says more. MuPDF takes the first letter alone. `names` has the glyphs' names by
/// code, 256, null where there is none. Throws as MuPDF does.
void addMeaningsOfNames(fz_context *context, pdf_font_desc *font, const char *const *names);

}  // namespace nimbo::detail
