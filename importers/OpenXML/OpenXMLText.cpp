// SPDX-License-Identifier: Apache-2.0
#include "importers/OpenXML/OpenXMLText.hpp"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <optional>

namespace nimbo {
namespace {

/// Properties are cut behind so many bytes.
constexpr std::size_t kMaximumPropertyBytes = 64u << 10;
/// No cell is longer.
constexpr std::size_t kMaximumCellBytes = 1u << 20;
/// Shared texts behind so many bytes are not there.
constexpr std::size_t kMaximumSharedBytes = 64u << 20;

/// What such a property holds that is a list.
constexpr std::string_view kPersonSeparators = ";";
constexpr std::string_view kKeywordSeparators = ",;";

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

std::optional<std::uint32_t> numberOfText(std::string_view text) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

void appendUpTo(std::size_t maximumBytes, std::string &value, std::string_view text) {
  value += text.substr(0, maximumBytes - std::min(value.size(), maximumBytes));
}

}  // namespace

void OpenXMLTextHandler::startElement(std::string_view name, const XMLAttributes &) {
  ++depth_;
  if (skippedDepth_ > 0 || textDepth_ > 0) return;
  // "Fallback" repeats the drawing beside it, "moveFrom" the text at its new place, "del" holds what was taken
  // out, and "rt" tells how text is pronounced. Properties of paragraphs have the places of tabs, and a field
  // on a slide is its number or the date.
  if (isOneOf(name, {"Fallback", "moveFrom", "del", "rt", "pPr", "fld"}))
    skippedDepth_ = depth_;
  else if (isOneOf(name, {"t", "text"}) || (name == "v" && chartTextDepth_ > 0))
    textDepth_ = depth_;
  else if (name == "strCache")
    chartTextDepth_ = depth_;
  else if (isOneOf(name, {"tab", "ptab"}))
    text_.append(std::string_view("\t"));
  else if (isOneOf(name, {"br", "cr", "p"}))
    text_.endLine();
  else if (name == "noBreakHyphen")
    text_.append(std::u16string_view(u"\u2011"));
  else if (name == "tr")
    text_.endRow();
}

void OpenXMLTextHandler::endElement(std::string_view name) {
  if (textDepth_ == depth_) {
    textDepth_ = 0;
    if (name == "v") text_.endLine();
  }
  if (skippedDepth_ == depth_) skippedDepth_ = 0;
  if (chartTextDepth_ == depth_) chartTextDepth_ = 0;
  --depth_;
  if (skippedDepth_ > 0) return;
  // Comments on cells and slides have no paragraphs.
  if (isOneOf(name, {"p", "text"}))
    text_.endLine();
  else if (name == "tc")
    text_.endCell();
  else if (name == "tr")
    text_.endRow();
}

void OpenXMLTextHandler::characters(std::string_view text) {
  if (textDepth_ > 0) text_.append(text);
}

void SharedStrings::append(std::string_view text) {
  if (texts_.size() + text.size() > kMaximumSharedBytes)
    return budget_.fail(ErrorCode::incomplete, "only the first 64 MiB of the texts of cells are read");
  texts_ += text;
}

void SharedStrings::endString() {
  if (ends_.size() < kMaximumSharedBytes / sizeof ends_[0])
    ends_.push_back(static_cast<std::uint32_t>(texts_.size()));
}

std::string_view SharedStrings::string(std::size_t index) const noexcept {
  if (index >= ends_.size()) return {};
  const std::uint32_t begin = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(texts_).substr(begin, ends_[index] - begin);
}

void SharedStringsHandler::startElement(std::string_view name, const XMLAttributes &) {
  if (name == "rPh") isInPronunciation_ = true;
  if (name == "t") isInText_ = !isInPronunciation_;
}

void SharedStringsHandler::endElement(std::string_view name) {
  isInText_ = false;
  if (name == "rPh") isInPronunciation_ = false;
  if (name == "si") strings_.endString();
}

void SharedStringsHandler::characters(std::string_view text) {
  if (isInText_) strings_.append(text);
}

void WorksheetHandler::startElement(std::string_view name, const XMLAttributes &attributes) {
  if (name == "c") {
    const std::string_view type = attributes.value("t").value_or("");
    kind_ = type == "s" ? Kind::shared : type == "b" ? Kind::boolean : Kind::value;
    value_.clear();
  } else if (name == "rPh") {
    isInPronunciation_ = true;
  } else if (isOneOf(name, {"v", "t"})) {
    isInValue_ = !isInPronunciation_;
  }
}

void WorksheetHandler::endElement(std::string_view name) {
  isInValue_ = false;
  if (name == "rPh") {
    isInPronunciation_ = false;
  } else if (name == "c") {
    if (kind_ == Kind::shared)
      text_.append(strings_.string(numberOfText(value_).value_or(UINT32_MAX)));
    else if (kind_ == Kind::boolean)
      text_.append(std::string_view(value_ == "1" ? "TRUE" : "FALSE"));
    else
      text_.append(value_);
    text_.endCell();
  } else if (name == "row") {
    text_.endRow();
  }
}

void WorksheetHandler::characters(std::string_view text) {
  if (isInValue_) appendUpTo(kMaximumCellBytes, value_, text);
}

void OpenXMLPropertiesHandler::startElement(std::string_view, const XMLAttributes &) {
  value_.clear();
}

void OpenXMLPropertiesHandler::endElement(std::string_view name) {
  const std::string value = simplifiedText(value_);
  value_.clear();
  if (value.empty()) return;
  if (std::string *const text = properties_.textOfElement(name))
    *text = value;
  else if (name == "creator")
    properties_.authors = listOfText(value, kPersonSeparators);
  else if (name == "keywords")
    properties_.keywords = listOfText(value, kKeywordSeparators);
  else if (name == "created")
    properties_.created = dateOfText(value);
  else if (name == "modified")
    properties_.modified = dateOfText(value);
  else if (name == "Application")
    properties_.application = value;
  else if (name == "Company")
    properties_.organization = value;
  else if (isOneOf(name, {"Pages", "Slides"}))
    properties_.pages = numberOfText(value);
  else if (name == "Words")
    properties_.words = numberOfText(value);
}

void OpenXMLPropertiesHandler::characters(std::string_view text) {
  appendUpTo(kMaximumPropertyBytes, value_, text);
}

}  // namespace nimbo
