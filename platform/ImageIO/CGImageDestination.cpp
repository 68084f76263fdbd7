// SPDX-License-Identifier: Apache-2.0
#include "platform/ImageIO/CGImageDestination.hpp"

#include <algorithm>

#include "platform/ImageIO/ImageEngine.hpp"
#include "platform/ImageIO/PlainTIFF.hpp"

namespace nimbo {

NSData dataWithImage(const CGImage &image, const NSString &type, const CGImageDestinationOptions &options,
                     NSError *error) {
  return dataWithImages({image}, type, options, error);
}

NSData dataWithImages(const std::vector<CGImage> &images, const NSString &type,
                      const CGImageDestinationOptions &options, NSError *error) {
  if (images.empty() || std::ranges::any_of(images, [](const CGImage &image) { return !image; })) {
    setError(error, ErrorCode::incomplete, "there is no picture to write");
    return {};
  }
  if (images.size() == 1 && !images.front().hasAlpha() && type == u"public.tiff"_ns && !options.usesLZW)
    if (NSData file = detail::plainTIFF(images.front(), options.dotsPerInch)) return file;
  const detail::ImageEngine *engine = detail::imageEngine(error);
  if (!engine) return {};
  std::vector<detail::ImageView> views;
  views.reserve(images.size());
  for (const CGImage &image : images)
    views.push_back({image.width(), image.height(), image.hasAlpha(), image.pixels()});
  return engine->file(views, type, options, error);
}

}  // namespace nimbo
