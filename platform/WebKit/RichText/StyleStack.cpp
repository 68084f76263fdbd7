// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/RichText/StyleStack.hpp"

#include <utility>

namespace nimbo::detail {

namespace {

bool showsTextOfSVG(HTMLAtom name, bool outer) {
  if (name == "text"_atom || name == "foreignObject"_atom) return true;
  return outer && (name == "tspan"_atom || name == "a"_atom);
}

bool showsTextOfMathML(HTMLAtom name) {
  return name == "mi"_atom || name == "mn"_atom || name == "mo"_atom || name == "ms"_atom ||
         name == "mtext"_atom;
}

}  // namespace

const Interned<TextAttributes> &StyleStack::Level::attributes() {
  if (!attributes_) attributes_ = Interned(attributesOfText(style, context));
  return *attributes_;
}

StyleStack::Level &StyleStack::next() {
  if (levels_.size() == size_) levels_.push_back(std::make_unique<Level>());
  return *levels_[size_];
}

void StyleStack::pushRoot() {
  Level &level = next();
  level.style = styles_.rootStyle();
  begin(level, document_.rootElement());
}

void StyleStack::push(HTMLNodeIndex element) {
  Level &level = next();
  level.style = styleOf(element);
  begin(level, element);
}

void StyleStack::push(ComputedStyle &&style) {
  Level &level = next();
  level.style = std::move(style);
  begin(level, kNoHTMLNode);
}

void StyleStack::begin(Level &level, HTMLNodeIndex element) {
  static const Level kPage;
  const Level &outer = size_ > 0 ? top() : kPage;
  level.node = element;
  level.attributes_.reset();
  level.showsText = outer.showsText;
  ++size_;
  if (level.style.display == CSSKeyword::kNone) return;
  level.context = contextInElement(level.style, outer.context);
  if (element != kNoHTMLNode) takeAttributes(level);
}

void StyleStack::takeAttributes(Level &level) {
  const HTMLNode &node = document_.node(level.node);
  if (node.nameSpace == HTMLNamespace::svg) level.showsText = showsTextOfSVG(node.name, level.showsText);
  if (node.nameSpace == HTMLNamespace::mathML) level.showsText = showsTextOfMathML(node.name);
  if (node.count == 0) return;
  if (const auto language = document_.attribute(node, "lang"_atom)) level.context.language = *language;
  if (node.name != "a"_atom) return;
  auto reference = document_.attribute(node, "href"_atom);
  if (!reference && node.nameSpace == HTMLNamespace::svg)
    reference = document_.attribute(node, "xlink:href"_atom);
  if (!reference) return;
  const NSString written = NSString::stringWithCharacters(*reference);
  level.context.link = options_.absoluteURL ? options_.absoluteURL(written) : written;
}

}  // namespace nimbo::detail
