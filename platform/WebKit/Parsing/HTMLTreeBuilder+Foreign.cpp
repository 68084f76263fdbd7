// SPDX-License-Identifier: Apache-2.0
//
// SVG and MathML inside HTML.
#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Parsing/ForeignNames.hpp"
#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

namespace nimbo {

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readForeign(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      insertText(token.text);
      if (isFramesetOK_ && !isBlank(token.text)) isFramesetOK_ = false;
      return Outcome::done;
    case HTMLTokenKind::nullCharacter:
      document_.ownText_ += u'\uFFFD';
      insertText({static_cast<std::uint32_t>(document_.ownText_.size() - 1), 1, true});
      return Outcome::done;
    case HTMLTokenKind::comment:
      insertComment(token);
      return Outcome::done;
    case HTMLTokenKind::doctype:
    case HTMLTokenKind::endOfFile:
      return Outcome::done;
    case HTMLTokenKind::startTag:
      if (isBreakout(token)) break;
      insertForeign(token, open_.current().nameSpace);
      return Outcome::done;
    case HTMLTokenKind::endTag:
      if (token.name == "br"_atom || token.name == "p"_atom) break;
      if (const Position position = open_.topForeign(token.name); position > open_.current().html)
        return open_.popThrough(position), Outcome::done;
      return readInMode(token, mode_);
  }
  while (open_.current().nameSpace != HTMLNamespace::html &&
         (open_.current().traits & (kIsMathText | kHoldsHTML)) == 0)
    open_.pop();
  return readInMode(token, mode_);
}

/// Whether the start tag is one of HTML, which ends SVG and MathML.
bool HTMLTreeBuilder::isBreakout(const HTMLToken &token) const {
  if (token.name != "font"_atom) return endsForeignContent(token.name);
  const auto isOfFont = [](const HTMLAttribute &one) {
    return one.name == "color"_atom || one.name == "face"_atom || one.name == "size"_atom;
  };
  const std::span<const HTMLAttribute> all = document_.attributes_;
  return std::ranges::any_of(all.subspan(token.firstAttribute, token.attributeCount), isOfFont);
}

/// Inserts an element of SVG or MathML and opens it unless its tag closes it.
void HTMLTreeBuilder::insertForeign(const HTMLToken &token, HTMLNamespace nameSpace) {
  const bool isSVG = nameSpace == HTMLNamespace::svg;
  for (std::uint32_t i = 0; i < token.attributeCount; ++i) {
    HTMLAtom &name = document_.attributes_[token.firstAttribute + i].name;
    name = isSVG ? attributeNameInSVG(name) : attributeNameInMathML(name);
  }
  const HTMLAtom name = isSVG ? elementNameInSVG(token.name) : token.name;
  const HTMLNodeIndex index = makeElement(name, nameSpace, token.firstAttribute, token.attributeCount);
  insert(index, place());
  ElementTraits traits = traitsOf(name, nameSpace);
  const std::u16string_view encoding = attribute(token, "encoding"_atom);
  if ((traits & kIsAnnotation) != 0 && equalsOneOfASCIINoCase(encoding, {"text/html", "application/xhtml+xml"}))
    traits |= kHoldsHTML;
  pushElement(index, token.name, traits);
  if (token.isSelfClosing) open_.pop();
}

}  // namespace nimbo
