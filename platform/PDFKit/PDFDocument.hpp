// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/CoreGraphics/CGImage.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/System/Deadline.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo::detail {
class PDFEngine;
struct PDFInput;
}  // namespace nimbo::detail

namespace NIMBO_PUBLIC nimbo {

/// What one document may cost; whatever is beyond counts as damaged.
struct PDFLimits {
  /// How much the engine holds for the document at a time, without the document's own bytes.
  std::size_t memoryBytes = std::size_t{512} << 20;
  /// How much work opening may take, and each page: tokens, looks into arrays and dictionaries, glyphs, blocks
  /// of memory, and bytes of these and of what streams expand to. Ten million take about a second.
  std::uint64_t stepWork = 20'000'000;
  /// How long the same may take. Time differs from run to run; it is for what counts little and takes long.
  double stepSeconds = 6;
  /// When everything that is asked of the document has to end.
  Deadline deadline = Deadline::never();
  /// How many pages are counted at most.
  std::uint32_t pages = 100'000;
  /// After so many pages in a row that cannot be read, the rest is not tried any more.
  std::uint32_t pageErrorsInARow = 16;
  /// How much work drawing a page may take.
  std::uint64_t drawingWork = 100'000'000;
  /// How long the same may take.
  double drawingSeconds = 10;
  /// How many pixels may be drawn.
  std::uint64_t drawnPixels = std::uint64_t{1} << 26;
  /// How many runs of attributes a page may have; what is behind the last has the attributes of that.
  std::uint32_t attributeRuns = 100'000;
  /// How often a character, or a line, of a page is compared with the place of a link; what is behind has none.
  std::uint32_t linkComparisons = 20'000'000;
};

class PDFDocument;

/// How a page is drawn.
struct PDFDrawingOptions {
  /// Whether edges are smooth.
  bool shouldAntialias = true;
  /// By when it has to be there; the document's own deadline counts too.
  Deadline deadline = {};
};

/// The boxes of a page; numbered as the platform numbers them.
enum class PDFDisplayBox { mediaBox = 0, cropBox = 1 };

/// One page of a document; borrowed from it, and valid as long as it.
class PDFPage {
 public:
  /// The page's text in reading order, lines ended by line feeds, blocks of lines parted by an empty line.
  /// Words that a line's end divides are joined; glyphs of unknown meaning are blanks. Hebrew, Arabic and the
  /// like are in logical order, as letters and not as forms of letters. Text beyond the media box is left out.
  /// Nil when the page has no text. A page that cannot be read to its end gives what was found on it by then,
  /// and one that lost a part of its content, or a font, what is left of it; `*error` says why.
  NSString string(NSError *error = nullptr) const;
  /// The same text with its fonts (family, weight and slant by the document's own name of each, sizes as they
  /// are shown), the colours that it is filled with (nothing for black), what is smaller and off the line as
  /// super- or subscript, and the links that lead to URLs, without those within the document or to files. Nil
  /// and `*error` as above; it also says when attributes are missing.
  NSAttributedString attributedString(NSError *error = nullptr) const;
  /// The box in points (the page's own unit is taken into account), lower left corner and size, before
  /// rotation. The crop box is cut to the media box, and is the media box when the page names none; without a
  /// media box, {612, 792} at the origin.
  NSRect boundsForBox(PDFDisplayBox box) const;
  /// The clockwise degrees at which the page is shown: 0, 90, 180 or 270.
  int rotation() const;
  /// The size of the crop box in points, as the page is shown.
  NSSize sizeAsShown() const;
  /// A picture of a part of the page, as it is shown: `area` is in points from the lower left corner, and fills
  /// the picture of `width` by `height` pixels. It is transparent where the page paints nothing. Nil when there
  /// is no such page, it is locked, takes too long or too much, or the picture is too large: `*error` says
  /// which. Of a page that is damaged as much as there is; `*error` says so, too.
  CGImage imageOfArea(const NSRect &area, std::uint32_t width, std::uint32_t height,
                      const PDFDrawingOptions &options, NSError *error = nullptr) const;

 private:
  friend class PDFDocument;
  PDFPage(detail::PDFEngine *engine, std::uint32_t index) : engine_(engine), index_(index) {}

  detail::PDFEngine *engine_;
  std::uint32_t index_;
};

/// The text of some or all pages of a document; borrowed from it, and valid as long as it.
class PDFSelection {
 public:
  /// The attributed texts of its pages that have any, a line feed after each. It stops when another page as
  /// slow as the last one would end after `deadline` or that of the document's limits. Nil when the document
  /// has no pages. `*error` says which pages are missing, as `readPages` does.
  NSAttributedString attributedString(const Deadline &deadline = Deadline::never(),
                                      NSError *error = nullptr) const;

