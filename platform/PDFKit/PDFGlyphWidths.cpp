// SPDX-License-Identifier: Apache-2.0
#include "platform/PDFKit/PDFGlyphWidths.hpp"

#include <algorithm>
#include <exception>
#include <utility>

namespace nimbo::detail {
namespace {

constexpr int kCodes = 256;
constexpr float kUnitsPerEm = 1000;
/// Glyphs that are narrower by less, in ems, leave no room for a blank.
constexpr float kTolerance = 0.05F;
/// Fonts that are gone are not known to be: when there are more, all are forgotten.
constexpr std::size_t kMaximumFonts = 256;

/// Whether its codes are of one byte, and its glyphs are drawn by a font program.
bool isSimple(fz_context *context, const pdf_font_desc &font) {
  return font.font && font.encoding && font.encoding->codespace_len == 1 &&
         font.encoding->codespace[0].n == 1 && font.wmode == 0 && !fz_font_t3_procs(context, font.font);
}

}  // namespace

void PDFGlyphWidths::add(fz_context *context, pdf_font_desc &font) {
  if (std::exchange(newFont_, nullptr) != &font || !font.font) return;
  fonts_.erase(font.font);
  last_ = nullptr;
  if (!isSimple(context, font)) return;
  for (int code = 0; code < kCodes; ++code) {
    const int glyph = pdf_font_cid_to_gid(context, &font, code);
    if (glyph <= 0) continue;
    const float width = static_cast<float>(pdf_lookup_hmtx(context, &font, code).w) / kUnitsPerEm;
    // Comes through here, too, which has to ask the font alone.
    const bool isWider = width > fz_advance_glyph(context, font.font, glyph, 0) + kTolerance;
    last_ = nullptr;
    if (!isWider) continue;
    // Nothing that throws as MuPDF does comes in here.
    try {
      if (fonts_.size() >= kMaximumFonts && !fonts_.contains(font.font)) fonts_.clear();
      float &known = fonts_[font.font][glyph];
      known = std::max(known, width);
    } catch (const std::exception &) {
      return;
    }
  }
}

float PDFGlyphWidths::widthOfGlyph(const fz_font *font, int glyph, float own) {
  if (font != last_) {
    const auto found = fonts_.find(font);
    widthsOfLast_ = found != fonts_.end() ? &found->second : nullptr;
    last_ = font;
  }
  if (!widthsOfLast_) return own;
  const auto found = widthsOfLast_->find(glyph);
  return found != widthsOfLast_->end() ? std::max(own, found->second) : own;
}

}  // namespace nimbo::detail
