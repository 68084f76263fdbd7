// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/OpenElements.hpp"

#include <algorithm>

namespace nimbo {

void OpenElements::push(HTMLNodeIndex node, HTMLAtom name, HTMLNamespace nameSpace, ElementTraits traits) {
  const Position position = size() + 1;
  const std::size_t key = keyOf(name, nameSpace);
  if (key >= tops_.size()) tops_.resize(std::max<std::size_t>(key + 1, tops_.size() * 2));
  Entry entry = entries_.back();
  entry.node = node;
  entry.name = name;
  entry.nameSpace = nameSpace;
  entry.traits = traits;
  entry.sameName = tops_[key];
  if ((traits & kBoundsScope) != 0) entry.scope = position;
  if ((traits & kIsSpecial) != 0) entry.special = position;
  if ((traits & (kIsSpecial | kHoldsListItems)) == kIsSpecial) entry.listItemBound = position;
  if ((traits & kHasMode) != 0) entry.mode = position;
  if (nameSpace == HTMLNamespace::html) entry.html = position;
  tops_[key] = position;
  entries_.push_back(entry);
  nodes_[node].isOpen = true;
}

void OpenElements::pop() {
  const Entry &entry = entries_.back();
  nodes_[entry.node].isOpen = false;
  tops_[keyOf(entry.name, entry.nameSpace)] = entry.sameName;
  entries_.pop_back();
}

void OpenElements::remove(Position position) {
  const std::vector<Entry> above(entries_.begin() + position + 1, entries_.end());
  popThrough(position);
  for (const Entry &entry : above) push(entry);
}

OpenElements::Position OpenElements::positionOf(HTMLNodeIndex node, HTMLAtom html) const {
  Position position = top(html);
  while (position != 0 && entries_[position].node != node) position = entries_[position].sameName;
  return position;
}

bool OpenElements::isInButtonScope(HTMLAtom html) const {
  const Position position = top(html);
  return isInScope(position) && position >= top("button"_atom);
}

bool OpenElements::isInListItemScope(HTMLAtom html) const {
  const Position position = top(html);
  return isInScope(position) && position >= std::max(top("ol"_atom), top("ul"_atom));
}

bool OpenElements::isInTableScope(HTMLAtom html) const {
  return top(html) >= std::max({top("html"_atom), top("table"_atom), top("template"_atom)});
}

}  // namespace nimbo
