// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/RichText/Counters.hpp"
#include "platform/WebKit/Style/ComputedStyle.hpp"

namespace nimbo::detail {

/// What style sheets add to a page. The units of it are counted, because a sheet can repeat a long text for
/// each element.
class GeneratedContent {
 public:
  /// How many units are added to a page at most.
  static constexpr std::size_t kMaximumUnits = 1U << 24;
  /// How many parts of values of "content" are looked at for a page; those without text take time, too.
  static constexpr std::uint32_t kMaximumParts = 1U << 22;

  /// The element that has the content, and what is around it.
  struct Source {
    const HTMLDocument &document;
    const HTMLNode &element;
    const Counters &counters;
    std::u16string_view language;
  };

  /// The text of a value of "content". Pictures in it are handed over in their place: what is in front of one
  /// is taken out of the text.
  std::u16string text(const ComputedStyle &style, const Source &source,
                      const std::function<void(std::u16string text, std::u16string_view URL)> &onImage);
  /// As much of a text as may still be added; it is counted.
  std::u16string_view counted(std::u16string_view text);

 private:
  void appendFunction(const CSSValue &function, const Source &source, std::u16string *text) const;
  void appendQuote(CSSKeyword keyword, const ComputedStyle &style, const Source &source, std::u16string *text);

  std::size_t quoteDepth_ = 0;
  std::size_t unitsLeft_ = kMaximumUnits;
  std::uint32_t partsLeft_ = kMaximumParts;
};

}  // namespace nimbo::detail
