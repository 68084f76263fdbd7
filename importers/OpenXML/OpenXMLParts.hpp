// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "importers/Packages/XMLStream.hpp"

namespace nimbo {

/// What a part of a document is, in the order in which a reader meets them; those of one rank keep the order in
/// which they are referred to.
enum class OpenXMLRole {
  document,       ///< The body of a text.
  presentation,   ///< The list of slides.
  workbook,       ///< The list of sheets.
  sharedStrings,  ///< The texts of cells.
  slide,
  worksheet,
  drawing,
  diagram,
  chart,
  footnotes,
  endnotes,
  notes,  ///< What the speaker of a slide says.
  comments,
  header,
  footer,
  coreProperties,
  extendedProperties,
  other,
};

/// Reads the list of content types: what each part is.
class ContentTypesHandler final : public XMLHandler {
 public:
  void startElement(std::string_view name, const XMLAttributes &attributes) override;

  /// What the part of this name is.
  OpenXMLRole role(const std::string &part) const;

 private:
  std::map<std::string, OpenXMLRole, std::less<>> roles_;
};

/// What a part refers to: the names of parts by their identifiers, in order.
using Relationships = std::vector<std::pair<std::string, std::string>>;

/// Reads the list of the parts that a part refers to.
class RelationshipsHandler final : public XMLHandler {
 public:
  /// `list` is the name of the part that holds the list, "word/_rels/document.xml.rels".
  RelationshipsHandler(const std::string &list, Relationships &relationships);

  void startElement(std::string_view name, const XMLAttributes &attributes) override;

  /// The part whose list this is, "word/document.xml"; empty for the list of the whole document.
  static std::string partOfList(std::string_view list);

 private:
  std::string part_;
  Relationships &relationships_;
};

/// Reads the order of slides or sheets.
class OrderHandler final : public XMLHandler {
 public:
  struct Item {
    std::string identifier;
    /// The name of a sheet; slides have none.
    std::string name;
  };

  void startElement(std::string_view name, const XMLAttributes &attributes) override;

  const std::vector<Item> &items() const noexcept { return items_; }

 private:
  std::vector<Item> items_;
};

}  // namespace nimbo
