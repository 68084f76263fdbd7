// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/AppKit/DocumentAttributes.hpp"
#include "platform/AppKit/FileNames.hpp"
#include "platform/AppKit/NSAttributedString.hpp"
#include "platform/AppKit/RTF/RTFRowPlan.hpp"
#include "platform/AppKit/RTF/RTFTokens.hpp"

namespace nimbo {

/// Writes one text: the same text always gives the same RTF.
class RTFWriter {
 public:
  /// What becomes of attachments.
  enum class Attachments {
    asPictures,  ///< Pictures stand in the RTF, others are left out.
    asFiles,     ///< They stand beside it.
  };

  /// A writer of a text that is not nil.
  RTFWriter(const NSAttributedString &text, Attachments attachments);

  /// The RTF. Throws std::length_error when it is longer than data may be.
  std::string write(const DocumentAttributes &documentAttributes);
  /// The files that the RTF names, when it has been written.
  std::vector<NSFileWrapper> takeFiles() { return std::move(files_); }

 private:
  struct Paragraph {
    std::uint32_t start;
    std::uint32_t end;
    std::size_t firstRun;
  };

  void findParagraphs();
  void writeHeader(const DocumentAttributes &documentAttributes);
  void writeParagraph(std::size_t index);
  void writeUnits(std::u16string_view units, const Interned<TextAttributes> &attributes);
  void writeAttributes(const Interned<TextAttributes> &attributes);
  void writeStyle(const Interned<NSParagraphStyle> &style);
  void openGroup(std::string_view start);
  void closeGroup();
  void endLink();
  void writeEnd(std::size_t index, bool hasLineFeed);
  void writeRowStarts(std::size_t index);
  void beginCellParagraph(std::size_t level);
  void writeFillers(std::size_t end, std::size_t level);
  void endRow(const RTFTableEvent &event);
  void writeRowDefinition(const RTFRowPlan &row);
  void writeAttachment(const NSTextAttachment &attachment);
  void writePicture(const NSTextAttachment &attachment);
  void checkLength() const;
  const Interned<NSParagraphStyle> &styleOf(std::size_t paragraph) const {
    return text_.runs()[paragraphs_[paragraph].firstRun].attributes->paragraphStyle;
  }

  const NSAttributedString text_;
  const NSString string_;
  const Attachments attachments_;
  std::vector<Paragraph> paragraphs_;
  RTFTokens tokens_;
  RTFRowPlans rows_;
  /// How many places of the open rows are written, by level.
  std::vector<std::size_t> openRows_;
  bool wasInInnerTable_ = false;
  std::string output_;
  /// What characters and paragraphs are set to, if that is known.
  bool hasLastAttributes_ = false, hasLastStyle_ = false;
  Interned<TextAttributes> lastAttributes_;
  Interned<NSParagraphStyle> lastStyle_;
  std::vector<std::pair<bool, Interned<TextAttributes>>> outerAttributes_;
  NSString link_;
  std::vector<NSFileWrapper> files_;
  FileNames names_;
  std::unordered_map<std::size_t, std::vector<std::pair<NSFileWrapper, NSString>>> namesOfFiles_;
};

}  // namespace nimbo
