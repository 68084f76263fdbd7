// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "Classes/Stripping/NSString+HtmlExtensions+Stripping.hpp"
#include "tests/support/StringSamples.hpp"

namespace {

void require(bool good) {
  if (!good) std::abort();
}

}  // namespace

/// The first line holds the names for the bodies, two words; the rest is the markup.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  const std::string_view bytes(reinterpret_cast<const char *>(data), size);
  const std::size_t line = std::min(bytes.find('\n'), bytes.size());
  const std::string_view words = bytes.substr(0, line);
  const std::size_t word = std::min(words.find(' '), words.size());
  const std::vector<NSString> names = {NSString::stringWithLossyUTF8String(words.substr(0, word)),
                                       NSString::stringWithLossyUTF8String(words.substr(word))};
  const NSString string = exactString(NSString::stringWithLossyUTF8String(bytes.substr(line)).view());

  require(stripTags(string).length() <= string.length() + 1);
  for (const char *name : {"A", "IMG", "SCRIPT"}) {
    const NSString without = stripTag(string, name);
    require(without.identicalTo(string) || without.length() < string.length());
    static_cast<void>(stripAttributesOfTag(string, name));
  }
  require(stripTagBodies(string, names).length() <= string.length());
  static_cast<void>(stripTagBodiesExcept(string, names));
  static_cast<void>(stripObjects(string));
  return 0;
}
