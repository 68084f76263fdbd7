// SPDX-License-Identifier: Apache-2.0
#include "children/Office/FlatDocument.hpp"

#include <LibreOfficeKit/LibreOfficeKitEnums.h>
#include <LibreOfficeKit/LibreOfficeKitInit.h>
#include <LibreOfficeKit/LibreOfficeKit.hxx>
#include <cstdlib>
#include <utility>

namespace nimbo {
namespace {

/// Macros run only where the level of security lets them, and then only when this asks for it, which it does
/// not.
constexpr const char *kLoadOptions = "Batch=true,MacroSecurityLevel=3";

std::string fileURL(const std::string &path) {
  constexpr const char *kHex = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    const bool isPlain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                         (byte >= '0' && byte <= '9') || byte == '/' || byte == '-' || byte == '_' ||
                         byte == '.';
    if (isPlain)
      url += c;
    else
      url.append({'%', kHex[byte >> 4], kHex[byte & 15]});
  }
  return url;
}

/// The flat format of a kind of document; null when there is none.
const char *flatFormat(int documentType) {
  switch (documentType) {
    case LOK_DOCTYPE_TEXT:
      return "fodt";
    case LOK_DOCTYPE_SPREADSHEET:
      return "fods";
    case LOK_DOCTYPE_PRESENTATION:
      return "fodp";
    case LOK_DOCTYPE_DRAWING:
      return "fodg";
    default:
      return nullptr;
  }
}

}  // namespace

struct Office::Library {
  std::unique_ptr<lok::Office> office;

  std::string lastError() {
    char *const said = office->getError();
    std::string text = said ? said : "";
    if (said) office->freeError(said);
    return text;
  }
};

Office::Office(std::unique_ptr<Library> library) : library_(std::move(library)) {}

Office::~Office() = default;

std::unique_ptr<Office> Office::load(const std::string &programFolder, const std::string &profileFolder) {
  auto library = std::make_unique<Library>();
  library->office.reset(lok::lok_cpp_init(programFolder.c_str(), fileURL(profileFolder).c_str()));
  if (!library->office) return nullptr;
  return std::unique_ptr<Office>(new Office(std::move(library)));
}

std::string Office::writeFlatDocument(const std::string &source, const std::string &target) {
  const std::unique_ptr<lok::Document> document(
      library_->office->documentLoad(fileURL(source).c_str(), kLoadOptions));
  if (!document) return "LibreOffice cannot read the document, or it needs a password";
  const char *const format = flatFormat(document->getDocumentType());
  if (!format) return "LibreOffice reads the document as one of no known kind";
  if (document->saveAs(fileURL(target).c_str(), format, nullptr)) return {};
  return "LibreOffice cannot write the document's content: " + library_->lastError();
}

}  // namespace nimbo
