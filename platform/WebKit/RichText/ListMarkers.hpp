// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/AppKit/NSParagraphStyle.hpp"
#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/RichText/Counters.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// Numbers the items of a page's lists, as they are walked in the order of the page.
class ListMarkers {
 public:
  /// Does to the counter of items what a list or item asks for with its attributes, behind what style sheets
  /// ask for.
  void enter(const HTMLDocument &document, const HTMLNode &element, const ComputedStyle &style,
             std::uint32_t depth, Counters *counters);
  /// Ends what the element at `depth` began.
  void leave(std::uint32_t depth);

  /// The innermost list as a paragraph has it, with items of this style; nothing when they have no markers.
  std::optional<NSTextList> textList(const CSSValue &listStyle) const;

 private:
  struct List {
    std::uint32_t identifier;
    std::uint32_t depth;
    std::int32_t start;
    bool isReversed;
  };

  void begin(const HTMLDocument &document, const HTMLNode &list, std::uint32_t depth, Counters *counters);

  /// Items without a list around them are one list.
  std::vector<List> lists_ = {{1, 0, 1, false}};
  std::uint32_t lastIdentifier_ = 1;
};

}  // namespace nimbo::detail
