// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/CoreServices/TextEncodings/NSStringEncodingDetection.hpp"
#include "platform/CoreServices/TextEncodings/NSStringEncodings.hpp"

/// The first byte says whether the rest was cut. Every answer has both a text and a name, or neither; and whole
/// bytes are read back in the encoding that is named.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char *>(data + 1), size - 1);
  const nimbo::DetectedString found = nimbo::stringWithDetectedEncoding(bytes, (data[0] & 1) != 0);
  if (static_cast<bool>(found.string) != static_cast<bool>(found.encodingName)) std::abort();
  if (!found.string || found.usedLossyConversion || (data[0] & 1) != 0) return 0;
  const auto encoding = nimbo::CFStringConvertEncodingToNSStringEncoding(
      nimbo::CFStringConvertIANACharSetNameToEncoding(found.encodingName));
  const nimbo::NSData whole = nimbo::NSData::dataWithBytes(bytes.data(), bytes.size());
  if (!(nimbo::initWithData(whole, encoding) == found.string)) std::abort();
  return 0;
}
