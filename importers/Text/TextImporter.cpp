// SPDX-License-Identifier: Apache-2.0
#include "importers/ImporterPlugIn.hpp"
#include "importers/Text/PropertyListText.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/NSPropertyListSerialization.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

/// The text of a longer file is that of its beginning.
constexpr std::uint32_t kMaximumLengthInBytes = 16u << 20;

void importBinaryPropertyList(const NSData &data, Attributes &attributes) {
  NSError error;
  NSString text;
  if (data.length() <= kMaximumLengthInBytes) {
    const id list = NSPropertyListSerialization::propertyListFromData(data, nullptr, &error);
    if (list) text = textOfPropertyList(list, kMaximumLengthInBytes);
  }
  attributes.set("kMDItemTextContent", text);
  if (!text && !error) setError(&error, ErrorCode::tooLarge, "the property list is too large");
  attributes.setReason(error);
}

/// The text of text files of every kind, as it stands in them; of binary property lists their strings.
void importText(const NSString &path, Attributes &attributes) {
  NSError error;
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, &error);
  // One byte more than is used, by which longer files are known.
  const NSData data = file ? readData(file.get(), size, kMaximumLengthInBytes + 1, &error) : NSData();
  if (data && data.length() == 0) setError(&error, ErrorCode::incomplete, "the file is empty");
  if (error) return attributes.setReason(error);

  if (data.view().starts_with("bplist")) return importBinaryPropertyList(data, attributes);
  const bool isCut = data.length() > kMaximumLengthInBytes;
  const NSString text = stringWithDetectedEncoding(data.view().substr(0, kMaximumLengthInBytes), isCut).string;
  attributes.set("kMDItemTextContent", text);
  if (!text)
    setError(&error, ErrorCode::damaged, "the file holds no text");
  else if (isCut)
    setError(&error, ErrorCode::incomplete, "only the first 16 MiB of the text are read");
  attributes.setReason(error);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *TextImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importText);
}
