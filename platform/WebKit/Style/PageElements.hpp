// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/CSS/CSSElements.hpp"
#include "platform/WebKit/HTMLDocument.hpp"

namespace nimbo::detail {

/// A page's elements as selectors see them. The document must outlive it and stay as it is.
class PageElements {
 public:
  /// Takes the elements of the tree. Their names go to the table, which must outlive it.
  PageElements(const HTMLDocument &document, CSSNames &names, CSSMode mode);

  /// The elements.
  const CSSElements &elements() const NIMBO_LIFETIMEBOUND { return elements_; }
  /// An element's place among them; `kNoCSSElement` for a node that is no element of the page.
  CSSElementIndex indexOf(HTMLNodeIndex node) const { return indices_[node]; }

 private:
  CSSElements elements_;
  /// By the node's index.
  std::vector<CSSElementIndex> indices_;
};

}  // namespace nimbo::detail
