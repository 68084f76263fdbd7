// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/ListMarkers.hpp"

#include <algorithm>

#include "platform/WebKit/RichText/CSSTexts.hpp"
#include "platform/WebKit/RichText/CounterStyles.hpp"
#include "platform/WebKit/RichText/Numbers.hpp"

namespace nimbo::detail {

namespace {

bool isList(const HTMLNode &element) {
  return element.isHTML("ol"_atom) || element.isHTML("ul"_atom) || element.isHTML("menu"_atom) ||
         element.isHTML("dir"_atom);
}

std::int32_t countItems(const HTMLDocument &document, const HTMLNode &list) {
  std::int32_t count = 0;
  for (HTMLNodeIndex i = list.firstChild; i != kNoHTMLNode; i = document.node(i).nextSibling)
    if (document.node(i).isHTML("li"_atom)) ++count;
  return count;
}

/// Whether a style sheet says itself how far items count.
bool namesItems(const CSSValue &increments) {
  return std::ranges::any_of(valuesOf(increments),
                             [](const CSSValue &value) { return nameOf(value) == kListItemCounter; });
}

}  // namespace

void ListMarkers::begin(const HTMLDocument &document, const HTMLNode &list, std::uint32_t depth,
                        Counters *counters) {
  const bool isOrdered = list.isHTML("ol"_atom);
  const bool isReversed = isOrdered && document.attribute(list, "reversed"_atom).has_value();
  std::int32_t start = isReversed ? countItems(document, list) : 1;
  if (isOrdered) start = integerOfAttribute(document.attribute(list, "start"_atom)).value_or(start);
  lists_.push_back({++lastIdentifier_, depth, start, isReversed});
  if (start == 1 && !isReversed) return;
  counters->set(kListItemCounter, start, depth);
  counters->increment(kListItemCounter, isReversed ? 1 : -1, depth);
}

void ListMarkers::enter(const HTMLDocument &document, const HTMLNode &element, const ComputedStyle &style,
                        std::uint32_t depth, Counters *counters) {
  if (isList(element)) begin(document, element, depth, counters);
  if (style.display != CSSKeyword::kListItem) return;
  if (!namesItems(style.counterIncrement))
    counters->increment(kListItemCounter, lists_.back().isReversed ? -1 : 1, depth);
  if (!element.isHTML("li"_atom)) return;
  if (const auto value = integerOfAttribute(document.attribute(element, "value"_atom)))
    counters->set(kListItemCounter, *value, depth);
}

void ListMarkers::leave(std::uint32_t depth) {
  while (lists_.back().depth >= depth && lists_.size() > 1) lists_.pop_back();
}

std::optional<NSTextList> ListMarkers::textList(const CSSValue &listStyle) const {
  const NSString format = markerFormatOf(listStyle);
  if (!format) return {};
  return NSTextList{format, lists_.back().start, lists_.back().identifier};
}

}  // namespace nimbo::detail
