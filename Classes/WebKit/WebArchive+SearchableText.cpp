// SPDX-License-Identifier: Apache-2.0
#include "Classes/WebKit/WebArchive+SearchableText.hpp"

#include <utility>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/WebKit/WebArchive+WebKitAdditions.hpp"

namespace nimbo {
inline namespace SearchableText {

namespace {

/// Stands in front of the text of each page.
constexpr std::u16string_view kSeparator = u"\n\n";

/// Goes through an archive and its frames.
class TextGathering {
 public:
  explicit TextGathering(NSMutableString &text) : text_(text) {}

  /// `source` is the markup of the archive's main resource. Whether there was room for all frames.
  bool append(const WebArchive &archive, const NSString &source) {
    markupLength_ += source.length();
    if (const NSString page = stringByConvertingHtml2PlainTextNonUmlauted(source, false, true, true, false)) {
      // Most archives have one page.
      if (text_.length() == 0) text_.reserve(kSeparator.size() + page.length());
      text_.append(kSeparator);
      text_.appendString(page);
    }
    for (const WebArchive &frame : archive.subframeArchives()) {
      if (markupLength_ >= kMaximumSearchableMarkupLength) return false;
      if (!append(frame, documentSource(frame))) return false;
    }
    return true;
  }

 private:
  NSMutableString &text_;
  std::uint64_t markupLength_ = 0;
};

void append(const WebArchive &archive, const NSString &source, NSMutableString &text, NSError *error) {
  if (!TextGathering(text).append(archive, source))
    setError(error, ErrorCode::incomplete, "the frames are too large to read all");
}

}  // namespace

NSString searchableTextOfFile(const NSString &path, NSURL *baseURL, NSString *source, NSError *error) {
  const WebArchive archive = webArchiveWithContentsOfFile(path, error);
  if (baseURL) *baseURL = nimbo::baseURL(archive);
  if (archive) return searchableTextAndSource(archive, source, error);
  if (source) *source = NSString();
  return NSString();
}

NSString searchableText(const WebArchive &archive, NSError *error) {
  return searchableTextAndSource(archive, nullptr, error);
}

NSString searchableTextAndSource(const WebArchive &archive, NSString *source, NSError *error) {
  const NSString markup = documentSource(archive);
  NSMutableString text;
  append(archive, markup, text, error);
  if (source) *source = markup;
  return std::move(text).string();
}

void appendSearchableTextTo(const WebArchive &archive, NSMutableString &text, NSError *error) {
  append(archive, documentSource(archive), text, error);
}

}  // namespace SearchableText
}  // namespace nimbo
