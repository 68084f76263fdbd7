// SPDX-License-Identifier: Apache-2.0
#include "platform/Foundation/Unicode/CharacterReferences.hpp"

#include <algorithm>
#include <iterator>

#include "platform/Foundation/Unicode/ASCII.hpp"
#include "platform/Foundation/Unicode/NumericReference.hpp"

namespace nimbo {
namespace {

struct Row {
  char32_t first;
  /// 0 when there is one character alone.
  char32_t second;
  bool isGoodWithoutSemicolon;
  char name[32];
};

constexpr Row kRows[] = {
#include "CharacterReferences.inc"
};
static_assert(std::ranges::adjacent_find(kRows, std::ranges::greater_equal(), [](const Row &row) {
                return std::string_view(row.name);
              }) == std::end(kRows));

/// The first row whose name begins with each byte.
constexpr auto kFirstRows = [] {
  std::array<std::uint16_t, 129> rows{};
  for (std::size_t byte = 0; byte < rows.size(); ++byte)
    rows[byte] = static_cast<std::uint16_t>(
        std::ranges::lower_bound(kRows, byte, {},
                                 [](const Row &row) { return static_cast<std::size_t>(row.name[0]); }) -
        std::begin(kRows));
  return rows;
}();

void append(CharacterReference &reference, char32_t c) {
  if (c > 0xffff) {
    reference.units[reference.unitCount++] = static_cast<unichar>(0xd7c0 + (c >> 10));
    c = 0xdc00 + (c & 0x3ff);
  }
  reference.units[reference.unitCount++] = static_cast<unichar>(c);
}

CharacterReference readNumber(std::u16string_view text) {
  const NumericReference number = numericReferenceAt(text);
  CharacterReference reference;
  if (number.length == 0) return reference;
  append(reference, number.character);
  reference.length = number.length;
  return reference;
}

/// The longest name that the text has behind its "&".
CharacterReference readName(std::u16string_view text, bool isInAttribute) {
  const Row *first = kRows + kFirstRows[text[1]], *last = kRows + kFirstRows[text[1] + 1], *found = nullptr;
  std::size_t length = 1, foundLength = 0;
  while (first != last) {
    // All of these rows have what was read so far in front; a row that has no more comes first.
    if (first->name[length] == '\0') {
      const bool isEnded = length + 1 < text.size() && text[length + 1] == u';';
      if (isEnded || first->isGoodWithoutSemicolon) {
        found = first;
        foundLength = length + (isEnded ? 2 : 1);
      }
      if (isEnded) break;
    }
    if (++length >= text.size() || !isASCIIAlphanumeric(text[length])) break;
    const auto unitAt = [at = length - 1](const Row &row) { return static_cast<unichar>(row.name[at]); };
    first = std::ranges::lower_bound(first, last, text[length], {}, unitAt);
    last = std::ranges::upper_bound(first, last, text[length], {}, unitAt);
  }
  CharacterReference reference;
  if (!found) return reference;
  // An address such as "?a=1&copy=2" means no sign.
  if (isInAttribute && text[foundLength - 1] != u';' && foundLength < text.size() &&
      (text[foundLength] == u'=' || isASCIIAlphanumeric(text[foundLength])))
    return reference;
  append(reference, found->first);
  if (found->second != 0) append(reference, found->second);
  reference.length = static_cast<std::uint32_t>(foundLength);
  return reference;
}

}  // namespace

CharacterReference readCharacterReference(std::u16string_view text, bool isInAttribute) {
  if (text.size() < 2) return {};
  if (text[1] == u'#') return readNumber(text);
  return isASCIILetter(text[1]) ? readName(text, isInAttribute) : CharacterReference();
}

}  // namespace nimbo
