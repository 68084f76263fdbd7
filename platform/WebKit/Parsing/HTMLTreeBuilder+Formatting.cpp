// SPDX-License-Identifier: Apache-2.0
//
// Formatting elements, which people nest in any way: `<b><p></b>`.
#include <functional>
#include <string_view>

#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

namespace nimbo {
namespace {

/// How many blocks an end tag reaches into.
constexpr int kAdoptedBlocks = 8;
/// How many formatting elements between an end tag's element and a block are kept for the block.
constexpr std::size_t kKeptInside = 3;

}  // namespace

void HTMLTreeBuilder::insertFormatting(const HTMLToken &token) {
  const HTMLNodeIndex index = insertElement(token);
  formatting_.push({index, token.name, attributesHash(node(index))});
}

/// Of the attributes in any order.
std::uint64_t HTMLTreeBuilder::attributesHash(const HTMLNode &element) const {
  constexpr std::uint64_t kFactor = 0x9e3779b97f4a7c15;
  std::uint64_t sum = element.count;
  for (const HTMLAttribute &one : document_.attributes(element)) {
    const std::uint64_t name = static_cast<std::uint64_t>(one.name) + 1;
    const std::uint64_t hash =
        (std::hash<std::u16string_view>()(document_.value(one)) ^ name * kFactor) * kFactor;
    sum += hash ^ hash >> 32;
  }
  return sum;
}

/// A new element of the same name and attributes.
HTMLNodeIndex HTMLTreeBuilder::clone(HTMLNodeIndex element) {
  const HTMLNode original = node(element);
  --clones_;
  return makeElement(original.name, original.nameSpace, original.start, original.count);
}

/// Begins the formatting elements again that ended with a block but not by an end tag.
void HTMLTreeBuilder::reconstructFormatting() {
  std::size_t first = formatting_.size();
  while (first > formatting_.begin() && !node(formatting_.at(first - 1).node).isOpen) --first;
  for (std::size_t i = first; i < formatting_.size(); ++i) {
    if (clones_ == 0) {
      while (formatting_.size() > i) formatting_.remove(formatting_.size() - 1);
      return;
    }
    FormattingElements::Entry &entry = formatting_.at(i);
    entry.node = clone(entry.node);
    insert(entry.node, place());
    pushElement(entry.node, entry.name, traitsOf(entry.name, HTMLNamespace::html));
  }
}

/// Ends a formatting element. Blocks that began in it get a formatting element of their own for what they hold
/// already, and stand behind it.
void HTMLTreeBuilder::endFormatting(HTMLAtom name) {
  if (open_.isCurrent(name) && formatting_.find(open_.current().node) == FormattingElements::kNone) {
    open_.pop();
    return;
  }
  for (int blocks = 0; blocks < kAdoptedBlocks && adopt(name); ++blocks) continue;
}

/// One round of the standard's adoption agency algorithm: whether there may be another block.
bool HTMLTreeBuilder::adopt(HTMLAtom name) {
  std::size_t index = formatting_.find(name);
  if (index == FormattingElements::kNone) return endOther(name), false;
  const FormattingElements::Entry ended = formatting_.at(index);
  const Position position = node(ended.node).isOpen ? open_.positionOf(ended.node, name) : 0;
  if (position == 0) return formatting_.remove(index), false;
  if (!open_.isInScope(position)) return false;
  if (open_.current().special <= position) {
    open_.popThrough(position);
    formatting_.remove(index);
    return false;
  }
  const std::uint64_t steps = open_.size() - position;
  if (steps > adoptionSteps_ || clones_ <= kKeptInside + 1) return formatting_.remove(index), false;
  adoptionSteps_ -= steps;

  std::vector<Entry> above;
  for (Position i = position + 1; i <= open_.size(); ++i) above.push_back(open_.at(i));
  std::size_t block = 0;
  while ((above[block].traits & kIsSpecial) == 0) ++block;
  const HTMLNodeIndex blockNode = above[block].node;

  // The ended element holds its place in the list meanwhile.
  std::size_t bookmark = index;
  const HTMLNodeIndex wrapped = wrapBlock(above, block, &bookmark);
  remove(wrapped);
  insert(wrapped, placeIn(open_.at(position - 1)));

  const HTMLNodeIndex inside = clone(ended.node);
  moveChildren(blockNode, inside);
  insert(inside, {blockNode});
  adoptions_ += static_cast<std::uint32_t>(kKeptInside) + 1;
  index = formatting_.find(ended.node);
  formatting_.remove(index);
  formatting_.insert(bookmark > index ? bookmark - 1 : bookmark, {inside, name, ended.attributesHash});

  open_.popThrough(position);
  for (std::size_t i = 0; i < above.size(); ++i) {
    if (above[i].node != kNoHTMLNode) open_.push(above[i]);
    if (i == block) pushElement(inside, name, traitsOf(name, HTMLNamespace::html));
  }
  return true;
}

/// Puts the block into copies of the formatting elements that it is in, of those that are open `above` the
/// ended one; others there are closed, and their entries lose their nodes. Gives the outermost copy, or the
/// block.
HTMLNodeIndex HTMLTreeBuilder::wrapBlock(std::vector<Entry> &above, std::size_t block, std::size_t *bookmark) {
  HTMLNodeIndex last = above[block].node;
  for (std::size_t i = block; i-- > 0;) {
    std::size_t index = formatting_.find(above[i].node);
    if (index != FormattingElements::kNone && block - i > kKeptInside) {
      formatting_.remove(index);
      if (index < *bookmark) --*bookmark;
      index = FormattingElements::kNone;
    }
    if (index == FormattingElements::kNone) {
      document_.nodes_[above[i].node].isOpen = false;
      above[i].node = kNoHTMLNode;
      continue;
    }
    const HTMLNodeIndex copy = clone(above[i].node);
    document_.nodes_[above[i].node].isOpen = false;
    formatting_.at(index).node = above[i].node = copy;
    if (last == above[block].node) *bookmark = index + 1;
    remove(last);
    insert(last, {copy});
    last = copy;
  }
  return last;
}

/// A link ends where another one begins.
void HTMLTreeBuilder::endLink() {
  const std::size_t index = formatting_.find("a"_atom);
  if (index == FormattingElements::kNone) return;
  const HTMLNodeIndex link = formatting_.at(index).node;
  endFormatting("a"_atom);
  if (const std::size_t left = formatting_.find(link); left != FormattingElements::kNone)
    formatting_.remove(left);
  if (node(link).isOpen) open_.remove(open_.positionOf(link, "a"_atom));
}

}  // namespace nimbo
