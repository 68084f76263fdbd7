// SPDX-License-Identifier: Apache-2.0
#include <gumbo.h>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "tests/platform/WebKit/TreeText.hpp"

namespace nimbo {
namespace {

std::string nameOf(const GumboElement &element) {
  GumboStringPiece tag = element.original_tag;
  if (tag.data) gumbo_tag_from_original_text(&tag);
  const bool isSVG = element.tag_namespace == GUMBO_NAMESPACE_SVG && tag.data;
  if (const char *const svg = isSVG ? gumbo_normalize_svg_tagname(&tag) : nullptr) return svg;
  if (element.tag != GUMBO_TAG_UNKNOWN) return gumbo_normalized_tagname(element.tag);
  std::string name(tag.data, tag.length);
  for (char &c : name) c = toASCIILower(c);
  return name;
}

void addElement(TreeText &text, const GumboElement &element, std::size_t level) {
  constexpr const char *kNameSpaces[] = {"", "svg ", "math "}, *kPrefixes[] = {"", "xlink:", "xml:", ""};
  std::vector<std::string> attributes;
  for (unsigned i = 0; i < element.attributes.length; ++i) {
    const auto &one = *static_cast<const GumboAttribute *>(element.attributes.data[i]);
    attributes.push_back(kPrefixes[one.attr_namespace] + std::string(one.name) + "=\"" + one.value + "\"");
  }
  text.addElement(level, kNameSpaces[element.tag_namespace], nameOf(element), std::move(attributes));
}

/// Pages of tests are small: this may call itself.
void addChildren(TreeText &text, const GumboVector &children, std::size_t level) {
  std::string joined;
  for (unsigned i = 0; i < children.length; ++i) {
    const auto &node = *static_cast<const GumboNode *>(children.data[i]);
    if (node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE) {
      const bool isTemplate = node.type == GUMBO_NODE_TEMPLATE;
      addElement(text, node.v.element, level);
      if (isTemplate) text.addContent(level + 1);
      addChildren(text, node.v.element.children, level + (isTemplate ? 2 : 1));
    } else if (node.type == GUMBO_NODE_COMMENT) {
      text.addComment(level, node.v.text.text);
    } else {
      // What goes in front of a table is not always one text.
      joined += node.v.text.text;
      const auto *const next =
          i + 1 < children.length ? static_cast<const GumboNode *>(children.data[i + 1]) : nullptr;
      if (next && (next->type == GUMBO_NODE_TEXT || next->type == GUMBO_NODE_WHITESPACE)) continue;
      text.addText(level, joined);
      joined.clear();
    }
  }
}

}  // namespace

std::string gumboTreeText(std::string_view page) {
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0;
  GumboOutput *const output = gumbo_parse_with_options(&options, page.data(), page.size());
  TreeText text;
  const GumboDocument &document = output->document->v.document;
  if (document.has_doctype) text.addDoctype(0, document.name);
  addChildren(text, document.children, 0);
  gumbo_destroy_output(&options, output);
  return text.string();
}

}  // namespace nimbo
