// SPDX-License-Identifier: Apache-2.0
//
// Makes the tree of a page out of its tokens, as the tree construction of the HTML standard does with scripts
// off. The time is linear in the page whatever it is: where the standard's rules are not, budgets bound them.
// One thread uses a builder.
//
//     HTMLTreeBuilder(document, limits).build();
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/WebKit/Parsing/FormattingElements.hpp"
#include "platform/WebKit/Parsing/HTMLTokenizer.hpp"
#include "platform/WebKit/Parsing/OpenElements.hpp"

namespace nimbo {

class HTMLTreeBuilder {
 public:
  HTMLTreeBuilder(HTMLDocument &document, const HTMLLimits &limits);

  /// Reads the whole page.
  void build();

 private:
  /// What the next token is expected to be; the standard's insertion modes.
  enum class Mode : std::uint8_t {
    initial,
    beforeHTML,
    beforeHead,
    inHead,
    inHeadNoscript,
    afterHead,
    inBody,
    text,
    inTable,
    inTableText,
    inCaption,
    inColumnGroup,
    inTableBody,
    inRow,
    inCell,
    inTemplate,
    afterBody,
    inFrameset,
    afterFrameset,
    afterAfterBody,
    afterAfterFrameset
  };

  /// Whether a token is done, or has to be read again in the mode that holds now.
  enum class Outcome : bool { again, done };

  /// Where a node goes: in front of a child of the parent, or behind all of them.
  struct Place {
    HTMLNodeIndex parent;
    HTMLNodeIndex before = kNoHTMLNode;
  };

  using Entry = OpenElements::Entry;
  using Position = OpenElements::Position;

  // Tokens on their way to a mode.
  void read(HTMLToken &token);
  bool isForHTML(const HTMLToken &token) const;
  Outcome readInMode(HTMLToken &token, Mode mode);

  // Modes outside the body.
  Outcome readInitial(HTMLToken &token);
  Outcome readBeforeHTML(HTMLToken &token);
  Outcome readBeforeHead(HTMLToken &token);
  Outcome readInHead(HTMLToken &token);
  Outcome readInHeadNoscript(HTMLToken &token);
  Outcome readAfterHead(HTMLToken &token);
  Outcome readText(HTMLToken &token);
  Outcome readInTemplate(HTMLToken &token);
  Outcome readAfterBody(HTMLToken &token);
  Outcome readInFrameset(HTMLToken &token);
  Outcome readAfterFrameset(HTMLToken &token);
  Outcome readAfterAfterBody(HTMLToken &token);
  Outcome readAfterAfterFrameset(HTMLToken &token);
  void insertHeadElement(const HTMLToken &token);
  void endTemplate();

  // The body.
  Outcome readInBody(HTMLToken &token);
  Outcome readStartTagInBody(HTMLToken &token);
  Outcome readEndTagInBody(HTMLToken &token);
  void readCharactersInBody(const HTMLToken &token);
  void readFramesetInBody(const HTMLToken &token);
  void readItem(const HTMLToken &token);
  void readInput(const HTMLToken &token);
  void readOption(const HTMLToken &token);
  void endForm();
  void endBlock(HTMLAtom name);
  void endItem(HTMLAtom name);
  void endHeading();
  void endOther(HTMLAtom name);
  void closeParagraph();
  Position topHeading() const;

  // Formatting elements.
  void insertFormatting(const HTMLToken &token);
  void reconstructFormatting();
  void endFormatting(HTMLAtom name);
  bool adopt(HTMLAtom name);
  HTMLNodeIndex wrapBlock(std::vector<Entry> &above, std::size_t block, std::size_t *bookmark);
  void endLink();
  HTMLNodeIndex clone(HTMLNodeIndex element);
  std::uint64_t attributesHash(const HTMLNode &element) const;

