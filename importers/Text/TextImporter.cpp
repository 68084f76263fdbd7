// SPDX-License-Identifier: Apache-2.0
#include "importers/ImporterPlugIn.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

/// The text of a longer file is that of its beginning.
constexpr std::uint32_t kMaximumLengthInBytes = 16u << 20;

/// The text of text files of every kind, as it stands in them.
void importText(const NSString &path, Attributes &attributes) {
  NSError error;
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(path, &size, &error);
  // One byte more than is used, by which longer files are known.
  const NSData data = file ? readData(file.get(), size, kMaximumLengthInBytes + 1, &error) : NSData();
  if (!data) return attributes.setReason(error);

  const bool isCut = data.length() > kMaximumLengthInBytes;
  const NSString text = stringWithDetectedEncoding(data.view().substr(0, kMaximumLengthInBytes), isCut).string;
  attributes.set("kMDItemTextContent", text);
  if (!text)
    setError(&error, ErrorCode::damaged, "the file holds no text");
  else if (isCut)
    setError(&error, ErrorCode::incomplete, "only the first 16 MiB of the text are read");
  else if (data.length() == 0)
    setError(&error, ErrorCode::incomplete, "the file is empty");
  attributes.setReason(error);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *TextImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importText);
}
