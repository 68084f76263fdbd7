// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/Classes/PlainTagScanner.hpp"

/// The scanner tells what its plain twin tells, over the string's own units and over a copy.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto string =
      nimbo::NSString::stringWithLossyUTF8String({reinterpret_cast<const char *>(data), size});
  const auto expected = nimbo::PlainTagScanner(string.view()).calls();
  if (nimbo::callsOfScanner(string, false) != expected) std::abort();
  if (nimbo::callsOfScanner(string, true) != expected) std::abort();
  return 0;
}