  // Tables.
  Outcome readInTable(HTMLToken &token);
  Outcome readStartTagInTable(HTMLToken &token);
  Outcome readEndTagInTable(HTMLToken &token);
  Outcome readOtherInTable(HTMLToken &token);
  Outcome readInTableText(HTMLToken &token);
  Outcome readInCaption(HTMLToken &token);
  Outcome readInColumnGroup(HTMLToken &token);
  Outcome readInTableBody(HTMLToken &token);
  Outcome readInRow(HTMLToken &token);
  Outcome readInCell(HTMLToken &token);
  bool endTable();
  Outcome endTablePart(Position position, Mode mode);
  void popToOneOf(std::initializer_list<HTMLAtom> names);

  // SVG and MathML.
  Outcome readForeign(HTMLToken &token);
  void insertForeign(const HTMLToken &token, HTMLNamespace nameSpace);
  bool isBreakout(const HTMLToken &token) const;

  // The tree.
  HTMLNodeIndex makeNode(HTMLNodeKind kind);
  HTMLNodeIndex makeElement(HTMLAtom name, HTMLNamespace nameSpace, std::uint32_t firstAttribute,
                            std::uint32_t count);
  void insert(HTMLNodeIndex node, Place place);
  void remove(HTMLNodeIndex node);
  void moveChildren(HTMLNodeIndex from, HTMLNodeIndex to);
  Place placeIn(const Entry &target) const;
  Place place() const { return placeIn(open_.current()); }
  void pushElement(HTMLNodeIndex index, HTMLAtom name, ElementTraits traits);
  HTMLNodeIndex insertElement(const HTMLToken &token);
  HTMLNodeIndex insertElement(HTMLAtom name);
  void insertEmptyElement(const HTMLToken &token);
  void insertComment(const HTMLToken &token, HTMLNodeIndex parent);
  void insertComment(const HTMLToken &token);
  void insertText(HTMLTextRange text);
  void extendText(HTMLNodeIndex node, HTMLTextRange text);
  void mergeAttributes(HTMLNodeIndex element, const HTMLToken &token);
  void limitDepth(HTMLNodeIndex root);
  void moveElementsBehind(HTMLNodeIndex index);

  // Helpers of the modes.
  void readTextElement(const HTMLToken &token, Mode mode);
  HTMLTextRange takeBlanks(HTMLToken &token) const;
  bool skipBlanks(HTMLToken &token) const;
  bool insertBlanks(HTMLToken &token);
  bool isBlank(HTMLTextRange text) const;
  void insertBlanksOf(const HTMLToken &token);
  void popImpliedEnds(HTMLAtom except = kNoHTMLAtom);
  void resetMode();
  std::u16string_view units(HTMLTextRange text) const {
    return document_.units(text.start, text.count, text.isOwn);
  }
  std::u16string_view attribute(const HTMLToken &token, HTMLAtom name) const;
  const HTMLNode &node(HTMLNodeIndex index) const { return document_.nodes_[index]; }

  HTMLDocument &document_;
  HTMLLimits limits_;
  HTMLTokenizer tokenizer_;
  OpenElements open_;
  FormattingElements formatting_;
  Mode mode_ = Mode::initial;
  /// The mode behind the text that is being read.
  Mode originalMode_ = Mode::initial;
  std::vector<Mode> templateModes_;
  HTMLNodeIndex head_ = kNoHTMLNode;
  HTMLNodeIndex form_ = kNoHTMLNode;
  /// Whether a `frameset` may still take the place of the body.
  bool isFramesetOK_ = true;
  /// Whether what does not belong into a table goes in front of it.
  bool isFostering_ = false;
  /// Whether a line feed that is next means nothing.
  bool isLineFeedSkipped_ = false;
  std::vector<HTMLTextRange> tableText_;
  /// Where the room behind a text ends that was moved to grow.
  std::unordered_map<HTMLNodeIndex, std::uint32_t> textRooms_;
  /// How many formatting elements may still be made again.
  std::uint64_t clones_;
  /// How many open elements adoptions may still step over.
  std::uint64_t adoptionSteps_;
  /// How deep the tree may be, at most.
  std::uint32_t greatestDepth_ = 0;
  std::uint32_t adoptions_ = 0;
};

}  // namespace nimbo
