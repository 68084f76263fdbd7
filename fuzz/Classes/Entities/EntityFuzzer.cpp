// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "Classes/Entities/EntityConversion.hpp"
#include "Classes/Entities/EntityEncoding.hpp"
#include "Classes/Pages/NSString+HtmlExtensions.hpp"
#include "fuzz/FuzzedText.hpp"
#include "tests/Classes/Entities/PlainEntityDecoder.hpp"

namespace {

using nimbo::NSString;
using nimbo::unichar;

void require(bool good) {
  if (!good) std::abort();
}

/// Decodes from and into blocks that end where the text ends, and in place from behind the first unit; both
/// must give what the plain decoder gives.
void checkDecoding(std::u16string_view text, bool standard, bool onlyNumeric, bool nonUmlauted) {
  const auto length = static_cast<std::uint32_t>(text.size());
  const std::u16string expected = nimbo::plainlyDecoded(text, standard, onlyNumeric, nonUmlauted);
  const std::unique_ptr<unichar[]> source(new unichar[length]), destination(new unichar[length]);
  std::ranges::copy(text, source.get());
  const std::uint32_t written = nimbo::convertEntities2Characters(source.get(), destination.get(), 0, length,
                                                                  standard, onlyNumeric, nonUmlauted);
  require(std::u16string_view(destination.get(), written) == expected);

  const std::unique_ptr<unichar[]> shared(new unichar[length + 1]);
  shared[0] = u'&';
  std::ranges::copy(text, shared.get() + 1);
  const std::uint32_t again = nimbo::convertEntities2Characters(shared.get(), shared.get(), 1, length, standard,
                                                                onlyNumeric, nonUmlauted);
  require(std::u16string_view(shared.get(), again) == expected);
}

/// Markup and numeric references are decoded to the text that they were made of; named ones too, where the text
/// has no "&" of its own and no name is too long.
void checkEncoding(const NSString &text) {
  const NSString markup = nimbo::stringByConvertingCharactersToEntities(text, false);
  require(markup.view().find_first_of(u"<>\"") == std::u16string_view::npos);
  require(nimbo::stringByConvertingStandardEntitiesToCharacters(markup) == text);
  const NSString numbers = nimbo::stringByConvertingCharactersToEntities(text, true);
  const NSString names = nimbo::stringByConvertingCharactersToEntities(text);
  const auto isAscii = [](unichar c) { return c < 128; };
  require(std::ranges::all_of(numbers.view(), isAscii) && std::ranges::all_of(names.view(), isAscii));
  if (text.view().find(u'&') != std::u16string_view::npos) return;
  require(nimbo::stringByConvertingEntitiesToCharacters(numbers, false, true, false) == text);
  const bool hasLongName = std::ranges::any_of(text.view(), [](unichar c) {
    const std::int32_t index = nimbo::indexOfEntityForCharacter(c);
    return index >= 0 && std::strlen(nimbo::entityStrings[static_cast<std::size_t>(index)]) > 6;
  });
  if (!hasLongName) require(nimbo::stringByConvertingEntitiesToCharacters(names) == text);
}

}  // namespace

/// The first byte chooses whether the others are bytes of ASCII or whole units.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::u16string text = fuzzedText(data, size);
  for (unsigned flags = 0; flags < 8; ++flags)
    checkDecoding(text, (flags & 1) != 0, (flags & 2) != 0, (flags & 4) != 0);
  checkEncoding(NSString::stringWithCharacters(text));
  return 0;
}
