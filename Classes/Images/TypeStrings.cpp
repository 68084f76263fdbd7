// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/TypeStrings.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "Classes/Characters/FastSearches.hpp"

namespace nimbo {
namespace {

struct Row {
  std::u16string_view key;
  std::u16string_view extension;

  constexpr bool isTypeCode() const { return key.starts_with(u'\''); }
};

constexpr auto kRows = std::to_array<Row>({
#include "TypeStrings.inc"
});

template <class Matches>
NSString extensionOfFirst(Matches matches) {
  const auto row = std::ranges::find_if(kRows, matches);
  return row == kRows.end() ? NSString() : NSString::stringWithCharacters(row->extension);
}

}  // namespace

NSString pathExtensionForTypeCode(const NSString &code) {
  return extensionOfFirst([&](const Row &row) { return row.isTypeCode() && row.key == code.view(); });
}

NSString pathExtensionForMIMESubtype(const NSString &subtype) {
  return extensionOfFirst([&](const Row &row) {
    return !row.isTypeCode() &&
           fastCaseInsensitiveContainsUnichars(subtype.characters(), subtype.length(), row.key.data(),
                                               static_cast<std::uint32_t>(row.key.size()));
  });
}

}  // namespace nimbo
