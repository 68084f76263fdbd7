// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/ImageIO/CGImageSource.hpp"

/// Whatever is taken for an image has a size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  NSError failure;
  const auto source = CGImageSource::sourceWithData(NSData::dataWithBytes(data, size), &failure);
  // Without the engine nothing would be fuzzed.
  if (failure.errorCode() == ErrorCode::other) std::abort();
  if (!source) return 0;
  const auto width = source->properties().objectForKey(u"PixelWidth"_ns).integer();
  const auto height = source->properties().objectForKey(u"PixelHeight"_ns).integer();
  if (!source->type() || width.value_or(0) <= 0 || height.value_or(0) <= 0) std::abort();
  return 0;
}
