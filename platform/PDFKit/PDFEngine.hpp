// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <type_traits>

#include "platform/Foundation/NSData.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/PDFKit/PDFBudget.hpp"
#include "platform/PDFKit/PDFDocument.hpp"
#include "platform/PDFKit/PDFLosses.hpp"
#include "platform/PDFKit/PDFPageTree.hpp"

namespace nimbo::detail {

/// What a step raises that did not come to its end; it never leaves this folder.
struct PDFFailure {
  NSError error;
};

/// Where a document is read from: the file, or the data when there is none. A file is read in pieces where
/// MuPDF wants them, which spares most of a large one, and stays harmless when somebody cuts it short.
struct PDFInput {
  struct Close {
    void operator()(std::FILE *file) const { std::fclose(file); }
  };

  /// The data, when there is no file.
  NSData data;
  /// The file, or null.
  std::unique_ptr<std::FILE, Close> file;

  /// In how many bytes the header of a PDF has to begin, and its end mark to stand.
  static constexpr std::size_t kSearchBytes = 1024;
  /// The first bytes of the document, at most so many.
  std::string firstBytes() const;
  /// The last bytes of the document, at most so many.
  std::string lastBytes() const;
};

/// A document inside MuPDF, in a context of its own, so that one document can neither harm nor slow another.
class PDFEngine {
 public:
  /// What MuPDF keeps of decoded fonts, objects and the like.
  static constexpr std::size_t kStoreBytes = std::size_t{16} << 20;

  /// Raises `PDFFailure` when the input is no PDF that can be opened.
  PDFEngine(PDFInput input, const PDFLimits &limits);
  ~PDFEngine();
  PDFEngine(const PDFEngine &) = delete;
  PDFEngine &operator=(const PDFEngine &) = delete;

  fz_context *context() const { return context_; }
  pdf_document *document() const { return document_; }
  const PDFLimits &limits() const { return limits_; }
  /// Whether a password is missing.
  bool isLocked() const { return locked_; }
  /// Tries a password in UTF-8, the user's or the owner's, on a locked document. Raises `PDFFailure` when what
  /// it opens cannot be read.
  void unlock(const char *password);
  /// Ten times the major version and the minor one.
  int version() const { return version_; }
  std::uint32_t pageCount() const { return pageCount_; }
  PDFPageTree &pages() { return pages_; }
  /// Says in `*error` what the document lost although each of its pages can be read.
  void checkWhole(NSError *error);

  /// Runs `work` (called with the context) as one step, and raises `PDFFailure` when MuPDF fails or the step is
  /// over its limits. A failure jumps over destructors: `work` may hold, make and capture plain data only, and
  /// must not throw.
  template <class Work>
  void run(Work &&work);
  /// The same for work that draws so many pixels until the deadline, which may take what the limits say of
  /// that.
  template <class Work>
  void runDrawing(std::uint32_t width, std::uint32_t height, const Deadline &deadline, Work &&work);

  /// What was lost in the last step; nil when nothing was.
  NSError loss() const;

  /// Whether pages are still worth trying.
  bool triesPages() const { return pageErrors_ < limits_.pageErrorsInARow; }
  /// Reports whether a page that was tried could be read.
  void pageWasRead(bool read) { pageErrors_ = read ? 0 : pageErrors_ + 1; }

 private:
  void open();
  /// Counts the pages; throws as MuPDF does.
  void findPages(fz_context *context);
  void close();
  template <class Work>
  void runStep(Work &&work);
  [[noreturn]] void raise(PDFBudget::Excess excess) const;

  const PDFLimits limits_;
  /// The input, which MuPDF reads until the document is closed.
  const PDFInput input_;
  PDFBudget budget_;
  PDFLosses losses_;
  fz_context *context_ = nullptr;
  pdf_document *document_ = nullptr;
  PDFPageTree pages_;
  bool locked_ = false;
  int version_ = 0;
  std::uint32_t pageCount_ = 0;
  /// How many pages the document says that it has.
  int claimedPages_ = 0;
  unsigned pageErrors_ = 0;
};

template <class Work>
void PDFEngine::run(Work &&work) {
  budget_.beginStep(limits_.stepWork, earliest(Deadline::after(limits_.stepSeconds), limits_.deadline));
  runStep(work);
}

template <class Work>
void PDFEngine::runDrawing(std::uint32_t width, std::uint32_t height, const Deadline &deadline, Work &&work) {
  const Deadline end = earliest(deadline, limits_.deadline);
  budget_.beginStep(limits_.drawingWork, earliest(Deadline::after(limits_.drawingSeconds), end));
  budget_.setCanvas(width, height);
  runStep(work);
}

template <class Work>
[[gnu::noinline]] void PDFEngine::runStep(Work &&work) {
  static_assert(std::is_trivially_destructible_v<std::remove_reference_t<Work>>);
  losses_.beginStep(context_);
  volatile bool failed = false;
  fz_try(context_) work(context_);
  fz_catch(context_) failed = true;
  // MuPDF gets over some failures by itself and may take half a result for a whole one.
  const PDFBudget::Excess excess = budget_.endStep();
  if (failed || excess != PDFBudget::Excess::none) raise(excess);
}

}  // namespace nimbo::detail
