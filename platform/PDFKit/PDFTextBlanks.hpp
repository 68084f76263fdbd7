// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

namespace nimbo::detail {

/// Stands for a blank of the document's own until the whole page is found; a blank is one of MuPDF's, for a
/// gap.
constexpr int kOwnPDFBlank = 0x110002;

/// What a character is to be while the page is read: blanks become the document's own.
int markedPDFCharacter(int character);

/// Makes the marked characters of a page blanks, and takes those blanks from it that part the letters of spaced
/// words: where the gaps behind all letters are wide, only the wider ones are between words, and none where the
/// document has blanks of its own.
void settleBlanks(fz_context *context, fz_stext_page &page);

}  // namespace nimbo::detail
