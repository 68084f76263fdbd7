// SPDX-License-Identifier: Apache-2.0
#include "platform/Documents/FlatOpenDocument.hpp"

#include <algorithm>
#include <new>
#include <pugixml.hpp>
#include <string>

#include "platform/Documents/FlatDocumentReader.hpp"
#include "platform/Documents/FlatDocumentStyles.hpp"
#include "platform/Documents/FlatDocumentValues.hpp"

namespace nimbo {
namespace {

/// A tree has a node of some hundred bytes for each.
constexpr std::ptrdiff_t kMaximumTags = 10'000'000, kMaximumAttributes = 20'000'000;
constexpr std::size_t kMaximumKeywords = 1000;

NSString textOf(const pugi::xml_node &node) {
  const std::string_view text = node.child_value();
  return text.empty() ? NSString() : NSString::stringWithLossyUTF8String(text);
}

std::optional<double> marginOf(const pugi::xml_node &layout, const char *name) {
  return detail::lengthInPoints(layout.attribute(name).value());
}

DocumentAttributes attributesOf(const pugi::xml_node &document) {
  DocumentAttributes result;
  result.documentType = u"NSOpenDocument"_ns;
  for (const pugi::xml_node &fact : document.child("office:meta").children()) {
    const std::string_view name = fact.name();
    if (name == "dc:title") result.title = textOf(fact);
    if (name == "dc:subject") result.subject = textOf(fact);
    if (name == "dc:description") result.comment = textOf(fact);
    if (name == "meta:initial-creator" || (name == "dc:creator" && !result.author))
      result.author = textOf(fact);
    if (name == "meta:creation-date") result.creationTime = detail::dateAndTime(fact.child_value());
    if (name == "dc:date") result.modificationTime = detail::dateAndTime(fact.child_value());
    if (name == "meta:keyword" && result.keywords.size() < kMaximumKeywords)
      if (NSString keyword = textOf(fact)) result.keywords.push_back(std::move(keyword));
    if (name == "meta:user-defined" && std::string_view(fact.attribute("meta:name").value()) == "Company")
      result.company = textOf(fact);
  }
  const pugi::xml_node layout = detail::FlatDocumentStyles(document).pageLayout();
  const auto width = marginOf(layout, "fo:page-width"), height = marginOf(layout, "fo:page-height");
  if (width && height) result.paperSize = NSSize{*width, *height};
  result.leftMargin = marginOf(layout, "fo:margin-left");
  result.rightMargin = marginOf(layout, "fo:margin-right");
  result.topMargin = marginOf(layout, "fo:margin-top");
  result.bottomMargin = marginOf(layout, "fo:margin-bottom");
  return result;
}

}  // namespace

NSAttributedString attributedStringWithFlatOpenDocument(const NSData &data, DocumentAttributes *attributes,
                                                        NSError *error) {
  const auto fail = [error](ErrorCode code, std::string_view reason) {
    setError(error, code, reason);
    return NSAttributedString();
  };
  const std::string_view xml = data.view();
  if (std::ranges::count(xml, '<') > kMaximumTags || std::ranges::count(xml, '=') > kMaximumAttributes)
    return fail(ErrorCode::tooLarge, "the document has too many elements");
  pugi::xml_document tree;
  const pugi::xml_parse_result parsed =
      tree.load_buffer(data.bytes(), data.length(), pugi::parse_default | pugi::parse_ws_pcdata);
  if (parsed.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!parsed) return fail(ErrorCode::damaged, std::string("the document is no XML: ") + parsed.description());
  const pugi::xml_node document = tree.child("office:document");
  if (!document.child("office:body")) return fail(ErrorCode::damaged, "the document is no flat OpenDocument");
  detail::FlatDocumentReader reader(document);
  NSAttributedString text = reader.read();
  if (attributes) *attributes = attributesOf(document);
  if (reader.isIncomplete()) setError(error, ErrorCode::incomplete, "the document has too much in one place");
  return text;
}

}  // namespace nimbo
