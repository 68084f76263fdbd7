// SPDX-License-Identifier: Apache-2.0
#include "importers/OpenDocument/OpenDocumentHandler.hpp"

#include <algorithm>
#include <initializer_list>

namespace nimbo {
namespace {

constexpr std::size_t kMaximumPropertyBytes = 64u << 10;
constexpr std::size_t kMaximumKeywords = 1000;
/// Blanks beyond so many in a row are left out.
constexpr std::uint32_t kMaximumBlanks = 64;

constexpr std::string_view kWhiteSpace = " \t\r\n";

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

}  // namespace

DocumentText &OpenDocumentHandler::text() noexcept {
  if (commentDepth_ > 0) return texts_.comments;
  if (noteDepth_ > 0) return texts_.notes;
  return headerDepth_ > 0 ? texts_.headers : texts_.body;
}

void OpenDocumentHandler::startElement(std::string_view name, const XMLAttributes &attributes) {
  ++depth_;
  if (skippedDepth_ > 0) return;
  if (propertiesDepth_ > 0) return startProperty(name, attributes);
  if (isOneOf(name, {"tracked-changes", "forms", "scripts", "script", "binary-data", "note-citation",
                     "ruby-text", "title", "desc", "event-listeners", "page-number"}) ||
      (commentDepth_ > 0 && isOneOf(name, {"creator", "date", "date-string", "sender-initials"}))) {
    skippedDepth_ = depth_;
  } else if (name == "meta") {
    propertiesDepth_ = depth_;
  } else if (name == "note-body") {
    noteDepth_ = depth_;
  } else if (name == "annotation") {
    commentDepth_ = depth_;
  } else if (isOneOf(name,
                     {"header", "footer", "header-left", "footer-left", "header-first", "footer-first"})) {
    headerDepth_ = depth_;
  } else if (isOneOf(name, {"p", "h"})) {
    ++paragraphs_;
    text().endLine();
    endsInWhiteSpace_ = true;
  } else if (name == "spreadsheet") {
    isSpreadsheet_ = true;
  } else if (name == "table" && isSpreadsheet_) {
    text().endLine();
    text().append(attributes.value("name").value_or(""));
  } else if (name == "table-row") {
    text().endRow();
  } else if (paragraphs_ > 0 && name == "s") {
    text().append(std::string(std::clamp(attributes.number("c").value_or(1), 1u, kMaximumBlanks), ' '));
  } else if (paragraphs_ > 0 && name == "tab") {
    text().append(std::string_view("\t"));
  } else if (name == "line-break") {
    text().endLine();
    endsInWhiteSpace_ = true;
  }
}

void OpenDocumentHandler::endElement(std::string_view name) {
  const std::uint32_t depth = depth_--;
  if (skippedDepth_ > 0) {
    if (skippedDepth_ == depth) skippedDepth_ = 0;
    return;
  }
  if (propertiesDepth_ > 0) {
    if (propertiesDepth_ == depth) propertiesDepth_ = 0;
    return endProperty(name);
  }
  if (isOneOf(name, {"p", "h"})) {
    --paragraphs_;
    text().endLine();
  } else if (isOneOf(name, {"table-cell", "covered-table-cell"})) {
    text().endCell();
  } else if (name == "table-row") {
    text().endRow();
  }
  for (std::uint32_t *const opened : {&noteDepth_, &commentDepth_, &headerDepth_})
    if (*opened == depth) *opened = 0;
}

void OpenDocumentHandler::characters(std::string_view text) {
  if (skippedDepth_ > 0) return;
  if (propertiesDepth_ > 0)
    value_ += text.substr(0, kMaximumPropertyBytes - std::min(value_.size(), kMaximumPropertyBytes));
  else if (paragraphs_ > 0)
    appendCollapsed(text);
}

/// White space counts as one blank, and as none at the beginning of a paragraph.
void OpenDocumentHandler::appendCollapsed(std::string_view text) {
  while (!text.empty()) {
    const std::size_t blank = text.find_first_not_of(kWhiteSpace);
    if (blank > 0 && !endsInWhiteSpace_) {
      this->text().append(std::string_view(" "));
      endsInWhiteSpace_ = true;
    }
    if (blank == text.npos) return;
    const std::size_t end = std::min(text.find_first_of(kWhiteSpace, blank), text.size());
    this->text().append(text.substr(blank, end - blank));
    endsInWhiteSpace_ = false;
    text.remove_prefix(end);
  }
}

void OpenDocumentHandler::startProperty(std::string_view name, const XMLAttributes &attributes) {
  value_.clear();
  if (name != "document-statistic") return;
  properties_.pages = attributes.number("page-count");
  properties_.words = attributes.number("word-count");
}

void OpenDocumentHandler::endProperty(std::string_view name) {
  const std::string value = simplifiedText(value_);
  value_.clear();
  if (value.empty()) return;
  if (std::string *const text = properties_.textOfElement(name))
    *text = value;
  else if (name == "generator")
    properties_.application = value;
  else if (name == "initial-creator" || (name == "creator" && properties_.authors.empty()))
    properties_.authors = {value};
  else if (name == "keyword" && properties_.keywords.size() < kMaximumKeywords)
    properties_.keywords.push_back(value);
  else if (name == "creation-date")
    properties_.created = dateOfText(value);
  else if (name == "date")
    properties_.modified = dateOfText(value);
}

}  // namespace nimbo
