// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/RichText/FormControls.hpp"
#include "platform/WebKit/RichText/ImageChoice.hpp"
#include "platform/WebKit/RichText/Numbers.hpp"
#include "platform/WebKit/RichText/PageFlow.hpp"
#include "platform/WebKit/RichText/Points.hpp"

namespace nimbo::detail {

namespace {

/// The width and height in pixels up to which an image is none for people, but counts the page's readers.
constexpr double kInvisibleImagePixels = 1;

/// How thick rules are, and how high the empty paragraph of one is, in points.
constexpr double kRuleWidth = 0.75;
constexpr double kRuleFontSize = 4;

/// Whether nothing in the element is shown, but perhaps something in place of it.
bool hidesContent(const HTMLNode &node) {
  static constexpr HTMLAtom kHiding[] = {"audio"_atom, "embed"_atom,    "frame"_atom, "iframe"_atom,
                                         "meter"_atom, "progress"_atom, "video"_atom};
  return std::ranges::find(kHiding, node.name) != std::end(kHiding);
}

/// Whether an element of SVG or MathML has text that is about the picture or formula and not in it.
bool isDescription(const HTMLNode &node, const HTMLDocument &document) {
  static constexpr HTMLAtom kDescriptions[] = {"annotation-xml"_atom, "defs"_atom,  "desc"_atom,
                                               "script"_atom,         "style"_atom, "title"_atom};
  if (std::ranges::find(kDescriptions, node.name) != std::end(kDescriptions)) return true;
  const std::u16string_view name = document.atoms().text(node.name);
  return name == u"annotation" || name == u"metadata" || name == u"symbol" || name == u"clipPath" ||
         name == u"mask" || name == u"pattern" || name == u"marker";
}

std::optional<double> pixelsOf(const BoxLength &length, std::optional<std::u16string_view> attribute) {
  if (length.kind == BoxLength::Kind::pixels) return length.value;
  if (length.kind == BoxLength::Kind::percent || !attribute) return {};
  const std::optional<double> pixels = takeNumber(&*attribute);
  return pixels && *pixels >= 0 && !attribute->starts_with(u'%') ? pixels : std::nullopt;
}

/// Whether an "object" is a picture, by its type or by the extension of its address.
bool isPicture(std::u16string_view type, std::u16string_view url) {
  if (!type.empty()) return startsWithASCIINoCase(type, "image/");
  constexpr std::string_view kExtensions[] = {".png", ".jpg", ".jpeg", ".gif", ".svg", ".webp", ".bmp"};
  return std::ranges::any_of(kExtensions, [&](auto extension) { return endsWithASCIINoCase(url, extension); });
}

/// Whether something else than its content is shown: a picture, or the text of an input.
bool isObject(const HTMLNode &node, const HTMLDocument &document) {
  if (node.name == "object"_atom)
    return isPicture(document.attribute(node, "type"_atom).value_or(u""),
                     document.attribute(node, "data"_atom).value_or(u""));
  return node.name == "img"_atom || node.name == "input"_atom || node.name == "video"_atom;
}

}  // namespace

/// Does what an element asks for that is not made of its children; false when it is.
bool PageFlow::flowReplaced(const HTMLNode &node, CSSKeyword display) {
  if (node.nameSpace != HTMLNamespace::html) {
    if (isDescription(node, document_)) return true;
    if (node.name != "text"_atom && node.name != "svg"_atom) return false;
    paragraphs_.openInlineBlock();
    flowContent();
    paragraphs_.closeInlineBlock();
    if (node.name == "text"_atom) paragraphs_.addBlank(top().attributes());
    return true;
  }
  if (node.name == "br"_atom) {
    if (top().isSeen()) paragraphs_.breakLine(top().attributes());
  } else if (node.name == "hr"_atom) {
    addRule();
  } else if (isObject(node, document_)) {
    addObject(node, display);
  } else {
    return hidesContent(node);
  }
  return true;
}

/// An image, or the text of an input, as a box of its own if its style says so.
void PageFlow::addObject(const HTMLNode &node, CSSKeyword display) {
  // Text flows around a picture that floats: it stays in its line.
  static constexpr CSSKeyword kBlocks[] = {CSSKeyword::kBlock,    CSSKeyword::kFlex,  CSSKeyword::kFlowRoot,
                                           CSSKeyword::kListItem, CSSKeyword::kTable, CSSKeyword::kGrid};
  const bool isBlock =
      std::ranges::find(kBlocks, display) != std::end(kBlocks) && top().style.floating == CSSKeyword::kNone;
  const auto attribute = [&](HTMLAtom name) { return document_.attribute(node, name); };
  if (isBlock) paragraphs_.openBlock(blockStyle());
  if (node.isHTML("img"_atom))
    addImage(chosenImage(document_, top().node), attribute("alt"_atom));
  else if (node.isHTML("object"_atom))
    addImage(attribute("data"_atom).value_or(u""), {});
  else if (node.isHTML("video"_atom))
    addImage(attribute(document_.atoms().existingAtomOf(u"poster")).value_or(u""), {});
  else if (equalsASCIINoCase(attribute("type"_atom).value_or(u""), "image"))
    addImage(attribute("src"_atom).value_or(u""), attribute("alt"_atom));
  else
    addText(textOfInput(document_, node));
  if (isBlock) paragraphs_.closeBlock();
}

void PageFlow::addImage(std::u16string_view url, std::optional<std::u16string_view> alternative) {
  Level &level = top();
  if (!level.isSeen()) return;
  PageImage image;
  if (alternative) image.alternativeText = NSString::stringWithCharacters(*alternative);
  const bool hasElement = level.node != kNoHTMLNode;
  const auto attribute = [&](HTMLAtom name) {
    return hasElement ? document_.attribute(document_.node(level.node), name) : std::nullopt;
  };
  image.width = pixelsOf(level.style.width, attribute("width"_atom));
  image.height = pixelsOf(level.style.height, attribute("height"_atom));
  if (image.width && image.height && *image.width <= kInvisibleImagePixels &&
      *image.height <= kInvisibleImagePixels)
    return;
  if (url.empty()) {
    if (alternative) addText(*alternative);
    return;
  }
  image.URL = NSString::stringWithCharacters(url);
  paragraphs_.addImage(std::move(image), level.attributes());
}

void PageFlow::addRule() {
  if (!top().isSeen() || paragraphs_.cellDepth() >= kMaximumTables) return;
  NSTextTable table;
  table.identifier = ++lastTable_;
  table.numberOfColumns = 1;
  NSTextTableBlock block;
  block.table = Interned(table);
  block.borderWidths[NSTopEdge] = kRuleWidth;
  block.borderColors[NSTopEdge] = colorOf(top().style.borderColor[kTopSide]);
  TextAttributes attributes;
  attributes.font.pointSize = kRuleFontSize;
  BlockStyle style = blockStyle();
  style.edgeTop = style.edgeBottom = 0;
  paragraphs_.openBlock(style);
  paragraphs_.openCell(Interned(std::move(block)), {});
  paragraphs_.closeCell(Interned(std::move(attributes)));
  paragraphs_.closeBlock();
}

}  // namespace nimbo::detail
