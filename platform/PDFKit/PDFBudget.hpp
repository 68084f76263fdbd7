// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>

#include <cstddef>
#include <cstdint>

#include "platform/Foundation/System/Deadline.hpp"
#include "platform/PDFKit/PDFActualText.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "platform/PDFKit/PDFGlyphWidths.hpp"

namespace nimbo::detail {

/// What MuPDF may still spend on one document. As its allocator it refuses what goes beyond the memory, and
/// everything once a step is over its limits, so that MuPDF unwinds from wherever it is, inside a decoder too.
/// What asks for no memory is counted where MuPDF's parts call each other (see PDFMeter.cpp).
///
/// It knows all its blocks and frees those that are left in the end, since MuPDF loses some, which its errors
/// jump over.
class PDFBudget {
 public:
  explicit PDFBudget(std::size_t memoryBytes);
  ~PDFBudget();
  PDFBudget(const PDFBudget &) = delete;
  PDFBudget &operator=(const PDFBudget &) = delete;

  enum class Excess { none, work, time };

  /// The allocator for MuPDF, borrowed from this object.
  const fz_alloc_context *functions() const { return &functions_; }
  /// The budget that the context was made with; null when it was made without one.
  static PDFBudget *ofContext(const fz_context *context) {
    return static_cast<PDFBudget *>(context->alloc.user);
  }

  /// Begins a step, which has so much work (in the units of `PDFLimits::stepWork`), until the deadline.
  void beginStep(std::uint64_t work, const Deadline &deadline);
  /// Makes the step one that draws into so many pixels, so that it needs pictures and shadings.
  void setCanvas(std::uint32_t width, std::uint32_t height) {
    canvasWidth_ = width;
    canvasHeight_ = height;
  }
  /// Whether the step draws.
  bool draws() const { return canvasWidth_ > 0; }
  std::uint32_t canvasWidth() const { return canvasWidth_; }
  std::uint32_t canvasHeight() const { return canvasHeight_; }
  /// The widths of the document's glyphs; they are here since MuPDF hands nothing else on to where it asks.
  PDFGlyphWidths &glyphWidths() { return glyphWidths_; }
  /// What the glyphs of the page mean that is read.
  PDFActualText &actualText() { return actualText_; }
  /// Whether the step may go on after so much more work. It may not when its calls nest too deep either.
  bool spend(std::uint64_t work);
  /// Whether the step is over its limits; nothing more is allocated in it then.
  bool isOver() const { return excess_ != Excess::none; }
  /// Ends the step, and answers what it had too much of.
  Excess endStep();

 private:
  /// Stands before the bytes that MuPDF gets, in a ring of all blocks.
  struct alignas(std::max_align_t) Block {
    Block *previous = this;
    Block *next = this;
    std::size_t size = 0;
  };

  static void *allocate(void *self, std::size_t size);
  static void *reallocate(void *self, void *bytes, std::size_t size);
  static void release(void *self, void *bytes);
  /// Whether `size` bytes may be taken in place of `replaced` ones.
  bool allows(std::size_t size, std::size_t replaced);
  void *enter(Block *block, std::size_t size);
  void remove(Block *block);
  void check();

  const std::size_t memoryBytes_;
  std::size_t used_ = 0;
  std::uint64_t work_ = UINT64_MAX;
  std::uint64_t spent_ = 0;
  /// How much is spent when the limits are looked at next.
  std::uint64_t nextCheck_ = UINT64_MAX;
  Deadline deadline_;
  /// Where the stack may not grow beyond.
  std::uintptr_t lowestStackAddress_ = 0;
  Excess excess_ = Excess::none;
  std::uint32_t canvasWidth_ = 0;
  std::uint32_t canvasHeight_ = 0;
  Block blocks_;
  PDFGlyphWidths glyphWidths_;
  PDFActualText actualText_;
  const fz_alloc_context functions_;
};

}  // namespace nimbo::detail
