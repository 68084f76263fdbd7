// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Classes/Encodings/CharsetNames.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace {

void require(bool good) {
  if (!good) std::abort();
}

nimbo::CFStringEncoding encodingOf(std::u16string_view name) {
  return nimbo::charset2CFStringEncoding(nimbo::NSString::stringWithCharacters(name));
}

}  // namespace

/// Each byte is a unit of the name. Neither case nor punctuation counts, in short names and in long ones; an
/// encoding for strings is an available one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  constexpr std::size_t kPadding = 200;
  const std::u16string name(data, data + size);
  const nimbo::CFStringEncoding encoding = encodingOf(name);
  if (size < 3) {
    require(encoding == nimbo::kCFStringEncodingInvalidId);
  } else {
    std::u16string variant = u"_" + std::u16string(size % kPadding, u'.');
    for (const char16_t unit : name) {
      variant += unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
      variant += u'-';
    }
    require(encodingOf(variant) == encoding);
  }
  const auto number = nimbo::charset2NSStringEncoding(nimbo::NSString::stringWithCharacters(name));
  if (number != nimbo::kCFStringEncodingInvalidId)
    require(nimbo::CFStringConvertNSStringEncodingToEncoding(number) == encoding);
  return 0;
}
