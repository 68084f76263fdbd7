// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/AppKit/NSFont.hpp"

namespace nimbo::detail {

/// The font, of the usual size, that a PDF calls `name`: "ABCDEF+Arial-BoldItalicMT" is Arial, bold and italic.
/// The family is the name without the mark of a subset and without words of style, nil when it is no UTF-8; the
/// weight is regular when no such word says another.
NSFont fontWithPDFFontName(std::string_view name);

}  // namespace nimbo::detail
