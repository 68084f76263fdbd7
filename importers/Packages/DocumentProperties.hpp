// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "importers/ImporterPlugIn.hpp"
#include "importers/Packages/DocumentBudget.hpp"
#include "platform/Foundation/NSDate.hpp"
#include "platform/Foundation/NSString.hpp"

namespace nimbo {

/// What a document says of itself, beside its text. Texts are UTF-8; those that are empty are not there.
struct DocumentProperties {
  std::string title;
  std::string subject;
  std::string description;
  std::string language;
  /// The program that the document was made with.
  std::string application;
  std::string organization;
  std::vector<std::string> authors;
  std::vector<std::string> keywords;
  std::optional<NSDate> created;
  std::optional<NSDate> modified;
  std::optional<std::uint32_t> pages;
  std::optional<std::uint32_t> words;

  /// The text that an element of the Dublin Core sets alike in office documents; nil when there is none.
  std::string *textOfElement(std::string_view name) noexcept;

  void setAttributes(Attributes &attributes) const;
};

/// Sets what was found of a document, and the reason why it is not whole, or that it holds no text.
void setDocument(Attributes &attributes, const DocumentProperties &properties, const NSString &text,
                 DocumentBudget &budget);

/// The parts of a list, trimmed, without empty ones; `separators` are those that part them.
std::vector<std::string> listOfText(std::string_view text, std::string_view separators);

/// The text without white space at its ends, and with one blank for each other run of it.
std::string simplifiedText(std::string_view text);

/// The moment that a text names by ISO 8601. Programs mostly write UTC, with a zone or without one, and so that
/// is meant where there is none. Nothing for other texts.
std::optional<NSDate> dateOfText(std::string_view text);

}  // namespace nimbo
