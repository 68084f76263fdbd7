// SPDX-License-Identifier: Apache-2.0
//
// The body.
#include <algorithm>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

namespace nimbo {

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInBody(HTMLToken &token) {
  switch (token.kind) {
    case HTMLTokenKind::characters:
      readCharactersInBody(token);
      break;
    case HTMLTokenKind::comment:
      insertComment(token);
      break;
    case HTMLTokenKind::startTag:
      return readStartTagInBody(token);
    case HTMLTokenKind::endTag:
      return readEndTagInBody(token);
    case HTMLTokenKind::endOfFile:
      if (!templateModes_.empty()) return readInTemplate(token);
      break;
    case HTMLTokenKind::doctype:
    case HTMLTokenKind::nullCharacter:
      break;
  }
  return Outcome::done;
}

void HTMLTreeBuilder::readCharactersInBody(const HTMLToken &token) {
  reconstructFormatting();
  insertText(token.text);
  if (isFramesetOK_ && !isBlank(token.text)) isFramesetOK_ = false;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readStartTagInBody(HTMLToken &token) {
  switch (token.name) {
    case "html"_atom:
      if (!open_.has("template"_atom)) mergeAttributes(open_.at(1).node, token);
      break;
    case "base"_atom:
    case "basefont"_atom:
    case "bgsound"_atom:
    case "link"_atom:
    case "meta"_atom:
    case "noframes"_atom:
    case "script"_atom:
    case "style"_atom:
    case "template"_atom:
    case "title"_atom:
      return readInHead(token);
    case "body"_atom:
      if (open_.has("template"_atom)) break;
      isFramesetOK_ = false;
      mergeAttributes(open_.at(2).node, token);
      break;
    case "frameset"_atom:
      readFramesetInBody(token);
      break;
    case "address"_atom:
    case "article"_atom:
    case "aside"_atom:
    case "blockquote"_atom:
    case "center"_atom:
    case "details"_atom:
    case "dialog"_atom:
    case "dir"_atom:
    case "div"_atom:
    case "dl"_atom:
    case "fieldset"_atom:
    case "figcaption"_atom:
    case "figure"_atom:
    case "footer"_atom:
    case "header"_atom:
    case "hgroup"_atom:
    case "main"_atom:
    case "menu"_atom:
    case "nav"_atom:
    case "ol"_atom:
    case "p"_atom:
    case "search"_atom:
    case "section"_atom:
    case "summary"_atom:
    case "ul"_atom:
      closeParagraph();
      insertElement(token);
      break;
    case "h1"_atom:
    case "h2"_atom:
    case "h3"_atom:
    case "h4"_atom:
    case "h5"_atom:
    case "h6"_atom:
      closeParagraph();
      if (topHeading() == open_.size()) open_.pop();
      insertElement(token);
      break;
    case "pre"_atom:
    case "listing"_atom:
      closeParagraph();
      insertElement(token);
      isLineFeedSkipped_ = true;
      isFramesetOK_ = false;
      break;
    case "form"_atom:
      if (form_ != kNoHTMLNode && !open_.has("template"_atom)) break;
      closeParagraph();
      insertElement(token);
      if (!open_.has("template"_atom)) form_ = open_.current().node;
      break;
    case "li"_atom:
    case "dd"_atom:
    case "dt"_atom:
      readItem(token);
      break;
    case "plaintext"_atom:
      closeParagraph();
      insertElement(token);
      tokenizer_.readPlainText();
      break;
    case "button"_atom:
      if (open_.isInScope("button"_atom)) open_.popThrough(open_.top("button"_atom));
      reconstructFormatting();
      insertElement(token);
      isFramesetOK_ = false;
      break;
    case "a"_atom:
      endLink();
      reconstructFormatting();
      insertFormatting(token);
      break;
    case "nobr"_atom:
      reconstructFormatting();
      if (open_.isInScope("nobr"_atom)) {
        endFormatting("nobr"_atom);
        reconstructFormatting();
      }
      insertFormatting(token);
      break;
    case "b"_atom:
    case "big"_atom:
    case "code"_atom:
    case "em"_atom:
    case "font"_atom:
    case "i"_atom:
    case "s"_atom:
    case "small"_atom:
    case "strike"_atom:
    case "strong"_atom:
    case "tt"_atom:
    case "u"_atom:
      reconstructFormatting();
      insertFormatting(token);
      break;
    case "applet"_atom:
    case "marquee"_atom:
    case "object"_atom:
      reconstructFormatting();
      insertElement(token);
      formatting_.pushMarker();
      isFramesetOK_ = false;
      break;
    case "table"_atom:
      if (document_.quirksMode_ != HTMLQuirksMode::quirks) closeParagraph();
      insertElement(token);
      isFramesetOK_ = false;
      mode_ = Mode::inTable;
      break;
    case "area"_atom:
    case "br"_atom:
    case "embed"_atom:
    case "img"_atom:
    case "keygen"_atom:
    case "wbr"_atom:
      reconstructFormatting();
      insertEmptyElement(token);
      isFramesetOK_ = false;
      break;
    case "input"_atom:
      readInput(token);
      break;
    case "param"_atom:
    case "source"_atom:
    case "track"_atom:
      insertEmptyElement(token);
      break;
    case "hr"_atom:
      closeParagraph();
      if (open_.isInScope("select"_atom)) popImpliedEnds();
      insertEmptyElement(token);
      isFramesetOK_ = false;
      break;
    case "image"_atom:
      token.name = "img"_atom;
      return Outcome::again;
    case "textarea"_atom:
      readTextElement(token, mode_);
      tokenizer_.readRCDATA(token.name);
      isLineFeedSkipped_ = true;
      isFramesetOK_ = false;
      break;
    case "xmp"_atom:
      closeParagraph();
      reconstructFormatting();
      [[fallthrough]];
    case "iframe"_atom:
      isFramesetOK_ = false;
      [[fallthrough]];
    case "noembed"_atom:
      readTextElement(token, mode_);
      tokenizer_.readRawText(token.name);
      break;
    case "select"_atom:
      if (open_.isInScope("select"_atom)) {
        open_.popThrough(open_.top("select"_atom));
        break;
      }
      reconstructFormatting();
      insertElement(token);
      isFramesetOK_ = false;
      break;
    case "option"_atom:
    case "optgroup"_atom:
      readOption(token);
      break;
    case "rb"_atom:
    case "rtc"_atom:
      if (open_.isInScope("ruby"_atom)) popImpliedEnds();
      insertElement(token);
      break;
    case "rp"_atom:
    case "rt"_atom:
      if (open_.isInScope("ruby"_atom)) popImpliedEnds("rtc"_atom);
      insertElement(token);
      break;
    case "math"_atom:
      reconstructFormatting();
      insertForeign(token, HTMLNamespace::mathML);
      break;
    case "svg"_atom:
      reconstructFormatting();
      insertForeign(token, HTMLNamespace::svg);
      break;
    case "caption"_atom:
    case "col"_atom:
    case "colgroup"_atom:
    case "frame"_atom:
    case "head"_atom:
    case "tbody"_atom:
    case "td"_atom:
    case "tfoot"_atom:
    case "th"_atom:
    case "thead"_atom:
    case "tr"_atom:
      break;
    default:
      reconstructFormatting();
      insertElement(token);
  }
  return Outcome::done;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readEndTagInBody(HTMLToken &token) {
  switch (token.name) {
    case "template"_atom:
      endTemplate();
      break;
    case "body"_atom:
      if (open_.isInScope("body"_atom)) mode_ = Mode::afterBody;
      break;
    case "html"_atom:
      if (!open_.isInScope("body"_atom)) break;
      mode_ = Mode::afterBody;
      return Outcome::again;
    case "address"_atom:
    case "article"_atom:
    case "aside"_atom:
    case "blockquote"_atom:
    case "button"_atom:
    case "center"_atom:
    case "details"_atom:
    case "dialog"_atom:
    case "dir"_atom:
    case "div"_atom:
    case "dl"_atom:
    case "fieldset"_atom:
    case "figcaption"_atom:
    case "figure"_atom:
    case "footer"_atom:
    case "header"_atom:
    case "hgroup"_atom:
    case "listing"_atom:
    case "main"_atom:
    case "menu"_atom:
    case "nav"_atom:
    case "ol"_atom:
    case "pre"_atom:
    case "search"_atom:
    case "section"_atom:
    case "select"_atom:
    case "summary"_atom:
    case "ul"_atom:
    case "dd"_atom:
    case "dt"_atom:
      endBlock(token.name);
      break;
    case "form"_atom:
      endForm();
      break;
    case "p"_atom:
      if (!open_.isInButtonScope("p"_atom)) insertElement("p"_atom);
      closeParagraph();
      break;
    case "li"_atom:
      if (open_.isInListItemScope("li"_atom)) open_.popThrough(open_.top("li"_atom));
      break;
    case "h1"_atom:
    case "h2"_atom:
    case "h3"_atom:
    case "h4"_atom:
    case "h5"_atom:
    case "h6"_atom:
      if (open_.isInScope(topHeading())) open_.popThrough(topHeading());
      break;
    case "a"_atom:
    case "b"_atom:
    case "big"_atom:
    case "code"_atom:
    case "em"_atom:
    case "font"_atom:
    case "i"_atom:
    case "nobr"_atom:
    case "s"_atom:
    case "small"_atom:
    case "strike"_atom:
    case "strong"_atom:
    case "tt"_atom:
    case "u"_atom:
      endFormatting(token.name);
      break;
    case "applet"_atom:
    case "marquee"_atom:
    case "object"_atom:
      if (!open_.isInScope(token.name)) break;
      open_.popThrough(open_.top(token.name));
      formatting_.clearToMarker();
      break;
    case "br"_atom:
      reconstructFormatting();
      insertElement("br"_atom);
      open_.pop();
      isFramesetOK_ = false;
      break;
    default:
      endOther(token.name);
  }
  return Outcome::done;
}

/// A frameset takes the place of a body without content.
void HTMLTreeBuilder::readFramesetInBody(const HTMLToken &token) {
  if (!isFramesetOK_) return;
  remove(open_.at(2).node);
  open_.popThrough(2);
  document_.body_ = insertElement(token);
  mode_ = Mode::inFrameset;
}

/// Begins a list item, or a term or description, and ends the one that it would stand in.
void HTMLTreeBuilder::readItem(const HTMLToken &token) {
  isFramesetOK_ = false;
  const Position bound = open_.current().listItemBound;
  const bool isOther = token.name == "dd"_atom || token.name == "dt"_atom;
  const bool isInOther = isOther && (OpenElements::isHTML(open_.at(bound), "dd"_atom) ||
                                     OpenElements::isHTML(open_.at(bound), "dt"_atom));
  if (isInOther || OpenElements::isHTML(open_.at(bound), token.name)) open_.popThrough(bound);
  closeParagraph();
  insertElement(token);
}

void HTMLTreeBuilder::readInput(const HTMLToken &token) {
  if (open_.isInScope("select"_atom)) open_.popThrough(open_.top("select"_atom));
  reconstructFormatting();
  insertEmptyElement(token);
  if (!equalsASCIINoCase(attribute(token, "type"_atom), "hidden")) isFramesetOK_ = false;
}

void HTMLTreeBuilder::readOption(const HTMLToken &token) {
  if (open_.isInScope("select"_atom))
    popImpliedEnds(token.name == "option"_atom ? "optgroup"_atom : kNoHTMLAtom);
  else if (open_.isCurrent("option"_atom))
    open_.pop();
  reconstructFormatting();
  insertElement(token);
}

void HTMLTreeBuilder::endForm() {
  if (open_.has("template"_atom)) {
    if (open_.isInScope("form"_atom)) open_.popThrough(open_.top("form"_atom));
    return;
  }
  const HTMLNodeIndex form = form_;
  form_ = kNoHTMLNode;
  const Position position = open_.positionOf(form, "form"_atom);
  if (!open_.isInScope(position)) return;
  popImpliedEnds();
  open_.remove(position);
}

void HTMLTreeBuilder::endBlock(HTMLAtom name) {
  if (open_.isInScope(name)) open_.popThrough(open_.top(name));
}

/// Ends the nearest element of the name that no special element is in the way of.
void HTMLTreeBuilder::endOther(HTMLAtom name) {
  const Position position = open_.top(name);
  if (position >= open_.current().special) open_.popThrough(position);
}

void HTMLTreeBuilder::closeParagraph() {
  if (open_.isInButtonScope("p"_atom)) open_.popThrough(open_.top("p"_atom));
}

HTMLTreeBuilder::Position HTMLTreeBuilder::topHeading() const {
  return std::max({open_.top("h1"_atom), open_.top("h2"_atom), open_.top("h3"_atom), open_.top("h4"_atom),
                   open_.top("h5"_atom), open_.top("h6"_atom)});
}

}  // namespace nimbo
