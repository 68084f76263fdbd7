// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

namespace nimbo::detail {

/// Makes one line of ideographs, kana and the like that stand below each other: many programs put vertical text
/// there character by character, so that MuPDF takes each one for a line.
void joinColumns(fz_stext_page &page);

/// Joins the lines between which a word is divided by a hyphen, behind which blanks may stand: two letters at
/// least are before it, and a letter that is not upper-case begins the next line, right below.
void joinDividedWords(fz_context *context, fz_stext_page &page);

}  // namespace nimbo::detail
