// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo {

/// A tree as text: a line for each node and attribute, two blanks in front for each level, attributes sorted.
/// An element is "<p>" or "<svg g>", a text "\"...\"", a comment "<!-- ... -->", what a template holds
/// "content".
class TreeText {
 public:
  void addDoctype(std::size_t level, std::string_view name);
  void addElement(std::size_t level, std::string_view nameSpace, std::string_view name,
                  std::vector<std::string> attributes);
  void addText(std::size_t level, std::string_view text);
  void addComment(std::size_t level, std::string_view text);
  void addContent(std::size_t level);

  const std::string &string() const { return string_; }

 private:
  void addLine(std::size_t level, std::string_view content);

  std::string string_;
};

/// What is below a node of the document.
std::string treeText(const HTMLDocument &document, HTMLNodeIndex root = HTMLDocument::kRoot);
/// What is below the root that Gumbo makes of the page.
std::string gumboTreeText(std::string_view page);

}  // namespace nimbo
