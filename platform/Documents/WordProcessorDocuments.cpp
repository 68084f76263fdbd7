// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/WordProcessorDocuments.hpp"

#include "platform/Documents/FlatOpenDocument.hpp"
#include "platform/Documents/OfficeConversion.hpp"
#include "platform/Foundation/NSPathUtilities.hpp"
#include "platform/Foundation/Unicode/ASCII.hpp"

namespace nimbo {

NSAttributedString attributedStringWithWordProcessorDocument(const NSString &path, const Deadline &deadline,
                                                             DocumentAttributes *attributes, NSError *error) {
  const NSData xml = OfficeConversion::sharedConversion().flatDocumentWithContentsOfFile(path, deadline, error);
  if (!xml) return NSAttributedString();
  NSAttributedString text = attributedStringWithFlatOpenDocument(xml, attributes, error);
  if (!text || !attributes) return text;
  const NSString extension = pathExtension(path);
  if (equalsOneOfASCIINoCase(extension.view(), {"docx", "docm", "dotx", "dotm"}))
    attributes->documentType = u"NSOfficeOpenXML"_ns;
  if (equalsOneOfASCIINoCase(extension.view(), {"doc", "dot"})) attributes->documentType = u"NSDocFormat"_ns;
  return text;
}

}  // namespace nimbo
