// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/WebKit/RichText/Counters.hpp"
#include "platform/WebKit/RichText/GeneratedContent.hpp"
#include "platform/WebKit/RichText/ListMarkers.hpp"
#include "platform/WebKit/RichText/ParagraphMaker.hpp"
#include "platform/WebKit/RichText/StyleStack.hpp"
#include "platform/WebKit/RichText/TableReader.hpp"

namespace nimbo::detail {

/// Walks through the elements of a page, and tells the paragraphs what they are made of. It goes as deep as the
/// page does, which the parser limits.
class PageFlow {
 public:
  /// How many tables a cell is in at most. What should be tables further inside are blocks.
  static constexpr std::size_t kMaximumTables = 16;

  PageFlow(const HTMLDocument &document, StyleResolver &styles, const PageTextOptions &options)
      : document_(document), resolver_(styles), styles_(document, styles, options) {}

  /// The text of the page; the object is done with.
  PageText run() &&;

 private:
  using Level = StyleStack::Level;

  /// The siblings of a range, whose parent is the last element of the stack.
  void flowSiblings(SiblingRange range);
  /// A node of a range; answers the one to go on with.
  HTMLNodeIndex flowNode(HTMLNodeIndex index, HTMLNodeIndex end);
  void flowElement(CSSKeyword display);
  void flowBox(CSSKeyword display);
  void flowBlock(CSSKeyword display);
  void flowContent();
  void flowPseudoElement(CSSPseudoElement kind);
  void flowGeneratedText();
  bool flowReplaced(const HTMLNode &node, CSSKeyword display);

  void addText(std::u16string_view text);
  void addImage(std::u16string_view url, std::optional<std::u16string_view> alternative);
  void addObject(const HTMLNode &node, CSSKeyword display);
  void addRule();
  void beginItem();

  /// A table whose rows and cells are siblings; `table` is its style, if it has an element.
  void flowTable(SiblingRange range, const ComputedStyle *table);
  void flowCell(const TableCell &cell, const Interned<NSTextTable> &table, std::size_t base,
                Interned<NSTextTableBlock> *block);
  NSTextTableBlock blockOfCell(const TableCell &cell, const Interned<NSTextTable> &table, std::size_t base);
  void enterAncestors(HTMLNodeIndex parent, std::size_t base);
  void flowCaptions(const TableShape &shape, CSSKeyword side, std::size_t base);

  void enterCounters();
  void leaveElement();
  void leaveElements(std::size_t size);
  std::uint32_t depth() const { return static_cast<std::uint32_t>(styles_.size()); }
  Level &top() { return styles_.top(); }
  CSSKeyword displayOf(const Level &level) const;
  BlockStyle blockStyle();

  const HTMLDocument &document_;
  StyleResolver &resolver_;
  StyleStack styles_;
  ParagraphMaker paragraphs_;
  Counters counters_;
  ListMarkers lists_;
  GeneratedContent generated_;
  std::uint32_t lastTable_ = 0;
};

}  // namespace nimbo::detail
