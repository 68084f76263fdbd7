// SPDX-License-Identifier: Apache-2.0
#include "Classes/Encodings/MarkupDecoding.hpp"
#include "Classes/Feeds/NSString+FeedExtensions.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "importers/HTML/PageProperties.hpp"
#include "importers/ImporterPlugIn.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

/// The text of a longer page is that of its beginning.
constexpr std::uint32_t kMaximumLengthInBytes = 16u << 20;

/// Pages and feeds alike.
void importHTML(const NSString &path, Attributes &attributes) {
  NSError error;
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, &error);
  // One byte more than is used, by which longer files are known.
  const NSData data = file ? readData(file.get(), size, kMaximumLengthInBytes + 1, &error) : NSData();
  if (!data) return attributes.setReason(error);
  const NSData page = data.subdataWithRange({0, kMaximumLengthInBytes});
  NSString markup = decodeMarkup(page, 0).string;
  if (isFeed(markup)) markup = stringByConvertingFeed(markup, NSURL(), false);
  propertiesOfPage(markup).setAttributes(attributes);
  const NSString text = stringByConvertingHtml2PlainTextNonUmlauted(markup, false, false, true, false);
  // A page without text is its own text for the library.
  const bool hasText = !text.identicalTo(markup);
  if (hasText) attributes.set("kMDItemTextContent", text);
  if (data.length() == 0)
    setError(&error, ErrorCode::incomplete, "the file is empty");
  else if (!markup)
    setError(&error, ErrorCode::damaged, "the file holds no text");
  else if (data.length() > kMaximumLengthInBytes)
    setError(&error, ErrorCode::incomplete, "only the first 16 MiB of the page are read");
  else if (!hasText)
    setError(&error, ErrorCode::incomplete, "the page has no text");
  attributes.setReason(error);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *HTMLImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importHTML);
}
