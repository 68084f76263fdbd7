// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <memory>
#include <set>
#include <utility>

#include "importers/ImporterPlugIn.hpp"
#include "importers/OpenXML/OpenXMLParts.hpp"
#include "importers/OpenXML/OpenXMLText.hpp"
#include "importers/Packages/Package.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kContentTypes = "[content_types].xml";

/// How far parts are followed that refer to each other: a workbook to its sheets, those to drawings, those to
/// charts.
constexpr int kMaximumReferences = 4;

/// A document as it is read: at first what its parts are, then the order of the slides or sheets and the shared
/// texts, then the texts of all parts, whatever their order in the archive.
class OpenXMLDocument {
 public:
  OpenXMLDocument(const NSString &path, DocumentBudget &budget)
      : budget_(budget), package_(path, budget), strings_(budget) {}

  void read() {
    package_.read([this](const std::string &name) { return readerOfStructure(name); });
    package_.read([this](const std::string &name) { return readerOfOrder(name); });
    package_.read([this](const std::string &name) { return readerOfText(name); });
    if (mainParts().empty()) budget_.fail(ErrorCode::damaged, "the document is damaged");
  }

  const DocumentProperties &properties() const noexcept { return properties_; }

  /// The text in reading order; nil when there is none.
  NSString text() {
    DocumentText text(budget_);
    for (const auto &[part, role] : mainParts()) append(part, text, kMaximumReferences);
    return std::move(text).string();
  }

 private:
  template <class Handler, class... Arguments>
  PartReader readerWith(Arguments &&...arguments) {
    struct Reading {
      Reading(DocumentBudget &budget, Arguments &&...given)
          : handler(std::forward<Arguments>(given)...), stream(handler, budget) {}
      Handler handler;
      XMLStream stream;
    };
    const auto reading = std::make_shared<Reading>(budget_, std::forward<Arguments>(arguments)...);
    return [reading](std::string_view bytes) { return reading->stream.read(bytes); };
  }

  PartReader readerOf(XMLHandler &handler) {
    const auto stream = std::make_shared<XMLStream>(handler, budget_);
    return [stream](std::string_view bytes) { return stream->read(bytes); };
  }

  PartReader readerOfStructure(const std::string &name) {
    if (name == kContentTypes) return readerOf(contentTypes_);
    if (!name.ends_with(".rels") || name.find("_rels/") == name.npos) return {};
    return readerWith<RelationshipsHandler>(name, relationships_[RelationshipsHandler::partOfList(name)]);
  }

  PartReader readerOfOrder(const std::string &name) {
    switch (contentTypes_.role(name)) {
      case OpenXMLRole::presentation:
      case OpenXMLRole::workbook:
        return readerOf(orders_[name]);
      case OpenXMLRole::sharedStrings:
        return readerWith<SharedStringsHandler>(strings_);
      case OpenXMLRole::coreProperties:
      case OpenXMLRole::extendedProperties:
        return readerWith<OpenXMLPropertiesHandler>(properties_);
      default:
        return {};
    }
  }

  PartReader readerOfText(const std::string &name) {
    const OpenXMLRole role = contentTypes_.role(name);
    switch (role) {
      case OpenXMLRole::presentation:
      case OpenXMLRole::workbook:
      case OpenXMLRole::sharedStrings:
      case OpenXMLRole::coreProperties:
      case OpenXMLRole::extendedProperties:
      case OpenXMLRole::other:
        return {};
      default:
        break;
    }
    DocumentText &text = texts_.try_emplace(name, budget_).first->second;
    if (role == OpenXMLRole::worksheet) return readerWith<WorksheetHandler>(text, strings_);
    return readerWith<OpenXMLTextHandler>(text);
  }

  /// The parts with which reading begins: there is one in most documents.
  std::vector<std::pair<std::string, OpenXMLRole>> mainParts() const {
    std::vector<std::pair<std::string, OpenXMLRole>> parts;
    const auto found = relationships_.find("");
    if (found == relationships_.end()) return parts;
    for (const auto &[identifier, part] : found->second) {
      const OpenXMLRole role = contentTypes_.role(part);
      if (role <= OpenXMLRole::workbook) parts.emplace_back(part, role);
    }
    return parts;
  }

  /// Appends the text of a part, and then those of the parts to which it refers.
  void append(const std::string &part, DocumentText &text, int references) {
    if (!appended_.insert(part).second) return;
    if (const auto own = texts_.find(part); own != texts_.end()) text.appendLines(own->second.view());
    const auto found = relationships_.find(part);
    if (found == relationships_.end() || references == 0) return;
    const Relationships &related = found->second;
    if (const auto order = orders_.find(part); order != orders_.end()) {
      for (const OrderHandler::Item &item : order->second.items()) {
        const auto referred = std::ranges::find(related, item.identifier, &Relationships::value_type::first);
        if (referred == related.end()) continue;
        text.appendLines(NSString::stringWithLossyUTF8String(item.name).view());
        append(referred->second, text, references - 1);
      }
      return;
    }
    std::vector<std::pair<OpenXMLRole, const std::string *>> others;
    for (const auto &[identifier, other] : related) {
      const OpenXMLRole role = contentTypes_.role(other);
      // A speaker's notes refer to their slide again, and slides to each other where they are linked.
      if (role > OpenXMLRole::worksheet && role <= OpenXMLRole::footer) others.emplace_back(role, &other);
    }
    std::ranges::stable_sort(others, {}, &decltype(others)::value_type::first);
    for (const auto &[role, other] : others) append(*other, text, references - 1);
  }

  DocumentBudget &budget_;
  Package package_;
  ContentTypesHandler contentTypes_;
  std::map<std::string, Relationships> relationships_;
  std::map<std::string, OrderHandler> orders_;
  SharedStrings strings_;
  DocumentProperties properties_;
  std::map<std::string, DocumentText> texts_;
  std::set<std::string> appended_;
};

void importOpenXML(const NSString &path, Attributes &attributes) {
  DocumentBudget budget;
  OpenXMLDocument document(path, budget);
  document.read();
  setDocument(attributes, document.properties(), document.text(), budget);
}

}  // namespace
}  // namespace nimbo

QUIVERLEAF_IMPORTER_FACTORY void *OpenXMLImporterFactory(void *, const std::uint8_t *typeID) {
  return nimbo::makeMetaDataImporter(typeID, nimbo::importOpenXML);
}
