// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "importers/Packages/DocumentBudget.hpp"

struct XML_ParserStruct;

namespace nimbo {

/// The attributes of an element; borrowed for the duration of one call.
class XMLAttributes {
 public:
  explicit XMLAttributes(const char **pairs) noexcept : pairs_(pairs) {}
  /// The value of the attribute, whatever its prefix; nothing when there is none.
  std::optional<std::string_view> value(std::string_view localName) const noexcept;
  /// The same of the attribute of this name that has a prefix.
  std::optional<std::string_view> prefixedValue(std::string_view localName) const noexcept;
  /// The value as a number from 0 on; nothing when there is none.
  std::optional<std::uint32_t> number(std::string_view localName) const noexcept;

 private:
  const char **pairs_;
};

/// What is told of XML as it is read. Names come without their prefixes, text as UTF-8 in pieces.
class XMLHandler {
 public:
  XMLHandler() = default;
  XMLHandler(const XMLHandler &) = delete;
  XMLHandler &operator=(const XMLHandler &) = delete;
  virtual ~XMLHandler() = default;

  virtual void startElement(std::string_view name, const XMLAttributes &attributes) = 0;
  virtual void endElement(std::string_view) {}
  virtual void characters(std::string_view) {}
};

/// Reads XML piece by piece, in little memory however long and deep it is. XML that declares entities is read
/// up to them: no document needs any.
class XMLStream {
 public:
  /// The memory for open elements, names and a single tag; XML that needs more is read up to there.
  static constexpr std::size_t kMaximumMemoryBytes = std::size_t{32} << 20;

  /// Both are borrowed.
  XMLStream(XMLHandler &handler, DocumentBudget &budget);
  XMLStream(const XMLStream &) = delete;
  XMLStream &operator=(const XMLStream &) = delete;
  ~XMLStream();

  /// Reads on; no bytes are the end. Whether to go on: not when the XML is damaged, or the budget spent. What
  /// is wrong goes to the budget.
  bool read(std::string_view bytes);

 private:
  struct Calls;

  XMLHandler &handler_;
  DocumentBudget &budget_;
  XML_ParserStruct *parser_;
  /// What the handler raised: it must not pass through the parser.
  bool isFailed_ = false;
};

}  // namespace nimbo
