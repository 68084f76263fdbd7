// SPDX-License-Identifier: Apache-2.0
#include "platform/WebKit/Parsing/HTMLTreeBuilder.hpp"

#include <algorithm>

namespace nimbo {
namespace {

// Unclosed formatting elements begin again in each block, and misnested ones are moved. A page gets so many of
// these for nothing, and more by its length; then formatting ends with its block.
constexpr std::uint64_t kClones = 1 << 14, kUnitsOfClone = 8;
constexpr std::uint64_t kAdoptionSteps = 1 << 20, kAdoptionStepsOfUnit = 16;

/// About how many units of a page there are for a node.
constexpr std::size_t kUnitsOfNode = 24;

bool isBlankUnit(unichar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

}  // namespace

HTMLTreeBuilder::HTMLTreeBuilder(HTMLDocument &document, const HTMLLimits &limits)
    : document_(document),
      limits_(limits),
      tokenizer_(document, limits),
      open_(document.nodes_),
      clones_(kClones + document.source().size() / kUnitsOfClone),
      adoptionSteps_(kAdoptionSteps + document.source().size() * kAdoptionStepsOfUnit) {
  document.nodes_.reserve(document.source().size() / kUnitsOfNode + 16);
}

void HTMLTreeBuilder::build() {
  HTMLToken token;
  do {
    tokenizer_.setForeign(open_.current().nameSpace != HTMLNamespace::html);
    tokenizer_.next(token);
    if (document_.nodes_.size() >= limits_.nodes) {
      document_.isCut_ = true;
      token = {};
    }
    read(token);
  } while (token.kind != HTMLTokenKind::endOfFile);
  while (open_.size() > 0) open_.pop();
  if (greatestDepth_ + adoptions_ <= limits_.depth) return;
  for (HTMLNodeIndex i = 0; i < document_.nodes_.size(); ++i)
    if (node(i).kind == HTMLNodeKind::document || node(i).kind == HTMLNodeKind::templateContents) limitDepth(i);
}

void HTMLTreeBuilder::read(HTMLToken &token) {
  if (isLineFeedSkipped_) {
    isLineFeedSkipped_ = false;
    if (token.kind == HTMLTokenKind::characters && units(token.text).front() == u'\n') {
      ++token.text.start;
      if (--token.text.count == 0) return;
    }
  }
  Outcome outcome;
  do outcome = isForHTML(token) ? readInMode(token, mode_) : readForeign(token);
  while (outcome == Outcome::again);
}

/// Whether the token is read by the rules of HTML, not by those of what is in SVG and MathML.
bool HTMLTreeBuilder::isForHTML(const HTMLToken &token) const {
  const Entry &current = open_.current();
  if (current.nameSpace == HTMLNamespace::html) return true;
  const bool isText = token.kind == HTMLTokenKind::characters || token.kind == HTMLTokenKind::nullCharacter;
  const bool isStart = token.kind == HTMLTokenKind::startTag;
  if ((current.traits & kIsMathText) != 0 &&
      (isText || (isStart && token.name != "mglyph"_atom && token.name != "malignmark"_atom)))
    return true;
  if ((current.traits & kIsAnnotation) != 0 && isStart && token.name == "svg"_atom) return true;
  return ((current.traits & kHoldsHTML) != 0 && (isText || isStart)) || token.kind == HTMLTokenKind::endOfFile;
}

HTMLTreeBuilder::Outcome HTMLTreeBuilder::readInMode(HTMLToken &token, Mode mode) {
  switch (mode) {
    case Mode::initial:
      return readInitial(token);
    case Mode::beforeHTML:
      return readBeforeHTML(token);
    case Mode::beforeHead:
      return readBeforeHead(token);
    case Mode::inHead:
      return readInHead(token);
    case Mode::inHeadNoscript:
      return readInHeadNoscript(token);
    case Mode::afterHead:
      return readAfterHead(token);
    case Mode::inBody:
      return readInBody(token);
    case Mode::text:
      return readText(token);
    case Mode::inTable:
      return readInTable(token);
    case Mode::inTableText:
      return readInTableText(token);
    case Mode::inCaption:
      return readInCaption(token);
    case Mode::inColumnGroup:
      return readInColumnGroup(token);
    case Mode::inTableBody:
      return readInTableBody(token);
    case Mode::inRow:
      return readInRow(token);
    case Mode::inCell:
      return readInCell(token);
    case Mode::inTemplate:
      return readInTemplate(token);
    case Mode::afterBody:
      return readAfterBody(token);
    case Mode::inFrameset:
      return readInFrameset(token);
    case Mode::afterFrameset:
      return readAfterFrameset(token);
    case Mode::afterAfterBody:
      return readAfterAfterBody(token);
    case Mode::afterAfterFrameset:
      return readAfterAfterFrameset(token);
  }
  return Outcome::done;
}

/// Takes the blanks in front of the token's text away from it.
HTMLTextRange HTMLTreeBuilder::takeBlanks(HTMLToken &token) const {
  const std::u16string_view text = units(token.text);
  const auto count = static_cast<std::uint32_t>(std::ranges::find_if_not(text, isBlankUnit) - text.begin());
  HTMLTextRange blanks = token.text;
  blanks.count = count;
  token.text.start += count;
  token.text.count -= count;
  return blanks;
}

/// Whether the token is blank text, whose blanks mean nothing.
bool HTMLTreeBuilder::skipBlanks(HTMLToken &token) const {
  if (token.kind != HTMLTokenKind::characters) return false;
  takeBlanks(token);
  return token.text.count == 0;
}

/// Whether the token is blank text; blanks in front of its text are inserted.
bool HTMLTreeBuilder::insertBlanks(HTMLToken &token) {
  if (token.kind != HTMLTokenKind::characters) return false;
  if (const HTMLTextRange blanks = takeBlanks(token); blanks.count > 0) insertText(blanks);
  return token.text.count == 0;
}

bool HTMLTreeBuilder::isBlank(HTMLTextRange text) const {
  return std::ranges::all_of(units(text), isBlankUnit);
}

/// Inserts the blanks of the text alone.
void HTMLTreeBuilder::insertBlanksOf(const HTMLToken &token) {
  HTMLToken rest = token;
  while (rest.text.count > 0) {
    insertBlanks(rest);
    const std::u16string_view text = units(rest.text);
    const auto other = static_cast<std::uint32_t>(std::ranges::find_if(text, isBlankUnit) - text.begin());
    rest.text.start += other;
    rest.text.count -= other;
  }
}

/// Reads the text in an element that holds nothing else.
void HTMLTreeBuilder::readTextElement(const HTMLToken &token, Mode mode) {
  insertElement(token);
  originalMode_ = mode;
  mode_ = Mode::text;
}

void HTMLTreeBuilder::popImpliedEnds(HTMLAtom except) {
  while ((open_.current().traits & kEndsByItself) != 0 && open_.current().name != except) open_.pop();
}

/// Finds the mode out again by what is open.
void HTMLTreeBuilder::resetMode() {
  const Entry &entry = open_.at(open_.current().mode);
  switch (entry.name) {
    case "td"_atom:
    case "th"_atom:
      mode_ = Mode::inCell;
      break;
    case "tr"_atom:
      mode_ = Mode::inRow;
      break;
    case "tbody"_atom:
    case "thead"_atom:
    case "tfoot"_atom:
      mode_ = Mode::inTableBody;
      break;
    case "caption"_atom:
      mode_ = Mode::inCaption;
      break;
    case "colgroup"_atom:
      mode_ = Mode::inColumnGroup;
      break;
    case "table"_atom:
      mode_ = Mode::inTable;
      break;
    case "template"_atom:
      mode_ = templateModes_.back();
      break;
    case "head"_atom:
      mode_ = Mode::inHead;
      break;
    case "html"_atom:
      mode_ = Mode::afterHead;
      break;
    default:
      mode_ = Mode::inBody;
  }
}

std::u16string_view HTMLTreeBuilder::attribute(const HTMLToken &token, HTMLAtom name) const {
  for (std::uint32_t i = 0; i < token.attributeCount; ++i) {
    const HTMLAttribute &one = document_.attributes_[token.firstAttribute + i];
    if (one.name == name) return document_.value(one);
  }
  return {};
}

}  // namespace nimbo
