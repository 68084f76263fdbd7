// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "Classes/PlainText/PlainTextConversion.hpp"

namespace nimbo::detail {

/// A text of the page or of an attribute.
struct TextRun {
  std::u16string_view units;
  /// How many units may be read from its first on.
  std::size_t readable;
  bool isPreformatted = false;
  /// Whether it has character references.
  bool isEncoded = true;
};

/// Writes the text, if it is to be shown and is no junk.
void writeTextRun(PlainTextConversion &conversion, TextRun run);

}  // namespace nimbo::detail
