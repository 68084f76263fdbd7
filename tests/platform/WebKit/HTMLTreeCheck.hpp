// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo {

/// Whether all links between the nodes agree, each node in a tree is met once, and no element is deeper than
/// the limit.
inline bool isSoundTree(const HTMLDocument &document, std::uint32_t maximumDepth) {
  std::vector<std::uint32_t> depths(document.nodeCount());
  for (HTMLNodeIndex root = 0; root < document.nodeCount(); ++root) {
    const HTMLNodeKind kind = document.node(root).kind;
    if (kind != HTMLNodeKind::document && kind != HTMLNodeKind::templateContents) continue;
    if (document.node(root).parent != kNoHTMLNode) return false;
    for (HTMLNodeIndex i = root; i != kNoHTMLNode; i = document.nextInTree(i, root)) {
      const HTMLNode &node = document.node(i);
      if (i != root) {
        if (depths[i] != 0) return false;
        depths[i] = depths[node.parent] + 1;
        if (node.isElement() && depths[i] > maximumDepth) return false;
      }
      HTMLNodeIndex previous = kNoHTMLNode;
      for (HTMLNodeIndex child = node.firstChild; child != kNoHTMLNode;
           child = document.node(child).nextSibling) {
        if (document.node(child).parent != i || document.node(child).previousSibling != previous) return false;
        previous = child;
      }
      if (node.lastChild != previous || node.isOpen) return false;
    }
  }
  return true;
}

}  // namespace nimbo
