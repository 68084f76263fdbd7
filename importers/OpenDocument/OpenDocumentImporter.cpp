// SPDX-License-Identifier: Apache-2.0
#include <memory>
#include <string_view>
#include <utility>

#include "importers/ImporterPlugIn.hpp"
#include "importers/OpenDocument/OpenDocumentHandler.hpp"
#include "importers/Packages/Package.hpp"
#include "platform/Foundation/System/RegularFile.hpp"

namespace nimbo {
namespace {

constexpr std::uint32_t kChunkBytes = 64u << 10;
constexpr std::string_view kArchive = "PK";

/// Notices that parts of the document are encrypted.
class ManifestHandler final : public XMLHandler {
 public:
  explicit ManifestHandler(bool &isEncrypted) noexcept : isEncrypted_(isEncrypted) {}

  void startElement(std::string_view name, const XMLAttributes &) override {
    if (name == "encryption-data") isEncrypted_ = true;
  }

 private:
  bool &isEncrypted_;
};

struct OpenDocument {
  DocumentBudget budget;
  OpenDocumentTexts texts{budget};
  DocumentProperties properties;

  void readPackage(const NSString &path) {
    Package package(path, budget);
    bool isEncrypted = false, hasContent = false;
    package.read([&](const std::string &name) {
      return name == "meta-inf/manifest.xml" ? readerWith(std::make_shared<ManifestHandler>(isEncrypted))
                                             : PartReader();
    });
    if (isEncrypted) return budget.fail(ErrorCode::locked, "the document needs a password");
    package.read([&](const std::string &name) {
      hasContent |= name == "content.xml";
      if (name != "content.xml" && name != "styles.xml" && name != "meta.xml") return PartReader();
      return readerWith(std::make_shared<OpenDocumentHandler>(texts, properties));
    });
    if (!hasContent) budget.fail(ErrorCode::damaged, "the document is damaged");
  }

  /// Reads an archive, or a document that is a single part.
  void read(const NSString &path) {
    std::uint64_t size = 0;
    NSError error;
    const FileDescriptor file = openRegularFile(path, &size, &error);
    NSData bytes = file ? readData(file.get(), 0, kChunkBytes, &error) : NSData();
    if (!bytes) return budget.fail(error.errorCode(), error.localizedFailureReason.UTF8String());
    if (bytes.length() == 0) return budget.fail(ErrorCode::incomplete, "the file is empty");
    if (bytes.view().starts_with(kArchive)) return readPackage(path);
    OpenDocumentHandler handler(texts, properties);
    XMLStream stream(handler, budget);
    while (budget.spendBytes(bytes.length()) && stream.read(bytes.view()) && bytes.length() > 0) {
      bytes = readData(file.get(), 0, kChunkBytes, &error);
      if (!bytes) return budget.fail(error.errorCode(), error.localizedFailureReason.UTF8String());
    }
  }

  NSString text() {
    DocumentText &whole = texts.body;
    for (const DocumentText *const part : {&texts.notes, &texts.comments, &texts.headers})
      whole.appendLines(part->view());
    return std::move(whole).string();
  }

 private:
  template <class Handler>
  PartReader readerWith(std::shared_ptr<Handler> handler) {
    auto stream = std::make_shared<XMLStream>(*handler, budget);
    return [handler, stream](std::string_view bytes) { return stream->read(bytes); };
  }
};

void importOpenDocument(const NSString &path, Attributes &attributes) {
  OpenDocument document;
  document.read(path);
  setDocument(attributes, document.properties, document.text(), document.budget);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *OpenDocumentImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importOpenDocument);
}
