// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

#include <array>

namespace nimbo::detail {

/// What MuPDF gets over by itself in a step although it costs text. The linker sends calls between MuPDF's
/// parts here (--wrap), which tell bytes of a page's content from those of its pictures and fonts.
class PDFLosses {
 public:
  PDFLosses() = default;
  PDFLosses(const PDFLosses &) = delete;
  PDFLosses &operator=(const PDFLosses &) = delete;

  /// Takes the messages of the context, which it must outlive.
  void watch(fz_context *context);
  /// Those that watch the context; null when none do.
  static PDFLosses *ofContext(const fz_context *context);

  /// Begins a step, which has no losses yet.
  void beginStep(fz_context *context);
  /// Adds a loss; the first one of a step counts.
  void add(const char *reason);
  /// What was lost first in this step, "a part of the content is damaged", say; empty when nothing was.
  const char *reason() const { return reason_.data(); }

  /// Says whether bytes of a page's content are decoded now; answers what was said before.
  bool setDecodesContent(bool decodes);

 private:
  static void hear(void *self, const char *message);

  std::array<char, 256> reason_ = {};
  bool decodesContent_ = false;
};

}  // namespace nimbo::detail
