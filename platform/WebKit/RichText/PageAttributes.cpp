// SPDX-License-Identifier: Apache-2.0
#include <string>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/Trimming.hpp"
#include "platform/WebKit/RichText/PageText.hpp"

namespace nimbo::detail {

namespace {

/// The text with one blank for each sequence of them, and none at its ends; nil when nothing is left.
NSString collapsed(std::u16string_view text) {
  std::u16string result;
  for (const char16_t c : text)
    if (!isASCIIWhiteSpace(c))
      result += c;
    else if (!result.empty() && result.back() != u' ')
      result += u' ';
  if (result.ends_with(u' ')) result.pop_back();
  return result.empty() ? NSString() : NSString::stringWithCharacters(result);
}

std::vector<NSString> listOf(std::u16string_view keywords) {
  std::vector<NSString> list;
  while (!keywords.empty()) {
    const std::size_t end = std::min(keywords.find(u','), keywords.size());
    if (const NSString keyword = collapsed(keywords.substr(0, end))) list.push_back(keyword);
    keywords.remove_prefix(std::min(end + 1, keywords.size()));
  }
  return list;
}

void takeMeta(std::u16string_view name, std::u16string_view content, DocumentAttributes *attributes) {
  const struct {
    std::string_view name;
    NSString *value;
  } texts[] = {{"author", &attributes->author},
               {"subject", &attributes->subject},
               {"company", &attributes->company},
               {"copyright", &attributes->copyright},
               {"description", &attributes->comment}};
  name = trimmed(name, isASCIIWhiteSpace<char16_t>);
  if (equalsASCIINoCase(name, "keywords") && attributes->keywords.empty())
    attributes->keywords = listOf(content);
  for (const auto &text : texts)
    if (equalsASCIINoCase(name, text.name) && !*text.value) *text.value = collapsed(content);
}

}  // namespace

DocumentAttributes documentAttributesOfPage(const HTMLDocument &document) {
  DocumentAttributes attributes;
  attributes.documentType = u"NSHTML"_ns;
  if (document.title() != kNoHTMLNode) {
    std::u16string title;
    HTMLNodeIndex child = document.node(document.title()).firstChild;
    for (; child != kNoHTMLNode; child = document.node(child).nextSibling)
      if (document.node(child).kind == HTMLNodeKind::text) title += document.text(document.node(child));
    attributes.title = collapsed(title);
  }
  for (HTMLNodeIndex i = HTMLDocument::kRoot; i != kNoHTMLNode; i = document.nextInTree(i)) {
    const HTMLNode &node = document.node(i);
    if (!node.isHTML("meta"_atom)) continue;
    const auto name = document.attribute(node, "name"_atom);
    const auto content = document.attribute(node, "content"_atom);
    if (name && content) takeMeta(*name, *content, &attributes);
  }
  return attributes;
}

}  // namespace nimbo::detail
