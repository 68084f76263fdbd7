// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <utility>

#include "importers/ImporterPlugIn.hpp"
#include "importers/Packages/DocumentProperties.hpp"
#include "platform/AppKit/NSAttributedStringRTF.hpp"
#include "platform/AppKit/NSTextAttachment.hpp"
#include "platform/Foundation/NSFileManager.hpp"
#include "platform/Foundation/NSMutableString.hpp"
#include "platform/Foundation/NSStringJoining.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

/// Most of a long file are its pictures. The text of a longer one is that of its beginning.
constexpr std::uint32_t kMaximumLengthInBytes = 64u << 20;
constexpr unichar kLineSeparator = 0x2028;

std::string UTF8(const NSString &text) {
  return simplifiedText(text.UTF8String());
}

DocumentProperties propertiesOfDocument(const DocumentAttributes &document) {
  DocumentProperties properties;
  properties.title = UTF8(document.title);
  properties.subject = UTF8(document.subject);
  properties.description = UTF8(document.comment);
  properties.organization = UTF8(document.company);
  properties.authors = listOfText(document.author.UTF8String(), ";");
  for (const NSString &keyword : document.keywords) properties.keywords.push_back(UTF8(keyword));
  properties.created = document.creationTime;
  properties.modified = document.modificationTime;
  return properties;
}

/// The text without its attachments, and with each line in a line.
NSString plainText(const NSString &text) {
  NSMutableString plain;
  plain.reserve(text.length());
  for (const unichar unit : text.view())
    if (unit != NSAttachmentCharacter) plain.appendCharacter(unit == kLineSeparator ? u'\n' : unit);
  return std::move(plain).string();
}

/// The file with the text: a folder of type RTFD has it beside its attachments.
NSString pathOfText(const NSString &path) {
  bool isDirectory = false;
  NSFileManager::fileExistsAtPath(path, &isDirectory);
  return isDirectory ? stringByConcatenating(path, u"/TXT.rtf") : path;
}

void importRTF(const NSString &path, Attributes &attributes) {
  NSError error;
  std::uint64_t size = 0;
  const FileDescriptor file = openRegularFile(pathOfText(path), &size, &error);
  // One byte more than is used, by which longer files are known.
  const NSData data = file ? readData(file.get(), size, kMaximumLengthInBytes + 1, &error) : NSData();
  if (!data) return attributes.setReason(error);
  DocumentAttributes document;
  const NSAttributedString text =
      initWithRTF(data.subdataWithRange({0, kMaximumLengthInBytes}), &document, &error);
  propertiesOfDocument(document).setAttributes(attributes);
  attributes.set("kMDItemTextContent", text ? plainText(text.string()) : NSString());
  if (data.length() == 0)
    setError(&error, ErrorCode::incomplete, "the file is empty");
  else if (text && data.length() > kMaximumLengthInBytes)
    setError(&error, ErrorCode::incomplete, "only the first 64 MiB of the text are read");
  attributes.setReason(error);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *RTFImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importRTF);
}
