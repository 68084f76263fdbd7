// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "Classes/PlainText/PlainTextRecord.hpp"

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

/// Whether text may stand here: in the body, and not in what stands for scripts or frames.
bool isPlaceOfText(const PlainTextRecord &record);
/// Whether text is written here.
bool isTextShown(const PlainTextRecord &record);
/// Writes the text, if it is to be shown and is no junk.
void writeTextRun(PlainTextRecord &record, TextRun run);

/// The mask behind a comment: "googleoff:" clears, "googleon:" sets the bits that the comment names.
unsigned markerMaskBehind(std::u16string_view comment, unsigned mask);

}  // namespace nimbo::detail
