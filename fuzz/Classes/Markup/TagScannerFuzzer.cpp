// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/Classes/Markup/PlainTagScanner.hpp"
#include "tests/support/StringSamples.hpp"

/// The scanner tells what its plain twin tells, over the string's own units and over a copy.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto text = nimbo::NSString::stringWithLossyUTF8String({reinterpret_cast<const char *>(data), size});
  const nimbo::NSString string = nimbo::exactString(text.view());
  const auto expected = nimbo::PlainTagScanner(string.view()).calls();
  if (nimbo::callsOfScanner(string, false) != expected) std::abort();
  if (nimbo::callsOfScanner(string, true) != expected) std::abort();
  return 0;
}
