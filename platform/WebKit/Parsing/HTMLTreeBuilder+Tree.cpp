// SPDX-License-Identifier: Apache-2.0
//
// How nodes come into the tree.
#include <algorithm>

#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

namespace nimbo {

HTMLNodeIndex HTMLTreeBuilder::makeNode(HTMLNodeKind kind) {
  const HTMLNodeIndex index = document_.nodeCount();
  document_.nodes_.emplace_back().kind = kind;
  return index;
}

HTMLNodeIndex HTMLTreeBuilder::makeElement(HTMLAtom name, HTMLNamespace nameSpace, std::uint32_t firstAttribute,
                                           std::uint32_t count) {
  const HTMLNodeIndex index = makeNode(HTMLNodeKind::element);
  HTMLNode &element = document_.nodes_.back();
  element.name = name;
  element.nameSpace = nameSpace;
  element.start = firstAttribute;
  element.count = count;
  if (element.isHTML("template"_atom)) makeNode(HTMLNodeKind::templateContents);
  return index;
}

void HTMLTreeBuilder::insert(HTMLNodeIndex node, Place place) {
  std::vector<HTMLNode> &nodes = document_.nodes_;
  HTMLNode &parent = nodes[place.parent];
  HTMLNode &inserted = nodes[node];
  inserted.parent = place.parent;
  inserted.nextSibling = place.before;
  HTMLNodeIndex &behind = place.before == kNoHTMLNode ? parent.lastChild : nodes[place.before].previousSibling;
  inserted.previousSibling = behind;
  (behind == kNoHTMLNode ? parent.firstChild : nodes[behind].nextSibling) = node;
  behind = node;
}

void HTMLTreeBuilder::remove(HTMLNodeIndex node) {
  std::vector<HTMLNode> &nodes = document_.nodes_;
  HTMLNode &removed = nodes[node];
  if (removed.parent == kNoHTMLNode) return;
  HTMLNode &parent = nodes[removed.parent];
  (removed.previousSibling == kNoHTMLNode ? parent.firstChild : nodes[removed.previousSibling].nextSibling) =
      removed.nextSibling;
  (removed.nextSibling == kNoHTMLNode ? parent.lastChild : nodes[removed.nextSibling].previousSibling) =
      removed.previousSibling;
  removed.parent = removed.previousSibling = removed.nextSibling = kNoHTMLNode;
}

/// Moves all children to an element without any.
void HTMLTreeBuilder::moveChildren(HTMLNodeIndex from, HTMLNodeIndex to) {
  std::vector<HTMLNode> &nodes = document_.nodes_;
  for (HTMLNodeIndex child = nodes[from].firstChild; child != kNoHTMLNode; child = nodes[child].nextSibling)
    nodes[child].parent = to;
  nodes[to].firstChild = nodes[from].firstChild;
  nodes[to].lastChild = nodes[from].lastChild;
  nodes[from].firstChild = nodes[from].lastChild = kNoHTMLNode;
}

/// The place of what is inserted into an open element.
HTMLTreeBuilder::Place HTMLTreeBuilder::placeIn(const Entry &target) const {
  HTMLNodeIndex parent = target.node;
  if (isFostering_ && (target.traits & kFostersParents) != 0) {
    const Position table = open_.top("table"_atom), lastTemplate = open_.top("template"_atom);
    if (table > lastTemplate) {
      // No script has taken it out of its parent.
      const HTMLNodeIndex element = open_.at(table).node;
      return {node(element).parent, element};
    }
    parent = open_.at(lastTemplate != 0 ? lastTemplate : 1).node;
  }
  if (node(parent).isHTML("template"_atom)) parent = document_.templateContents(parent);
  return {parent};
}

/// Opens an element, which end tags call by a name in small letters.
void HTMLTreeBuilder::pushElement(HTMLNodeIndex index, HTMLAtom name, ElementTraits traits) {
  open_.push(index, name, node(index).nameSpace, traits);
  greatestDepth_ = std::max(greatestDepth_, open_.size());
}

/// Inserts the element of a start tag and opens it.
HTMLNodeIndex HTMLTreeBuilder::insertElement(const HTMLToken &token) {
  const HTMLNodeIndex index =
      makeElement(token.name, HTMLNamespace::html, token.firstAttribute, token.attributeCount);
  insert(index, place());
  pushElement(index, token.name, traitsOf(token.name, HTMLNamespace::html));
  return index;
}

/// Inserts an element without attributes and opens it.
HTMLNodeIndex HTMLTreeBuilder::insertElement(HTMLAtom name) {
  HTMLToken token;
  token.name = name;
  return insertElement(token);
}

/// Inserts an element that cannot have content.
void HTMLTreeBuilder::insertEmptyElement(const HTMLToken &token) {
  insertElement(token);
  open_.pop();
}

void HTMLTreeBuilder::insertComment(const HTMLToken &token, HTMLNodeIndex parent) {
  const HTMLNodeIndex index = makeNode(HTMLNodeKind::comment);
  HTMLNode &comment = document_.nodes_.back();
  comment.start = token.text.start;
  comment.count = token.text.count;
  comment.isOwnText = token.text.isOwn;
  insert(index, {parent});
}

void HTMLTreeBuilder::insertComment(const HTMLToken &token) {
  insertComment(token, place().parent);
}

void HTMLTreeBuilder::insertText(HTMLTextRange text) {
  const Place where = place();
  const HTMLNodeIndex before =
      where.before == kNoHTMLNode ? node(where.parent).lastChild : node(where.before).previousSibling;
  if (before != kNoHTMLNode && node(before).kind == HTMLNodeKind::text) return extendText(before, text);
  const HTMLNodeIndex index = makeNode(HTMLNodeKind::text);
  HTMLNode &inserted = document_.nodes_.back();
  inserted.start = text.start;
  inserted.count = text.count;
  inserted.isOwnText = text.isOwn;
  insert(index, where);
}

/// Puts more units behind a text. One that has to be moved for it a second time gets as much room again, so
/// that moves take no longer than the text is.
void HTMLTreeBuilder::extendText(HTMLNodeIndex index, HTMLTextRange text) {
  HTMLNode &extended = document_.nodes_[index];
  std::u16string &own = document_.ownText_;
  const std::uint32_t end = extended.start + extended.count;
  const auto room = textRooms_.empty() ? textRooms_.end() : textRooms_.find(index);
  if (text.isOwn == extended.isOwnText && text.start == end) {
    // It stands there already.
  } else if (extended.isOwnText && end == own.size()) {
    own.append(units(text));
  } else if (room != textRooms_.end() && room->second - end >= text.count) {
    std::ranges::copy(units(text), own.begin() + end);
  } else {
    const bool wasMoved = extended.isOwnText;
    const auto start = static_cast<std::uint32_t>(own.size());
    own.append(document_.text(extended));
    own.append(units(text));
    extended.start = start;
    extended.isOwnText = true;
    if (wasMoved) {
      own.resize(own.size() + (own.size() - start));
      textRooms_[index] = static_cast<std::uint32_t>(own.size());
    }
  }
  extended.count += text.count;
}

/// Gives an element the attributes of a tag that it does not have.
void HTMLTreeBuilder::mergeAttributes(HTMLNodeIndex index, const HTMLToken &token) {
  std::vector<HTMLAttribute> &attributes = document_.attributes_;
  HTMLNode &element = document_.nodes_[index];
  std::vector<HTMLAttribute> merged(attributes.begin() + element.start,
                                    attributes.begin() + element.start + element.count);
  for (std::uint32_t i = 0; i < token.attributeCount && merged.size() < limits_.attributes; ++i) {
    const HTMLAttribute &added = attributes[token.firstAttribute + i];
    if (std::ranges::find(merged, added.name, &HTMLAttribute::name) == merged.end()) merged.push_back(added);
  }
  if (merged.size() == element.count) return;
  element.start = static_cast<std::uint32_t>(attributes.size());
  element.count = static_cast<std::uint32_t>(merged.size());
  attributes.insert(attributes.end(), merged.begin(), merged.end());
}

/// Puts an element that is deeper in the tree than the limit behind the one that it is in, with all that
/// follows it there.
void HTMLTreeBuilder::limitDepth(HTMLNodeIndex root) {
  std::vector<HTMLNode> &nodes = document_.nodes_;
  std::uint32_t depth = 0;
  for (HTMLNodeIndex index = root;;) {
    if (depth == limits_.depth) moveElementsBehind(index);
    if (nodes[index].firstChild != kNoHTMLNode) {
      index = nodes[index].firstChild;
      ++depth;
      continue;
    }
    while (index != root && nodes[index].nextSibling == kNoHTMLNode) {
      index = nodes[index].parent;
      --depth;
    }
    if (index == root) return;
    index = nodes[index].nextSibling;
  }
}

/// Makes the children of a node its next siblings, from the first element among them on.
void HTMLTreeBuilder::moveElementsBehind(HTMLNodeIndex index) {
  std::vector<HTMLNode> &nodes = document_.nodes_;
  HTMLNode &left = nodes[index];
  HTMLNodeIndex first = left.firstChild;
  while (first != kNoHTMLNode && !nodes[first].isElement()) first = nodes[first].nextSibling;
  if (first == kNoHTMLNode) return;
  for (HTMLNodeIndex child = first; child != kNoHTMLNode; child = nodes[child].nextSibling)
    nodes[child].parent = left.parent;
  const HTMLNodeIndex last = left.lastChild, behind = left.nextSibling;
  left.lastChild = nodes[first].previousSibling;
  (left.lastChild == kNoHTMLNode ? left.firstChild : nodes[left.lastChild].nextSibling) = kNoHTMLNode;
  left.nextSibling = first;
  nodes[first].previousSibling = index;
  nodes[last].nextSibling = behind;
  (behind == kNoHTMLNode ? nodes[left.parent].lastChild : nodes[behind].previousSibling) = last;
}

}  // namespace nimbo
