// SPDX-License-Identifier: Apache-2.0
//
// Takes a page apart as the HTML standard's tokenizer does. One thread uses a tokenizer.
//
//     HTMLTokenizer tokenizer(document, limits);
//     HTMLToken token;
//     while (tokenizer.next(token), token.kind != HTMLTokenKind::endOfFile) use(token);
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/WebKit/HTMLDocument.hpp"
#include "platform/WebKit/Parsing/Doctype.hpp"
#include "platform/WebKit/Parsing/HTMLToken.hpp"
#include "platform/WebKit/Parsing/StopUnits.hpp"

namespace nimbo {

class HTMLTokenizer {
 public:
  /// Attributes and texts that are not in the page like that become the document's.
  HTMLTokenizer(HTMLDocument &document, const HTMLLimits &limits);

  /// Reads the next token; the end of the page again and again. The attributes of a start tag stay in the
  /// document unless they are taken away.
  void next(HTMLToken &token);

  /// What the text behind the start tag that was the last token is: with character references and no tags but
  /// its end tag, without both, a script, or the rest of the page.
  void readRCDATA(HTMLAtom element);
  void readRawText(HTMLAtom element);
  void readScript();
  void readPlainText();
  /// Whether the next tokens are inside SVG or MathML, which have CDATA sections.
  void setForeign(bool isForeign) { isForeign_ = isForeign; }

  /// The parts of the last document type.
  const HTMLDoctype &doctype() const { return doctype_; }

 private:
  /// What the page is at this place: tags and text, or text up to `textEnd_`.
  enum class Content : std::uint8_t { markup, textWithReferences, plainText };

  bool isAt(std::size_t index, unichar c) const { return index < source_.size() && source_[index] == c; }
  bool isMarkupAt(std::size_t index) const;
  bool isEndTagAt(std::size_t index, HTMLAtom element) const;
  void readTextElement(HTMLAtom element, Content content);
  void readTextUntil(std::size_t end, std::size_t next, Content content);

  bool readText(HTMLToken &token);
  bool readSpecialUnit(HTMLToken &token);
  bool readMarkup(HTMLToken &token);
  bool readTag(HTMLToken &token, HTMLTokenKind kind);
  bool readAttribute(HTMLToken &token);
  HTMLTextRange readAttributeValue();
  HTMLTextRange readValueUntil(const StopUnits &stops, unichar quote);
  void addAttribute(HTMLToken &token, HTMLAtom name, HTMLTextRange value);
  bool readDeclaration(HTMLToken &token);
  void readComment(HTMLToken &token);
  void readBogusComment(HTMLToken &token);
  void skipBlanks();
  HTMLTextRange ownCopy(std::u16string_view units);
  HTMLTextRange withoutNulls(std::size_t start, std::size_t end);

  HTMLDocument &document_;
  std::u16string_view source_;
  std::uint32_t maximumAttributes_;
  std::size_t position_ = 0;
  /// Where text without tags ends, and what stands behind it begins.
  std::size_t textEnd_ = 0;
  std::size_t nextPosition_ = 0;
  Content content_ = Content::markup;
  bool isForeign_ = false;
  HTMLDoctype doctype_;
  /// By the atom of an attribute's name: the last tag that had it.
  std::vector<std::uint32_t> tagsOfAttributes_;
  std::uint32_t tag_ = 0;
};

}  // namespace nimbo
