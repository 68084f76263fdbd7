// SPDX-License-Identifier: Apache-2.0
//
// The stack of open elements. Each entry knows the nearest entries of the kinds that the parser looks for, so
// that a question about the stack takes one step however deep it is. Positions count from 1, the root
// element's; 0 is that of no element. One thread uses a stack.
//
//     open.push(node, "p"_atom, HTMLNamespace::html, traits);
//     open.isInButtonScope("p"_atom);  // true
//     open.popThrough(open.top("p"_atom));
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/WebKit/Parsing/ElementTraits.hpp"

namespace nimbo {

class OpenElements {
 public:
  using Position = std::uint32_t;

  struct Entry {
    HTMLNodeIndex node = kNoHTMLNode;
    /// The name in small letters.
    HTMLAtom name = kNoHTMLAtom;
    HTMLNamespace nameSpace = HTMLNamespace::html;
    ElementTraits traits = 0;
    /// The next entry below of the same name, both of HTML or both not.
    Position sameName = 0;
    // The nearest entry with a trait, which may be this one.
    Position scope = 0;
    Position special = 0;
    Position listItemBound = 0;
    Position mode = 0;
    /// The nearest entry of HTML.
    Position html = 0;
  };

  /// Tells the nodes whether they are open.
  explicit OpenElements(std::vector<HTMLNode> &nodes) : nodes_(nodes), entries_(1) {}

  Position size() const { return static_cast<Position>(entries_.size() - 1); }
  const Entry &at(Position position) const { return entries_[position]; }
  /// The entry that was pushed last; an empty one when there is none.
  const Entry &current() const { return entries_.back(); }
  bool isCurrent(HTMLAtom html) const { return isHTML(current(), html); }
  static bool isHTML(const Entry &entry, HTMLAtom name) {
    return entry.name == name && entry.nameSpace == HTMLNamespace::html;
  }

  void push(HTMLNodeIndex node, HTMLAtom name, HTMLNamespace nameSpace, ElementTraits traits);
  void pop();
  /// Pops the entry at the position and those above it.
  void popThrough(Position position) {
    while (size() >= position && size() > 0) pop();
  }

  /// Takes an entry out, which takes a step for each one above it.
  void remove(Position position);
  /// Opens an element again that another stack position had.
  void push(const Entry &entry) { push(entry.node, entry.name, entry.nameSpace, entry.traits); }

  /// The highest element of HTML of this name.
  Position top(HTMLAtom html) const { return topOfKey(keyOf(html, HTMLNamespace::html)); }
  /// The highest element of another namespace whose name is this in small letters.
  Position topForeign(HTMLAtom name) const { return topOfKey(keyOf(name, HTMLNamespace::svg)); }
  /// Where the element is open; 0 when it is not.
  Position positionOf(HTMLNodeIndex node, HTMLAtom html) const;
  bool has(HTMLAtom html) const { return top(html) != 0; }

  // These are asked when the root is open, which ends each scope.
  bool isInScope(Position position) const { return position >= current().scope; }
  bool isInScope(HTMLAtom html) const { return isInScope(top(html)); }
  bool isInButtonScope(HTMLAtom html) const;
  bool isInListItemScope(HTMLAtom html) const;
  bool isInTableScope(HTMLAtom html) const;

 private:
  static std::size_t keyOf(HTMLAtom name, HTMLNamespace nameSpace) {
    return static_cast<std::size_t>(name) * 2 + (nameSpace == HTMLNamespace::html ? 0 : 1);
  }
  Position topOfKey(std::size_t key) const { return key < tops_.size() ? tops_[key] : 0; }

  std::vector<HTMLNode> &nodes_;
  /// The first one is empty.
  std::vector<Entry> entries_;
  /// The highest position of each name.
  std::vector<Position> tops_;
};

}  // namespace nimbo
