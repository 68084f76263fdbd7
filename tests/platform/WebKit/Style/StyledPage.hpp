// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/WebKit/Style/StyleResolver.hpp"

namespace nimbo::detail {

std::string utf8(std::u16string_view text);
std::string described(CSSColor color);

/// What a test says of a property.
std::string described(const ComputedStyle &style, std::string_view property);

/// A page and the styles of its elements.
class StyledPage {
 public:
  explicit StyledPage(std::u16string text, std::vector<AuthorSheet> sheets = {})
      : text_(std::move(text)), document_(HTMLDocument::documentWithText(text_)), sheets_(std::move(sheets)) {
    for (HTMLNodeIndex i = 0; i != kNoHTMLNode; i = document_.nextInTree(i)) {
      const HTMLNode &node = document_.node(i);
      if (!node.isHTML("style"_atom) || node.firstChild == kNoHTMLNode) continue;
      const std::u16string_view sheet = document_.text(document_.node(node.firstChild));
      sheets_.push_back(
          {NSString::stringWithCharacters(sheet), document_.attribute(node, "media"_atom).value_or(u""), {}});
    }
    resolver_.emplace(document_, sheets_);
  }

  HTMLDocument &document() { return document_; }
  StyleResolver &resolver() { return *resolver_; }

  HTMLNodeIndex elementWithId(std::u16string_view id) {
    HTMLNodeIndex i = 0;
    while (i != kNoHTMLNode &&
           !(document_.node(i).isElement() && document_.attribute(document_.node(i), "id"_atom) == id))
      i = document_.nextInTree(i);
    return i;
  }
  ComputedStyle styleOf(HTMLNodeIndex element) {
    if (element == document_.rootElement()) return resolver_->rootStyle();
    const ComputedStyle parent = styleOf(document_.node(element).parent);
    return resolver_->styleOf(element, parent);
  }

 private:
  std::u16string text_;
  HTMLDocument document_;
  std::vector<AuthorSheet> sheets_;
  std::optional<StyleResolver> resolver_;
};

/// What the element with the id "x" must have. Pages have the doctype of today unless they bring one.
struct StyledCase {
  std::u16string page;
  std::string_view property;
  std::string expected;
};

/// Looks at one property of the element with the id "x" in each page.
void expect(const std::vector<StyledCase> &cases);

}  // namespace nimbo::detail
