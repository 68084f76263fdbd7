// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Style/SeenContent.hpp"

#include "platform/WebKit/Style/LegacyValues.hpp"

namespace nimbo::detail {

bool SeenContent::hasMenu(const HTMLNode &select) const {
  if (document_->attribute(select, document_->atoms().existingAtomOf(u"multiple"))) return false;
  const auto size = document_->attribute(select, "size"_atom);
  return !size || legacyNonNegativeInteger(*size).value_or(0) <= 1;
}

/// The last option that is marked as the selected one, else the first that can be selected.
HTMLNodeIndex SeenContent::shownOptionOf(HTMLNodeIndex select) const {
  HTMLNodeIndex first = kNoHTMLNode, selected = kNoHTMLNode;
  for (HTMLNodeIndex i = document_->nextInTree(select, select); i != kNoHTMLNode;
       i = document_->nextInTree(i, select)) {
    const HTMLNode &node = document_->node(i);
    if (!node.isHTML("option"_atom)) continue;
    if (document_->attribute(node, "selected"_atom)) selected = i;
    if (first == kNoHTMLNode && !document_->attribute(node, "disabled"_atom)) first = i;
  }
  return selected != kNoHTMLNode ? selected : first;
}

HTMLNodeIndex SeenContent::summaryOf(const HTMLNode &details) const {
  HTMLNodeIndex child = details.firstChild;
  while (child != kNoHTMLNode && !document_->node(child).isHTML("summary"_atom))
    child = document_->node(child).nextSibling;
  return child;
}

Seen SeenContent::of(HTMLNodeIndex index, const ComputedStyle &parent) {
  if (parent.isUnseen)
    return parent.mayHoldSeenElement && ones_.contains(index) ? Seen::kIsTheOne : Seen::kAsItsParent;
  const HTMLNode &element = document_->node(index);
  HTMLNodeIndex one = kNoHTMLNode;
  if (element.isHTML("details"_atom) && !document_->attribute(element, "open"_atom))
    one = summaryOf(element);
  else if (element.isHTML("select"_atom) && hasMenu(element))
    one = shownOptionOf(index);
  else
    return Seen::kAsItsParent;
  if (one == kNoHTMLNode) return Seen::kHidesAll;
  ones_.insert(one);
  return Seen::kHidesAllButOne;
}

void SeenContent::apply(Seen seen, ComputedStyle &style) {
  if (seen == Seen::kAsItsParent) return;
  style.isUnseen = seen != Seen::kIsTheOne;
  style.mayHoldSeenElement = seen == Seen::kHidesAllButOne;
}

}  // namespace nimbo::detail
