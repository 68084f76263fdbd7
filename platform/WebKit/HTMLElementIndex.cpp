// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/HTMLElementIndex.hpp"

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Parsing/StopUnits.hpp"

namespace nimbo {
namespace {

constexpr StopUnits kBlanks({u' ', u'\t', u'\n', u'\f'});

/// Counts the elements of each kind below one parent after the other.
class TypeCounts {
 public:
  /// Counts the element; how many of its kind there are below this parent so far.
  std::uint32_t add(const HTMLNode &element, HTMLNodeIndex parent) {
    const std::size_t key =
        static_cast<std::size_t>(element.name) * 3 + static_cast<std::size_t>(element.nameSpace);
    if (key >= counts_.size()) counts_.resize(key * 2 + 1);
    Count &count = counts_[key];
    if (count.parent != parent) count = {parent, 0};
    return ++count.number;
  }

 private:
  struct Count {
    HTMLNodeIndex parent = kNoHTMLNode;
    std::uint32_t number = 0;
  };
  std::vector<Count> counts_;
};

}  // namespace

HTMLElementIndex::HTMLElementIndex(HTMLDocument &document) : facts_(document.nodeCount()) {
  TypeCounts fromStart, fromEnd;
  for (HTMLNodeIndex i = 0; i < document.nodeCount(); ++i) {
    const HTMLNode &parent = document.node(i);
    if (parent.isElement()) readTexts(document, i);
    std::uint32_t position = 0;
    HTMLNodeIndex previous = kNoHTMLNode;
    for (HTMLNodeIndex child = parent.firstChild; child != kNoHTMLNode;
         child = document.node(child).nextSibling) {
      const HTMLNode &node = document.node(child);
      if (node.kind == HTMLNodeKind::text) facts_[i].isEmpty = false;
      if (!node.isElement()) continue;
      facts_[i].isEmpty = false;
      HTMLElementFacts &facts = facts_[child];
      if (parent.isElement()) facts.parentElement = i;
      facts.previousElement = previous;
      if (previous != kNoHTMLNode) facts_[previous].nextElement = child;
      facts.position = ++position;
      facts.positionOfType = fromStart.add(node, i);
      previous = child;
    }
    for (; previous != kNoHTMLNode; previous = facts_[previous].previousElement) {
      facts_[previous].positionFromEnd = position - facts_[previous].position + 1;
      facts_[previous].positionOfTypeFromEnd = fromEnd.add(document.node(previous), i);
    }
  }
}

void HTMLElementIndex::readTexts(HTMLDocument &document, HTMLNodeIndex index) {
  HTMLElementFacts &facts = facts_[index];
  facts.firstClass = static_cast<std::uint32_t>(classes_.size());
  const bool isFolded = document.quirksMode() == HTMLQuirksMode::quirks;
  const auto atomOf = [&](std::u16string_view text) {
    return isFolded ? document.atoms().atomOfFolded(text) : document.atoms().atomOf(text);
  };
  for (const HTMLAttribute &attribute : document.attributes(document.node(index))) {
    const std::u16string_view value = document.value(attribute);
    if (attribute.name == "id"_atom) facts.id = atomOf(value);
    if (attribute.name != "class"_atom) continue;
    for (std::size_t i = 0; i < value.size();) {
      const std::size_t end = kBlanks.find(value, i);
      if (end > i) classes_.push_back(atomOf(value.substr(i, end - i)));
      i = end + 1;
    }
    facts.classCount = static_cast<std::uint32_t>(classes_.size()) - facts.firstClass;
  }
}

}  // namespace nimbo
