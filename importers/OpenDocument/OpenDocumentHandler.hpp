// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "importers/Packages/DocumentProperties.hpp"
#include "importers/Packages/DocumentText.hpp"
#include "importers/Packages/XMLStream.hpp"

namespace nimbo {

/// The texts of a document, apart from each other, so that notes do not divide the paragraph to which they
/// belong.
struct OpenDocumentTexts {
  explicit OpenDocumentTexts(DocumentBudget &budget) noexcept
      : body(budget), notes(budget), comments(budget), headers(budget) {}

  DocumentText body, notes, comments, headers;
};

/// Reads the content, the styles and the properties of a document, each of which may stand in a part of its
/// own. Changes that were deleted, forms and scripts are left out.
class OpenDocumentHandler final : public XMLHandler {
 public:
  OpenDocumentHandler(OpenDocumentTexts &texts, DocumentProperties &properties) noexcept
      : texts_(texts), properties_(properties) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override;
  void endElement(std::string_view name) override;
  void characters(std::string_view text) override;

 private:
  void startProperty(std::string_view name, const XMLAttributes &attributes);
  void endProperty(std::string_view name);
  void appendCollapsed(std::string_view text);
  DocumentText &text() noexcept;

  OpenDocumentTexts &texts_;
  DocumentProperties &properties_;
  std::uint32_t depth_ = 0;
  // The depths of the elements that are open; 0 outside.
  std::uint32_t skippedDepth_ = 0, noteDepth_ = 0, commentDepth_ = 0, headerDepth_ = 0, propertiesDepth_ = 0;
  /// How many paragraphs are open, as those of a text box in a paragraph.
  std::uint32_t paragraphs_ = 0;
  bool isSpreadsheet_ = false, endsInWhiteSpace_ = false;
  std::string value_;
};

}  // namespace nimbo
