// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/TextImage.hpp"

#include <utility>

#include "platform/ImageIO/ImageEngine.hpp"

namespace nimbo {

CGImage imageWithText(const NSString &text, double pointSize, std::uint32_t maximumWidth, const CGColor &color,
                      NSError *error) {
  const detail::ImageEngine *engine = detail::imageEngine(error);
  if (!engine) return {};
  detail::ImagePixels pixels = engine->textLine(text, pointSize, maximumWidth, color, error);
  if (!pixels.bytes) return {};
  return CGImage::imageWithPixels(pixels.width, pixels.height, pixels.hasAlpha, std::move(pixels.bytes));
}

}  // namespace nimbo
