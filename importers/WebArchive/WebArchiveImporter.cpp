// SPDX-License-Identifier: Apache-2.0
#include "Classes/WebKit/WebArchive+SearchableText.hpp"
#include "importers/HTML/PageProperties.hpp"
#include "importers/ImporterPlugIn.hpp"

namespace nimbo {
namespace {

void importWebArchive(const NSString &path, Attributes &attributes) {
  NSError error;
  NSURL baseURL;
  NSString source;
  const NSString text = searchableTextOfFile(path, &baseURL, &source, &error);
  propertiesOfPage(source).setAttributes(attributes);
  attributes.setArrayOf("kMDItemWhereFroms", baseURL.absoluteString());
  attributes.set("kMDItemTextContent", text);
  attributes.setReason(error);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *WebArchiveImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importWebArchive);
}
