// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <unordered_set>

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// What an element has to do with content that is there but not shown.
enum class Seen : std::uint8_t {
  kAsItsParent,
  /// It hides what is in it: it is a closed "details", or a "select" with a menu.
  kHidesAll,
  /// As well, but for one element.
  kHidesAllButOne,
  /// It is that element.
  kIsTheOne,
};

/// Which elements hide their content by what they are, without a declaration. They are asked about in the order
/// of the page.
class SeenContent {
 public:
  /// For the document, which must outlive it.
  explicit SeenContent(const HTMLDocument &document) : document_(&document) {}

  /// What the element is whose parent has the style.
  Seen of(HTMLNodeIndex element, const ComputedStyle &parent);
  /// Marks the style of such an element.
  static void apply(Seen seen, ComputedStyle &style);

 private:
  bool hasMenu(const HTMLNode &select) const;
  HTMLNodeIndex shownOptionOf(HTMLNodeIndex select) const;
  HTMLNodeIndex summaryOf(const HTMLNode &details) const;

  const HTMLDocument *document_;
  /// The elements that are shown in what hides all others.
  std::unordered_set<HTMLNodeIndex> ones_;
};

}  // namespace nimbo::detail
