// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

#include <cstdint>
#include <vector>

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "platform/PDFKit/PDFFonts.hpp"

namespace nimbo::detail {

/// Hears where the characters of a page stand (see PDFTextWalk.hpp), and keeps what they look like and lead to;
/// fonts are borrowed from the page.
class PDFTextLooks {
 public:
  /// The links are those of the page.
  PDFTextLooks(fz_context *context, const fz_link *links, const PDFLimits &limits);

  void beginLine(const fz_stext_line &line);
  void put(const fz_stext_char &character, std::uint32_t index);
  void endLine(std::uint32_t index);
  void takeBack(std::uint32_t index);

  /// The text of the page with the attributes that were heard of; nil for a nil text.
  NSAttributedString attributedString(const NSString &text, const PDFFonts &fonts) const;
  /// Which attributes are missing, "there are too many links" say; null when none are.
  const char *loss() const { return loss_; }

 private:
  struct Link {
    fz_rect place;
    NSString target;
  };
  struct Look {
    fz_font *font = nullptr;
    /// In tenths of a point; 0 when it makes no sense.
    std::uint32_t size = 0;
    int color = 0;
    std::int8_t superscript = 0;
    const Link *link = nullptr;

    friend bool operator==(const Look &, const Look &) = default;
  };
  struct Mark {
    std::uint32_t start;
    Look look;
  };

  std::uint32_t roundedSize(const fz_stext_char &character);
  void mark(std::uint32_t index, const Look &look);
  const Link *linkAt(const fz_stext_char &character);
  std::int8_t superscriptOf(const fz_stext_char &character) const;
  /// Whether another comparison with a link is within the limit.
  bool mayCompare();

  fz_context *const context_;
  const PDFLimits &limits_;
  const char *loss_ = nullptr;
  std::vector<Link> links_;
  /// Those whose places meet the line.
  std::vector<const Link *> linksOfLine_;
  std::uint32_t comparisons_ = 0;
  float lastSize_ = 0;
  bool isVertical_ = false;
  /// The direction across the line, to the top of its characters.
  fz_point up_ = {0, 0};
  /// The character that stands on the line; null when none does.
  const fz_stext_char *base_ = nullptr;
  std::vector<Mark> marks_;
};

}  // namespace nimbo::detail
