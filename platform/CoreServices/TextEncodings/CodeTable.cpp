// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreServices/TextEncodings/CodeTable.hpp"

#include <algorithm>
#include <map>
#include <mutex>

#include "platform/CoreServices/TextEncodings/CodeTableSources.hpp"
#include "platform/Foundation/Unicode/UTF8.hpp"

namespace nimbo {

std::array<char32_t, CodeTable::kBytes> CodeTable::impossibleCells() {
  std::array<char32_t, kBytes> cells;
  cells.fill(kImpossible);
  return cells;
}

char32_t &CodeTable::cell(TableCode code) {
  if (code < kBytes) return singles_[code];
  std::vector<char32_t> &row = pairs_[code >> 8];
  if (row.empty()) row.assign(kBytes, kImpossible);
  return row[code & 0xff];
}

void CodeTable::setReadOnly(TableCode code, std::u16string_view text) {
  cell(code) = static_cast<char32_t>(kFirstText + texts_.size());
  texts_.push_back(text);
}

void CodeTable::appendMeaning(TableCode code, std::u16string *text) const {
  const char32_t character = meaning(code);
  if (character >= kFirstText) {
    text->append(texts_[character - kFirstText]);
  } else if (character > 0xffff) {
    text->push_back(highSurrogate(character));
    text->push_back(lowSurrogate(character));
  } else {
    text->push_back(static_cast<char16_t>(character));
  }
}

void CodeTable::indexCode(TableCode code) {
  const char32_t character = meaning(code);
  if (character < kFirstText && character != kNoCharacter) codes_.emplace_back(character, code);
}

void CodeTable::index() {
  constexpr TableCode kASCIIEnd = 0x80;
  codes_.clear();
  for (TableCode code = 0; code < kASCIIEnd; ++code) indexCode(code);
  for (TableCode code = kBytes; code-- > kASCIIEnd;) indexCode(code);
  for (std::size_t lead = 0; lead < kBytes; ++lead)
    for (std::size_t trail = 0; isLead(static_cast<std::uint8_t>(lead)) && trail < kBytes; ++trail)
      indexCode(static_cast<TableCode>(lead << 8 | trail));
  std::ranges::stable_sort(codes_, {}, &std::pair<char32_t, TableCode>::first);
}

std::optional<TableCode> CodeTable::codeOf(char32_t character) const {
  const auto found = std::ranges::lower_bound(codes_, character, {}, &std::pair<char32_t, TableCode>::first);
  if (found == codes_.end() || found->first != character) return std::nullopt;
  return found->second;
}

const CodeTable *codeTable(std::string_view name) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<const CodeTable>, std::less<>> tables;
  const std::lock_guard lock(mutex);
  if (const auto found = tables.find(name); found != tables.end()) return found->second.get();
  std::unique_ptr<CodeTable> table = singleByteCodeTable(name);
  if (!table) table = doubleByteCodeTable(name);
  if (!table) return nullptr;
  table->index();
  return tables.emplace(name, std::move(table)).first->second.get();
}

}  // namespace nimbo
