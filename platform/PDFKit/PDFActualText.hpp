// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace nimbo::detail {

/// The text that a document gives in place of what its glyphs mean, in the properties of marked content or in
/// the structure tree. The first glyph of such content gets the text and covers the others, which keep their
/// places until the whole page is found: there is no gap between words where they are. The linker sends calls
/// between MuPDF's parts here (--wrap).
class PDFActualText {
 public:
  PDFActualText() = default;
  PDFActualText(const PDFActualText &) = delete;
  PDFActualText &operator=(const PDFActualText &) = delete;

  /// The content of the page at the index is read next. Throws as MuPDF does, and nothing else; so do the
  /// others that are given a context.
  void beginPage(fz_context *context, pdf_document *document, pdf_obj *page, std::uint32_t index);
  /// The page has been read. Throws nothing.
  void endPage(fz_context *context);

  /// What is marked within a stream of content ends with it.
  struct Stream {
    /// What the elements of the structure are found by, the stream's own; null when it has none.
    pdf_obj *parents = nullptr;
    /// In how many forms it is.
    int level = 0;
    int depth = 0;
    /// Where the content with a text began; 0 when it did not do so in this stream.
    int depthOfText = 0;
    bool isInTextObject = false;
    bool isTextOfTextObject = false;
  };
  /// Begins the content of a page, of what an annotation shows, or of a glyph that is drawn like a page, where
  /// no content is marked yet.
  void beginContents();
  /// Ends it, be it for an error, and goes on with what it is within. Throws nothing.
  void endContents(fz_context *context);
  /// Begins a stream of content and answers the one before.
  Stream beginStream(const Stream &stream);
  /// Goes on with the stream before. Throws nothing.
  void endStream(const Stream &before);
  /// That of a form.
  Stream streamOfForm(fz_context *context, pdf_obj *form) const;

  void beginContent(fz_context *context, pdf_obj *properties);
  void endContent();
  void beginTextObject() { contents_.stream.isInTextObject = true; }
  /// Content that begins within a text object ends there, at the latest.
  void endTextObject();

  /// Whether glyphs mean something else.
  bool isActive() const { return contents_.text != nullptr; }
  /// The text, for the first glyph that is shown; null for the others.
  const char *takeText();

  /// Drops the glyphs that are covered from what was found on the last page. Throws nothing.
  void dropCovered(fz_context *context, fz_stext_page &page) const;

 private:
  struct Contents {
    Stream stream;
    /// The text, which the object owns; null outside of content with one.
    const char *text = nullptr;
    pdf_obj *owner = nullptr;
    /// The number of the element of the structure whose text it is; 0 for none.
    int element = 0;
    /// Whether a glyph has got the text.
    bool isPut = false;
  };

  /// On which page the text of an element of the structure stands, which is on one alone.
  struct Place {
    std::uint32_t page;
    /// Which reading of a page has put it last.
    std::uint32_t reading;
  };

  pdf_obj *parentsOf(fz_context *context, pdf_obj *object) const;
  pdf_obj *textOfElement(fz_context *context, int content, int *element) const;

  pdf_obj *parentTree_ = nullptr;
  pdf_obj *parentsOfPage_ = nullptr;
  Contents contents_;
  /// Those that these are within.
  std::vector<Contents> outerContents_;
  /// Where texts are put now, and have been, by the numbers of the elements.
  Place place_ = {};
  std::unordered_map<int, Place> places_;
  bool hasCovered_ = false;
};

}  // namespace nimbo::detail