 private:
  friend class PDFDocument;
  PDFSelection(const PDFDocument *document, const NSRange &pages) : document_(document), pages_(pages) {}

  const PDFDocument *document_;
  NSRange pages_;
};

/// A PDF, in memory or in a file. Used from one thread at a time.
///
///     NSError error;
///     const auto document = PDFDocument::documentWithContentsOfFile(path, PDFLimits(), &error);
///     if (!document || document->isLocked(&error)) return;
///     const auto print = [](const NSString &text) { return puts(text.UTF8String().c_str()) >= 0; };
///     document->readPages(Deadline::after(6), print, &error);
class PDFDocument {
 public:
  /// Opens data. Null when it is no PDF that can be opened; `*error` says why. A document that is open but
  /// locked is not null.
  static std::unique_ptr<PDFDocument> documentWithData(const NSData &data,
                                                       const PDFLimits &limits = PDFLimits(),
                                                       NSError *error = nullptr);
  /// Opens a regular file, as above, which is read while the document is used: one that is changed meanwhile
  /// is a damaged document from then on, no worse.
  static std::unique_ptr<PDFDocument> documentWithContentsOfFile(const NSString &path,
                                                                 const PDFLimits &limits = PDFLimits(),
                                                                 NSError *error = nullptr);
  ~PDFDocument();
  PDFDocument(const PDFDocument &) = delete;
  PDFDocument &operator=(const PDFDocument &) = delete;

  /// "Title", "Author", "Subject", "Keywords" (array of strings), "Creator", "Producer" (strings),
  /// "CreationDate" and "ModDate" (dates), as far as the document has them and they can be read; nil when there
  /// are none, or while locked. `*error` says why some are missing.
  NSDictionary documentAttributes(NSError *error = nullptr) const;
  /// Whether the document is encrypted, be it without a password.
  bool isEncrypted() const;
  /// Whether the text needs a password that has not been given; `*error` then says so. Neither the empty
  /// password nor one for attached files alone makes it so.
  bool isLocked(NSError *error = nullptr) const;
  /// Tries a password, the user's or the owner's, on a locked document; answers whether it is not locked any
  /// more. `*error` says why it is, or that the document is damaged.
  bool unlockWithPassword(const NSString &password, NSError *error = nullptr);
  /// The number in front of the full stop of the version: 1 or 2.
  int majorVersion() const;
  /// The number behind the full stop of the version.
  int minorVersion() const;
  /// The number of pages, never more than the limit: what the document claims, or as many as are found when it
  /// claims none or more than it has objects; 0 when a locked document hides it.
  std::uint32_t pageCount() const;
  /// The page at `index`, which must be below the page count.
  PDFPage pageAtIndex(std::uint32_t index) const;
  /// Hands the text of each page that has any to `use`, first to last. It stops when `use` answers false, which
  /// means that there is enough text, and when another page as slow as the last one would end after `deadline`
  /// or that of the limits; the first page is always tried. A page over which an exception comes, from `use`
  /// too, is one that cannot be read. `*error` says which pages are missing in the end and why: `timeLimit`,
  /// `incomplete` when there was enough text, else what was wrong with the first page that cannot be read. When
  /// all were read, it says whether the document has no pages, or others than it names, or lost its end; else,
  /// unless it says something already, that there is no text layer when no page has any text.
  void readPages(const Deadline &deadline, const std::function<bool(const NSString &text)> &use,
                 NSError *error = nullptr) const;
  /// The same with the pages whose indices are in the range, those included that have no text or cannot be
  /// read: `use` gets nil for them.
  void readPages(const NSRange &pages, const Deadline &deadline,
                 const std::function<bool(const NSString &text)> &use, NSError *error = nullptr) const;
  /// The same with attributed texts.
  void readAttributedPages(const NSRange &pages, const Deadline &deadline,
                           const std::function<bool(const NSAttributedString &text)> &use,
                           NSError *error = nullptr) const;
  /// All text.
  PDFSelection selectionForEntireDocument() const { return selectionForPages({0, pageCount()}); }
  /// The text of the pages whose indices are in the range.
  PDFSelection selectionForPages(const NSRange &pages) const { return {this, pages}; }

 private:
  template <class Read, class Use>
  void readEachPage(const NSRange &range, const Deadline &deadline, Read read, const Use &use,
                    NSError *error) const;
  static std::unique_ptr<PDFDocument> documentWithInput(detail::PDFInput input, const PDFLimits &limits,
                                                        NSError *error);
  explicit PDFDocument(std::unique_ptr<detail::PDFEngine> engine);

  std::unique_ptr<detail::PDFEngine> engine_;
};

}  // namespace nimbo
