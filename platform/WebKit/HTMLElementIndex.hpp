// SPDX-License-Identifier: Apache-2.0
//
// What selectors ask of elements, each in one step. Any thread may read an index.
//
//     HTMLDocument page = HTMLDocument::documentWithText(u"<ul><li id=a>One<li class='b c'>Two</ul>");
//     const HTMLElementIndex index(page);
//     index.element(second).position;  // 2
//     index.classes(second);  // the atoms of "b" and "c"
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo {

/// The places of an element among its siblings, which are elements and counted from 1, and its texts as atoms.
struct HTMLElementFacts {
  /// `kNoHTMLNode` for a root, and below a document or template.
  HTMLNodeIndex parentElement = kNoHTMLNode;
  HTMLNodeIndex previousElement = kNoHTMLNode;
  HTMLNodeIndex nextElement = kNoHTMLNode;
  std::uint32_t position = 0;
  std::uint32_t positionFromEnd = 0;
  /// Among the siblings of its own name and namespace.
  std::uint32_t positionOfType = 0;
  std::uint32_t positionOfTypeFromEnd = 0;
  /// `kNoHTMLAtom` without an id. In quirks mode ids and classes are in small letters, because case means
  /// nothing there.
  HTMLAtom id = kNoHTMLAtom;
  std::uint32_t firstClass = 0;
  std::uint32_t classCount = 0;
  /// Whether it has neither elements nor text in it.
  bool isEmpty = true;
};

class HTMLElementIndex {
 public:
  /// Reads all elements of the document and gives atoms to their ids and classes. The index is right as long as
  /// the document lives, which does not change.
  explicit HTMLElementIndex(HTMLDocument &document);

  /// The facts of an element; empty ones of another node.
  const HTMLElementFacts &element(HTMLNodeIndex index) const NIMBO_LIFETIMEBOUND { return facts_[index]; }
  /// The atoms of an element's classes in their order.
  std::span<const HTMLAtom> classes(HTMLNodeIndex index) const NIMBO_LIFETIMEBOUND {
    return {classes_.data() + facts_[index].firstClass, facts_[index].classCount};
  }

 private:
  void readTexts(HTMLDocument &document, HTMLNodeIndex index);

  std::vector<HTMLElementFacts> facts_;
  std::vector<HTMLAtom> classes_;
};

}  // namespace nimbo
