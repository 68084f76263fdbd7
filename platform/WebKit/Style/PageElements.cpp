// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/PageElements.hpp"

namespace nimbo::detail {

PageElements::PageElements(const HTMLDocument &document, CSSNames &names, CSSMode mode)
    : elements_(names, mode), indices_(document.nodeCount(), kNoCSSElement) {
  const HTMLNodeIndex root = document.rootElement();
  std::vector<CSSAttribute> attributes;
  HTMLNodeIndex current = root;
  for (;;) {
    const HTMLNode &node = document.node(current);
    if (node.isElement()) {
      attributes.clear();
      for (const HTMLAttribute &attribute : document.attributes(node))
        attributes.push_back({document.atoms().text(attribute.name), document.value(attribute)});
      indices_[current] = elements_.begin(
          document.atoms().text(node.name), attributes,
          node.nameSpace == HTMLNamespace::html ? CSSElements::Kind::kHTML : CSSElements::Kind::kForeign);
      if (node.firstChild != kNoHTMLNode) {
        current = node.firstChild;
        continue;
      }
      elements_.end();
    } else if (node.kind == HTMLNodeKind::text && node.count != 0) {
      elements_.addText();
    }
    while (current != root && document.node(current).nextSibling == kNoHTMLNode) {
      current = document.node(current).parent;
      elements_.end();
    }
    if (current == root) return;
    current = document.node(current).nextSibling;
  }
}

}  // namespace nimbo::detail
