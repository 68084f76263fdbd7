// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

namespace nimbo::detail {

/// Takes the characters from the page that stand outside it, where nobody sees them.
void dropTextOutside(fz_context *context, fz_stext_page &page);

}  // namespace nimbo::detail
