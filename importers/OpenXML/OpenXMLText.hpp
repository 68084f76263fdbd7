// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "importers/Packages/DocumentProperties.hpp"
#include "importers/Packages/DocumentText.hpp"
#include "importers/Packages/XMLStream.hpp"

namespace nimbo {

/// Reads the text of bodies, headers, notes, comments, slides, drawings, diagrams and charts. What is deleted,
/// computed or only another form of something else is left out.
class OpenXMLTextHandler final : public XMLHandler {
 public:
  explicit OpenXMLTextHandler(DocumentText &text) noexcept : text_(text) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override;
  void endElement(std::string_view name) override;
  void characters(std::string_view text) override;

 private:
  DocumentText &text_;
  std::uint32_t depth_ = 0;
  /// The depth of the element that is left out with all in it; 0 outside.
  std::uint32_t skippedDepth_ = 0;
  /// The same of the element whose text counts, and of the texts that a chart shows.
  std::uint32_t textDepth_ = 0, chartTextDepth_ = 0;
};

/// The texts that cells share.
class SharedStrings {
 public:
  explicit SharedStrings(DocumentBudget &budget) noexcept : budget_(budget) {}

  void append(std::string_view text);
  void endString();
  /// The text of the index, which is borrowed; empty when there is none.
  std::string_view string(std::size_t index) const noexcept;

 private:
  DocumentBudget &budget_;
  std::string texts_;
  std::vector<std::uint32_t> ends_;
};

/// Reads the list of shared texts.
class SharedStringsHandler final : public XMLHandler {
 public:
  explicit SharedStringsHandler(SharedStrings &strings) noexcept : strings_(strings) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override;
  void endElement(std::string_view name) override;
  void characters(std::string_view text) override;

 private:
  SharedStrings &strings_;
  bool isInText_ = false, isInPronunciation_ = false;
};

/// Reads the cells of a sheet, each row as a line.
class WorksheetHandler final : public XMLHandler {
 public:
  WorksheetHandler(DocumentText &text, const SharedStrings &strings) noexcept
      : text_(text), strings_(strings) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override;
  void endElement(std::string_view name) override;
  void characters(std::string_view text) override;

 private:
  enum class Kind { value, shared, boolean };

  DocumentText &text_;
  const SharedStrings &strings_;
  std::string value_;
  Kind kind_ = Kind::value;
  bool isInValue_ = false, isInPronunciation_ = false;
};

/// Reads what a document says of itself.
class OpenXMLPropertiesHandler final : public XMLHandler {
 public:
  explicit OpenXMLPropertiesHandler(DocumentProperties &properties) noexcept : properties_(properties) {}

  void startElement(std::string_view name, const XMLAttributes &attributes) override;
  void endElement(std::string_view name) override;
  void characters(std::string_view text) override;

 private:
  DocumentProperties &properties_;
  std::string value_;
};

}  // namespace nimbo
