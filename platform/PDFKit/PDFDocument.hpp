// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "platform/Foundation/NSGeometry.hpp"
#include "platform/Foundation/id.hpp"

namespace nimbo {

namespace detail {
class PDFEngine;
}

/// The boxes of a page; numbered as the platform numbers them.
enum class PDFDisplayBox { mediaBox = 0, cropBox = 1 };

/// One page of a document; borrowed from it, and valid as long as it.
class PDFPage {
 public:
  /// The page's text in reading order, lines ended by line feeds; nil when the page has none or cannot be read.
  NSString string() const;
  /// In points, lower left corner and size, before rotation; {612, 792} at the origin when the page names none.
  NSRect boundsForBox(PDFDisplayBox box) const;
  /// Clockwise degrees at which the page is shown: 0, 90, 180 or 270.
  int rotation() const;

 private:
  friend class PDFDocument;
  PDFPage(detail::PDFEngine *engine, std::uint32_t index) : engine_(engine), index_(index) {}

  detail::PDFEngine *engine_;
  std::uint32_t index_;
};

/// A PDF in memory. Used from one thread at a time; memory and time that a document may take are bounded, and whatever is
/// beyond the bounds counts as damaged.
class PDFDocument {
 public:
  /// Null when the data is no PDF that can be opened. A document that is open but locked is not null.
  static std::unique_ptr<PDFDocument> documentWithData(const NSData &data);
  ~PDFDocument();
  PDFDocument(const PDFDocument &) = delete;
  PDFDocument &operator=(const PDFDocument &) = delete;

  /// "Title", "Author", "Subject", "Keywords" (array of strings), "Creator", "Producer" (strings), "CreationDate" and
  /// "ModDate" (dates), as far as the document has them; nil when it has no such information.
  NSDictionary documentAttributes() const;
  bool isEncrypted() const;
  /// Whether the text needs a password that has not been given.
  bool isLocked() const;
  int majorVersion() const;
  int minorVersion() const;
  /// At most `kMaximumPages`, whatever the document claims.
  std::uint32_t pageCount() const;
  /// `index` must be below the page count.
  PDFPage pageAtIndex(std::uint32_t index) const;

 private:
  explicit PDFDocument(std::unique_ptr<detail::PDFEngine> engine);

  std::unique_ptr<detail::PDFEngine> engine_;
};

}  // namespace nimbo
