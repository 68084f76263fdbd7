// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "importers/Packages/DocumentBudget.hpp"
#include "platform/Foundation/NSMutableString.hpp"

namespace nimbo {

/// The text of a part of a document, in lines: a paragraph or a row of a table is one, and tabs part cells.
/// What parts two texts is written only when the second one comes.
class DocumentText {
 public:
  explicit DocumentText(DocumentBudget &budget) noexcept : budget_(&budget) {}

  /// Appends UTF-8.
  void append(std::string_view text);
  /// Appends units.
  void append(std::u16string_view text);
  /// Ends a line, if there is one. The first line of a cell stands beside that of the cell in front of it.
  void endLine() noexcept;
  /// Ends a cell; a line that ended in it last does not count.
  void endCell() noexcept;
  /// Begins or ends a row of cells.
  void endRow() noexcept;

  /// Appends another text in lines of its own; its length is accounted for already.
  void appendLines(std::u16string_view lines);

  /// The text so far, which is borrowed until it is changed.
  std::u16string_view view() const noexcept { return text_.view(); }
  /// The text; nil when there is none.
  NSString string() &&;

 private:
  template <class Text>
  void appendCounted(Text text);
  void separate();

  DocumentBudget *budget_;
  NSMutableString text_;
  std::uint32_t tabs_ = 0;
  bool endsLine_ = false, endsRow_ = false;
};

}  // namespace nimbo
