// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"

/// The first byte says whether the rest was cut. Every answer has both a text and a name, or neither.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char *>(data + 1), size - 1);
  const nimbo::DetectedString found = nimbo::stringWithDetectedEncoding(bytes, (data[0] & 1) != 0);
  if (static_cast<bool>(found.string) != static_cast<bool>(found.encodingName)) std::abort();
  return 0;
}
