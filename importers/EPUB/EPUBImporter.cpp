// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Classes/Encodings/NSString+XmlExtensions+Encoding.hpp"
#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "importers/ImporterPlugIn.hpp"
#include "importers/Packages/DocumentProperties.hpp"
#include "importers/Packages/DocumentText.hpp"
#include "importers/Packages/Package.hpp"
#include "importers/Packages/XMLStream.hpp"
#include "platform/Foundation/URLs/PercentEscapes.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kContainer = "meta-inf/container.xml";
constexpr std::string_view kEncryption = "meta-inf/encryption.xml";
/// Chapters are cut behind so many bytes.
constexpr std::size_t kMaximumChapterBytes = 16u << 20;
/// Files and chapters beyond so many are not looked at.
constexpr std::size_t kMaximumItems = Package::kMaximumParts;
constexpr std::size_t kMaximumPropertyBytes = 64u << 10;
constexpr std::size_t kMaximumListed = 1000;

/// Reads where the description of the book is.
class ContainerHandler final : public XMLHandler {
 public:
  explicit ContainerHandler(std::string &book) noexcept : book_(book) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override {
    if (name == "rootfile" && book_.empty())
      book_ = Package::nameOfPart(attributes.value("full-path").value_or(""));
  }

 private:
  std::string &book_;
};

/// Reads which files of the book are encrypted; fonts often are, and do not matter.
class EncryptionHandler final : public XMLHandler {
 public:
  explicit EncryptionHandler(std::set<std::string> &files) noexcept : files_(files) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override {
    if (name == "CipherReference" && files_.size() < kMaximumItems)
      files_.insert(Package::nameOfPart(attributes.value("URI").value_or("")));
  }

 private:
  std::set<std::string> &files_;
};

/// Reads the description of a book: what it says of itself, its files and the order of its chapters.
class BookHandler final : public XMLHandler {
 public:
  BookHandler(std::string book, DocumentProperties &properties, std::vector<std::string> &chapters) noexcept
      : book_(std::move(book)), properties_(properties), chapters_(chapters) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override {
    value_.clear();
    if (name == "item" && files_.size() < kMaximumItems) {
      const std::string target = bytesByReplacingPercentEscapes(attributes.value("href").value_or(""));
      files_[std::string(attributes.value("id").value_or(""))] = Package::nameOfTarget(book_, target);
    } else if (name == "itemref" && chapters_.size() < kMaximumItems) {
      const auto file = files_.find(attributes.value("idref").value_or(""));
      if (file != files_.end()) chapters_.push_back(file->second);
    }
  }
  void endElement(std::string_view name) override {
    const std::string value = simplifiedText(value_);
    value_.clear();
    if (value.empty()) return;
    if (name == "title" && properties_.title.empty())
      properties_.title = value;
    else if (name == "description")
      properties_.description = value;
    else if (name == "language" && properties_.language.empty())
      properties_.language = value;
    else if (name == "publisher")
      properties_.organization = value;
    else if (name == "creator" && properties_.authors.size() < kMaximumListed)
      properties_.authors.push_back(value);
    else if (name == "subject" && properties_.keywords.size() < kMaximumListed)
      properties_.keywords.push_back(value);
    else if (name == "date" && !properties_.created)
      properties_.created = dateOfText(value);
  }
  void characters(std::string_view text) override {
    value_ += text.substr(0, kMaximumPropertyBytes - std::min(value_.size(), kMaximumPropertyBytes));
  }

 private:
  const std::string book_;
  DocumentProperties &properties_;
  std::vector<std::string> &chapters_;
  std::map<std::string, std::string, std::less<>> files_;
  std::string value_;
};

class Book {
 public:
  Book(const NSString &path, DocumentBudget &budget) : budget_(budget), package_(path, budget) {}

  void read(Attributes &attributes) {
    package_.read([this](const std::string &name) {
      if (name == kContainer) return readerWith(std::make_shared<ContainerHandler>(book_));
      if (name == kEncryption) return readerWith(std::make_shared<EncryptionHandler>(encrypted_));
      return PartReader();
    });
    DocumentProperties properties;
    package_.read([&](const std::string &name) {
      if (name != book_) return PartReader();
      return readerWith(std::make_shared<BookHandler>(book_, properties, chapters_));
    });
    if (chapters_.empty()) budget_.fail(ErrorCode::damaged, "the document is damaged");
    for (const std::string &chapter : chapters_) texts_.try_emplace(chapter, budget_);
    package_.read([this](const std::string &name) { return readerOfChapter(name); });
    setDocument(attributes, properties, text(), budget_);
  }

 private:
  template <class Handler>
  PartReader readerWith(std::shared_ptr<Handler> handler) {
    auto stream = std::make_shared<XMLStream>(*handler, budget_);
    return [handler, stream](std::string_view bytes) { return stream->read(bytes); };
  }

  PartReader readerOfChapter(const std::string &name) {
    const auto found = texts_.find(name);
    if (found == texts_.end()) return {};
    if (encrypted_.contains(name)) {
      budget_.fail(ErrorCode::locked, "the book is encrypted");
      return {};
    }
    return [this, &text = found->second, page = std::make_shared<std::string>()](std::string_view bytes) {
      if (page->size() + bytes.size() > kMaximumChapterBytes) {
        budget_.fail(ErrorCode::incomplete, "only the first 16 MiB of a chapter are read");
        bytes = {};
      }
      *page += bytes;
      if (bytes.empty()) appendPage(*page, text);
      return !bytes.empty();
    };
  }

  static void appendPage(const std::string &page, DocumentText &text) {
    const NSString markup =
        stringWithMarkupData(NSData::dataWithBytes(page.data(), page.size()), NSUTF8StringEncoding);
    const NSString plain = stringByConvertingHtml2PlainTextNonUmlauted(markup, false, false, true, false);
    // A page without text, such as a cover, is its own text for the library.
    if (plain.identicalTo(markup)) return;
    text.append(trimmed(plain.view(), [](unichar c) { return c == u'\n'; }));
  }

  NSString text() {
    DocumentText whole(budget_);
    for (const std::string &chapter : chapters_) {
      const auto own = texts_.find(chapter);
      whole.appendLines(own->second.view());
      // Some books name a chapter twice.
      own->second = DocumentText(budget_);
    }
    return std::move(whole).string();
  }

  DocumentBudget &budget_;
  Package package_;
  std::string book_;
  std::set<std::string> encrypted_;
  std::vector<std::string> chapters_;
  std::map<std::string, DocumentText> texts_;
};

void importEPUB(const NSString &path, Attributes &attributes) {
  DocumentBudget budget;
  Book(path, budget).read(attributes);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *EPUBImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importEPUB);
}
