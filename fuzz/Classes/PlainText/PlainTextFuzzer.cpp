// SPDX-License-Identifier: Apache-2.0
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "Classes/PlainText/NSString+Html2Text.hpp"
#include "Classes/PlainText/PlainTextHandler.hpp"

using namespace nimbo;

namespace {

constexpr std::size_t kOptionBytes = 2;
constexpr std::size_t kMaximumGrowth = 4;

void check(bool good) {
  if (!good) std::abort();
}

/// Filled in front of a conversion, so that what an earlier one left in memory cannot matter.
void soilHeap(std::size_t length, int value) {
  volatile unsigned char *const memory = static_cast<unsigned char *>(std::malloc(length));
  for (std::size_t i = 0; memory && i < length; ++i) memory[i] = static_cast<unsigned char>(value);
  std::free(const_cast<unsigned char *>(memory));
}

NSString stringOfUnits(std::string_view bytes) {
  std::u16string units(bytes.size() / sizeof(unichar), u'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * sizeof(unichar));
  return NSString::stringWithCharacters(units);
}

}  // namespace

/// Two bytes of options, the second of which says how the rest becomes units; the string has exactly its size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size < kOptionBytes) return 0;
  const PlainTextOptions options{.entities = (data[0] & 1) == 0,
                                 .stdEntities = (data[0] & 2) == 0,
                                 .nonUmlauted = (data[0] & 4) != 0,
                                 .reformat = (data[0] & 8) != 0,
                                 .onlyBody = (data[0] & 16) != 0,
                                 .removeJunk = (data[0] & 32) != 0,
                                 .googleTags = (data[0] & 64) != 0};
  const TagHandler handler = data[0] & 128 ? SimplePlainTextHandler : PlainTextHandler;
  const std::string_view bytes(reinterpret_cast<const char *>(data + kOptionBytes), size - kOptionBytes);
  const NSString page = data[1] & 1 ? stringOfUnits(bytes) : NSString::stringWithLossyUTF8String(bytes);
  bool junkFound = false, junkFoundAgain = false;
  soilHeap(page.length() * sizeof(unichar) * 2, 0x20);
  const NSString text = _convertHtml2PlainTextUsingHandler(page, handler, options, &junkFound);
  soilHeap(page.length() * sizeof(unichar) * 2, 0x41);
  const NSString again = _convertHtml2PlainTextUsingHandler(page, handler, options, &junkFoundAgain);
  check(text.length() <= page.length() * kMaximumGrowth);
  check(text == again && junkFound == junkFoundAgain);
  check(options.removeJunk || !junkFound);
  if (page.length() == 0) check(text.identicalTo(page));
  return 0;
}
