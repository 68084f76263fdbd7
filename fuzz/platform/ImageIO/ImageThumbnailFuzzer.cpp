// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/ImageIO/CGImageSource.hpp"

/// A thumbnail is as small as was asked for, or there is a reason.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace nimbo;
  NSError failure;
  const auto source = CGImageSource::sourceWithData(NSData::dataWithBytes(data, size), &failure);
  // Without the engine nothing would be fuzzed.
  if (failure.errorCode() == ErrorCode::other) std::abort();
  if (!source) return 0;
  for (const bool isAlways : {false, true}) {
    constexpr std::uint32_t kMaxPixelSize = 64;
    NSError error;
    const CGImage image = source->createThumbnailAtIndex(source->count() - 1,
                                                         {.maxPixelSize = kMaxPixelSize,
                                                          .createFromImageIfAbsent = true,
                                                          .createFromImageAlways = isAlways,
                                                          .withTransform = true,
                                                          .deadline = Deadline::after(5)},
                                                         &error);
    if (!image && !error) std::abort();
    if (std::max(image.width(), image.height()) > kMaxPixelSize) std::abort();
  }
  return 0;
}
