// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/WebKit/TreeText.hpp"

#include <algorithm>
#include <utility>

#include "platform/Foundation/NSString.hpp"

namespace nimbo {
namespace {

std::string bytesOf(std::u16string_view units) {
  return NSString::stringWithCharacters(units).UTF8String();
}

void addElement(TreeText &text, const HTMLDocument &document, const HTMLNode &node, std::size_t level) {
  constexpr const char *kNameSpaces[] = {"", "svg ", "math "};
  std::vector<std::string> attributes;
  for (const HTMLAttribute &one : document.attributes(node))
    attributes.push_back(bytesOf(document.atoms().text(one.name)) + "=\"" + bytesOf(document.value(one)) +
                         "\"");
  text.addElement(level, kNameSpaces[static_cast<int>(node.nameSpace)],
                  bytesOf(document.atoms().text(node.name)), std::move(attributes));
}

}  // namespace

void TreeText::addLine(std::size_t level, std::string_view content) {
  string_.append(2 * level, ' ').append(content).push_back('\n');
}

void TreeText::addDoctype(std::size_t level, std::string_view name) {
  addLine(level, "<!DOCTYPE " + std::string(name) + ">");
}

void TreeText::addElement(std::size_t level, std::string_view nameSpace, std::string_view name,
                          std::vector<std::string> attributes) {
  addLine(level, "<" + std::string(nameSpace).append(name) + ">");
  std::ranges::sort(attributes);
  for (const std::string &one : attributes) addLine(level + 1, one);
}

void TreeText::addText(std::size_t level, std::string_view text) {
  addLine(level, "\"" + std::string(text) + "\"");
}

void TreeText::addComment(std::size_t level, std::string_view text) {
  addLine(level, "<!-- " + std::string(text) + " -->");
}

void TreeText::addContent(std::size_t level) {
  addLine(level, "content");
}

std::string treeText(const HTMLDocument &document, HTMLNodeIndex root) {
  TreeText text;
  std::vector<std::pair<HTMLNodeIndex, std::size_t>> waiting;
  const auto waitForChildren = [&](HTMLNodeIndex parent, std::size_t level) {
    for (auto i = document.node(parent).lastChild; i != kNoHTMLNode; i = document.node(i).previousSibling)
      waiting.emplace_back(i, level);
  };
  waitForChildren(root, 0);
  while (!waiting.empty()) {
    const auto [index, level] = waiting.back();
    waiting.pop_back();
    const HTMLNode &node = document.node(index);
    if (node.kind == HTMLNodeKind::doctype) text.addDoctype(level, bytesOf(document.atoms().text(node.name)));
    if (node.kind == HTMLNodeKind::text) text.addText(level, bytesOf(document.text(node)));
    if (node.kind == HTMLNodeKind::comment) text.addComment(level, bytesOf(document.text(node)));
    if (node.kind == HTMLNodeKind::templateContents) text.addContent(level);
    if (node.isElement()) addElement(text, document, node, level);
    waitForChildren(index, level + 1);
    if (node.isHTML("template"_atom)) waiting.emplace_back(document.templateContents(index), level + 1);
  }
  return text.string();
}

}  // namespace nimbo
