// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/HTMLDocument.hpp"

#include <algorithm>

#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"
#include "platform/WebKit/Parsing/StopUnits.hpp"

namespace nimbo {
namespace {

/// A copy with a line feed for each carriage return, and for one with a line feed behind it.
std::u16string withoutCarriageReturns(std::u16string_view text) {
  static constexpr StopUnits kReturn({u'\r'});
  std::u16string normalized;
  normalized.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = kReturn.find(text, i);
    normalized.append(text.substr(i, end - i));
    if (end == text.size()) break;
    normalized += u'\n';
    i = end + (text.substr(end + 1, 1) == u"\n" ? 2 : 1);
  }
  return normalized;
}

}  // namespace

HTMLDocument::HTMLDocument(std::u16string_view text) : text_(text) {
  if (text.find(u'\r') != text.npos) normalizedText_ = withoutCarriageReturns(text);
  nodes_.emplace_back().kind = HTMLNodeKind::document;
}

HTMLDocument HTMLDocument::documentWithText(std::u16string_view text, const HTMLLimits &limits) {
  HTMLDocument document(text.substr(0, limits.units));
  HTMLTreeBuilder(document, limits).build();
  document.isCut_ |= text.size() > limits.units;
  return document;
}

HTMLNodeIndex HTMLDocument::nextInTree(HTMLNodeIndex index, HTMLNodeIndex root) const {
  const HTMLNodeIndex child = nodes_[index].firstChild;
  return child != kNoHTMLNode ? child : nextBehindSubtree(index, root);
}

HTMLNodeIndex HTMLDocument::nextBehindSubtree(HTMLNodeIndex index, HTMLNodeIndex root) const {
  for (; index != root && index != kNoHTMLNode; index = nodes_[index].parent)
    if (nodes_[index].nextSibling != kNoHTMLNode) return nodes_[index].nextSibling;
  return kNoHTMLNode;
}

std::optional<std::u16string_view> HTMLDocument::attribute(const HTMLNode &element, HTMLAtom name) const {
  if (!element.isElement()) return std::nullopt;
  for (const HTMLAttribute &one : attributes(element))
    if (one.name == name) return value(one);
  return std::nullopt;
}

}  // namespace nimbo
