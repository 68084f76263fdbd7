// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string_view>

#include "platform/CoreServices/TextEncodings/CodeTable.hpp"

namespace nimbo {

/// A row of a table in the source: what codes from one on mean, or what one code means.
struct CodeText {
  TableCode code;
  std::u16string_view text;
};

/// The table of single bytes of a name, still without the way from characters to codes; null when there is
/// none.
std::unique_ptr<CodeTable> singleByteCodeTable(std::string_view name);
/// The table of two bytes of a name, as above.
std::unique_ptr<CodeTable> doubleByteCodeTable(std::string_view name);

/// Gives consecutive codes the single characters of each row.
template <class Rows>
void setRuns(CodeTable &table, const Rows &runs) {
  for (const CodeText &run : runs)
    for (std::size_t i = 0; i < run.text.size(); ++i)
      table.set(static_cast<TableCode>(run.code + i), run.text[i]);
}

/// Gives single codes the texts of the rows, to be read only.
template <class Rows>
void setReadOnlyCodes(CodeTable &table, const Rows &rows) {
  for (const CodeText &row : rows) table.setReadOnly(row.code, row.text);
}

}  // namespace nimbo
