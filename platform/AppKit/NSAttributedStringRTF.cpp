// SPDX-License-Identifier: Apache-2.0
#include "platform/AppKit/NSAttributedStringRTF.hpp"

#include <optional>
#include <stdexcept>
#include <string>

#include "platform/AppKit/RTF/RTFReader.hpp"
#include "platform/AppKit/RTF/RTFWriter.hpp"

namespace nimbo {

namespace {

NSAttributedString readRTF(const NSData &data, const NSFileWrapper &attachments, const NSString &documentType,
                           DocumentAttributes *documentAttributes, NSError *error) {
  if (!RTFReader::isRTF(data.view())) {
    setError(error, ErrorCode::unsupportedType, "it is no RTF");
    return {};
  }
  RTFReader reader(data.view(), attachments);
  NSAttributedString text = reader.read();
  if (documentAttributes) {
    *documentAttributes = reader.documentAttributes();
    documentAttributes->documentType = documentType;
  }
  return text;
}

/// The RTF of a range; nil when there is none.
NSData writeRTF(RTFWriter *writer, const DocumentAttributes &documentAttributes) {
  try {
    const std::string rtf = writer->write(documentAttributes);
    return NSData::dataWithBytes(rtf.data(), rtf.size());
  } catch (const std::length_error &) {
    return {};
  }
}

}  // namespace

bool isRTF(const NSData &data) {
  return RTFReader::isRTF(data.view());
}

NSAttributedString initWithRTF(const NSData &data, DocumentAttributes *documentAttributes, NSError *error) {
  return readRTF(data, {}, u"NSRTF"_ns, documentAttributes, error);
}

NSAttributedString initWithRTFD(const NSData &data, DocumentAttributes *documentAttributes, NSError *error) {
  const NSFileWrapper folder = NSFileWrapper::initWithSerializedRepresentation(data, error);
  return folder ? initWithRTFDFileWrapper(folder, documentAttributes, error) : NSAttributedString();
}

NSAttributedString initWithRTFDFileWrapper(const NSFileWrapper &folder, DocumentAttributes *documentAttributes,
                                           NSError *error) {
  const NSFileWrapper text = folder.fileWrapperNamed(u"TXT.rtf"_ns);
  if (text.isRegularFile())
    return readRTF(text.regularFileContents(), folder, u"NSRTFD"_ns, documentAttributes, error);
  setError(error, ErrorCode::damaged, "the folder has no TXT.rtf");
  return {};
}

NSData RTFFromRange(const NSAttributedString &text, NSRange range,
                    const DocumentAttributes &documentAttributes) {
  if (!text) return {};
  RTFWriter writer(text.attributedSubstringFromRange(range), RTFWriter::Attachments::asPictures);
  return writeRTF(&writer, documentAttributes);
}

NSFileWrapper RTFDFileWrapperFromRange(const NSAttributedString &text, NSRange range,
                                       const DocumentAttributes &documentAttributes) {
  if (!text) return {};
  RTFWriter writer(text.attributedSubstringFromRange(range), RTFWriter::Attachments::asFiles);
  const NSFileWrapper rtf =
      NSFileWrapper::regularFileWithContents(writeRTF(&writer, documentAttributes), u"TXT.rtf"_ns);
  if (!rtf) return {};
  std::vector<NSFileWrapper> files = writer.takeFiles();
  files.insert(files.begin(), rtf);
  return NSFileWrapper::directoryWithFileWrappers(std::move(files));
}

NSData RTFDFromRange(const NSAttributedString &text, NSRange range,
                     const DocumentAttributes &documentAttributes) {
  return RTFDFileWrapperFromRange(text, range, documentAttributes).serializedRepresentation();
}

}  // namespace nimbo
