// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace nimbo::detail {

/// Whether drawing an SVG file would take too long: by elements that refer to others and those to others again,
/// two kilobytes can ask for millions of shapes, and drawing cannot be stopped. False for what is no XML, which
/// is not drawn.
bool drawsTooMuch(std::string_view markup);

}  // namespace nimbo::detail
