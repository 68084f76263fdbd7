// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Characters/UnicodeConverters.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

namespace {

void require(bool good) {
  if (!good) std::abort();
}

/// The same text from a converter that gets it in pieces; false when it stops.
bool convertInPieces(nimbo::CFStringEncoding encoding, std::span<const std::uint8_t> input, std::size_t piece,
                     std::u16string &text) {
  std::unique_ptr<nimbo::TECConverter> converter;
  require(nimbo::TECCreateConverter(converter, encoding, nimbo::kCFStringEncodingUnicode) == nimbo::noErr);
  std::array<char16_t, 4> units;
  const std::span output(reinterpret_cast<std::uint8_t *>(units.data()), sizeof units);
  std::size_t given = 0;
  for (bool flushes = false;;) {
    const auto result =
        flushes ? converter->flushText(output) : converter->convertText(input.first(given), output);
    require(result.consumedBytes <= given && result.writtenBytes <= sizeof units);
    text.append(units.data(), result.writtenBytes / sizeof(char16_t));
    input = input.subspan(flushes ? 0 : result.consumedBytes);
    given -= flushes ? 0 : result.consumedBytes;
    if (result.status == nimbo::kTECOutputBufferFullStatus) continue;
    const bool isCut = result.status == nimbo::kTECPartialCharErr && given < input.size();
    if (result.status != nimbo::noErr && result.status != nimbo::kTECUsedFallbacksStatus && !isCut)
      return false;
    if (flushes) return true;
    flushes = input.empty();
    given = std::min(input.size(), given + piece);
  }
}

}  // namespace

/// The first four bytes are the encoding's number, highest byte first (any other number stands for some
/// encoding), the fifth is the size of pieces. What a whole text gives, its pieces give; and what can be
/// encoded gives the same text again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const std::vector<nimbo::CFStringEncoding> encodings = nimbo::CFStringGetListOfAvailableEncodings();
  constexpr std::size_t kHeader = 5;
  if (size < kHeader) return 0;
  const nimbo::CFStringEncoding wanted =
      nimbo::CFStringEncoding{data[0]} << 24 | data[1] << 16 | data[2] << 8 | data[3];
  const nimbo::CFStringEncoding encoding =
      std::ranges::binary_search(encodings, wanted) ? wanted : encodings[wanted % encodings.size()];
  const std::vector<std::uint8_t> bytes(data + kHeader, data + size);
  const auto *chars = reinterpret_cast<const char *>(bytes.data());
  std::vector<nimbo::unichar> units(4 * bytes.size() + 4);
  std::uint32_t count = 0;
  const nimbo::OSStatus status =
      nimbo::convertEncodingToUnicode(chars, static_cast<std::uint32_t>(bytes.size()), encoding, units.data(),
                                      static_cast<std::uint32_t>(units.size()), &count);
  std::uint32_t mark = 0;
  const auto real = nimbo::encodingWithByteOrderMark(encoding, {chars, bytes.size()}, &mark);
  std::u16string text;
  const bool isWhole = convertInPieces(real, std::span(bytes).subspan(mark), data[4] % 8 + 1u, text);
  require(isWhole == (status == 1));
  if (isWhole) require(text == std::u16string_view(units.data(), count));

  const auto number = nimbo::CFStringConvertEncodingToNSStringEncoding(encoding);
  const auto string = nimbo::initWithData(nimbo::NSData::dataWithBytes(bytes.data(), bytes.size()), number);
  require(!string || isWhole);
  if (const nimbo::NSData again = nimbo::dataUsingEncoding(string, number))
    if (!string.view().starts_with(u'\ufeff')) require(nimbo::initWithData(again, number) == string);
  return 0;
}
