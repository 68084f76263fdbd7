// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/PageFlow.hpp"

#include <algorithm>
#include <utility>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/RichText/CSSTexts.hpp"
#include "platform/WebKit/RichText/CounterStyles.hpp"
#include "platform/WebKit/RichText/FormControls.hpp"
#include "platform/WebKit/RichText/TextTransform.hpp"
#include "platform/WebKit/Style/BoxDisplay.hpp"

namespace nimbo::detail {

namespace {

bool isInlineBlock(CSSKeyword display) {
  return display == CSSKeyword::kInlineBlock || display == CSSKeyword::kInlineFlex ||
         display == CSSKeyword::kInlineGrid;
}

bool isInline(CSSKeyword display) {
  switch (display) {
    case CSSKeyword::kInline:
    case CSSKeyword::kContents:
    case CSSKeyword::kRunIn:
    case CSSKeyword::kMath:
    case CSSKeyword::kRuby:
    case CSSKeyword::kRubyBase:
    case CSSKeyword::kRubyText:
    case CSSKeyword::kRubyBaseContainer:
    case CSSKeyword::kRubyTextContainer:
      return true;
    default:
      return false;
  }
}

/// 1 to 6 for a heading, else 0.
std::uint8_t headerLevelOf(const HTMLNode &node) {
  if (node.nameSpace != HTMLNamespace::html || node.name < "h1"_atom || node.name > "h6"_atom) return 0;
  return static_cast<std::uint8_t>(static_cast<std::uint32_t>(node.name) -
                                   static_cast<std::uint32_t>("h1"_atom) + 1);
}

bool isBlank(std::u16string_view text) {
  return std::ranges::all_of(text, isASCIIWhiteSpace<char16_t>);
}

}  // namespace

PageText textOfPage(const HTMLDocument &document, StyleResolver &styles, const PageTextOptions &options) {
  return PageFlow(document, styles, options).run();
}

PageText PageFlow::run() && {
  styles_.pushRoot();
  if (top().style.display != CSSKeyword::kNone) flowElement(top().style.display);
  leaveElement();
  return std::move(paragraphs_).finish();
}

void PageFlow::flowSiblings(SiblingRange range) {
  for (HTMLNodeIndex i = range.first; i != range.end && i != kNoHTMLNode;) i = flowNode(i, range.end);
}

HTMLNodeIndex PageFlow::flowNode(HTMLNodeIndex index, HTMLNodeIndex end) {
  const HTMLNode &node = document_.node(index);
  if (node.kind == HTMLNodeKind::text) {
    const CSSKeyword outer = top().style.display;
    const std::u16string_view text = document_.text(node);
    const bool isItem = makesItems(outer);
    // The only item of a box in a line is in that line.
    const bool isApart = isItem && !(isInlineBlock(outer) && document_.node(node.parent).firstChild == index &&
                                     node.nextSibling == kNoHTMLNode);
    if (isApart) paragraphs_.endParagraph();
    if (top().showsText && !(isItem && isBlank(text))) addText(text);
    if (isApart) paragraphs_.endParagraph();
  } else if (node.isElement()) {
    styles_.push(index);
    const CSSKeyword display = displayOf(top());
    if (isTablePart(display) && paragraphs_.cellDepth() < kMaximumTables) {
      styles_.pop();
      const SiblingRange parts = TableReader(document_, styles_).partsOfTable({index, end});
      flowTable(parts, nullptr);
      return parts.end;
    }
    if (display != CSSKeyword::kNone) flowElement(display);
    leaveElement();
  }
  return node.nextSibling;
}

/// The display of an element's box. In an element whose content nobody can see there are no boxes, but for the
/// one that can be seen, of which the option of a menu stands in the line.
CSSKeyword PageFlow::displayOf(const Level &level) const {
  const CSSKeyword display = level.style.display;
  if (display == CSSKeyword::kNone || !styles_.at(styles_.size() - 2).style.isUnseen) return display;
  if (level.style.isUnseen) return CSSKeyword::kContents;
  return document_.node(level.node).isHTML("option"_atom) ? CSSKeyword::kInline : display;
}

void PageFlow::enterCounters() {
  const Level &level = top();
  const ComputedStyle &style = level.style;
  if (style.counterReset || style.counterIncrement || style.counterSet)
    counters_.apply(style.counterReset, style.counterIncrement, style.counterSet, depth());
  if (level.node != kNoHTMLNode)
    lists_.enter(document_, document_.node(level.node), style, depth(), &counters_);
}

void PageFlow::leaveElement() {
  counters_.leave(depth());
  lists_.leave(depth());
  styles_.pop();
}

void PageFlow::leaveElements(std::size_t size) {
  while (styles_.size() > size) leaveElement();
}

void PageFlow::flowElement(CSSKeyword display) {
  enterCounters();
  if (!flowReplaced(document_.node(top().node), display)) flowBox(display);
}

void PageFlow::flowBox(CSSKeyword display) {
  if (isInline(display)) {
    flowContent();
  } else if (isInlineBlock(display)) {
    paragraphs_.openInlineBlock();
    flowContent();
    paragraphs_.closeInlineBlock();
  } else if (display == CSSKeyword::kTable || display == CSSKeyword::kInlineTable) {
    if (paragraphs_.cellDepth() >= kMaximumTables) return flowBlock(CSSKeyword::kBlock);
    BlockStyle block = blockStyle();
    block.edgeTop = block.edgeBottom = 0;
    paragraphs_.openBlock(block);
    const ComputedStyle &style = top().style;
    flowTable({document_.node(top().node).firstChild}, &style);
    paragraphs_.closeBlock();
  } else {
    flowBlock(display);
  }
}

BlockStyle PageFlow::blockStyle() {
  const HTMLNode &node = document_.node(top().node);
  BlockStyle block = blockStyleOf(top().style);
  if (top().node == document_.rootElement() || top().node == document_.body()) {
    block.leftInset = block.rightInset = 0;
    block.marginTop = block.marginBottom = block.edgeTop = block.edgeBottom = 0;
  }
  block.headerLevel = headerLevelOf(node);
  block.usesLineSeparators = block.headerLevel > 0 || node.isHTML("p"_atom) || node.isHTML("li"_atom);
  return block;
}

void PageFlow::flowBlock(CSSKeyword display) {
  paragraphs_.openBlock(blockStyle());
  if (display == CSSKeyword::kListItem) beginItem();
  flowContent();
  paragraphs_.closeBlock();
}

void PageFlow::beginItem() {
  Level &level = top();
  const CSSValue &listStyle = level.style.inherited.listStyleType;
  auto list = lists_.textList(listStyle);
  std::u16string marker;
  std::optional<ComputedStyle> style =
      resolver_.pseudoStyleOf(level.node, CSSPseudoElement::kMarker, level.style);
  if (style && style->display == CSSKeyword::kNone) return;
  if (style && style->content) {
    const GeneratedContent::Source source{document_, document_.node(level.node), counters_,
                                          level.context.language};
    marker = generated_.text(*style, source, [](const std::u16string &, std::u16string_view) {});
    if (!list) list = NSTextList{NSString::stringWithCharacters(marker), 1, 0};
  } else {
    marker = generated_.counted(markerOfItem(counters_.value(kListItemCounter), listStyle));
  }
  if (!list || !level.isSeen()) return;
  // A tab takes the place of the blanks behind it.
  while (marker.ends_with(u' ')) marker.pop_back();
  InlineContext context;
  context.blockBackground = level.context.blockBackground;
  ComputedStyle own = style ? std::move(*style) : level.style;
  own.underline = own.lineThrough = {};
  paragraphs_.beginItem(*list, marker, Interned(attributesOfText(own, context)));
}

void PageFlow::flowContent() {
  const HTMLNode &node = document_.node(top().node);
  if (node.isHTML("option"_atom)) return addText(textOfOption(document_, top().node));
  if (node.isHTML("optgroup"_atom)) {
    addText(document_.attribute(node, document_.atoms().existingAtomOf(u"label")).value_or(u""));
    paragraphs_.endParagraph();
  }
  flowPseudoElement(CSSPseudoElement::kBefore);
  flowSiblings({node.firstChild});
  flowPseudoElement(CSSPseudoElement::kAfter);
}

void PageFlow::flowPseudoElement(CSSPseudoElement kind) {
  const Level &element = top();
  {
    std::optional<ComputedStyle> style = resolver_.pseudoStyleOf(element.node, kind, element.style);
    if (!style || !style->content || style->display == CSSKeyword::kNone) return;
    styles_.push(std::move(*style));
  }
  enterCounters();
  const CSSKeyword display = top().style.display;
  if (isInline(display)) {
    flowGeneratedText();
  } else if (isInlineBlock(display)) {
    paragraphs_.openInlineBlock();
    flowGeneratedText();
    paragraphs_.closeInlineBlock();
  } else {
    paragraphs_.openBlock(blockStyleOf(top().style));
    flowGeneratedText();
    paragraphs_.closeBlock();
  }
  leaveElement();
}

void PageFlow::flowGeneratedText() {
  const HTMLNodeIndex element = styles_.at(styles_.size() - 2).node;
  const GeneratedContent::Source source{document_, document_.node(element), counters_, top().context.language};
  const auto onImage = [&](const std::u16string &text, std::u16string_view url) {
    addText(text);
    addImage(url, {});
  };
  addText(generated_.text(top().style, source, onImage));
}

void PageFlow::addText(std::u16string_view text) {
  Level &level = top();
  const InheritedStyle &style = level.style.inherited;
  if (text.empty() || !level.isSeen() || style.fontSize <= 0) return;
  if (style.textTransform == CSSKeyword::kNone) {
    paragraphs_.addText(text, style.whiteSpace, level.attributes());
    return;
  }
  const std::u16string transformed =
      transformedText(text, style.textTransform, level.context.language, paragraphs_.lastUnit());
  paragraphs_.addText(transformed, style.whiteSpace, level.attributes());
}

}  // namespace nimbo::detail
