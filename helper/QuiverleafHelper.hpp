// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "Classes/MetaData/MetaDataImporter.hpp"
#include "platform/Foundation/NSConnection.hpp"
#include "platform/Foundation/NSRange.hpp"
#include "platform/Foundation/System/Deadline.hpp"

namespace nimbo {

/// The root object: the operations of `NimboImExport`. Each reads its inputs, builds a result and keeps nothing
/// but the list of importers. A nil answer means failure; `*error` says why it is nil, or not whole. See
/// `NimboImExport.hpp` for the kinds of arguments and results.
class QuiverleafHelper : public NSConnectionRootObject {
 public:
  /// For everything that is asked of one document. Callers wait little longer, and a part of the text helps
  /// them more than none.
  static constexpr double kDocumentSeconds = 10.0;

  /// The importers are looked for on the first request that needs them.
  explicit QuiverleafHelper(
      MetaDataImporterLocations importers = MetaDataImporterLocations::standardLocations())
      : _mdimporter(std::move(importers)) {}

  /// Raises NSInvalidArgumentException for a selector or an argument that is not in the contract.
  id perform(const NSString &selector, const NSDictionary &arguments, NSError *error = nullptr) override;

  /// The file's metadata attributes by their kMDItem names, without null values.
  NSDictionary metaDataForFile(const NSString &path, NSError *error = nullptr);
  /// The text and facts of a PDF, as `_attributedStringWithPDF` answers them without a file and without the
  /// size.
  NSDictionary attributedStringWithPDF(bool attributed, const NSData &pdf, NSError *error = nullptr);

  /// The text of a web archive and of its frames. Answers
  ///   "String"  the text, as `searchableTextOfFile` makes it
  ///   "Source"  the markup of the page, when it is known
  ///   "URL"     the absolute string of the page's URL, when it is known
  /// Empty when the file cannot be read or is no web archive. `*error` says that, or why the text is not whole.
  NSDictionary searchableTextOfWebArchive(const NSString &path, NSError *error = nullptr);
  /// A document of any kind that `initWithPath` reads, as rich text. Parts of a page that are neither on this
  /// machine nor on its local network are left out. Answers
  ///   "Rtfd"                the text as RTFD data
  ///   "DocumentAttributes"  what the document says of itself, by the text system's names
  /// Nil when it cannot be read. `*error` says why, or what is missing.
  NSDictionary attributedStringWithContentsOfFile(const NSString &path, NSError *error = nullptr);
  /// Writes RTFD data as a folder, whole or not at all. An RTFD folder or an empty one that stood there is
  /// replaced, nothing else is. Answers whether it was written; never nil.
  id writeRTFDData(const NSData &rtfd, const NSString &toFile, NSError *error = nullptr);
  /// A page as RTFD data. References in it begin at `baseURL`, when the web engine has a use for that. Parts
  /// that are neither on this machine nor on its local network are loaded only with `allowRemoteRequest`; what
  /// has not come within 15 seconds is left out. Nil for nil. `*error` says which parts are missing.
  NSData RTFDWithHTML(const NSData &html, const NSString &baseURL, bool allowRemoteRequest,
                      NSError *error = nullptr);
  /// A file that is PDF or PostScript, an Illustrator file with PDF in it, or a folder with a PDF (.pdfd), as
  /// PDF. Nil when it is another one or cannot be read: `*error` says which.
  NSData PDFImageRepOfFile(const NSString &path, NSError *error = nullptr);
  /// The frame in the middle of a movie, but not behind its 15th second. Answers
  ///   "Duration"   seconds; 0 when it is not known
  ///   "Size"       the natural size in points, as text
  ///   "Thumbnail"  the frame in that size as TIFF; missing when there is none
  /// Never nil. `*error` says why the frame is missing. Lets exceptions out.
  NSDictionary posterImageForMovieWithFile(const NSString &path, NSError *error = nullptr);
  /// The thumbnail and the facts of an image, a PDF or PostScript. Without `stringFromPDF`, of an image,
  ///   "Properties"  what the file says of itself, by the platform's names
  ///   "Thumbnail"   as TIFF, within 256 points
  /// Of other files, and of all with `stringFromPDF`,
  ///   "Size", "PixelSize"  in points and in pixels, as text
  ///   "Alpha"       whether it can be transparent
  ///   "Thumbnail"   as above
  /// and with `stringFromPDF`, of PDF and PostScript, what `_attributedStringWithPDF` answers, which replaces
  /// those of the same name. With `canUseSpotlight` the metadata importers are asked first for the text of a
  /// file that is a PDF itself. A damaged PDF, which has no picture, still gives its text.
  /// Nil when it is none of these or cannot be read: `*error` says which, or what is missing.
  NSDictionary imageWithContentsOfFile(const NSString &path, bool stringFromPDF, bool canUseSpotlight,
                                       NSError *error = nullptr);

  /// The text and facts of a PDF, or of some of its pages, as `_attributedStringWithPDF` answers them without a
  /// file and without the size. The options:
  ///   "Password"   a string, the user's or the owner's, for a document that is locked
  ///   "FirstPage"  the number of the first page, from 1 on
  ///   "LastPage"   that of the last one; those that the document does not have are left out
  ///   "Attributed" whether "String" is RTFD data
  ///   "ByPage"     whether the answer has "Pages" in place of "String": an array of strings, the text of each
  ///                page; empty where there is none, and `*error` names these pages
  /// Nil also when the document has none of the pages. Raises NSInvalidArgumentException for other options, and
  /// for values that make no sense.
  NSDictionary stringWithPDF(const NSData &pdf, const NSDictionary &options, NSError *error = nullptr);

  /// The PDF worker. With `file`, the metadata importers are asked for its text first, unless Ghostscript made
  /// the PDF: its text is better read here. Answers
  ///   "Locked"     true, only when the text needs a password; there is no "String" then
  ///   "String"     the text of all pages, cleaned; with `attributed` as RTFD data, as `PDFSelection` makes it,
  ///                not cleaned and without the importers; missing when there are no pages
  ///   "PageCount"  an integer
  ///   the document's own attributes, which replace those above of the same name
  ///   "Size", "PixelSize", "Alpha"  with `size`, when there is a page: the first page's media box in points as
  ///                text, twice, and false
  /// Nil when there is no data or it is no PDF. `*error` says that, or why the text is missing or not whole.
  /// Reading ends at `deadline` at the latest. Lets exceptions out.
  NSDictionary _attributedStringWithPDF(bool attributed, const NSData &pdf, const NSString &file, bool size,
                                        const Deadline &deadline = {}, NSError *error = nullptr);

 private:
  NSDictionary answerToPDF(const NSData &pdf, const struct PDFTextOptions &options, const NSString &file,
                           bool size, const Deadline &deadline, NSError *error);
  id textOfPDF(class PDFDocument &document, const struct PDFTextOptions &options, const NSRange &pages,
               const NSDictionary &attributes, const NSString &file, NSError *error);

  MetaDataImporter _mdimporter;
};

}  // namespace nimbo
