// SPDX-License-Identifier: Apache-2.0
#include "importers/Packages/DocumentProperties.hpp"

#include <utility>

#include "platform/Foundation/NSCalendarDate.hpp"

namespace nimbo {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\r\f\v";

void setText(Attributes &attributes, const char *name, const std::string &text) {
  if (!text.empty()) attributes.set(name, NSString::stringWithLossyUTF8String(text));
}

void setList(Attributes &attributes, const char *name, const std::vector<std::string> &texts) {
  // Nil without a text.
  NSArray list;
  for (const std::string &text : texts) list.addObject(NSString::stringWithLossyUTF8String(text));
  attributes.set(name, list);
}

std::vector<std::string> listOfOne(const std::string &text) {
  return text.empty() ? std::vector<std::string>() : std::vector{text};
}

}  // namespace

std::string *DocumentProperties::textOfElement(std::string_view name) noexcept {
  return name == "title"         ? &title
         : name == "subject"     ? &subject
         : name == "description" ? &description
         : name == "language"    ? &language
                                 : nullptr;
}

void DocumentProperties::setAttributes(Attributes &attributes) const {
  setText(attributes, "kMDItemTitle", title);
  setText(attributes, "kMDItemSubject", subject);
  setText(attributes, "kMDItemDescription", description);
  setText(attributes, "kMDItemCreator", application);
  setList(attributes, "kMDItemLanguages", listOfOne(language));
  setList(attributes, "kMDItemOrganizations", listOfOne(organization));
  setList(attributes, "kMDItemAuthors", authors);
  setList(attributes, "kMDItemKeywords", keywords);
  if (created) attributes.set("kMDItemContentCreationDate", *created);
  if (modified) attributes.set("kMDItemContentModificationDate", *modified);
  if (pages) attributes.set("kMDItemNumberOfPages", *pages);
  if (words) attributes.set("kMDItemWordCount", *words);
}

void setDocument(Attributes &attributes, const DocumentProperties &properties, const NSString &text,
                 DocumentBudget &budget) {
  properties.setAttributes(attributes);
  attributes.set("kMDItemTextContent", text);
  if (!text) budget.fail(ErrorCode::incomplete, "the document holds no text");
  attributes.setReason(budget.error());
}

std::vector<std::string> listOfText(std::string_view text, std::string_view separators) {
  std::vector<std::string> list;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(separators);
    if (std::string part = simplifiedText(text.substr(0, end)); !part.empty()) list.push_back(std::move(part));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
  return list;
}

std::string simplifiedText(std::string_view text) {
  std::string simplified;
  for (const char c : text) {
    const bool isWhite = kWhiteSpace.find(c) != kWhiteSpace.npos;
    if (!isWhite)
      simplified += c;
    else if (!simplified.empty() && simplified.back() != ' ')
      simplified += ' ';
  }
  if (simplified.ends_with(' ')) simplified.pop_back();
  return simplified;
}

std::optional<NSDate> dateOfText(std::string_view text) {
  return dateWithISO8601String(NSString::stringWithLossyUTF8String(simplifiedText(text)), u"UTC"_ns);
}

}  // namespace nimbo
