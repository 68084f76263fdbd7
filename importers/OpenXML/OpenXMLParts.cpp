// SPDX-License-Identifier: Apache-2.0
#include "importers/OpenXML/OpenXMLParts.hpp"

#include "importers/Packages/Package.hpp"

namespace nimbo {
namespace {

/// Parts, references and sheets beyond so many are not looked at.
constexpr std::size_t kMaximumItems = Package::kMaximumParts;

/// Names of sheets are cut behind so many bytes.
constexpr std::size_t kMaximumNameBytes = 1024;

constexpr std::string_view kXML = "+xml";

/// The ends of content types, in front of "+xml".
constexpr std::pair<std::string_view, OpenXMLRole> kRoles[] = {
    {"wordprocessingml.document.main", OpenXMLRole::document},
    {"wordprocessingml.template.main", OpenXMLRole::document},
    {"ms-word.document.macroenabled.main", OpenXMLRole::document},
    {"ms-word.template.macroenabledtemplate.main", OpenXMLRole::document},
    {"wordprocessingml.footnotes", OpenXMLRole::footnotes},
    {"wordprocessingml.endnotes", OpenXMLRole::endnotes},
    {"wordprocessingml.header", OpenXMLRole::header},
    {"wordprocessingml.footer", OpenXMLRole::footer},
    {"presentation.main", OpenXMLRole::presentation},
    {"presentation.macroenabled.main", OpenXMLRole::presentation},
    {"slideshow.main", OpenXMLRole::presentation},
    {"slideshow.macroenabled.main", OpenXMLRole::presentation},
    {"presentationml.template.main", OpenXMLRole::presentation},
    {"ms-powerpoint.template.macroenabled.main", OpenXMLRole::presentation},
    {"ms-powerpoint.addin.macroenabled.main", OpenXMLRole::presentation},
    {"sheet.main", OpenXMLRole::workbook},
    {"sheet.macroenabled.main", OpenXMLRole::workbook},
    {"spreadsheetml.template.main", OpenXMLRole::workbook},
    {"ms-excel.template.macroenabled.main", OpenXMLRole::workbook},
    {"ms-excel.addin.macroenabled.main", OpenXMLRole::workbook},
    {"sharedstrings", OpenXMLRole::sharedStrings},
    {"presentationml.slide", OpenXMLRole::slide},
    {"worksheet", OpenXMLRole::worksheet},
    {"notesslide", OpenXMLRole::notes},
    {"comments", OpenXMLRole::comments},
    {"officedocument.drawing", OpenXMLRole::drawing},
    {"diagramdata", OpenXMLRole::diagram},
    {"drawingml.chart", OpenXMLRole::chart},
    {"core-properties", OpenXMLRole::coreProperties},
    {"extended-properties", OpenXMLRole::extendedProperties},
};

OpenXMLRole roleOfContentType(std::string_view type) {
  const std::string known = Package::nameOfPart(type);
  if (!known.ends_with(kXML)) return OpenXMLRole::other;
  const std::string_view kind = std::string_view(known).substr(0, known.size() - kXML.size());
  for (const auto &[end, role] : kRoles)
    if (kind.ends_with(end)) return role;
  return OpenXMLRole::other;
}

}  // namespace

void ContentTypesHandler::startElement(std::string_view name, const XMLAttributes &attributes) {
  if (name != "Override" || roles_.size() >= kMaximumItems) return;
  const OpenXMLRole role = roleOfContentType(attributes.value("ContentType").value_or(""));
  if (role != OpenXMLRole::other) roles_[Package::nameOfPart(attributes.value("PartName").value_or(""))] = role;
}

OpenXMLRole ContentTypesHandler::role(const std::string &part) const {
  const auto found = roles_.find(part);
  return found == roles_.end() ? OpenXMLRole::other : found->second;
}

RelationshipsHandler::RelationshipsHandler(const std::string &list, Relationships &relationships)
    : part_(partOfList(list)), relationships_(relationships) {}

void RelationshipsHandler::startElement(std::string_view name, const XMLAttributes &attributes) {
  if (name != "Relationship" || attributes.value("TargetMode") == "External") return;
  if (relationships_.size() >= kMaximumItems) return;
  relationships_.emplace_back(attributes.value("Id").value_or(""),
                              Package::nameOfTarget(part_, attributes.value("Target").value_or("")));
}

std::string RelationshipsHandler::partOfList(std::string_view list) {
  constexpr std::string_view kFolder = "_rels/";
  std::string part(list.substr(0, list.rfind('.')));
  part.erase(part.rfind(kFolder), kFolder.size());
  return part;
}

void OrderHandler::startElement(std::string_view name, const XMLAttributes &attributes) {
  if ((name != "sldId" && name != "sheet") || items_.size() >= kMaximumItems) return;
  // Slides have an "id" of their own beside the "r:id".
  const auto identifier = attributes.prefixedValue("id");
  const std::string_view sheet = attributes.value("name").value_or("").substr(0, kMaximumNameBytes);
  if (identifier) items_.push_back({std::string(*identifier), std::string(sheet)});
}

}  // namespace nimbo
