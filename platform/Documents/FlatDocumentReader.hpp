// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/Documents/FlatDocumentLists.hpp"
#include "platform/Documents/FlatDocumentStyles.hpp"
#include "platform/Documents/FlatDocumentTables.hpp"

namespace nimbo::detail {

/// Makes rich text of the body of a flat OpenDocument.
class FlatDocumentReader {
 public:
  explicit FlatDocumentReader(const pugi::xml_node &document);

  /// The text; called once.
  NSAttributedString read();
  /// Whether a part is left out, because there is too much of it or it stands too deep.
  bool isIncomplete() const { return isIncomplete_; }

 private:
  /// White space of markup counts once between words, and not at the ends of a paragraph.
  enum class WhiteSpace { atStart, behindText, behindBlank };

  bool mayGoOn();
  void readBlocks(const pugi::xml_node &parent);
  void readBlock(const pugi::xml_node &node);
  void readParagraph(const pugi::xml_node &paragraph);
  void readList(const pugi::xml_node &list);
  void readTable(const pugi::xml_node &table);
  void readShapes(const std::vector<pugi::xml_node> &shapes);
  void readNotes();
  void endParagraph();

  void readInlines(const pugi::xml_node &parent, const Look &look);
  void readInline(const pugi::xml_node &node, const Look &look);
  void readNote(const pugi::xml_node &note, const Look &look);
  void readFrame(const pugi::xml_node &frame, const Look &look);
  void append(std::string_view utf8, const Look &look);
  void appendUnit(unichar unit, const Look &look);

  pugi::xml_node document_;
  FlatDocumentStyles styles_;
  FlatDocumentLists lists_;
  std::vector<Interned<NSTextTableBlock>> cells_;
  NSMutableAttributedString text_;
  WhiteSpace whiteSpace_ = WhiteSpace::atStart;
  /// What ends the paragraph, with the attributes that it begins with.
  TextAttributes paragraphEnd_;
  /// Shapes with text of their own, which follows the paragraph that they are anchored in.
  std::vector<pugi::xml_node> shapes_;
  std::vector<pugi::xml_node> notes_;
  /// Of the note that begins; the next paragraph shows it.
  NSString noteSign_;
  std::uint32_t tables_ = 0, pictures_ = 0, depth_ = 0, visits_ = 0, cellsLeft_ = kMaximumCells;
  bool breaksPage_ = false, isIncomplete_ = false;
};

}  // namespace nimbo::detail
