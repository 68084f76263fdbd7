// SPDX-License-Identifier: Apache-2.0
#include "Classes/Images/TypeStrings.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "Classes/Characters/FastSearches.hpp"

namespace nimbo {
namespace {

enum class Key { typeCode, MIMESubtype, uniformType };

struct Row {
  std::u16string_view key;
  std::u16string_view extension;

  constexpr Key kind() const {
    if (key.starts_with(u'\'')) return Key::typeCode;
    return key.find(u'.') == std::u16string_view::npos ? Key::MIMESubtype : Key::uniformType;
  }
};

constexpr auto kRows = std::to_array<Row>({
#include "TypeStrings.inc"
});

template <class Matches>
NSString extensionOfFirst(Key kind, Matches matches) {
  const auto row = std::ranges::find_if(
      kRows, [&](const Row &candidate) { return candidate.kind() == kind && matches(candidate.key); });
  return row == kRows.end() ? NSString() : NSString::stringWithCharacters(row->extension);
}

}  // namespace

NSString pathExtensionForTypeCode(const NSString &code) {
  return extensionOfFirst(Key::typeCode, [&](std::u16string_view key) { return key == code.view(); });
}

NSString pathExtensionForMIMESubtype(const NSString &subtype) {
  return extensionOfFirst(Key::MIMESubtype, [&](std::u16string_view key) {
    return fastCaseInsensitiveContainsUnichars(subtype.characters(), subtype.length(), key.data(),
                                               static_cast<std::uint32_t>(key.size()));
  });
}

NSString pathExtensionForUniformType(const NSString &identifier) {
  return extensionOfFirst(Key::uniformType, [&](std::u16string_view key) { return key == identifier.view(); });
}

}  // namespace nimbo
